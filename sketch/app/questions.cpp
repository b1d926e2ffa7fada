#include "sketch/app/questions.h"

#include "sketch/app/notice_area.h"
#include "sketch/app/sketch_session.h"

#include <QDir>
#include <QLocale>
#include <QMenu>

Questions::Questions(SketchSession& session, NoticeArea& notices, QObject* parent)
    : QObject(parent), m_session(session), m_notices(notices), m_left(session.journal().left())
{
    connect(&session.journal(), &SketchJournal::putAway, this, &Questions::offerBack);
    connect(&session.journal(), &SketchJournal::failed, this, [this](const QString& problem) {
        m_notices.showProblem("journal",
                              tr("What you draw cannot be kept safe: %1. Free space on the disk, or save "
                                 "the sketch elsewhere; each stroke tries again.")
                                  .arg(problem));
    });
    connect(&session.journal(), &SketchJournal::mended, this, [this] { m_notices.dismiss("journal"); });
    connect(&session.journal(), &SketchJournal::wasDamaged, this,
            [this](const QString& kept, qint64 strokes) {
                m_notices.showProblem("recovery",
                                      tr("The sketch's file was damaged: %n stroke(s) could be read. The "
                                         "file as it was is kept as %1.",
                                         nullptr, static_cast<int>(strokes))
                                          .arg(QDir::toNativeSeparators(kept)));
            });
    // Whoever draws on, or sends, has answered.
    connect(&session.model().undoStack(), &QUndoStack::indexChanged, this, [this] {
        m_notices.dismiss("earlier");
        if (!m_session.isAsSent())
            m_notices.dismiss("howToGoOn");
    });
    connect(&session.link(), &LinkServer::stateChanged, this, [this] {
        if (!m_session.editorWaits())
            m_notices.dismiss("howToGoOn");
    });
}

void Questions::offerLeft()
{
    if (m_left.empty())
        return;
    const SketchJournal::Left left = m_left.front();
    m_left.erase(m_left.begin());
    const QString text =
        tr("A sketch of %1 with %n stroke(s) was not finished.", nullptr, static_cast<int>(left.strokes))
            .arg(left.lastChange);
    m_notices.ask("recover", "question", text,
                  {
                      {tr("&Recover"),           [this, left] { recover(left.file); }},
                      {tr("&Discard"),
                       [this,                left] {
                           m_session.journal().discard(left.file);
                           offerLeft();
                       }},
                      {tr("&Later"), [this] { offerLeft(); }     }
    });
}

void Questions::newSheet()
{
    emit replacing();
    m_session.newSheet();
}

void Questions::recover(const QString& file)
{
    emit replacing();
    if (m_session.recover(file)) {
        m_notices.dismiss("howToGoOn");
        emit recovered();
        return;
    }
    m_notices.showProblem("recovery",
                          tr("Cannot read %1, or another program has it. The file is as it was.").arg(file));
}

void Questions::askHowToGoOn()
{
    const QString time = QLocale().toString(m_session.sentAt().time(), QLocale::ShortFormat);
    const QString text =
        m_session.wasSent()
            ? tr("The editor asks for a sketch. On the sheet is the one that was sent at %1.").arg(time)
            : tr("The editor asks for a sketch. On the sheet is one that no editor has got yet.");
    m_notices.ask("howToGoOn", "question", text,
                  {
                      {tr("&Go On With It"), {}                    },
                      {tr("&New Sheet"),     [this] { newSheet(); }}
    });
}

void Questions::offerBack(const QString& file)
{
    m_notices.ask("earlier", "question", tr("The sketch before was put away, under File, Earlier Sketches."),
                  {
                      {tr("&Bring It Back"), [this, file] { recover(file); }},
                      {tr("Close"),                    {}              }
    });
}

void Questions::fillEarlier(QMenu& menu)
{
    menu.clear();
    auto all = m_session.journal().left();
    const auto earlier = m_session.journal().earlier();
    all.insert(all.end(), earlier.begin(), earlier.end());
    for (const SketchJournal::Left& one : all) {
        const QString text =
            tr("%1, %n stroke(s)", nullptr, static_cast<int>(one.strokes)).arg(one.lastChange);
        menu.addAction(text, this, [this, file = one.file] { recover(file); });
    }
    if (all.empty())
        menu.addAction(tr("None"))->setEnabled(false);
}
