// Offers the readings of a stroke: the ghost, its snapping and its markers, and what becomes of it.
//
// A stroke that is still being drawn may be offered as well; then whoever draws it takes the reading, and
// puts both into the sketch.
// Space:  places are widget pixels with fractions.
#pragma once

#include "sketch/app/canvas_stage.h"
#include "sketch/app/reading_offer.h"

#include <QObject>
#include <QTimer>
#include <QVariantAnimation>

#include <optional>

class OfferedReadings : public QObject {
    Q_OBJECT

public:
    explicit OfferedReadings(CanvasStage& stage, QObject* parent = nullptr);

    bool isShown() const { return m_offer.has_value(); }
    bool isLive() const { return m_offer && m_stroke == 0; }
    bool isProposed() const { return m_isTaking; }
    QString name() const; // empty: none is shown
    bool wouldOffer(vnt::sketch::StrokeId id) const;

    // Each false where there is nothing but ink to offer.
    bool showLive(std::vector<vnt::sketch::Reading> readings, QPointF pen);
    bool show(vnt::sketch::StrokeId id);    // the first that it is not now; waits to be taken
    bool propose(vnt::sketch::StrokeId id); // the best; is taken after a moment

    void next();
    void previous();
    void drag(QPointF pen);
    void setSnapping(bool isOn);
    void stageChanged(); // its view, its settings or the grid
    // The sketch gets what is shown; of a live one nothing happens.
    void take();
    void drop();
    // What a live one shows, and none any more. None: it shows ink, or there is none.
    std::optional<vnt::sketch::Reading> takeLive();

    // How far the ink of what is offered has faded: from 0 to 1.
    double fading() const { return m_fading; }
    // within: what has to be painted.
    void paint(QPainter& painter, const QRectF& within) const;

signals:
    void changed(); // name() is another
    void snappedTo(const QString& what);

private:
    bool start(std::vector<vnt::sketch::Reading> readings, std::size_t first, vnt::sketch::StrokeId stroke);
    void end();
    void refresh(); // snaps, and shows that
    void restartTaking();
    void announceSnapping();
    QRectF ghostBox() const;
    void updateGhost();
    void forgetScene() { m_scene.reset(); }
    void strokeWent(vnt::sketch::StrokeId id);

    CanvasStage& m_stage;
    std::optional<ReadingOffer> m_offer;
    vnt::sketch::StrokeId m_stroke = 0; // 0: live
    vnt::sketch::Vec2 m_dragFrom;
    std::optional<vnt::sketch::SnapScene> m_scene; // without m_stroke
    bool m_isSnapping = true;
    bool m_isTaking = false; // after a moment
    QTimer m_takeTimer;
    QVariantAnimation m_fade;
    double m_fading = 0;
    vnt::sketch::Path m_ghost; // sheet; cubic segments of 4 points each
    QRectF m_painted;          // where the ghost and its markers were last
    QString m_announced;
};
