#include "sketch/app/tools.h"

#include <QCoreApplication>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Tools)
};

} // namespace

std::vector<ToolEntry> toolEntries()
{
    const QString force =
        Words::tr("Draw it: the stroke becomes it a moment after, or with Enter. Esc keeps the ink.");
    return {
        {Tool::pen,         "toolPen",         "tool-pen",          "P", Words::tr("&Pen"),
         Words::tr("Draw. Hold still at the end, and the stroke becomes what was meant; Tab asks as well.")                      },
        {Tool::line,        "toolLine",        "tool-line",         "L", Words::tr("&Line"),         force                       },
        {Tool::polyline,    "toolPolyline",    "tool-polyline",     "Y", Words::tr("Pol&yline"),     force                       },
        {Tool::triangle,    "toolTriangle",    "tool-triangle",     "N", Words::tr("Tria&ngle"),     force                       },
        {Tool::rectangle,   "toolRectangle",   "tool-rectangle",    "R", Words::tr("&Rectangle"),    force                       },
        {Tool::polygon,     "toolPolygon",     "tool-polygon",      "G", Words::tr("Poly&gon"),      force                       },
        {Tool::circle,      "toolCircle",      "tool-circle",       "C", Words::tr("&Circle"),       force                       },
        {Tool::arc,         "toolArc",         "tool-arc",          "A", Words::tr("&Arc"),          force                       },
        {Tool::ellipse,     "toolEllipse",     "tool-ellipse",      "E", Words::tr("&Ellipse"),      force                       },
        {Tool::ellipticArc, "toolEllipticArc", "tool-elliptic-arc", "I", Words::tr("Ell&iptic Arc"), force                       },
        {Tool::freeCurve,   "toolFreeCurve",   "tool-free-curve",   "F", Words::tr("&Free Curve"),   force                       },
        {Tool::eraser,      "toolEraser",      "tool-eraser",       "X", Words::tr("Eraser"),
         Words::tr("Draw across strokes: they go, whole. Undo brings them back.")                                                },
        {Tool::select,      "toolSelect",      "tool-select",       "S", Words::tr("&Select"),
         Words::tr("Click a stroke, or drag around several; drag them to move, Delete takes them away.")                         },
        {Tool::hand,        "toolHand",        "tool-hand",         "H", Words::tr("&Hand"),         Words::tr("Drag the sheet.")},
    };
}
