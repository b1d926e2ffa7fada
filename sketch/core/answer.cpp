#include "sketch/core/answer.h"

#include "sketch/core/answer_numbers.h"
#include "sketch/core/arc_element.h"
#include "sketch/core/shape_outline.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>

namespace vnt::sketch {
namespace {

// Of one shape. The plug-in counts a path's anchors in 16 bits with a sign, and makes two of each join where
// its tolerance welds nothing.
constexpr std::size_t kMostSegments = 16383;

// The plug-in's paths are in single precision.
bool is_place(Vec2 p) { return std::abs(p.x) <= FLT_MAX && std::abs(p.y) <= FLT_MAX; }

class AnswerWriter {
public:
    explicit AnswerWriter(const Sheet& sheet)
        : sheet_(sheet), model_to_sheet_(try_inverse(sheet.sheet_to_model)),
          decimals_(sheet.sheet_to_model.mean_scale())
    {
    }

    void add(const Stroke& stroke, Path cubics)
    {
        for (Vec2& p : cubics) {
            p = sheet_.sheet_to_model(p);
            p = {decimals_(p.x), decimals_(p.y)};
        }
        if (cubics.empty() || !std::all_of(cubics.begin(), cubics.end(), is_place))
            return;
        const auto* straight = std::get_if<Straight>(&stroke.shape);
        const auto* round = std::get_if<Round>(&stroke.shape);
        const auto* curve = std::get_if<Curve>(&stroke.shape);
        const bool is_dot = std::count(cubics.begin(), cubics.end(), cubics.front()) == 4;
        if (cubics.size() == 4 && (straight != nullptr || is_dot))
            add_line(cubics.front(), cubics.back());
        else if (round == nullptr || !try_add(*round))
            add_curve(cubics, (straight != nullptr && straight->closed) ||
                                  (curve != nullptr && curve->closed) ||
                                  (round != nullptr && std::abs(round->sweep) >= 2 * kPi));
    }

    std::string finished() { return "<vant>" + text_ + "</vant>"; }

private:
    // Of an element's start tag, or within it.
    void open(const char* name) { text_.append("<").append(name); }
    void attribute(const char* name, double value)
    {
        text_.append(" ").append(name).append("=\"");
        append_number(text_, value);
        text_ += '"';
    }
    void place(const char* name, Vec2 p)
    {
        open(name);
        attribute("x", p.x);
        attribute("y", p.y);
        attribute("z", 0);
        text_ += "/>";
    }
    void length(const char* name, double value)
    {
        text_.append("<").append(name).append(">");
        append_number(text_, value);
        text_.append("</").append(name).append(">");
    }

    void add_line(Vec2 start, Vec2 end)
    {
        text_ += "<shape><line>";
        place("start", start);
        place("end", end);
        text_ += "</line></shape>";
    }

    // False: the plug-in would not draw it so well.
    bool try_add(const Round& round)
    {
        if (!model_to_sheet_)
            return false;
        const Shape model = mapped(round, sheet_.sheet_to_model);
        const ArcElement element = element_of(std::get<Round>(model), decimals_);
        if (!is_drawn_well(element, round, sheet_, *model_to_sheet_))
            return false;
        add_element(element);
        return true;
    }

    void add_element(const ArcElement& element)
    {
        const char* const whole = element.is_circle ? "circle" : "ellipse";
        const char* const arc = element.is_circle ? "circular_arc" : "elliptic_arc";
        const char* const name = element.is_whole ? whole : arc;
        text_.append("<shape><").append(name).append(">");
        place("center", element.centre);
        if (element.is_circle) {
            length("radius", element.radius_x);
        } else {
            length("major_radius", element.radius_x);
            length("minor_radius", element.radius_y);
        }
        open("angle");
        attribute("start", element.start);
        attribute("end", element.end);
        text_ += "/>";
        add_posture(element);
        text_.append("</").append(name).append("></shape>");
    }

    void add_posture(const ArcElement& element)
    {
        if (element.posture == Affine{})
            return;
        open("posture");
        attribute("m00", element.posture.a);
        attribute("m01", element.posture.c);
        attribute("m10", element.posture.b);
        attribute("m11", element.posture.d);
        attribute("m22", element.is_turned_over ? -1 : 1);
        text_ += "/>";
    }

    void add_curve(const Path& cubics, bool closed)
    {
        const char* const name = closed ? "closed_free_curve" : "open_free_curve";
        for (std::size_t first = 0; first < cubics.size(); first += 4 * kMostSegments) {
            const std::size_t end = std::min(cubics.size(), first + 4 * kMostSegments);
            text_.append("<shape><").append(name).append("><bezier_curve>");
            for (std::size_t i = first; i < end; ++i)
                place("control_point", cubics[i]);
            text_.append("</bezier_curve></").append(name).append("></shape>");
        }
    }

    const Sheet& sheet_;
    std::optional<Affine> model_to_sheet_;
    Decimals decimals_;
    std::string text_;
};

} // namespace

std::string answer_of(const std::vector<StrokePtr>& strokes, const Sheet& sheet, const CubicsOf& cubics)
{
    AnswerWriter writer(sheet);
    for (const StrokePtr& stroke : strokes) {
        if (stroke != nullptr)
            writer.add(*stroke, cubics ? cubics(stroke) : cubics_of(*stroke, kAnswerTolerance));
    }
    return writer.finished();
}

} // namespace vnt::sketch
