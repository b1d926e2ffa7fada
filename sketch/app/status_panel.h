// The line at the window's foot: what can be done now or was done last, where the pointer is, how the sheet
// is seen.
#pragma once

#include <QPointF>
#include <QStatusBar>
#include <QString>
#include <QTimer>

class QLabel;
class SketchCanvas;

class StatusPanel : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusPanel(SketchCanvas& canvas, QWidget* parent = nullptr);

    // A sentence that stays until another comes, or for a while.
    void say(const QString& sentence);
    QString text() const;

private:
    void showHint();
    void showView();
    void showPlace(const QPointF& place);

    SketchCanvas& m_canvas;
    QString m_said;
    QTimer m_saidTimer;
    QLabel* m_hint;
    QLabel* m_snap;
    QLabel* m_place;
    QLabel* m_view;
};
