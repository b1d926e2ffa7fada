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

// From the sheet before, so that what is drawn stays where it is in the artwork.
Affine mapBetween(const Sheet& before, const Sheet& after)
{
    const auto model_to_sheet = try_inverse(after.sheet_to_model);
    if (!model_to_sheet || before.sheet_to_model == after.sheet_to_model)
        return {};
    const Affine map = *model_to_sheet * before.sheet_to_model;
    return try_inverse(map) ? map : Affine(); // views too far from each other for any number
}

std::vector<StrokeId> idsOf(const std::vector<StrokePtr>& strokes)
{
    std::vector<StrokeId> ids;
    ids.reserve(strokes.size());
    for (const StrokePtr& stroke : strokes)
        ids.push_back(stroke->id);
    return ids;
}

} // namespace

SketchSession::SketchSession(const QString& journalFolder, QObject* parent)
    : QObject(parent), m_journal(m_model, journalFolder), m_curves(m_model)
{
    connect(&m_link, &LinkServer::requested, this, &SketchSession::takeSheetOf);
    connect(&m_link, &LinkServer::answered, this, &SketchSession::noteAnswered);
    connect(&m_link, &LinkServer::editorLeft, this, &SketchSession::noteEditorLeft);
    connect(&m_model.undoStack(), &QUndoStack::indexChanged, this, &SketchSession::noteState);
    connect(&m_model, &SketchModel::wasReset, this, &SketchSession::noteState);
}

SketchSession::~SketchSession()
{
    end();
    m_model.undoStack().disconnect(this); // it tells of its own end
}

CubicsOf SketchSession::cubics()
{
    return [this](const StrokePtr& stroke) { return m_curves.of(stroke); };
}

bool SketchSession::mayAnswer()
{
    if (isSending())
        emit said(tr("The answer before is still on its way to the editor."));
    return editorWaits();
}

// What becomes of an answer is told by the link, within its answer() or later: noteAnswered, noteEditorLeft.
bool SketchSession::send()
{
    if (!mayAnswer()) {
        if (!isSending())
            emit said(
                tr("No editor waits for the sketch. Choose Start VANT in the editor, and send it then."));
        return false;
    }
    const auto& strokes = m_model.document().strokes();
    const std::string line = answer_of(strokes, m_model.sheet(), cubics());
    m_answer = Answer{false, strokes.size(), strokes};
    m_editorSheet.reset();
    const bool isTaken = m_link.answer(QByteArray(line.data(), static_cast<qsizetype>(line.size())));
    if (isSending())
        noteState();
    return isTaken;
}

bool SketchSession::cancel()
{
    if (!mayAnswer())
        return false;
    m_answer = Answer{true, 0, {}};
    m_editorSheet.reset();
    const bool isTaken = m_link.cancel();
    if (isSending())
        noteState();
    return isTaken;
}

// Before the next editor has its turn, and asks what became of the sketch.
void SketchSession::noteAnswered()
{
    const std::optional<Answer> answer = std::exchange(m_answer, std::nullopt);
    if (!answer)
        return;
    m_wasCancelled = answer->isCancelled;
    if (!answer->isCancelled && answer->sketch) {
        m_sent = answer->sketch;
        m_sentAt = QDateTime::currentDateTime();
    }
    if (!answer->isCancelled && answer->strokes == 0)
        m_sent.reset();
    noteState();
    if (answer->isCancelled)
        emit said(tr("Cancelled: the editor has got an empty figure. The sketch is kept."));
    else if (answer->strokes == 0)
        emit said(tr("Nothing was drawn: the editor has got an empty figure."));
    else
        emit said(tr("Sent: the editor has %n stroke(s).", nullptr, static_cast<int>(answer->strokes)));
}

void SketchSession::noteEditorLeft()
{
    const std::optional<Answer> answer = std::exchange(m_answer, std::nullopt);
    m_editorSheet.reset();
    noteState();
    if (answer && !answer->isCancelled)
        emit said(tr("The sketch could not be sent: the editor is gone. It is kept."));
    else
        emit said(tr("The editor is gone. The sketch is kept."));
}

void SketchSession::end()
{
    m_editorSheet.reset();
    m_link.shutDown();
    if (std::exchange(m_answer, std::nullopt)) // it did not get there in time
        noteState();
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
    m_editorSheet = request.sheet;
    moveOnto(request.sheet);
    noteState();
    emit editorAsked(!m_model.document().strokes().empty());
}

// What has no place in the artwork stays where it is on the screen, and has one from now on.
void SketchSession::moveOnto(const Sheet& sheet)
{
    const Affine map = m_model.isPlaced() ? mapBetween(m_model.sheet(), sheet) : Affine();
    StrokeMapping mapping = m_model.changeSheet(sheet, map);
    m_model.setPlaced(true);
    for (auto* const kept : {&m_sent, &m_saved}) {
        if (*kept)
            mapping.apply(**kept); // with the view alone nothing was changed
    }
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
    if (m_answer)
        m_answer->sketch.reset();
    m_sent.reset();
    m_saved.reset();
    m_file = file;
}

void SketchSession::newSheet()
{
    forget({});
    m_model.reset({});
    m_model.setSheet(m_editorSheet.value_or(ownSheet()));
    m_model.setPlaced(m_editorSheet.has_value());
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
    const bool isPlaced = m_model.isPlacedBySheet() || !strokes.empty();
    m_model.reset(std::move(strokes), isPlaced);
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
    m_model.addPlacedStrokes(std::get<std::vector<Stroke>>(std::move(read)), tr("Insert"));
    const auto& strokes = m_model.document().strokes();
    m_model.setSelection(idsOf({strokes.begin() + static_cast<std::ptrdiff_t>(before), strokes.end()}));
    return {};
}

FileProblem SketchSession::save(const QString& file)
{
    FileProblem problem = writeSketch(file, m_model.document().strokes(), m_model.sheet(), cubics());
    if (problem.sentence.isEmpty()) {
        m_saved = m_model.document().strokes();
        m_file = file;
        noteState();
    }
    return problem;
}

bool SketchSession::recover(const QString& journalFile)
{
    if (!m_journal.recover(journalFile))
        return false;
    forget({});
    if (!is_own(m_model.sheet()))
        m_model.setPlaced(true); // an older journal does not say so
    if (m_editorSheet)
        moveOnto(*m_editorSheet); // the sketch comes onto the sheet that is asked for
    noteState();
    return true;
}
