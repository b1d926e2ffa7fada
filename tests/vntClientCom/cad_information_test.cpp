// The CAD information, in each type of exchange.
#include "tests/support/continental_numbers.h"
#include "tests/support/descriptors.h"
#include "tests/vntClientCom/exchange_samples.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

using support::ContinentalNumbers;
using support::ParkedInput;
using support::receive_waiting;
using support::SocketPair;
using namespace exchange_samples;
using namespace std::string_literals;

namespace {

constexpr auto kUnknownType = static_cast<vnt::ComType>(7);

class Sending : public testing::Test {
protected:
    ParkedInput parked;
    SocketPair pair;
    TestLink link{pair.link.release()};

    std::string sent(const vnt::ViewportInfo& viewport, const vnt::ModelSpaceInfo& info)
    {
        EXPECT_TRUE(link.send_CAD_info(viewport, info));
        return receive_waiting(pair.peer.get());
    }
};

TEST_F(Sending, WritesTheDocumentOnOneLine) { EXPECT_EQ(sent(kViewport, model_space()), kExampleDocument); }

TEST_F(Sending, TakesAnUnknownTypeForADocument)
{
    link.com_type = kUnknownType;
    EXPECT_EQ(sent(kViewport, model_space()), kExampleDocument);
}

TEST_F(Sending, WritesANegativeEdgeOfTheWindow)
{
    EXPECT_EQ(sent(vnt::ViewportInfo(-12, -2147483647 - 1, 0, 2147483647), model_space(-3)),
              cad_document(R"( height="2147483647" width="0" x="-12" y="-2147483648")", kIdentityAttributes,
                           kIdentityAttributes, "-3"));
}

TEST_F(Sending, NamesEachElementByRowAndColumn)
{
    vnt::ModelSpaceInfo info = model_space(5);
    for (std::size_t i = 0; i < vnt::Matrix::kElements; ++i) {
        info.viewport_space_to_model_space_mapping_matrix[i] = static_cast<double>(i) + 100;
        info.unit_grid_space_to_model_space_mapping_matrix[i] = static_cast<double>(i) + 200;
    }
    EXPECT_EQ(
        sent(kViewport, info),
        cad_document(R"( height="768" width="1024" x="0" y="22")",
                     R"( m00="100" m01="101" m02="102" m03="103" m10="104" m11="105" m12="106" m13="107")"
                     R"( m20="108" m21="109" m22="110" m23="111" m30="112" m31="113" m32="114" m33="115")",
                     R"( m00="200" m01="201" m02="202" m03="203" m10="204" m11="205" m12="206" m13="207")"
                     R"( m20="208" m21="209" m22="210" m23="211" m30="212" m31="213" m32="214" m33="215")",
                     "5"));
}

struct NumberCase {
    const char* name;
    double value;
    const char* text;
};

const NumberCase kNumbers[] = {
    {"One",                      1.0,                                      "1"                     },
    {"Zero",                     0.0,                                      "0"                     },
    {"NegativeZero",             -0.0,                                     "-0"                    },
    {"ATenth",                   0.1,                                      "0.1"                   },
    {"AThird",                   1.0 / 3.0,                                "0.3333333333333333"    },
    {"SixteenDigitsAndNoMore",   0.35277777777777775,                      "0.3527777777777777"    },
    {"ALargeExponent",           1e20,                                     "1e+20"                 },
    {"ASmallExponent",           2.5e-7,                                   "2.5e-07"               },
    {"AThousandWithoutGrouping", 1234567.5,                                "1234567.5"             },
    {"TheLargest",               std::numeric_limits<double>::max(),       "1.797693134862316e+308"},
    {"NotANumber",               std::numeric_limits<double>::quiet_NaN(), "nan"                   },
    {"Infinity",                 std::numeric_limits<double>::infinity(),  "inf"                   },
    {"NegativeInfinity",         -std::numeric_limits<double>::infinity(), "-inf"                  },
};

class SentNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(SentNumber, HasSixteenDigitsWhateverTheLocale)
{
    const ContinentalNumbers locale;
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    vnt::ModelSpaceInfo info = model_space(1234567);
    info.viewport_space_to_model_space_mapping_matrix.m00 = GetParam().value;
    EXPECT_TRUE(link.send_CAD_info(vnt::ViewportInfo(0, 0, 123456, 0), info));
    std::string attributes = kIdentityAttributes;
    attributes.replace(attributes.find("\"1\""), 3, "\""s + GetParam().text + "\"");
    EXPECT_EQ(receive_waiting(pair.peer.get()), cad_document(R"( height="0" width="123456" x="0" y="0")",
                                                             attributes, kIdentityAttributes, "1234567"));
}

INSTANTIATE_TEST_SUITE_P(, SentNumber, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return row.param.name; });

TEST_F(Sending, WritesTheRecordsTextForms)
{
    const ContinentalNumbers locale;
    link.com_type = vnt::COM_TEXT;
    vnt::ModelSpaceInfo info = model_space(77);
    info.viewport_space_to_model_space_mapping_matrix.m03 = 1234.5;
    EXPECT_EQ(sent(kViewport, info), "0 22 1024 768\n"
                                     "1 0 0 1234.5\n0 1 0 0\n0 0 1 0\n0 0 0 1\n"
                                     "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n"
                                     "\n");
}

TEST_F(Sending, WritesTheRecordsByteFormsAsBlocks)
{
    link.com_type = vnt::COM_BINARY;
    vnt::ModelSpaceInfo info = model_space(77);
    info.unit_grid_space_to_model_space_mapping_matrix.m33 = -2.5;
    std::string expected = "\0\0\0\x10"s;
    for (const std::int32_t field : {0, 22, 1024, 768})
        expected.append(reinterpret_cast<const char*>(&field), sizeof field);
    expected += "\0\0\1\0"s;
    for (std::size_t i = 0; i < 32; ++i) {
        const double element = i == 31 ? -2.5 : i % 16 % 5 == 0 ? 1.0 : 0.0;
        expected.append(reinterpret_cast<const char*>(&element), sizeof element);
    }
    EXPECT_EQ(sent(kViewport, info), expected);
}

TEST_F(Sending, SaysTrueToAPeerThatHasClosed)
{
    pair.peer.reset(-1);
    EXPECT_TRUE(link.send_CAD_info(kViewport, model_space()));
}

} // namespace
