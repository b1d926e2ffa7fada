#include "sketch/app/answer_curves.h"

#include "sketch/core/answer.h"
#include "sketch/core/shape_outline.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>
#include <variant>

using vnt::sketch::Affine;
using vnt::sketch::Path;
using vnt::sketch::StrokePtr;

// Made once, by whoever needs it first; who comes meanwhile waits for that.
class AnswerCurves::Fit {
public:
    explicit Fit(StrokePtr stroke) : m_stroke(std::move(stroke)) {}

    Path curve()
    {
        const std::lock_guard lock(m_making);
        if (!m_curve)
            m_curve = vnt::sketch::cubics_of(*m_stroke, vnt::sketch::kAnswerTolerance);
        return *m_curve;
    }

    bool isMade()
    {
        const std::lock_guard lock(m_making);
        return m_curve.has_value();
    }

private:
    const StrokePtr m_stroke;
    std::mutex m_making;
    std::optional<Path> m_curve;
};

AnswerCurves::AnswerCurves(SketchModel& model, QObject* parent) : QObject(parent)
{
    m_making.setMaxThreadCount(1);
    connect(&model, &SketchModel::inserted, this,
            [this](std::size_t, const StrokePtr& stroke) { add(stroke); });
    connect(&model, &SketchModel::taken, this, &AnswerCurves::remove);
    connect(&model, &SketchModel::replaced, this, [this](const StrokePtr& before, const StrokePtr& after) {
        remove(before);
        add(after);
    });
    connect(&model, &SketchModel::wasReset, this, [this, &model] { addAll(model); });
    connect(&model, &SketchModel::sheetChanged, this, [this, &model](const Affine& map) {
        if (map != Affine())
            addAll(model);
    });
    addAll(model);
}

AnswerCurves::~AnswerCurves()
{
    m_fits.clear(); // what is still to be made is made for nobody
    m_making.waitForDone();
}

Path AnswerCurves::of(const StrokePtr& stroke) const
{
    const auto found = m_fits.find(stroke);
    return found == m_fits.end() ? vnt::sketch::cubics_of(*stroke, vnt::sketch::kAnswerTolerance)
                                 : found->second->curve();
}

std::size_t AnswerCurves::madeCount() const
{
    return static_cast<std::size_t>(
        std::count_if(m_fits.begin(), m_fits.end(), [](const auto& fit) { return fit.second->isMade(); }));
}

// A shape has its curve, all but.
void AnswerCurves::add(const StrokePtr& stroke)
{
    if (!std::holds_alternative<std::monostate>(stroke->shape) || stroke->ink.empty())
        return;
    std::shared_ptr<Fit>& fit = m_fits[stroke];
    if (fit)
        return;
    fit = std::make_shared<Fit>(stroke);
    m_making.start([waiting = std::weak_ptr(fit)] {
        const std::shared_ptr<Fit> wanted = waiting.lock();
        try {
            if (wanted)
                wanted->curve();
        } catch (const std::exception&) { // too little memory, say: whoever needs the curve is told
        }
    });
}

void AnswerCurves::remove(const StrokePtr& stroke) { m_fits.erase(stroke); }

void AnswerCurves::addAll(const SketchModel& model)
{
    m_fits.clear();
    for (const StrokePtr& stroke : model.document().strokes())
        add(stroke);
}
