#include "Source/geometry/records.h"

#include "tests/geometry/wire_bytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <sstream>
#include <string>

using vnt::Matrix;
using vnt::ModelSpaceInfo;
using vnt::Point;
using vnt::ViewportInfo;
using wire::bytes_of;
using wire::double_of;
using wire::f64;
using wire::i32;
using wire::text_of;

namespace {

// Elements 0 to 15, so that each says where it stands.
Matrix counting_matrix()
{
    Matrix matrix;
    for (std::size_t index = 0; index < Matrix::kElements; ++index)
        matrix[index] = static_cast<double>(index);
    return matrix;
}

Matrix matrix_of(double every_element)
{
    Matrix matrix;
    for (std::size_t index = 0; index < Matrix::kElements; ++index)
        matrix[index] = every_element;
    return matrix;
}

ModelSpaceInfo view_of(const Matrix& viewport_to_model, const Matrix& unit_grid_to_model)
{
    ModelSpaceInfo info(viewport_to_model, unit_grid_to_model);
    info.derivational_scale_factor = 7;
    return info;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char* kIdentityText = "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1";
constexpr const char* kCountingText = "0 1 2 3\n4 5 6 7\n8 9 10 11\n12 13 14 15";

TEST(Records, HaveVersionOne) { EXPECT_EQ(vnt::VNT_VERSION, 1); }

TEST(Point, StoresItsThreeCoordinates)
{
    const Point point(1.5, -2.5, 3.5);
    EXPECT_EQ(point.x, 1.5);
    EXPECT_EQ(point.y, -2.5);
    EXPECT_EQ(point.z, 3.5);
}

TEST(Point, CopiesEveryField)
{
    const Point source(1, 2, 3);
    const Point copy(source);
    Point assigned(0, 0, 0);
    assigned = source;
    EXPECT_EQ(text_of(copy), "1 2 3");
    EXPECT_EQ(text_of(assigned), "1 2 3");
}

TEST(Matrix, IsTheIdentityWhenConstructed)
{
    const Matrix matrix;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column)
            EXPECT_EQ(matrix[row * 4 + column], row == column ? 1.0 : 0.0) << "m" << row << column;
    }
}

TEST(Matrix, InitRestoresTheIdentityFromAnything)
{
    Matrix matrix = matrix_of(std::numeric_limits<double>::quiet_NaN());
    matrix.init();
    EXPECT_EQ(text_of(matrix), kIdentityText);
}

TEST(Matrix, NumbersItsElementsRowByRow)
{
    const Matrix m = counting_matrix();
    const double by_name[] = {m.m00, m.m01, m.m02, m.m03, m.m10, m.m11, m.m12, m.m13,
                              m.m20, m.m21, m.m22, m.m23, m.m30, m.m31, m.m32, m.m33};
    for (std::size_t index = 0; index < Matrix::kElements; ++index)
        EXPECT_EQ(by_name[index], static_cast<double>(index));
}

TEST(Matrix, CopiesEveryElement)
{
    const Matrix source = counting_matrix();
    const Matrix copy(source);
    Matrix assigned;
    assigned = source;
    EXPECT_EQ(text_of(copy), kCountingText);
    EXPECT_EQ(text_of(assigned), kCountingText);
}

TEST(ViewportInfo, StoresItsFourValuesInFieldOrder)
{
    const ViewportInfo viewport(-1, 2, 30, 40);
    EXPECT_EQ(viewport.x, -1);
    EXPECT_EQ(viewport.y, 2);
    EXPECT_EQ(viewport.width, 30);
    EXPECT_EQ(viewport.height, 40);
}

TEST(ViewportInfo, CopiesEveryField)
{
    const ViewportInfo source(-1, 2, 30, 40);
    const ViewportInfo copy(source);
    ViewportInfo assigned(0, 0, 0, 0);
    assigned = source;
    EXPECT_EQ(text_of(copy), "-1 2 30 40");
    EXPECT_EQ(text_of(assigned), "-1 2 30 40");
}

TEST(ModelSpaceInfo, TakesTheViewportsMatrixBeforeTheGrids)
{
    const ModelSpaceInfo info(counting_matrix(), matrix_of(2));
    EXPECT_EQ(text_of(info.viewport_space_to_model_space_mapping_matrix), kCountingText);
    EXPECT_EQ(text_of(info.unit_grid_space_to_model_space_mapping_matrix), text_of(matrix_of(2)));
}

