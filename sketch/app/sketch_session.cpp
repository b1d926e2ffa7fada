#include "sketch/app/sketch_session.h"

#include <QLocale>

#include <memory>
#include <utility>

using namespace vnt::sketch;

namespace {

constexpr int kOwnSubdivisions = 5; // every fifth line of one's own grid is a main one

bool is_own(const Sheet& sheet)
{
    const Sheet own;
    return sheet.width == own.width && sheet.height == own.height &&
           sheet.sheet_to_model == own.sheet_to_model;
}

// From the sheet before, so that what is drawn stays where it is in the artwork. What was drawn on a sheet of
// one's own has no place there, and stays where it is on the screen.
Affine mapBetween(const Sheet& before, const Sheet& after)
{
    const auto model_to_sheet = try_inverse(after.sheet_to_model);
    if (is_own(before) || !model_to_sheet || before.sheet_to_model == after.sheet_to_model)
        return {};
    return *model_to_sheet * before.sheet_to_model;
}

std::vector<StrokeId> idsOf(const std::vector<StrokePtr>& strokes)
{
    std::vector<StrokeId> ids;
    for (const StrokePtr& stroke : strokes)
        ids.push_back(stroke->id);
    return ids;
}

} // namespace

SketchSession::SketchSession(const QString& journalFolder, QObject* parent)
    : QObject(parent), m_journal(m_model, journalFolder)
{
    connect(&m_link, &LinkServer::requested, this, &SketchSession::takeSheetOf);
    connect(&m_link, &LinkServer::editorLeft, this, [this] {
        m_editorSheet.reset();
        emit said(tr("The editor is gone. The sketch is kept."));
    });
    connect(&m_model.undoStack(), &QUndoStack::indexChanged, this, &SketchSession::noteState);
    connect(&m_model, &SketchModel::wasReset, this, &SketchSession::noteState);
}

SketchSession::~SketchSession()
{
    end();
    m_model.undoStack().disconnect(this); // it tells of its own end
}

bool SketchSession::send()
{
    if (!editorWaits()) {
        emit said(tr("No editor waits for the sketch. Choose Start VANT in the editor, and send it then."));
        return false;
    }
    const auto& strokes = m_model.document().strokes();
    const std::string line = answer_of(strokes, m_model.sheet());
    // Before the answer: with it the next editor may have its turn, and asks what became of the sketch.
    const auto before = std::exchange(m_sent, strokes);
    const QDateTime timeBefore = std::exchange(m_sentAt, QDateTime::currentDateTime());
    m_editorSheet.reset();
    const std::size_t count = strokes.size();
    if (!m_link.answer(QByteArray(line.data(), static_cast<qsizetype>(line.size())))) {
        m_sent = before;
        m_sentAt = timeBefore;
        emit said(tr("The sketch could not be sent: the editor is gone. It is kept."));
        return false;
    }
    if (count == 0)
        m_sent.reset();
    noteState();
    emit said(count == 0 ? tr("Nothing was drawn: the editor has got an empty figure.")
                         : tr("Sent: the editor has %n stroke(s).", nullptr, static_cast<int>(count)));
    return true;
}

bool SketchSession::cancel()
{
    if (!editorWaits())
        return false;
    m_editorSheet.reset();
    const bool isAnswered = m_link.cancel();
    emit said(tr("Cancelled: the editor has got an empty figure. The sketch is kept."));
    return isAnswered;
}

void SketchSession::end()
{
    m_editorSheet.reset();
    m_link.shutDown();
}

bool SketchSession::isAsSent() const { return m_sent && *m_sent == m_model.document().strokes(); }

bool SketchSession::isSafe() const
{
    const auto& strokes = m_model.document().strokes();
    return strokes.empty() || isAsSent() || (m_saved && *m_saved == strokes);
}

void SketchSession::noteState()
{
    m_journal.setSafe(isSafe());
    emit stateChanged();
}

void SketchSession::takeSheetOf(const Request& request)
{
    const auto& strokes = m_model.document().strokes();
    const bool isSketchThere = !strokes.empty();
    const bool isAsItWasSent = isAsSent();
    const Affine map = mapBetween(m_model.sheet(), request.sheet);
    m_editorSheet = request.sheet;
    m_model.setSheet(request.sheet);
    if (isSketchThere)
        m_model.transform(idsOf(strokes), map);
    if (isAsItWasSent)
        m_sent = strokes; // it has moved with the view alone
    noteState();
    emit editorAsked(isSketchThere);
}

Sheet SketchSession::ownSheet() const
{
    Sheet sheet;
    if (m_ownGrid > 0)
        sheet.grid = Grid{
            {m_ownGrid, 0, 0, m_ownGrid, 0, 0},
            kOwnSubdivisions
        };
    return sheet;
}

void SketchSession::setOwnGrid(double spacing)
{
    if (spacing == m_ownGrid)
        return;
    m_ownGrid = spacing;
    if (is_own(m_model.sheet()))
        m_model.setSheet(ownSheet());
}

// What was sent and saved was the sketch before.
void SketchSession::forget(const QString& file)
{
    m_sent.reset();
    m_saved.reset();
    m_file = file;
}

void SketchSession::newSheet()
{
    forget({});
    m_model.reset({});
    m_model.setSheet(m_editorSheet.value_or(ownSheet()));
}

FileProblem SketchSession::open(const QString& file)
{
    auto read = readSketch(file, m_model.sheet());
    if (auto* problem = std::get_if<FileProblem>(&read))
        return *problem;
    std::vector<StrokePtr> strokes;
    for (Stroke& stroke : std::get<std::vector<Stroke>>(read))
        strokes.push_back(std::make_shared<const Stroke>(std::move(stroke)));
    forget(file);
    m_model.reset(std::move(strokes));
    m_saved = m_model.document().strokes();
    noteState();
    return {};
}

FileProblem SketchSession::insert(const QString& file)
{
    auto read = readSketch(file, m_model.sheet());
    if (auto* problem = std::get_if<FileProblem>(&read))
        return *problem;
    const std::size_t before = m_model.document().strokes().size();
    m_model.addStrokes(std::get<std::vector<Stroke>>(std::move(read)), tr("Insert"));
    const auto& strokes = m_model.document().strokes();
    m_model.setSelection(idsOf({strokes.begin() + static_cast<std::ptrdiff_t>(before), strokes.end()}));
    return {};
}

FileProblem SketchSession::save(const QString& file)
{
    const FileProblem problem = writeSketch(file, m_model.document().strokes(), m_model.sheet());
    if (problem.sentence.isEmpty()) {
        m_saved = m_model.document().strokes();
        m_file = file;
        noteState();
    }
    return problem;
}

bool SketchSession::recover(const QString& journalFile)
{
    const std::optional<Sheet> waiting = m_editorSheet;
    if (!m_journal.recover(journalFile))
        return false;
    forget({});
    if (waiting) { // the sketch comes onto the sheet that is asked for
        const Affine map = mapBetween(m_model.sheet(), *waiting);
        m_model.setSheet(*waiting);
        m_model.transform(idsOf(m_model.document().strokes()), map);
    }
    noteState();
    return true;
}
