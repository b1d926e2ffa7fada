#include "sketch/app/stroke_mapping.h"

#include "sketch/core/shape_outline.h"

#include <memory>

using vnt::sketch::Stroke;
using vnt::sketch::StrokePtr;

StrokePtr StrokeMapping::operator()(const StrokePtr& stroke)
{
    if (!stroke || movesNothing())
        return stroke;
    StrokePtr& mapped = m_mapped[stroke];
    if (!mapped)
        mapped = std::make_shared<const Stroke>(vnt::sketch::mapped(*stroke, m_map, stroke->id));
    return mapped;
}

void StrokeMapping::apply(std::vector<StrokePtr>& strokes)
{
    for (StrokePtr& stroke : strokes)
        stroke = (*this)(stroke);
}
