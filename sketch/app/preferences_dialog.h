// What the user sets once. Every change takes effect as it is made; the window goes on meanwhile.
#pragma once

#include "sketch/app/settings_store.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    PreferencesDialog(const Settings& settings, QWidget* parent = nullptr);

    void setSettings(const Settings& settings);

signals:
    void changed(const Settings& settings);

private:
    QWidget* drawingPage();
    QWidget* pensPage();
    QWidget* lookPage();
    QWidget* picturesPage();
    void fill(const Settings& settings);
    void take();

    Settings m_settings;
    bool m_isShowing = false; // the fields are being filled, which is no change
    QCheckBox *m_convertAlways, *m_snapToGrid, *m_snapToShapes, *m_snapToAngles, *m_fingersDraw,
        *m_transparent;
    QSpinBox* m_hold;
    QDoubleSpinBox *m_tolerance, *m_leastSize, *m_stabiliser, *m_inkWidth, *m_ownGrid, *m_scale, *m_lineWidth;
    QComboBox *m_colours, *m_motion, *m_language, *m_area;
};
