// A link as a program of its own, which a test may kill: prints its port, and then what its editor asks.
#include "sketch/app/link_server.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    LinkServer server;
    QObject::connect(&server, &LinkServer::requested, &server, [](const vnt::sketch::Request& request) {
        std::printf("requested %d\n", request.window.width);
        std::fflush(stdout);
    });
    if (!server.listen(argc > 1 ? QByteArray(argv[1]).toUShort() : quint16{0})) {
        std::printf("%s\n", qPrintable(server.problem()));
        return 1;
    }
    std::printf("%d\n", server.port());
    std::fflush(stdout);
    return application.exec();
}
