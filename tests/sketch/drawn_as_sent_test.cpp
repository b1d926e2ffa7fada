// What the plug-in's own code draws of an answer, against what was on the sheet.
#include "sketch/core/answer.h"
#include "sketch/core/shape_outline.h"
#include "tests/host_app/host_program.h"
#include "tests/host_app/trace_reading.h"
#include "tests/sketch/random_figures.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>

namespace {

using namespace vnt::sketch;
using host_app_test::Workplace;

constexpr double kHalfAPixel = 0.5;
constexpr double kFlat = 0.01; // sheet pixels; added to what is measured, at most
constexpr int kFigures = 250;  // a view

std::uint64_t first_seed()
{
    const char* const given = std::getenv("VNT_SEED");
    return given != nullptr ? std::strtoull(given, nullptr, 10) : 20261;
}

std::string text_of(double number)
{
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

// The curves of path art, on the sheet.
Path cubics_of_art(const vnt::host::PathArt& art, const Affine& model_to_sheet)
{
    Path cubics;
    for (std::size_t i = 1; i < art.size(); ++i) {
        for (const vnt::host::ArtPoint& p : {art[i - 1].p, art[i - 1].out, art[i].in, art[i].p})
            cubics.push_back(model_to_sheet({p.h, p.v}));
    }
    return cubics;
}

double furthest(const Path& points, const Path& from)
{
    double most = 0;
    for (const Vec2 p : points) {
        double nearest = distance(p, from.front());
        for (std::size_t i = 1; i < from.size() && nearest > most; ++i)
            nearest = std::min(nearest, distance_from_piece(p, from[i - 1], from[i]));
        most = std::max(most, nearest);
    }
    return most;
}

// Hausdorff's, of the curves; kFlat more at most.
double distance_between(const Path& a, const Path& b)
{
    const Path flat_a = flattened(a, kFlat / 2);
    const Path flat_b = flattened(b, kFlat / 2);
    return std::max(furthest(flat_a, flat_b), furthest(flat_b, flat_a));
}

struct ViewCase {
    const char* name;
    double points_per_pixel;
    double degrees; // by which the sheet's x axis is turned in the artwork
    bool mirrored;
};
// clang-format off
const ViewCase kViews[] = {
    {"ATenth", 10, 0, false},
    {"Half", 2, 0, false},
    {"Whole", 1, 0, false},
    {"ThreeQuarters", 0.75, 0, false},
    {"FourTimes", 0.25, 0, false},
    {"SixteenTimes", 0.0625, 0, false},
    {"TurnedALittle", 1, 30, false},
    {"TurnedALittleAtSixteenTimes", 0.0625, -75, false},
    {"TurnedAlmostAQuarter", 0.75, 89.999, false},
    {"TurnedAQuarter", 1, 90, false},
    {"TurnedFurther", 0.25, 135, false},
    {"UpsideDown", 2, 180, false},
    {"Mirrored", 1, 0, true},
    {"MirroredAndTurned", 0.5, 200, true},
};
// clang-format on

class DrawnAsSent : public testing::TestWithParam<const ViewCase*> {};

TEST_P(DrawnAsSent, LiesWithinHalfAPixel)
{
    const ViewCase& view = *GetParam();
    SCOPED_TRACE("VNT_SEED=" + std::to_string(first_seed()));
    const Sheet sheet =
        random_figures::sheet_at(view.points_per_pixel, view.degrees, view.mirrored, {-310.25, 845.5});
    random_figures::Figures figures(first_seed() * std::size(kViews) +
                                    static_cast<std::uint64_t>(&view - kViews));
    std::vector<StrokePtr> strokes;
    for (StrokeId id = 1; id <= kFigures; ++id)
        strokes.push_back(figures.next(id));

    const Workplace place;
    place.file("figure.xml", answer_of(strokes, sheet) + "\n");
    const auto end = place.run({"draw", "DIR/figure.xml", "-o", "DIR/out.svg", "--trace", "DIR/trace",
                                "--tolerance=" + text_of(sheet.tolerance)});
    ASSERT_EQ(end.status, 0) << end.errors;
    const std::vector<vnt::host::PathArt> paths = host_app_test::paths_of(place.content("trace"));
    ASSERT_EQ(paths.size(), strokes.size());
    const Affine model_to_sheet = *try_inverse(sheet.sheet_to_model);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const Path wanted = cubics_of(*strokes[i], kAnswerTolerance);
        const Path drawn = cubics_of_art(paths[i], model_to_sheet);
        ASSERT_FALSE(drawn.empty());
        EXPECT_LE(distance_between(drawn, wanted), kHalfAPixel - kFlat)
            << "stroke " << i << ", " << name_of(strokes[i]->kind) << ": "
            << answer_of({strokes[i]}, sheet).substr(0, 400);
    }
}

std::vector<const ViewCase*> views()
{
    std::vector<const ViewCase*> all;
    for (const ViewCase& view : kViews)
        all.push_back(&view);
    return all;
}
INSTANTIATE_TEST_SUITE_P(, DrawnAsSent, testing::ValuesIn(views()),
                         [](const auto& row) { return row.param->name; });

} // namespace