TEST(ModelSpaceInfo, CopiesEveryFieldAndTheScaleFactor)
{
    const ModelSpaceInfo source = view_of(counting_matrix(), matrix_of(2));
    const ModelSpaceInfo copy(source);
    ModelSpaceInfo assigned = view_of(Matrix(), Matrix());
    assigned.derivational_scale_factor = 0;
    assigned = source;
    EXPECT_EQ(text_of(copy), text_of(source));
    EXPECT_EQ(copy.derivational_scale_factor, 7);
    EXPECT_EQ(text_of(assigned), text_of(source));
    EXPECT_EQ(assigned.derivational_scale_factor, 7);
}

TEST(ModelSpaceInfo, KeepsTheScaleFactorUnsetAtConstruction)
{
    constexpr unsigned char kBefore = 0x5A;
    alignas(ModelSpaceInfo) unsigned char memory[sizeof(ModelSpaceInfo)];
    std::memset(memory, kBefore, sizeof memory);
    new (memory) ModelSpaceInfo(matrix_of(1), matrix_of(1));
    constexpr std::size_t factor = offsetof(ModelSpaceInfo, derivational_scale_factor);
    for (std::size_t i = factor; i < factor + sizeof(std::int32_t); ++i)
        EXPECT_EQ(memory[i], kBefore);
    for (std::size_t i = 0; i < 256; ++i)
        ASSERT_NE(memory[i], kBefore) << "the matrices are set";
}

struct TextCase {
    const char* name;
    std::string (*text)();
    const char* expected;
};
// clang-format off
const TextCase kTexts[] = {
    {"PointIsThreeFieldsAndNoLineEnd", [] { return text_of(Point(1, 2, 3)); }, "1 2 3"},
    {"PointHasTwentySignificantDigits", [] { return text_of(Point(0.1, -1.0 / 3, 1e300)); },
     "0.10000000000000000555 -0.33333333333333331483 1.0000000000000000525e+300"},
    {"PointKeepsTheSignOfZero", [] { return text_of(Point(-0.0, 0.0, 1e-7)); },
     "-0 0 9.9999999999999995475e-08"},
    {"MatrixIsFourLinesWithoutALineEndAtTheLast", [] { return text_of(Matrix()); }, kIdentityText},
    {"MatrixIsWrittenRowByRow", [] { return text_of(counting_matrix()); }, kCountingText},
    {"ViewportIsFourIntegersAndNoLineEnd", [] { return text_of(ViewportInfo(10, 20, 300, 400)); },
     "10 20 300 400"},
    {"ViewportPartlyOffScreenIsNegative", [] { return text_of(ViewportInfo(-15, -2147483647 - 1, 1, 0)); },
     "-15 -2147483648 1 0"},
    {"ViewEndsALineAfterEachMatrix", [] { return text_of(view_of(counting_matrix(), Matrix())); },
     "0 1 2 3\n4 5 6 7\n8 9 10 11\n12 13 14 15\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n"},
};
// clang-format on
class RecordText : public testing::TestWithParam<TextCase> {};
TEST_P(RecordText, IsExact) { EXPECT_EQ(GetParam().text(), GetParam().expected); }
INSTANTIATE_TEST_SUITE_P(, RecordText, testing::ValuesIn(kTexts),
                         [](const auto& row) { return row.param.name; });

struct StreamStateCase {
    const char* name;
    void (*write)(std::ostream&);
    std::streamsize precision;
    const char* tenth; // how 0.1 is written afterwards
};
constexpr const char* kTenthAtTwenty = "0.10000000000000000555";
// clang-format off
const StreamStateCase kStreamStates[] = {
    {"PointLeavesPrecisionTwenty", [](std::ostream& out) { out << Point(1, 2, 3); }, 20, kTenthAtTwenty},
    {"MatrixLeavesPrecisionTwenty", [](std::ostream& out) { out << Matrix(); }, 20, kTenthAtTwenty},
    {"ViewLeavesPrecisionTwenty", [](std::ostream& out) { out << view_of(Matrix(), Matrix()); }, 20, kTenthAtTwenty},
    {"ViewportLeavesPrecisionAlone", [](std::ostream& out) { out << ViewportInfo(1, 2, 3, 4); }, 6, "0.1"},
    {"BytesLeavePrecisionAlone", [](std::ostream& out) { Point(1, 2, 3).serialize(out); }, 6, "0.1"},
};
// clang-format on
class RecordOnStream : public testing::TestWithParam<StreamStateCase> {};
TEST_P(RecordOnStream, LeavesItsPrecision)
{
    std::ostringstream out;
    GetParam().write(out);
    EXPECT_EQ(out.precision(), GetParam().precision);
    const std::size_t before = out.str().size();
    out << 0.1;
    EXPECT_EQ(out.str().substr(before), GetParam().tenth);
}
INSTANTIATE_TEST_SUITE_P(, RecordOnStream, testing::ValuesIn(kStreamStates),
                         [](const auto& row) { return row.param.name; });

