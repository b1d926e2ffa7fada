#include "sketch/app/canvas_colours.h"

// Ink, shape, ghost, selection and marker stand out from the sheet by 4.5 to 1 or more, in high contrast by 7
// to 1.
CanvasColours CanvasColours::light()
{
    CanvasColours colours;
    colours.desk = QColor(0xd5, 0xd8, 0xdd);
    colours.sheet = QColor(0xff, 0xff, 0xff);
    colours.grid = QColor(0xe2, 0xe8, 0xf0);
    colours.mainGrid = QColor(0xb8, 0xc6, 0xd8);
    colours.ink = QColor(0x22, 0x2a, 0x38);
    colours.shape = QColor(0x00, 0x00, 0x00);
    colours.ghost = QColor(0x0b, 0x5c, 0xc2);
    colours.selection = QColor(0x7a, 0x2a, 0xb8);
    colours.marker = QColor(0xb3, 0x3a, 0x00);
    return colours;
}

CanvasColours CanvasColours::dark()
{
    CanvasColours colours;
    colours.desk = QColor(0x17, 0x19, 0x1d);
    colours.sheet = QColor(0x25, 0x28, 0x2e);
    colours.grid = QColor(0x31, 0x36, 0x3f);
    colours.mainGrid = QColor(0x4a, 0x53, 0x62);
    colours.ink = QColor(0xdd, 0xe2, 0xea);
    colours.shape = QColor(0xff, 0xff, 0xff);
    colours.ghost = QColor(0x74, 0xb4, 0xff);
    colours.selection = QColor(0xd0, 0x9c, 0xff);
    colours.marker = QColor(0xff, 0xa7, 0x66);
    return colours;
}

CanvasColours CanvasColours::highContrast(bool dark)
{
    const QColor paper = dark ? Qt::black : Qt::white;
    const QColor pen = dark ? Qt::white : Qt::black;
    CanvasColours colours;
    colours.desk = dark ? QColor(0x30, 0x30, 0x30) : QColor(0xc0, 0xc0, 0xc0);
    colours.sheet = paper;
    colours.grid = dark ? QColor(0x38, 0x38, 0x38) : QColor(0xd0, 0xd0, 0xd0);
    colours.mainGrid = dark ? QColor(0x68, 0x68, 0x68) : QColor(0x98, 0x98, 0x98);
    colours.ink = pen;
    colours.shape = pen;
    colours.ghost = dark ? QColor(0xff, 0xff, 0x00) : QColor(0x00, 0x00, 0xa8);
    colours.selection = dark ? QColor(0x00, 0xff, 0xff) : QColor(0x70, 0x00, 0x70);
    colours.marker = dark ? QColor(0xff, 0xc0, 0x40) : QColor(0x8a, 0x00, 0x00);
    return colours;
}
