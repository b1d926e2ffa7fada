// What the sheet and all on it is painted in.
#pragma once

#include <QColor>

struct CanvasColours {
    QColor desk, sheet, grid, mainGrid, ink, shape, ghost, selection, marker;
    static CanvasColours light();
    static CanvasColours dark();
    static CanvasColours highContrast(bool dark);
};
