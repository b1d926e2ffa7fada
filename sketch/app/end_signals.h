// SIGINT, SIGTERM and SIGHUP as an event: the program ends as if its window were closed.
#pragma once

#include <QObject>

class EndSignals : public QObject {
    Q_OBJECT

public:
    explicit EndSignals(QObject* parent = nullptr); // one in a program

signals:
    void came();
};
