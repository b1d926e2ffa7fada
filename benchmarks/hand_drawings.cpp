#include "benchmarks/hand_drawings.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace bench {

using vnt::sketch::Ink;
using vnt::sketch::InkPoint;
using vnt::sketch::Vec2;

bool HandDrawing::is_for_tuning() const
{
    int sum = 0;
    for (const char digit : key)
        sum += digit - '0';
    return sum % 2 == 0;
}

std::vector<HandDrawing> read_drawings(const std::string& file)
{
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error("cannot open '" + file + "'");
    std::vector<HandDrawing> drawings;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        try {
            const nlohmann::json object = nlohmann::json::parse(line);
            const auto& strokes = object.at("strokes");
            if (strokes.size() != 1)
                continue;
            HandDrawing drawing{object.at("label"), object.at("key_id"), {}};
            for (const auto& point : strokes[0])
                drawing.ink.push_back({point.at(0), point.at(1), point.at(2), 1});
            drawings.push_back(std::move(drawing));
        } catch (const nlohmann::json::exception& error) {
            throw std::runtime_error(file + ", line " + std::to_string(number) + ": " + error.what());
        }
    }
    return drawings;
}

Ink stretched(Ink ink, Vec2 direction, double times)
{
    for (InkPoint& point : ink) {
        const double along = (times - 1) * dot(Vec2{point.x, point.y}, direction);
        point.x += along * direction.x;
        point.y += along * direction.y;
    }
    return ink;
}

Vec2 side_direction(const Ink& ink)
{
    constexpr int kDirections = 180; // of a quarter turn
    Vec2 best{1, 0};
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kDirections; ++i) {
        const Vec2 along = vnt::sketch::unit_at(vnt::sketch::kPi / 2 * i / kDirections);
        const Vec2 across = turned_a_quarter(along);
        vnt::sketch::Path turned;
        for (const InkPoint& point : ink)
            turned.push_back({dot({point.x, point.y}, along), dot({point.x, point.y}, across)});
        const vnt::sketch::Box box = box_of(turned);
        if (box.width() * box.height() < least) {
            least = box.width() * box.height();
            best = along;
        }
    }
    return best;
}

} // namespace bench
