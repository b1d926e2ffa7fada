// Windows, strings, alerts and processes, called as a plug-in calls them.
#include "tests/host/service_calls.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace host_test;

class PlatformServices : public testing::TestWithParam<ServiceCase> {};

TEST_P(PlatformServices, AnswerAsDeclared) { expect_as_declared(GetParam()); }

// ------------------------------------------------------------------------------------------------ windows

std::string a_foreign_window_has_no_title(PlugIn&)
{
    HostWindow foreign{{"Elsewhere"}, {}};
    return title_of(&foreign);
}

// clang-format off
const ServiceCase kWindows[] = {
    {"TheActiveWindowIsTheSameAgain", [](PlugIn& p) { return answer(ActiveNonFloatingWindow() == p.window); },
     "1", "{\"call\":\"ActiveNonFloatingWindow\"}\n", ""},
    {"NothingIsBehindTheWindow", [](PlugIn& p) { return answer(GetPreviousWindow(p.window) == nullptr); },
     "1", "{\"call\":\"GetPreviousWindow\",\"window\":\"Artwork\"}\n", ""},
    {"NothingIsBehindNoWindow", [](PlugIn&) { return answer(GetPreviousWindow(nullptr) == nullptr); }, "1",
     "{\"call\":\"GetPreviousWindow\",\"window\":null,\"error\":1}\n",
     "GetPreviousWindow is about a window that there is not"},
    {"TheWindowIsTitledArtwork", [](PlugIn& p) { return title_of(p.window); }, "0 Artwork",
     "{\"call\":\"CopyWindowTitleAsCFString\",\"window\":\"Artwork\"}\n", ""},
    {"NoWindowHasNoTitle", [](PlugIn&) { return title_of(nullptr); }, "1 null",
     "{\"call\":\"CopyWindowTitleAsCFString\",\"window\":null,\"error\":1}\n",
     "CopyWindowTitleAsCFString is about a window that there is not"},
    {"AForeignWindowHasNoTitle", a_foreign_window_has_no_title, "1 null",
     "{\"call\":\"CopyWindowTitleAsCFString\",\"window\":null,\"error\":1}\n",
     "CopyWindowTitleAsCFString is about a window that there is not"},
    {"ATitleNeedsAPlace", [](PlugIn& p) { return answer(CopyWindowTitleAsCFString(p.window, nullptr)); }, "1",
     "{\"call\":\"CopyWindowTitleAsCFString\",\"window\":\"Artwork\",\"error\":1}\n",
     "CopyWindowTitleAsCFString has nowhere to write its answer"},
    {"TheWindowIsNotCollapsed", [](PlugIn& p) { return answer(+IsWindowCollapsed(p.window)); }, "0",
     "{\"call\":\"IsWindowCollapsed\",\"window\":\"Artwork\"}\n", ""},
    {"NoWindowIsNotCollapsed", [](PlugIn&) { return answer(+IsWindowCollapsed(nullptr)); }, "0",
     "{\"call\":\"IsWindowCollapsed\",\"window\":null,\"error\":1}\n",
     "IsWindowCollapsed is about a window that there is not"},
    {"TheWindowsPortHasBounds", [](PlugIn& p) { return bounds_of(p.window, 40); }, "0 20 10 620 810",
     "{\"call\":\"GetWindowBounds\",\"window\":\"Artwork\",\"part\":40,\"top\":20,\"left\":10,"
     "\"bottom\":620,"
     "\"right\":810}\n", ""},
    {"OtherPartsHaveNone", [](PlugIn& p) { return bounds_of(p.window, 33); }, "1 -1 -1 -1 -1",
     "{\"call\":\"GetWindowBounds\",\"window\":\"Artwork\",\"part\":33,\"error\":1}\n",
     "GetWindowBounds asks for another part of a window than its port"},
    {"NoWindowHasNoBounds", [](PlugIn&) { return bounds_of(nullptr, 40); }, "1 -1 -1 -1 -1",
     "{\"call\":\"GetWindowBounds\",\"window\":null,\"part\":40,\"error\":1}\n",
     "GetWindowBounds is about a window that there is not"},
    {"BoundsNeedAPlace", [](PlugIn& p) { return answer(GetWindowBounds(p.window, 40, nullptr)); }, "1",
     "{\"call\":\"GetWindowBounds\",\"window\":\"Artwork\",\"part\":40,\"error\":1}\n",
     "GetWindowBounds has nowhere to write its answer"},
};
// clang-format on

// ------------------------------------------------------------------------------------------------ strings

// Writes a string into a buffer that has room for size bytes and a guard behind them.
std::string c_string(const char* utf8, CFIndex size, CFStringEncoding encoding = kCFStringEncodingUTF8)
{
    const HostString string{utf8};
    std::string buffer(40, '#');
    const HostBoolean fits = CFStringGetCString(&string, buffer.data(), size, encoding);
    return answer(+fits, fits != 0 ? buffer.c_str() : "", buffer.find_last_not_of('#') + 1);
}

