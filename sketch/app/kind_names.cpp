#include "sketch/app/kind_names.h"

#include <QCoreApplication>

using vnt::sketch::Kind;
using vnt::sketch::SnapKind;

namespace {

const char* nameOf(Kind kind)
{
    switch (kind) {
    case Kind::line: return QT_TRANSLATE_NOOP("KindNames", "line");
    case Kind::polyline: return QT_TRANSLATE_NOOP("KindNames", "polyline");
    case Kind::triangle: return QT_TRANSLATE_NOOP("KindNames", "triangle");
    case Kind::square: return QT_TRANSLATE_NOOP("KindNames", "square");
    case Kind::rectangle: return QT_TRANSLATE_NOOP("KindNames", "rectangle");
    case Kind::quadrilateral: return QT_TRANSLATE_NOOP("KindNames", "quadrilateral");
    case Kind::polygon: return QT_TRANSLATE_NOOP("KindNames", "polygon");
    case Kind::circle: return QT_TRANSLATE_NOOP("KindNames", "circle");
    case Kind::arc: return QT_TRANSLATE_NOOP("KindNames", "arc");
    case Kind::ellipse: return QT_TRANSLATE_NOOP("KindNames", "ellipse");
    case Kind::elliptic_arc: return QT_TRANSLATE_NOOP("KindNames", "elliptic arc");
    case Kind::free_curve: return QT_TRANSLATE_NOOP("KindNames", "free curve");
    case Kind::ink: break;
    }
    return QT_TRANSLATE_NOOP("KindNames", "ink");
}

const char* nameOf(SnapKind kind)
{
    switch (kind) {
    case SnapKind::end: return QT_TRANSLATE_NOOP("SnapNames", "end");
    case SnapKind::corner: return QT_TRANSLATE_NOOP("SnapNames", "corner");
    case SnapKind::centre: return QT_TRANSLATE_NOOP("SnapNames", "centre");
    case SnapKind::intersection: return QT_TRANSLATE_NOOP("SnapNames", "intersection");
    case SnapKind::angle: return QT_TRANSLATE_NOOP("SnapNames", "angle");
    case SnapKind::grid: break;
    }
    return QT_TRANSLATE_NOOP("SnapNames", "grid crossing");
}

} // namespace

QString kindName(Kind kind) { return QCoreApplication::translate("KindNames", nameOf(kind)); }

QString snapName(SnapKind kind) { return QCoreApplication::translate("SnapNames", nameOf(kind)); }
