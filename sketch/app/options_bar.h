// The bar above the sheet: undo, the switches of snapping and converting, and the sliders for both.
#pragma once

#include "sketch/app/sketch_canvas.h"

#include <QToolBar>

class Actions;
class QSlider;

class OptionsBar : public QToolBar {
    Q_OBJECT

public:
    OptionsBar(const Actions& actions, QWidget* parent = nullptr);

    void setValues(const CanvasSettings& settings);

signals:
    void toleranceChanged(double tolerance);
    void stabiliserChanged(double strength);

private:
    QSlider* addSlider(const QString& text, const QString& tip, const char* name, int most);

    QSlider* m_tolerance;
    QSlider* m_stabiliser;
};