std::string length_of(const char* utf8)
{
    const HostString string{utf8};
    return answer(CFStringGetLength(&string));
}

std::string no_string_is_not_written(PlugIn&)
{
    char buffer = '#';
    return answer(+CFStringGetCString(nullptr, &buffer, 1, 1), buffer);
}

std::string a_string_needs_a_buffer(PlugIn&)
{
    const HostString string{"Artwork"};
    return answer(+CFStringGetCString(&string, nullptr, 21, 1));
}

std::string a_literal_is_the_same_string_again(PlugIn&)
{
    const std::string same = "VANT";
    return answer(HostConstantString("VANT") == HostConstantString(same.c_str()));
}

const std::string kSizeOf = "{\"call\":\"CFStringGetMaximumSizeForEncoding\",\"length\":";
const std::string kMostUnits = std::to_string(PTRDIFF_MAX / 3);
const std::string kMostBytes = std::to_string(PTRDIFF_MAX / 3 * 3);
const std::string kOneUnitMore = std::to_string(PTRDIFF_MAX / 3 + 1);

std::string most_units(PlugIn&)
{
    return answer(CFStringGetMaximumSizeForEncoding(PTRDIFF_MAX / 3, 1) == PTRDIFF_MAX / 3 * 3);
}

std::string one_unit_more(PlugIn&)
{
    return answer(CFStringGetMaximumSizeForEncoding(PTRDIFF_MAX / 3 + 1, 1));
}

// clang-format off
const ServiceCase kStrings[] = {
    {"ALengthIsInUtf16Units", [](PlugIn&) { return length_of("a\xC2\xA9\xE2\x82\xAC"); }, "3",
     "{\"call\":\"CFStringGetLength\",\"string\":\"a\xC2\xA9\xE2\x82\xAC\",\"result\":3}\n", ""},
    {"ACharacterOfFourBytesIsTwoUnits", [](PlugIn&) { return length_of("\xF0\x9F\x8E\xA8"); }, "2",
     "{\"call\":\"CFStringGetLength\",\"string\":\"\xF0\x9F\x8E\xA8\",\"result\":2}\n", ""},
    {"NoStringHasNoLength", [](PlugIn&) { return answer(CFStringGetLength(nullptr)); }, "0",
     "{\"call\":\"CFStringGetLength\",\"string\":null,\"error\":1}\n", "CFStringGetLength has a null string"},
    {"AUnitTakesThreeBytesAtMost", [](PlugIn&) { return answer(CFStringGetMaximumSizeForEncoding(7, 1)); },
     "21", "{\"call\":\"CFStringGetMaximumSizeForEncoding\",\"length\":7,\"result\":21}\n", ""},
    {"NoUnitsTakeNoBytes", [](PlugIn&) { return answer(CFStringGetMaximumSizeForEncoding(0, 1)); }, "0",
     "{\"call\":\"CFStringGetMaximumSizeForEncoding\",\"length\":0,\"result\":0}\n", ""},
    {"OtherEncodingsHaveNoSize", [](PlugIn&) { return answer(CFStringGetMaximumSizeForEncoding(7, 2)); },
     "-1", "{\"call\":\"CFStringGetMaximumSizeForEncoding\",\"length\":7,\"error\":1}\n",
     "CFStringGetMaximumSizeForEncoding has an encoding or a length that this host does not know"},
    {"ANegativeLengthHasNoSize", [](PlugIn&) { return answer(CFStringGetMaximumSizeForEncoding(-1, 1)); },
     "-1", "{\"call\":\"CFStringGetMaximumSizeForEncoding\",\"length\":-1,\"error\":1}\n",
     "CFStringGetMaximumSizeForEncoding has an encoding or a length that this host does not know"},
    {"TheMostUnitsHaveASize", most_units, "1", kSizeOf + kMostUnits + ",\"result\":" + kMostBytes + "}\n",
     ""},
    {"MoreUnitsHaveNone", one_unit_more, "-1", kSizeOf + kOneUnitMore + ",\"error\":1}\n",
     "CFStringGetMaximumSizeForEncoding has an encoding or a length that this host does not know"},
    // 7 units may take 21 bytes, and its bytes and the terminator are 8.
    {"ArtworkFitsIntoTheBytesOfItsUnits", [](PlugIn&) { return c_string("Artwork", 21); }, "1 Artwork 8",
     "{\"call\":\"CFStringGetCString\",\"string\":\"Artwork\",\"size\":21,\"result\":true}\n", ""},
    {"AStringFitsWithItsTerminator", [](PlugIn&) { return c_string("Artwork", 8); }, "1 Artwork 8",
     "{\"call\":\"CFStringGetCString\",\"string\":\"Artwork\",\"size\":8,\"result\":true}\n", ""},
    {"AStringDoesNotFitWithoutIt", [](PlugIn&) { return c_string("Artwork", 7); }, "0  0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"Artwork\",\"size\":7,\"result\":false}\n", ""},
    // Two units, 6 bytes at most, all of which they take.
    {"CharactersOfThreeBytesLeaveItNoRoom", [](PlugIn&) { return c_string("\xE7\xB5\xB5\xE7\xB5\xB5", 6); },
     "0  0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"\xE7\xB5\xB5\xE7\xB5\xB5\",\"size\":6,"
     "\"result\":false}\n", ""},
    {"NothingFitsIntoNoBytes", [](PlugIn&) { return c_string("", 0); }, "0  0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"\",\"size\":0,\"result\":false}\n", ""},
    {"NothingFitsIntoLess", [](PlugIn&) { return c_string("", -1); }, "0  0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"\",\"size\":-1,\"result\":false}\n", ""},
    {"OtherEncodingsAreNotWritten", [](PlugIn&) { return c_string("Artwork", 21, 2); }, "0  0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"Artwork\",\"size\":21,\"error\":1}\n",
     "CFStringGetCString has a null argument, or an encoding that this host does not know"},
    {"NoStringIsNotWritten", no_string_is_not_written, "0 #",
     "{\"call\":\"CFStringGetCString\",\"string\":null,\"size\":1,\"error\":1}\n",
     "CFStringGetCString has a null argument, or an encoding that this host does not know"},
    {"AStringNeedsABuffer", a_string_needs_a_buffer, "0",
     "{\"call\":\"CFStringGetCString\",\"string\":\"Artwork\",\"size\":21,\"error\":1}\n",
     "CFStringGetCString has a null argument, or an encoding that this host does not know"},
    {"ALiteralIsAString", [](PlugIn&) { return answer(HostConstantString("VANT \xE2\x82\xAC")->utf8); },
     "VANT \xE2\x82\xAC", "{\"call\":\"HostConstantString\",\"string\":\"VANT \xE2\x82\xAC\"}\n", ""},
    {"ALiteralIsTheSameStringAgain", a_literal_is_the_same_string_again, "1",
     "{\"call\":\"HostConstantString\",\"string\":\"VANT\"}\n{\"call\":\"HostConstantString\","
     "\"string\":\"VANT\"}\n", ""},
    {"NoLiteralIsNoString", [](PlugIn&) { return answer(HostConstantString(nullptr) == nullptr); }, "1",
     "{\"call\":\"HostConstantString\",\"error\":1}\n", "HostConstantString has a null literal"},
};
// clang-format on

