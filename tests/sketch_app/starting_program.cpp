// A program of which only one runs. Prints "running" and then what later starts hand over, a line each; or
// "handed over".
#include "sketch/app/running_instance.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    RunningInstance instance(QStringLiteral("vant-test"));
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance, [](const QStringList& arguments) {
        std::printf("%s\n", qPrintable(arguments.join(QLatin1Char(' '))));
        std::fflush(stdout);
    });
    const bool isHandedOver = instance.handedOver(application.arguments().mid(1));
    std::printf("%s\n", isHandedOver ? "handed over" : "running");
    std::fflush(stdout);
    return isHandedOver ? 0 : application.exec();
}
