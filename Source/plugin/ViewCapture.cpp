// What the sketch application is told of the front document's view: window, mapping and grid.
#include "Source/geometry/space_mapping.h"
#include "Source/plugin/suite.h"
#include "Source/plugin/vantPlugin.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};

// A window's title; the host's own, which is not given back.
CFStringRef title_of(WindowRef window)
{
    CFStringRef title = nullptr;
    CopyWindowTitleAsCFString(window, &title);
    return title;
}

bool is_artwork(const char* title) { return title != nullptr && std::strcmp(title, "Artwork") == 0; }

std::int32_t without_sign(std::int16_t edge) { return static_cast<std::uint16_t>(edge); }

// A grid of that step at the model's origin, its y axis down.
vnt::Matrix grid_matrix(double step)
{
    vnt::Matrix matrix = vnt::calc_view_grid_space_matrix(step, vnt::Matrix(), vnt::Point(0, 0, 0));
    matrix.m11 = -matrix.m11;
    return matrix;
}

} // namespace

WindowRef vantPlugin::getNonCollapsedFocusDocument()
{
    const auto is_titled_artwork = [this](WindowRef window) {
        const std::unique_ptr<char, Free> title(CFStringRefToCharConverter(title_of(window)));
        return is_artwork(title.get());
    };
    const WindowRef active = ActiveNonFloatingWindow();
    if (active == nullptr)
        return nullptr;
    bool titled = is_titled_artwork(active);
    bool collapsed = IsWindowCollapsed(active) != 0;
    if (titled && !collapsed)
        return active;
    const WindowRef previous = GetPreviousWindow(active);
    if (previous == nullptr)
        return nullptr;
    titled = is_titled_artwork(previous);
    collapsed = IsWindowCollapsed(active) != 0; // the active one again, see the declaration
    return titled && !collapsed ? previous : nullptr;
}

char* vantPlugin::CFStringRefToCharConverter(CFStringRef string)
{
    if (string == nullptr)
        return nullptr;
    const CFIndex size = CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    if (size < 0)
        return nullptr;
    std::unique_ptr<char, Free> buffer(static_cast<char*>(std::malloc(static_cast<std::size_t>(size))));
    if (buffer == nullptr || CFStringGetCString(string, buffer.get(), size, kCFStringEncodingUTF8) == 0)
        return nullptr;
    return buffer.release();
}

void vantPlugin::CreateDrawingBoard(vnt::ViewportInfo& viewport)
{
    const WindowRef window = getNonCollapsedFocusDocument();
    title_of(window); // asked for and not used
    Rect bounds{0, 0, 0, 0};
    GetWindowBounds(window, kWindowGlobalPortRgn, &bounds);
    viewport.x = without_sign(bounds.left);
    viewport.y = without_sign(bounds.top);
    viewport.width = without_sign(bounds.right) - without_sign(bounds.left);
    viewport.height = without_sign(bounds.bottom) - without_sign(bounds.top);
}

vnt::ModelSpaceInfo vantPlugin::GetTranceformMatrix()
{
    const vnt::Point q0(0, 0, 0);
    const vnt::Point q1(100, 0, 0);
    const vnt::Point q2(0, 100, 0);
    const vnt::Point q3(0, 0, 100);

    AIDocumentViewHandle view = nullptr;
    present(document_view_suite).GetNthDocumentView(0, &view);
    const auto artwork_point = [this, view](const vnt::Point& q) {
        AIPoint view_point;
        view_point.h = static_cast<std::int16_t>(static_cast<int>(q.x));
        view_point.v = static_cast<std::int16_t>(static_cast<int>(q.y));
        AIRealPoint point{0, 0};
        present(document_view_suite).ViewPointToArtworkPoint(view, &view_point, &point);
        return vnt::Point(static_cast<double>(point.h), static_cast<double>(point.v), 0.0);
    };
    const vnt::Point a0 = artwork_point(q0);
    const vnt::Point a1 = artwork_point(q1);
    const vnt::Point a2 = artwork_point(q2);
    const vnt::Point a3(a0.x, a0.y, a1.x - a0.x); // the host has no third axis
    return vnt::calc_model_space_matrix(q0, q1, q2, q3, a0, a1, a2, a3);
}

void vantPlugin::CreateGridSpace(vnt::ModelSpaceInfo& model_space)
{
    const host_services::GridSettings grid = host_services::grid_settings(present(grid_suite));
    const float step = grid.spacing / static_cast<float>(static_cast<double>(grid.subdivisions));
    model_space.derivational_scale_factor = grid.subdivisions;
    model_space.unit_grid_space_to_model_space_mapping_matrix = grid_matrix(static_cast<double>(step));
}

void vantPlugin::CreateAdequateGridSpace(vnt::ModelSpaceInfo& model_space)
{
    constexpr float kStep = 50.0F;
    constexpr std::int32_t kSubdivisions = 2;
    model_space.unit_grid_space_to_model_space_mapping_matrix = grid_matrix(static_cast<double>(kStep));
    model_space.derivational_scale_factor = kSubdivisions;
}