// Counts how often it is flushed.
class FlushCounter : public std::stringbuf {
public:
    int flushes = 0;

protected:
    int sync() override
    {
        ++flushes;
        return 0;
    }
};

TEST(RecordLineEnds, FlushTheStream)
{
    FlushCounter counter;
    std::ostream out(&counter);
    out << Point(1, 2, 3) << ViewportInfo(1, 2, 3, 4);
    EXPECT_EQ(counter.flushes, 0);
    out << Matrix();
    EXPECT_EQ(counter.flushes, 3);
    out << view_of(Matrix(), Matrix());
    EXPECT_EQ(counter.flushes, 3 + 8);
}

TEST(RecordStreams, AreGivenBackForChaining)
{
    Point point(1, 2, 3);
    Matrix matrix;
    ViewportInfo viewport(1, 2, 3, 4);
    ModelSpaceInfo view = view_of(matrix, matrix);
    std::stringstream text;
    EXPECT_EQ(&(text << point << " " << matrix << " " << viewport << " " << view), &text);
    EXPECT_EQ(&(text >> point >> matrix >> viewport >> view), &text);
    EXPECT_TRUE(text.good());
    std::stringstream bytes;
    EXPECT_EQ(&view.serialize(viewport.serialize(matrix.serialize(point.serialize(bytes)))), &bytes);
    EXPECT_EQ(&view.deserialize(viewport.deserialize(matrix.deserialize(point.deserialize(bytes)))), &bytes);
    EXPECT_TRUE(bytes.good());
}

TEST(PointText, SetsTheFieldsBeforeTheFault)
{
    std::istringstream in("1.5 x 3");
    Point point(7, 8, 9);
    in >> point;
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(point.x, 1.5);
    EXPECT_EQ(point.z, 9);
}

TEST(PointText, ThatEndsEarlyLeavesTheOtherFields)
{
    std::istringstream in("1.5");
    Point point(7, 8, 9);
    in >> point;
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(text_of(point), "1.5 8 9");
}

TEST(MatrixText, SetsTheElementsBeforeTheFault)
{
    std::istringstream in("10 11 12 13\n14 oops");
    Matrix matrix = counting_matrix();
    in >> matrix;
    EXPECT_TRUE(in.fail());
    matrix.m11 = 5; // where the fault is, the extraction decides
    EXPECT_EQ(text_of(matrix), "10 11 12 13\n14 5 6 7\n8 9 10 11\n12 13 14 15");
}

TEST(ViewportText, IsReadInFieldOrderAcrossAnyBlanks)
{
    std::istringstream in(" -15\n20\t300   -2147483648");
    ViewportInfo viewport(0, 0, 0, 0);
    EXPECT_TRUE(in >> viewport);
    EXPECT_EQ(text_of(viewport), "-15 20 300 -2147483648");
}

TEST(ViewportText, ThatEndsEarlyLeavesTheOtherFields)
{
    std::istringstream in("1 2");
    ViewportInfo viewport(7, 8, 9, 10);
    in >> viewport;
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(text_of(viewport), "1 2 9 10");
}

TEST(ModelSpaceInfo, ReadsItsOwnTextBack)
{
    std::stringstream stream;
    stream << view_of(counting_matrix(), matrix_of(-0.1));
    ModelSpaceInfo info = view_of(Matrix(), Matrix());
    info.derivational_scale_factor = 42;
    EXPECT_TRUE(stream >> info);
    EXPECT_EQ(text_of(info.viewport_space_to_model_space_mapping_matrix), kCountingText);
    EXPECT_EQ(bytes_of(info.unit_grid_space_to_model_space_mapping_matrix), bytes_of(matrix_of(-0.1)));
    EXPECT_EQ(info.derivational_scale_factor, 42);
}

TEST(ModelSpaceInfo, KeepsTheScaleFactorOutOfItsStreamForms)
{
    ModelSpaceInfo seven = view_of(counting_matrix(), Matrix());
    ModelSpaceInfo eight = seven;
    eight.derivational_scale_factor = 8;
    EXPECT_EQ(text_of(seven), text_of(eight));
    EXPECT_EQ(bytes_of(seven), bytes_of(eight));
    EXPECT_EQ(bytes_of(seven).size(), 256U);
    std::istringstream text(text_of(eight) + " 99 ");
    std::istringstream bytes(bytes_of(eight) + i32(99));
    EXPECT_TRUE(text >> seven);
    EXPECT_TRUE(seven.deserialize(bytes));
    EXPECT_EQ(seven.derivational_scale_factor, 7);
}

