// What the window asks of the user, and never waits for: about sketches that were left, and about the next.
#pragma once

#include "sketch/app/sketch_journal.h"

#include <QObject>
#include <QString>

class NoticeArea;
class QMenu;
class SketchSession;

class Questions : public QObject {
    Q_OBJECT

public:
    Questions(SketchSession& session, NoticeArea& notices, QObject* parent);

    void offerLeft(); // the latest sketch that a crash or a closed window has left, if there is one
    void fillEarlier(QMenu& menu);
    // Go on with the sketch that is there, or a new sheet?
    void askHowToGoOn();

signals:
    // Another sketch will be on the sheet in a moment: what is drawn and offered comes to its end.
    void replacing();
    void recovered(); // another sketch is on the sheet

private:
    void recover(const QString& file);
    void newSheet();
    void offerBack(const QString& file);

    SketchSession& m_session;
    NoticeArea& m_notices;
    std::vector<SketchJournal::Left> m_left; // not yet asked about
};
