// vant-sketch: the sketch application on screen.
#include "sketch/app/end_signals.h"
#include "sketch/app/main_window.h"
#include "sketch/app/program_options.h"
#include "sketch/app/running_instance.h"
#include "sketch/app/translations.h"
#include "tools/program/console.h"

#include <QApplication>
#include <QDir>
#include <QIcon>

#include <algorithm>
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <variant>
#include <vector>

namespace {

using vnt::program::Console;
using vnt::program::ExitStatus;

// Qt would abort, without a word of what to do.
bool has_display()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

constexpr const char* kToken =
    "XDG_ACTIVATION_TOKEN"; // with which the desktop lets a window come to the front

// The desktop's token, and then the arguments.
QStringList forRunning(const ProgramOptions& options)
{
    QStringList arguments = {qEnvironmentVariable(kToken)};
    for (const std::string& argument : argumentsFor(options))
        arguments += QString::fromStdString(argument);
    return arguments;
}

// What was asked of this program, or of a second start of it.
void obey(MainWindow& window, const ProgramOptions& options)
{
    if (options.sheetRotation)
        window.turnEditorSheet(*options.sheetRotation);
    if (!options.file.empty())
        window.openFile(QDir().absoluteFilePath(QFile::decodeName(options.file.c_str())));
}

void obeyAgain(MainWindow& window, const QStringList& arguments)
{
    qputenv(kToken, arguments.value(0).toUtf8());
    std::vector<std::string> plain;
    for (const QString& argument : arguments.mid(1))
        plain.push_back(argument.toStdString());
    const auto read = readProgramOptions(plain);
    if (const auto* options = std::get_if<ProgramOptions>(&read))
        obey(window, *options);
    window.bringUp();
}

ExitStatus runWindow(QApplication& application, const ProgramOptions& options)
{
    RunningInstance instance(QStringLiteral("vant-sketch"));
    if (instance.handedOver(forRunning(options)))
        return vnt::program::kDone;
    WindowSetup setup;
    setup.isLinked = options.isLinked;
    installTranslations(SettingsStore(setup.settingsFile).load().language);
    MainWindow window(setup);
    EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::came, &window, &QWidget::close);
    QObject::connect(&instance, &RunningInstance::startedAgain, &window,
                     [&window](const QStringList& arguments) { obeyAgain(window, arguments); });
    // However the desktop ends the program, the editor has its answer first.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &window, [&window] { window.close(); });
    window.begin();
    obey(window, options);
    window.show();
    return static_cast<ExitStatus>(QApplication::exec());
}

ExitStatus run(const Console& console, int argc, char** argv)
{
    const auto read = readProgramOptions({argv + std::min(argc, 1), argv + argc});
    if (const auto* problem = std::get_if<vnt::program::Problem>(&read))
        return console.report(*problem);
    const auto& options = std::get<ProgramOptions>(read);
    if (options.help)
        return console.print(helpText());
    if (options.version)
        return console.print(versionText());
    if (!has_display())
        return console.report({vnt::program::kFailed, "there is no display to open a window on; nothing was "
                                                      "started; start it from the desktop, or set DISPLAY"});
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("vant"));
    QCoreApplication::setApplicationName(QStringLiteral("vant-sketch"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VNT_PROJECT_VERSION));
    QGuiApplication::setApplicationDisplayName(QString());
    QGuiApplication::setDesktopFileName(QStringLiteral("org.vant.Sketch"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/org.vant.Sketch.svg")));
    return runWindow(application, options);
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    const Console console("vant-sketch");
    try {
        return run(console, argc, argv);
    } catch (const std::bad_alloc&) {
        return console.report({vnt::program::kFailed,
                               "not enough memory; what was drawn is kept; close other "
                               "programs, and start it again"});
    } catch (const std::exception& error) {
        return console.report({vnt::program::kFailed, std::string("cannot go on: ") + error.what() +
                                                          "; what was drawn is kept; start it again"});
    }
}