std::string counting_bytes()
{
    return f64(0) + f64(wire::kOne) + f64(wire::kTwo) + f64(wire::kThree) + //
           f64(wire::kFour) + f64(wire::kFive) + f64(wire::kSix) + f64(0x401C000000000000) +
           f64(0x4020000000000000) + f64(0x4022000000000000) + f64(0x4024000000000000) +
           f64(0x4026000000000000) + f64(0x4028000000000000) + f64(0x402A000000000000) +
           f64(0x402C000000000000) + f64(0x402E000000000000);
}

struct BytesCase {
    const char* name;
    std::string (*bytes)();
    std::string expected;
};
// clang-format off
const BytesCase kBytes[] = {
    {"PointIsItsThreeDoubles", [] { return bytes_of(Point(1, 2, 0.5)); },
     wire::point(wire::kOne, wire::kTwo, wire::kHalf)},
    {"PointKeepsNaNAndNegativeZero", [] { return bytes_of(Point(double_of(wire::kNaN), -0.0, kInfinity)); },
     wire::point(wire::kNaN, wire::kNegativeZero, 0x7FF0000000000000)},
    {"MatrixIsItsElementsRowByRow", [] { return bytes_of(counting_matrix()); }, counting_bytes()},
    {"MatrixIdentity", [] { return bytes_of(Matrix()); }, wire::identity()},
    {"ViewportIsItsFourIntegers", [] { return bytes_of(ViewportInfo(-1, 2, 0x01020304, -2147483647 - 1)); },
     i32(-1) + i32(2) + i32(0x01020304) + i32(-2147483647 - 1)},
    {"ViewIsItsTwoMatrices", [] { return bytes_of(view_of(counting_matrix(), Matrix())); },
     counting_bytes() + wire::identity()},
};
// clang-format on
class RecordBytes : public testing::TestWithParam<BytesCase> {};
TEST_P(RecordBytes, AreExact) { EXPECT_EQ(GetParam().bytes(), GetParam().expected); }
INSTANTIATE_TEST_SUITE_P(, RecordBytes, testing::ValuesIn(kBytes),
                         [](const auto& row) { return row.param.name; });

// What a record is after reading the first size bytes of fresh over what stale says, a word at a time.
std::string after_short_read(const std::string& fresh, const std::string& stale, std::size_t size,
                             std::size_t word)
{
    const std::size_t whole = size / word * word;
    return fresh.substr(0, whole) + stale.substr(whole);
}

template <class Record>
void expect_short_bytes_leave_the_rest(const Record& source, const Record& before, std::size_t word)
{
    const std::string fresh = bytes_of(source);
    const std::string stale = bytes_of(before);
    ASSERT_EQ(fresh.size(), stale.size());
    for (std::size_t size = 0; size <= fresh.size(); ++size) {
        Record record = before;
        std::istringstream in(fresh.substr(0, size));
        record.deserialize(in);
        EXPECT_EQ(in.fail(), size < fresh.size()) << size << " bytes";
        EXPECT_EQ(bytes_of(record), after_short_read(fresh, stale, size, word)) << size << " bytes";
    }
}

TEST(ShortRecordBytes, LeaveTheOtherFields)
{
    const double nan = double_of(wire::kNaN);
    expect_short_bytes_leave_the_rest(Point(nan, -0.0, 3), Point(7, 8, 9), 8);
    expect_short_bytes_leave_the_rest(counting_matrix(), matrix_of(nan), 8);
    expect_short_bytes_leave_the_rest(ViewportInfo(-1, 0x01020304, 3, 4), ViewportInfo(7, 8, 9, 10), 4);
    expect_short_bytes_leave_the_rest(view_of(counting_matrix(), Matrix()),
                                      view_of(matrix_of(nan), matrix_of(-0.0)), 8);
}

TEST(RecordThereAndBack, IsBitForBitInBytes)
{
    std::mt19937_64 random(20240501);
    for (int round = 0; round < 1000; ++round) {
        std::string bytes;
        for (int word = 0; word < 32; ++word)
            bytes += f64(random());
        std::istringstream in(bytes);
        ModelSpaceInfo info = view_of(Matrix(), Matrix());
        ASSERT_TRUE(info.deserialize(in));
        ASSERT_EQ(bytes_of(info), bytes) << "round " << round;
    }
}

TEST(RecordThereAndBack, IsBitForBitInText)
{
    std::mt19937_64 random(20240502);
    for (int round = 0; round < 20000; ++round) {
        const double value = double_of(random());
        if (!std::isfinite(value))
            continue;
        std::stringstream stream;
        stream << Point(value, -value, value);
        Point point(0, 0, 0);
        ASSERT_TRUE(stream >> point) << stream.str();
        ASSERT_EQ(bytes_of(point), bytes_of(Point(value, -value, value))) << stream.str();
    }
}

} // namespace
