#include "benchmarks/answer_document.h"

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string_view>
#include <utility>

namespace bench {
namespace {

constexpr std::uint64_t kDigits = 16;

// The engine's numbers are fixed by the C++ standard and the rest is whole-number arithmetic: no distribution
// of the library and no floating point, which differ from one machine to the next. Nor may a call take two
// arguments out of the engine: which of them is made first is the compiler's choice.
class Writer {
public:
    Writer(std::uint64_t seed, Lie lie) : random_(seed), lie_(lie) {}

    std::string answer(std::size_t shapes)
    {
        constexpr std::size_t kBytesPerShape = 1300;
        out_.reserve(shapes * kBytesPerShape + 200);
        out_ += R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant>)";
        for (std::size_t i = 0; i < shapes; ++i)
            shape();
        out_ += "</vant>";
        return std::move(out_);
    }

private:
    std::mt19937_64 random_;
    Lie lie_;
    std::string out_;

    // Below limit. The remainder's bias is 1 in 10^13 at most here.
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }

    // Percentages, in the order of the cases.
    std::size_t choose(std::initializer_list<std::uint64_t> percentages)
    {
        std::uint64_t at = below(100);
        std::size_t chosen = 0;
        for (const std::uint64_t share : percentages) {
            if (at < share)
                break;
            at -= share;
            ++chosen;
        }
        return chosen;
    }

    // 16 digits of which the first and the last are no zero, the point behind the first whole ones.
    void number(std::uint64_t whole, std::uint64_t first_digit)
    {
        out_ += static_cast<char>('0' + first_digit);
        for (std::uint64_t digit = 1; digit < kDigits; ++digit) {
            if (digit == whole)
                out_ += '.';
            out_ += static_cast<char>('0' + (digit == kDigits - 1 ? 1 + below(9) : below(10)));
        }
    }

    void coordinate()
    {
        if (below(2) == 0)
            out_ += '-';
        const std::uint64_t whole = 2 + below(2);
        number(whole, 1 + below(9));
    }

    void point(std::string_view name)
    {
        out_.append("<").append(name).append(" x=\"");
        coordinate();
        out_ += "\" y=\"";
        coordinate();
        out_ += "\" z=\"";
        if (lie_ == Lie::flat)
            out_ += '0';
        else
            coordinate();
        out_ += "\"/>";
    }

    void length(std::string_view name)
    {
        out_.append("<").append(name).append(">");
        const std::uint64_t whole = 1 + below(3);
        number(whole, 1 + below(9));
        out_.append("</").append(name).append(">");
    }

    // An arc's angles run upward.
    void angles()
    {
        out_ += R"(<angle start=")";
        number(1, 1 + below(2));
        out_ += R"(" end=")";
        number(1, 3 + below(3));
        out_ += "\"/>";
    }

    // A number in [-1, 1] by long division.
    void quotient(std::int64_t dividend, std::int64_t divisor)
    {
        if (dividend < 0)
            out_ += '-';
        std::int64_t rest = std::abs(dividend);
        out_ += static_cast<char>('0' + rest / divisor);
        rest %= divisor;
        if (rest == 0)
            return;
        out_ += '.';
        for (std::uint64_t digit = 0; digit < kDigits && rest != 0; ++digit) {
            rest *= 10;
            out_ += static_cast<char>('0' + rest / divisor);
            rest %= divisor;
        }
    }

    // The rotation of a quaternion (w, x, y, z) of whole numbers, as fractions. In a plane x and y are 0.
    void posture()
    {
        const auto part = [&] { return static_cast<std::int64_t>(below(2001)) - 1000; };
        const std::int64_t w = 1 + static_cast<std::int64_t>(below(1000));
        const std::int64_t z = part();
        const std::int64_t x = lie_ == Lie::flat ? 0 : part();
        const std::int64_t y = lie_ == Lie::flat ? 0 : part();
        const std::int64_t norm = w * w + x * x + y * y + z * z;
        const std::array<std::int64_t, 16> rows = {
            w * w + x * x - y * y - z * z,
            2 * (x * y - w * z),
            2 * (x * z + w * y),
            0,
            2 * (x * y + w * z),
            w * w - x * x + y * y - z * z,
            2 * (y * z - w * x),
            0,
            2 * (x * z - w * y),
            2 * (y * z + w * x),
            w * w - x * x - y * y + z * z,
            0,
            0,
            0,
            0,
            norm,
        };
        out_ += "<posture";
        for (std::size_t i = 0; i < rows.size(); ++i) {
            out_ += " m";
            out_ += static_cast<char>('0' + i / 4);
            out_ += static_cast<char>('0' + i % 4);
            out_ += "=\"";
            quotient(rows[i], norm);
            out_ += '"';
        }
        out_ += "/>";
    }

    void line()
    {
        out_ += "<line>";
        point("start");
        point("end");
        out_ += "</line>";
    }

    void circle(bool arc)
    {
        out_ += arc ? "<circular_arc>" : "<circle>";
        point("center");
        length("radius");
        if (arc)
            angles();
        posture();
        out_ += arc ? "</circular_arc>" : "</circle>";
    }

    void ellipse(bool arc)
    {
        out_ += arc ? "<elliptic_arc>" : "<ellipse>";
        point("center");
        length("major_radius");
        length("minor_radius");
        if (arc)
            angles();
        posture();
        out_ += arc ? "</elliptic_arc>" : "</ellipse>";
    }

    // Groups of four control points: 1 to 3 segments.
    void free_curve(bool closed)
    {
        out_ += closed ? "<closed_free_curve><bezier_curve>" : "<open_free_curve><bezier_curve>";
        const std::uint64_t points = 4 * (1 + below(3));
        for (std::uint64_t i = 0; i < points; ++i)
            point("control_point");
        out_ += closed ? "</bezier_curve></closed_free_curve>" : "</bezier_curve></open_free_curve>";
    }

    void shape()
    {
        out_ += "<shape>";
        const std::size_t primitives = 1 + choose({25, 35, 25, 15});
        for (std::size_t i = 0; i < primitives; ++i) {
            switch (choose({30, 8, 17, 5, 10, 24, 6})) {
            case 0: line(); break;
            case 1: circle(false); break;
            case 2: circle(true); break;
            case 3: ellipse(false); break;
            case 4: ellipse(true); break;
            case 5: free_curve(false); break;
            default: free_curve(true); break;
            }
        }
        out_ += "</shape>";
    }
};

} // namespace

std::string answer_document(std::size_t shapes, Lie lie, std::uint64_t seed)
{
    return Writer(seed, lie).answer(shapes);
}

} // namespace bench
