// The widget one draws on: ink under the pen, what strokes are read as, and the view of the sheet.
//
// Space:  positions of events are widget pixels (device independent, with fractions); the view maps the sheet
//         to them.
#pragma once

#include "sketch/app/canvas_colours.h"
#include "sketch/app/canvas_settings.h"
#include "sketch/app/sketch_model.h"
#include "sketch/app/tool.h"

#include <QTransform>
#include <QWidget>

#include <functional>
#include <memory>

class SketchCanvas : public QWidget {
    Q_OBJECT

public:
    explicit SketchCanvas(SketchModel& model, QWidget* parent = nullptr);
    ~SketchCanvas() override;

    Tool tool() const;
    void setTool(Tool tool);
    const CanvasSettings& settings() const;
    void setSettings(const CanvasSettings& settings);
    void setColours(const CanvasColours& colours);

    QTransform sheetToWidget() const;
    double viewScale() const;    // screen pixels a sheet pixel
    double viewRotation() const; // degrees, clockwise as one sees it
    void zoomBy(double factor);  // about the middle
    void setScale(double scale);
    void rotateBy(double degrees);
    void setRotation(double degrees);
    void fitSheet();
    void fitSketch(); // all of what is drawn; the sheet when nothing is

    // The reading that is offered for the last stroke, if one is: its name for the status line, else empty.
    QString offeredReading() const;
    // Shows the ghost of the first reading that is not the present one.
    void offerReadings(vnt::sketch::StrokeId id);
    void offerNext();     // Tab; of the one selected or the last drawn stroke if none is offered
    void offerPrevious(); // Shift+Tab
    void takeOffered();   // Enter; the next stroke, another tool or selection as well
    void dropOffered();   // Escape: the stroke stays what it is
    // Ends what is being drawn as if the pen were lifted; the model then has it. An offer stays.
    void finishStroke();
    // The sketch then is what one sees: finishStroke(), and a reading that came unasked and would be taken in a
    // moment is taken now. One that was asked for stays offered.
    void settle();
    // The last step goes. Of a reading that came unasked it is the reading, not yet taken: the ink stays.
    void undo();
    bool isDrawing() const;

    // For tests: what is taken for the time, in milliseconds, where events do not say theirs.
    void setClock(std::function<qint64()> clock);

    // What the sheet shows, without desk, grid, markers and selection, for export: in sheet space.
    void paintSketch(QPainter& painter) const;

signals:
    void toolChanged(Tool tool);
    void viewChanged();
    void offerChanged();                          // offeredReading() is another
    void pointerMoved(const QPointF& sheetPoint); // for the status line
    void pointerLeft();
    void snappedTo(const QString& what); // "end", "grid crossing"; empty when nothing

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void escape(QKeyEvent& event);

    class Private;
    std::unique_ptr<Private> d;
};
