#include "sketch/app/options_bar.h"

#include "sketch/app/actions.h"

#include <QAction>
#include <QFontMetrics>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

#include <cmath>

namespace {

constexpr double kSteps = 50;     // of a slider for each 1 of its value
constexpr int kMostTolerance = 3; // as the settings' file takes it
constexpr int kMostStabiliser = 1;

} // namespace

OptionsBar::OptionsBar(const Actions& actions, QWidget* parent) : QToolBar(tr("Options"), parent)
{
    setObjectName("optionsBar");
    addActions({actions.undo, actions.redo});
    addSeparator();
    addActions({actions.snapToGrid, actions.snapToShapes, actions.snapToAngles});
    addSeparator();
    addAction(actions.convertAlways);
    m_tolerance = addSlider(tr("Tolerance"), tr("How far a stroke may be from the shape that it is read as"),
                            "tolerance", kMostTolerance);
    m_stabiliser = addSlider(tr("Steadiness"), tr("How much the pen's tremor is smoothed while you draw"),
                             "stabiliser", kMostStabiliser);
    connect(m_tolerance, &QSlider::valueChanged, this,
            [this](int value) { emit toleranceChanged(value / kSteps); });
    connect(m_stabiliser, &QSlider::valueChanged, this,
            [this](int value) { emit stabiliserChanged(value / kSteps); });
}

QSlider* OptionsBar::addSlider(const QString& text, const QString& tip, const char* name, int most)
{
    auto* const label = new QLabel(text);
    label->setContentsMargins(10, 0, 4, 0);
    label->setToolTip(tip);
    addWidget(label);
    auto* const slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(name);
    slider->setAccessibleName(text);
    slider->setAccessibleDescription(tip);
    slider->setToolTip(tip);
    slider->setRange(0, static_cast<int>(most * kSteps));
    slider->setPageStep(static_cast<int>(most * kSteps / 10));
    slider->setFixedWidth(QFontMetrics(slider->font()).averageCharWidth() * 16);
    label->setBuddy(slider);
    addWidget(slider);
    return slider;
}

void OptionsBar::setValues(const CanvasSettings& settings)
{
    const QSignalBlocker first(m_tolerance);
    const QSignalBlocker second(m_stabiliser);
    m_tolerance->setValue(static_cast<int>(std::lround(settings.tolerance * kSteps)));
    m_stabiliser->setValue(static_cast<int>(std::lround(settings.stabiliser * kSteps)));
}