// ------------------------------------------------------------------------------------- alerts and processes

// Makes an alert and runs it.
std::string run_alert(const void* filter, std::int16_t* item_hit)
{
    const HostString text{"Ink"};
    const HostString explanation{"None left"};
    DialogRef alert = nullptr;
    CreateStandardAlert(kAlertStopAlert, &text, &explanation, nullptr, &alert);
    return answer(RunStandardAlert(alert, filter, item_hit));
}

const std::string kMadeAlert =
    "{\"call\":\"CreateStandardAlert\",\"kind\":0,\"text\":\"Ink\",\"explanation\":\"None left\"}\n";

std::string an_alert_needs_a_place_for_its_handle(PlugIn&)
{
    const HostString text{"Ink"};
    return answer(CreateStandardAlert(0, &text, nullptr, nullptr, nullptr));
}

std::string an_alert_tells_its_button(PlugIn&)
{
    std::int16_t item = -1;
    const std::string code = run_alert(nullptr, &item);
    return answer(code, item);
}

std::string an_alert_has_no_filter(PlugIn& p)
{
    std::int16_t item = -1;
    const std::string code = run_alert(&p, &item);
    return answer(code, item);
}

std::string a_foreign_alert_is_not_run(PlugIn&)
{
    HostAlert foreign;
    return answer(RunStandardAlert(&foreign, nullptr, nullptr));
}

std::string the_host_is_in_front(PlugIn&)
{
    ProcessSerialNumber front{9, 9};
    const HostError error = GetFrontProcess(&front);
    return answer(error, front.high, front.low);
}

std::string the_host_is_brought_to_the_front(PlugIn&)
{
    const ProcessSerialNumber host{0, 1};
    return answer(SetFrontProcess(&host));
}

std::string another_process_is_not_brought_to_the_front(PlugIn&)
{
    const ProcessSerialNumber other{0, 2};
    return answer(SetFrontProcess(&other));
}

