// What the window is about, without it: the sketch, the editor that waits for it, the files that hold it.
//
// Space:  strokes are on the sheet. When the editor shows another part of its artwork, they stay where they are
//         in the artwork.
// Errors: in words, by the results and by said(); nothing is lost by any of them.
#pragma once

#include "sketch/app/answer_curves.h"
#include "sketch/app/link_server.h"
#include "sketch/app/sketch_files.h"
#include "sketch/app/sketch_journal.h"
#include "sketch/app/sketch_model.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

class SketchSession : public QObject {
    Q_OBJECT

public:
    explicit SketchSession(const QString& journalFolder, QObject* parent = nullptr);
    ~SketchSession() override;

    SketchModel& model() { return m_model; }
    LinkServer& link() { return m_link; }
    SketchJournal& journal() { return m_journal; }
    AnswerCurves& curves() { return m_curves; }

    // To the editor whose turn it is; of no strokes an empty figure. False when none waits, or it turns out to
    // be gone. True says that the answer is on its way: it is sent when the link has handed over all of it.
    bool send();
    // An empty figure to the editor; the sketch stays. Else as send().
    bool cancel();
    // Answers every editor that waits with an empty figure; none is listened to from now on.
    void end();

    // For an answer; not once it is on its way.
    bool editorWaits() const
    {
        return m_link.state() == LinkServer::State::editorWaiting && !m_link.isSending();
    }
    bool isSending() const { return m_link.isSending(); }
    bool wasSent() const { return m_sent.has_value(); } // this sketch, as it was then
    bool isAsSent() const;                              // nothing was changed since
    QDateTime sentAt() const { return m_sentAt; }
    bool wasCancelled() const { return m_wasCancelled; } // the last editor that was answered
    // Nothing would be lost with the sketch: it has no strokes, or is as it was saved or sent.
    bool isSafe() const;

    // An empty one in the place of this: the editor's viewport while one waits, else a sheet of one's own. The
    // sketch before is put away by the journal.
    void newSheet();
    // spacing: sheet pixels between the grid lines of one's own sheets from now on; 0: none.
    void setOwnGrid(double spacing);

    QString file() const { return m_file; } // where it was opened or saved; empty before
    FileProblem open(const QString& file);
    FileProblem insert(const QString& file); // adds its strokes, and selects them
    FileProblem save(const QString& file);
    bool recover(const QString& journalFile);

signals:
    // An editor has its turn, and its viewport is the sheet. isSketchThere: there is one already, to go on with.
    void editorAsked(bool isSketchThere);
    void stateChanged(); // of what is sent, was sent and saved, and of the file's name
    void said(const QString& sentence);

private:
    // An answer that is on its way.
    struct Answer {
        bool isCancelled = false;
        std::size_t strokes = 0;
        std::optional<std::vector<vnt::sketch::StrokePtr>> sketch; // while it is the one on the sheet
    };

    vnt::sketch::CubicsOf cubics();
    bool mayAnswer();
    void noteAnswered();
    void noteEditorLeft();
    void takeSheetOf(const vnt::sketch::Request& request);
    void moveOnto(const vnt::sketch::Sheet& sheet);
    vnt::sketch::Sheet ownSheet() const;
    void noteState();
    void forget(const QString& file);

    SketchModel m_model;
    SketchJournal m_journal;
    AnswerCurves m_curves;
    LinkServer m_link;
    std::optional<vnt::sketch::Sheet> m_editorSheet; // of the editor that waits
    std::optional<Answer> m_answer;
    std::optional<std::vector<vnt::sketch::StrokePtr>> m_sent, m_saved;
    QDateTime m_sentAt;
    bool m_wasCancelled = false;
    QString m_file;
    double m_ownGrid = 0;
};
