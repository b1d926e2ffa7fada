#include "sketch/app/status_panel.h"

#include "sketch/app/sketch_canvas.h"
#include "sketch/app/tools.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace {

constexpr int kSaidMilliseconds = 12000;

// Shows as much of its words as there is room for, and that they go on.
class HintLabel : public QLabel {
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QString seen = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
        style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                              isEnabled(), seen, foregroundRole());
    }
};

QLabel* fieldIn(QStatusBar& bar, const QString& name, const QString& widest)
{
    auto* const label = new QLabel;
    label->setAccessibleName(name);
    label->setToolTip(name);
    label->setMinimumWidth(QFontMetrics(label->font()).horizontalAdvance(widest));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    bar.addPermanentWidget(label);
    return label;
}

} // namespace

StatusPanel::StatusPanel(SketchCanvas& canvas, QWidget* parent)
    : QStatusBar(parent), m_canvas(canvas), m_hint(new HintLabel)
{
    m_hint->setObjectName("hint");
    m_hint->setMinimumWidth(1); // the window may be narrower than the words
    m_hint->setContentsMargins(6, 0, 0, 0);
    addWidget(m_hint, 1);
    m_snap = fieldIn(*this, tr("Snapped to"), {});
    m_place = fieldIn(*this, tr("Pointer on the sheet"), QStringLiteral("00000, 00000"));
    m_view = fieldIn(*this, tr("Scale and turn of the sheet"), QStringLiteral("1000 % 000°"));
    m_saidTimer.setSingleShot(true);
    m_saidTimer.setInterval(kSaidMilliseconds);
    connect(&m_saidTimer, &QTimer::timeout, this, [this] { say({}); });
    connect(&canvas, &SketchCanvas::offerChanged, this, &StatusPanel::showHint);
    connect(&canvas, &SketchCanvas::toolChanged, this, [this] { say({}); });
    connect(&canvas, &SketchCanvas::viewChanged, this, &StatusPanel::showView);
    connect(&canvas, &SketchCanvas::pointerMoved, this, &StatusPanel::showPlace);
    connect(&canvas, &SketchCanvas::snappedTo, this, [this](const QString& what) {
        m_snap->setText(what.isEmpty() ? QString() : tr("snaps: %1").arg(what));
    });
    showHint();
    showView();
}

void StatusPanel::say(const QString& sentence)
{
    m_said = sentence;
    m_saidTimer.start();
    showHint();
}

QString StatusPanel::text() const { return m_hint->text(); }

// What asks for a key comes before what was said, and that before what is always so.
void StatusPanel::showHint()
{
    QString text = m_said;
    const QString offered = m_canvas.offeredReading();
    if (!offered.isEmpty())
        text = tr("%1? Enter takes it, Tab shows another, Escape keeps the stroke as it is.")
                   .arg(offered.left(1).toUpper() + offered.mid(1));
    if (text.isEmpty()) {
        for (const ToolEntry& entry : toolEntries()) {
            if (entry.tool == m_canvas.tool())
                text = entry.hint;
        }
    }
    if (text == m_hint->text())
        return;
    m_hint->setText(text);
    m_hint->setToolTip(text);
    m_hint->setAccessibleName(text);
    QAccessibleEvent alert(m_hint, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void StatusPanel::showView()
{
    const QLocale locale;
    QString text = tr("%1 %").arg(locale.toString(m_canvas.viewScale() * 100, 'f', 0));
    const double turn = std::remainder(m_canvas.viewRotation(), 360);
    if (std::fabs(turn) >= 0.05)
        text += QStringLiteral("  %1°").arg(locale.toString(turn, 'f', 0));
    m_view->setText(text);
}

void StatusPanel::showPlace(const QPointF& place)
{
    const QLocale locale;
    m_place->setText(
        QStringLiteral("%1, %2").arg(locale.toString(place.x(), 'f', 0), locale.toString(place.y(), 'f', 0)));
}