// clang-format off
const ServiceCase kAlertsAndProcesses[] = {
    {"AnAlertIsMade", [](PlugIn&) { return make_alert(0, "Ink", "None left", nullptr); }, "0 an alert",
     kMadeAlert, ""},
    {"AnAlertNeedsNoExplanation", [](PlugIn&) { return make_alert(0, "Ink", nullptr, nullptr); },
     "0 an alert", "{\"call\":\"CreateStandardAlert\",\"kind\":0,\"text\":\"Ink\",\"explanation\":null}\n",
     ""},
    {"AnAlertNeedsAText", [](PlugIn&) { return make_alert(0, nullptr, "None left", nullptr); }, "1 null",
     "{\"call\":\"CreateStandardAlert\",\"kind\":0,\"text\":null,\"explanation\":\"None left\","
     "\"error\":1}\n", "CreateStandardAlert has no text, or nowhere to write its answer"},
    {"AnAlertIsOfNoOtherKind", [](PlugIn&) { return make_alert(1, "Ink", "None left", nullptr); }, "1 null",
     "{\"call\":\"CreateStandardAlert\",\"kind\":1,\"text\":\"Ink\",\"explanation\":\"None left\","
     "\"error\":1}\n", "CreateStandardAlert asks for another kind of alert than a plain stop alert"},
    {"AnAlertHasNoOtherButtons", [](PlugIn& p) { return make_alert(0, "Ink", "None left", &p); }, "1 null",
     "{\"call\":\"CreateStandardAlert\",\"kind\":0,\"text\":\"Ink\",\"explanation\":\"None left\","
     "\"error\":1}\n", "CreateStandardAlert asks for another kind of alert than a plain stop alert"},
    {"AnAlertNeedsAPlaceForItsHandle", an_alert_needs_a_place_for_its_handle, "1",
     "{\"call\":\"CreateStandardAlert\",\"kind\":0,\"text\":\"Ink\",\"explanation\":null,\"error\":1}\n",
     "CreateStandardAlert has no text, or nowhere to write its answer"},
    {"AnAlertIsRun", [](PlugIn&) { return run_alert(nullptr, nullptr); }, "0",
     kMadeAlert + "{\"call\":\"Alert\",\"text\":\"Ink\",\"explanation\":\"None left\"}\n", ""},
    {"AnAlertTellsItsButton", an_alert_tells_its_button, "0 1",
     kMadeAlert + "{\"call\":\"Alert\",\"text\":\"Ink\",\"explanation\":\"None left\"}\n", ""},
    {"AnAlertHasNoFilter", an_alert_has_no_filter, "1 -1", kMadeAlert + "{\"call\":\"Alert\",\"error\":1}\n",
     "Alert has a filter of events, of which this host has none"},
    {"NoAlertIsNotRun", [](PlugIn&) { return answer(RunStandardAlert(nullptr, nullptr, nullptr)); }, "1",
     "{\"call\":\"Alert\",\"error\":1}\n",
     "Alert is about an alert that there is not, or that was run already"},
    {"AForeignAlertIsNotRun", a_foreign_alert_is_not_run, "1", "{\"call\":\"Alert\",\"error\":1}\n",
     "Alert is about an alert that there is not, or that was run already"},
    {"TheHostIsInFront", the_host_is_in_front, "0 0 1",
     "{\"call\":\"GetFrontProcess\",\"high\":0,\"low\":1}\n", ""},
    {"TheFrontProcessNeedsAPlace", [](PlugIn&) { return answer(GetFrontProcess(nullptr)); }, "1",
     "{\"call\":\"GetFrontProcess\",\"error\":1}\n", "GetFrontProcess has nowhere to write its answer"},
    {"TheHostIsBroughtToTheFront", the_host_is_brought_to_the_front, "0",
     "{\"call\":\"SetFrontProcess\",\"high\":0,\"low\":1}\n", ""},
    {"NoProcessIsNotBroughtToTheFront", [](PlugIn&) { return answer(SetFrontProcess(nullptr)); }, "1",
     "{\"call\":\"SetFrontProcess\",\"error\":1}\n", "SetFrontProcess has a null process"},
    {"AnotherProcessIsNotBroughtToTheFront", another_process_is_not_brought_to_the_front, "1",
     "{\"call\":\"SetFrontProcess\",\"high\":0,\"low\":2,\"error\":1}\n",
     "SetFrontProcess is about a process that there is not"},
};
// clang-format on

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Windows, PlatformServices, testing::ValuesIn(kWindows), kName);
INSTANTIATE_TEST_SUITE_P(Strings, PlatformServices, testing::ValuesIn(kStrings), kName);
INSTANTIATE_TEST_SUITE_P(AlertsAndProcesses, PlatformServices, testing::ValuesIn(kAlertsAndProcesses), kName);

} // namespace
