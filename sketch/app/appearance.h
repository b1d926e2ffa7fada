// The colours of the window and of the canvas: the desktop's, or light, dark and high contrast of our own.
#pragma once

#include "sketch/app/settings_store.h"

#include <QPalette>
#include <QString>

#include <optional>

class DesktopWishes;

struct Look {
    std::optional<QPalette> palette; // none: the desktop's
    CanvasColours canvas;
    bool isHighContrast = false;
};

// desktop: the palette that the desktop gives to programs.
Look lookOf(ColourChoice choice, const DesktopWishes& wishes, const QPalette& desktop);
bool is_dark(const QPalette& palette);

// Gives the whole program its look, at once and as often as it is asked.
class Appearance {
public:
    Appearance(); // remembers what the desktop gave
    void apply(const Look& look);
    // What the desktop gives now; true when that is another than before.
    bool followDesktop();
    const QPalette& desktopPalette() const { return m_palette; }

private:
    QString m_style;
    QPalette m_palette;
    bool m_isOwn = false; // the program's palette is of our own
};
