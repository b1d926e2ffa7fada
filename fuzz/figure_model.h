// A figure as a flat list of words, read from its forms without the records, to compare the records' readers with.
#pragma once

#include "Source/geometry/primitives.h"
#include "fuzz/fuzz.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace fuzz {

// Counts, tags and flags as they are, doubles by their bits.
using Words = std::vector<std::uint64_t>;

inline std::uint64_t word_of(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Lists run to their count even when nothing is there to read: longer ones are left alone.
constexpr std::uint32_t kMostEntries = 100;
struct TooMany {};

// Reads a figure by its grammar. A Source gives the next count, tag, flag or double, or what it is called with when
// there is none; kFlagFirst says where a free curve has its flag.
template <class Source>
class FigureModel {
public:
    explicit FigureModel(Source source) : source_(source) {}

    Words read()
    {
        entries([this] { entries([this] { primitive(); }); });
        return words_;
    }

private:
    template <class Entry>
    void entries(Entry entry)
    {
        const std::uint32_t count = source_.count();
        if (count > kMostEntries)
            throw TooMany();
        words_.push_back(count);
        for (std::uint32_t i = 0; i < count; ++i)
            entry();
    }

    void doubles(int count)
    {
        for (int i = 0; i < count; ++i)
            words_.push_back(word_of(source_.number(0.0)));
    }

    void flag() { words_.push_back(source_.flag() ? 1 : 0); }

    void posture()
    {
        for (int element = 0; element < 16; ++element)
            words_.push_back(word_of(source_.number(element % 5 == 0 ? 1.0 : 0.0)));
    }

    void arc(int numbers_before_the_flag)
    {
        doubles(numbers_before_the_flag);
        flag();
        posture();
    }

    void free_curve()
    {
        const bool first = Source::kFlagFirst && source_.flag();
        const std::size_t place = words_.size();
        entries([this] { doubles(3); });
        const bool closed = Source::kFlagFirst ? first : source_.flag();
        words_.insert(words_.begin() + static_cast<std::ptrdiff_t>(place), closed ? 1 : 0);
    }

    void primitive()
    {
        const std::int32_t type = source_.tag();
        const bool known = type >= 0 && type <= 3;
        words_.push_back(known ? static_cast<std::uint64_t>(type) : ~std::uint64_t{0});
        switch (type) {
        case 0: doubles(6); break;
        case 1: arc(6); break;
        case 2: arc(7); break;
        case 3: free_curve(); break;
        default: break;
        }
    }

    Source source_;
    Words words_;
};

class Flattened {
public:
    explicit Flattened(const vnt::FigPrimInfo& figure)
    {
        words.push_back(figure.strokes.size());
        for (const vnt::StrokeInfo& stroke : figure.strokes) {
            words.push_back(stroke.primitives.size());
            for (const vnt::PrimInfo* primitive : stroke.primitives)
                add(primitive);
        }
    }

    Words words;
    bool finite = true;

private:
    void add(double value)
    {
        finite = finite && std::isfinite(value);
        words.push_back(word_of(value));
    }

    void add(const vnt::Point& point)
    {
        add(point.x);
        add(point.y);
        add(point.z);
    }

    void add(bool is_arc, const vnt::Matrix& posture)
    {
        words.push_back(is_arc ? 1 : 0);
        for (std::size_t element = 0; element < vnt::Matrix::kElements; ++element)
            add(posture[element]);
    }

    void add(const vnt::PrimInfo* primitive)
    {
        words.push_back(primitive == nullptr ? ~std::uint64_t{0}
                                             : static_cast<std::uint64_t>(primitive->type));
        if (const auto* const line = dynamic_cast<const vnt::PrimL*>(primitive)) {
            require(line->type == vnt::PRIM_LINE, "the type of a line");
            add(line->start);
            add(line->end);
        } else if (const auto* const circle = dynamic_cast<const vnt::PrimC*>(primitive)) {
            require(circle->type == vnt::PRIM_CIRCLE, "the type of a circle");
            add(circle->center);
            add(circle->radius);
            add(circle->start);
            add(circle->end);
            add(circle->is_arc, circle->posture);
        } else if (const auto* const ellipse = dynamic_cast<const vnt::PrimE*>(primitive)) {
            require(ellipse->type == vnt::PRIM_ELLIPSE, "the type of an ellipse");
            add(ellipse->center);
            add(ellipse->major_radius);
            add(ellipse->minor_radius);
            add(ellipse->start);
            add(ellipse->end);
            add(ellipse->is_arc, ellipse->posture);
        } else if (const auto* const curve = dynamic_cast<const vnt::PrimF*>(primitive)) {
            require(curve->type == vnt::PRIM_FREE, "the type of a free curve");
            words.push_back(curve->closed ? 1 : 0);
            words.push_back(curve->points.size());
            for (const vnt::Point& point : curve->points)
                add(point);
        } else {
            require(primitive == nullptr, "a class of primitives");
        }
    }
};

// A figure's copy, and what its own forms give back, are the figure.
inline void require_copies_and_forms(const vnt::FigPrimInfo& figure)
{
    const Flattened flat(figure);
    const vnt::FigPrimInfo copy = figure;
    require(Flattened(copy).words == flat.words, "a copy of a figure");

    std::stringstream bytes;
    vnt::FigPrimInfo from_bytes;
    figure.serialize(bytes);
    from_bytes.deserialize(bytes);
    require(bytes.good() && Flattened(from_bytes).words == flat.words, "a figure's own bytes");

    if (!flat.finite)
        return; // what is not finite is written as a word that no double is read from
    std::stringstream text;
    vnt::FigPrimInfo from_text;
    text << figure;
    text >> from_text;
    require(!text.fail() && Flattened(from_text).words == flat.words, "a figure's own text");
}

} // namespace fuzz
