// main of tests with the whole window: on no screen, with nobody's settings, and with the program's English words.
#include "sketch/app/translations.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const support::TemporaryFolder home;
    for (const char* place :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(place, home.path("").c_str());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // no desktop has a say
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle("fusion");
    installTranslations(QStringLiteral("en"));
    return RUN_ALL_TESTS();
}
