// A figure as path art: one path per stroke.
#include "Source/geometry/bezier.h"
#include "Source/plugin/suite.h"
#include "Source/plugin/vantPlugin.h"

#include <iterator>

namespace {

using Chain = std::list<vnt::Point>;

// Makes groups of four points a chain that shares its anchors: a start closer than the tolerance to the end
// before it is dropped, any other is reached by a straight segment. Works in place, once through.
//
// Deliberate: counts in fours through any list; where the dropped point is the last, it ends there.
// Kept by Welding.KeepsCountingInFoursThroughAnyList. Depends on it: free curves, whose points come as sent.
void weld(Chain& points, double tolerance)
{
    unsigned int place = 0; // modulo 4; 3 is the end of a group
    for (auto it = points.begin(); it != points.end(); ++it, ++place) {
        const auto next = std::next(it);
        if (place % 4 != 3 || next == points.end())
            continue;
        if (vantPlugin::CheckNearPoint(*it, *next, tolerance)) {
            it = points.erase(next);
            if (it == points.end())
                return;
            place += 2;
        } else {
            points.insert(next, *it);
            it = points.insert(next, *next);
            place += 4;
        }
    }
}

AIRealPoint artwork_point(const vnt::Point& point)
{
    AIRealPoint result;
    result.h = static_cast<float>(point.x);
    result.v = static_cast<float>(point.y);
    return result;
}

} // namespace

void vantPlugin::CreateStroke(const vnt::FigPrimInfo& figure, double tolerance)
{
    for (const vnt::StrokeInfo& stroke : figure.strokes) {
        std::list<Chain> chains;
        for (const vnt::PrimInfo* primitive : stroke.primitives)
            chains.push_back(vnt::conv_prim_to_bezier(primitive, tolerance));
        for (Chain& chain : chains)
            weld(chain, tolerance);
        CreatePathArt(chains);
    }
}

void vantPlugin::CreatePathArt(const std::list<std::list<vnt::Point>>& chains)
{
    AIDocumentViewHandle view = nullptr;
    present(document_view_suite).GetNthDocumentView(0, &view);
    AILayerHandle layer = nullptr;
    present(layer_suite).GetCurrentLayer(&layer);
    AIArtHandle group = nullptr;
    present(art_suite).GetFirstArtOfLayer(layer, &group);
    AIArtHandle path = nullptr;
    present(art_suite).NewArt(kPathArt, kPlaceInsideOnTop, group, &path);

    AIPathSegment segment{};
    segment.corner = 1;
    std::uint16_t number = 0;
    for (const Chain& chain : chains) {
        if (chain.empty())
            continue;
        const auto last = std::prev(chain.end());
        auto previous = chain.begin();
        for (auto it = chain.begin(); it != chain.end(); ++it) {
            auto following = it == last ? it : std::next(it);
            segment.p = artwork_point(*it);
            segment.in = artwork_point(*previous);
            segment.out = artwork_point(*following);
            if (following != last)
                ++following;
            previous = it = following;
            present(path_suite).SetPathSegments(path, static_cast<std::int16_t>(number), 1, &segment);
            ++number;
        }
    }
}

bool vantPlugin::CheckNearPoint(const vnt::Point& a, const vnt::Point& b, double tolerance)
{
    const double x = a.x - b.x;
    const double y = a.y - b.y;
    const double z = a.z - b.z;
    return x * x + y * y + z * z < tolerance * tolerance;
}
