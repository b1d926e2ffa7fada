// One sketch application a user and display: a second start brings the running one's window up.
//
// Owner:  the running one holds a lock file beside the meeting place, which the system lets go of when it
//         ends in whatever way. So of two that start at the same time exactly one runs.
// Errors: where the user has no folder for meeting places, every start is on its own; so is one that finds a
//         running one which takes nothing within the time limit.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class RunningInstance : public QObject {
    Q_OBJECT

public:
    // name: of the meeting place, of this user alone; tests have their own.
    explicit RunningInstance(const QString& name, QObject* parent = nullptr);
    ~RunningInstance() override;

    static constexpr int kHandOverMilliseconds = 5000;
    void setHandOverTime(int milliseconds);

    // True when another instance runs, and has been handed the arguments; paths among them had better be
    // absolute, as it runs elsewhere. Otherwise this one is the running one from now on. A meeting place that
    // a crash has left behind is taken over.
    bool handedOver(const QStringList& arguments);
    QString meetingPlace() const; // the file of it; empty when this user has no folder for one

signals:
    // Bring the window up. The token with which the desktop allows that stands in XDG_ACTIVATION_TOKEN.
    void startedAgain(const QStringList& arguments);

private:
    class Private;
    std::unique_ptr<Private> d;
};
