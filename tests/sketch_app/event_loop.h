// Qt's event loop in a test: turned until something is so, within a limit that a working program never needs.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace sketch_app_test {

constexpr int kLimitMilliseconds = 20000;

// The one that Qt wants before anything else; no test needs more of it.
inline void needApplication()
{
    qputenv("QT_NO_GLIB", "1"); // Qt's own loop leaves sockets out when it is asked to
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
}

template <class Condition>
bool runUntil(Condition condition, int limitMilliseconds = kLimitMilliseconds)
{
    const QDeadlineTimer limit(limitMilliseconds);
    QTimer wake; // what is waited for may be no event of the loop
    wake.start(2);
    while (!condition()) {
        if (limit.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// Time in which something must not happen.
inline void letPass(int milliseconds)
{
    runUntil([] { return false; }, milliseconds);
}

// All that is due now.
inline void runDueEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace sketch_app_test
