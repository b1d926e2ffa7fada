#include "sketch/app/sketch_files.h"

#include "tools/program/answer_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace vnt::sketch;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SketchFiles)
};

constexpr qint64 kMostBytes = static_cast<qint64>(kMostAnswerBytes) + 1; // and the line feed

// Empty when it has been opened. A pipe or a device is not: it would hold the program up, at its opening
// already, until somebody writes to it.
QString notOpenedBecause(QFile& opened, const QString& file)
{
    const int descriptor =
        ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat found = {};
    if (descriptor < 0 || ::fstat(descriptor, &found) != 0)
        return qt_error_string(errno);
    if (!S_ISREG(found.st_mode)) {
        ::close(descriptor);
        return Words::tr("it is no ordinary file");
    }
    return opened.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle) ? QString()
                                                                                : opened.errorString();
}

FileProblem cannotRead(const QString& file, const QString& why)
{
    return {
        Words::tr("Cannot open %1: %2. The sketch is as it was.").arg(QDir::toNativeSeparators(file), why)};
}

} // namespace

std::variant<std::vector<Stroke>, FileProblem> readSketch(const QString& file, const Sheet& sheet,
                                                          StrokeId firstId)
{
    QFile opened;
    if (const QString why = notOpenedBecause(opened, file); !why.isEmpty())
        return cannotRead(file, why);
    const QByteArray content = opened.read(kMostBytes + 1);
    if (opened.error() != QFile::NoError)
        return cannotRead(file, opened.errorString());
    if (content.size() > kMostBytes)
        return cannotRead(file, Words::tr("it is larger than any sketch"));
    if (!content.trimmed().startsWith('<'))
        return cannotRead(file, Words::tr("it holds no sketch"));
    const std::string line =
        vnt::program::joined({content.constData(), static_cast<std::size_t>(content.size())});
    auto read = strokes_of_answer(line, sheet, firstId);
    if (const auto* problem = std::get_if<Problem>(&read))
        return cannotRead(file, QString::fromStdString(problem->sentence));
    return std::get<std::vector<Stroke>>(std::move(read));
}

FileProblem writeSketch(const QString& file, const std::vector<StrokePtr>& strokes, const Sheet& sheet,
                        const CubicsOf& cubics)
{
    std::string line = answer_of(strokes, sheet, cubics);
    if (!unreadable_because(line).empty())
        return {
            Words::tr("Cannot write %1: the sketch is too large to be opened again. No file was changed, and "
                      "the sketch is as it was. Delete a part of it, and save again.")
                .arg(QDir::toNativeSeparators(file))};
    line += "\n";
    return writeWhole(file, QByteArray(line.data(), static_cast<qsizetype>(line.size())));
}

FileProblem writeWhole(const QString& file, const QByteArray& bytes)
{
    QSaveFile saved(file);
    // flush: committing alone does not notice that the last bytes found no room.
    if (saved.open(QIODevice::WriteOnly) && saved.write(bytes) == bytes.size() && saved.flush() &&
        saved.commit())
        return {};
    return {Words::tr("Cannot write %1: %2. No file was changed, and the sketch is as it was.")
                .arg(QDir::toNativeSeparators(file), saved.errorString())};
}
