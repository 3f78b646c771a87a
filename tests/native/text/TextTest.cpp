#include "text/TextTools.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "text/Checked.h"
#include "text/DateText.h"

namespace mip {
namespace {

TEST(Checked, SixteenBitLimits) {
    EXPECT_EQ(Add16(32766, 1), 32767);
    EXPECT_THROW(Add16(32767, 1), OverflowError);
    EXPECT_EQ(Subtract16(-32767, 1), -32768);
    EXPECT_THROW(Subtract16(-32768, 1), OverflowError);
    EXPECT_EQ(Multiply16(32, 1000), 32000);
    EXPECT_THROW(Multiply16(33, 1000), OverflowError);
    EXPECT_THROW(Multiply16(-32768, -1), OverflowError);
}

TEST(Checked, ReadsWholeNumbersOnly) {
    EXPECT_EQ(TextToInt16(L"  -32768 "), -32768);
    EXPECT_EQ(TextToInt16(L"+007"), 7);
    EXPECT_EQ(TextToInt32(L"2147483647"), 2147483647);
    EXPECT_EQ(TextToInt32(L"-2147483648"), std::numeric_limits<std::int32_t>::min());
    for (const wchar_t* text : {L"", L" ", L"-", L"1.5", L"0x1F", L"1 2", L"12a", L"--1", L"１"}) {
        EXPECT_THROW(TextToInt32(text), ConversionError);
    }
    EXPECT_THROW(TextToInt16(L"32768"), OverflowError);
    EXPECT_THROW(TextToInt32(L"2147483648"), OverflowError);
    EXPECT_THROW(TextToInt32(L"99999999999999999999999999"), OverflowError);
}

TEST(DateText, ReadsAndWritesDates) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"2024/05/06 07:08:09", L"2024/05/06 07:08:09"},
                                                               {L"2024-02-29", L"2024/02/29 00:00:00"},
                                                               {L" 1999/1/2 3:04:05 ", L"1999/01/02 03:04:05"},
                                                               {L"0001/01/01", L"0001/01/01 00:00:00"}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(FormatDateTime(ParseDateTime(text)), expected);
    }
    EXPECT_EQ(FormatMonthYear(ParseDateTime(L"2010/12/31 23:59:59")), L"Dec 2010");
    for (const wchar_t* text : {L"", L"/01", L"2023/02/29", L"2024/13/01", L"2024/00/01", L"2024/05-06", L"24/05/06",
                                L"2024/05/06 24:00:00", L"2024/05/06 1:2", L"2024/05/06x", L"2024/05", L"abc"}) {
        EXPECT_THROW(ParseDateTime(text), ConversionError);
    }
}

TEST(TextTools, ReplacesAndSplits) {
    EXPECT_EQ(ReplaceAll(L"aaa", L"aa", L"a"), L"aa");
    EXPECT_EQ(ReplaceAll(L"abc", L"", L"x"), L"abc");
    EXPECT_EQ(ReplaceAll(L"@1@1", L"@1", L"@1!"), L"@1!@1!");
    EXPECT_EQ(Split(L",a,", L','), (std::vector<std::wstring>{L"", L"a", L""}));
    EXPECT_EQ(SplitLines(L"a\r\n\r\nb\nc"), (std::vector<std::wstring>{L"a", L"", L"b", L"c"}));
    EXPECT_TRUE(SplitLines(L"").empty());
    EXPECT_EQ(ToUpper(L"aÿßéжѓας1"), L"AÿßÉЖЃΑς1");
    EXPECT_EQ(ToUpperAscii(L"azAZé表Ｃｃ{`"), L"AZAZé表Ｃｃ{`");
    EXPECT_TRUE(EqualInAscii(L"Az表", L"aZ表") && !EqualInAscii(L"é", L"É") && !EqualInAscii(L"a", L"ab"));
}

TEST(TextTools, Utf8SurvivesARoundTrip) {
    const std::wstring text = FromUtf8("Aé\xE8\xBB\x8A\xF0\x9F\x9A\x97");
    EXPECT_EQ(ToUtf8(text), "Aé\xE8\xBB\x8A\xF0\x9F\x9A\x97");
    const std::pair<std::string, std::wstring> malformed[] = {
        {"a\x80z", L"a\xFFFDz"},         {"\xC3", L"\xFFFD"},
        {"\xC0\xAF", L"\xFFFD"},         {"\xED\xA0\x80", L"\xFFFD"},
        {"\xF5\x80\x80\x80", L"\xFFFD"}, {"\xE8\xBB\x41", L"\xFFFD\x41"}};
    for (const auto& [bytes, expected] : malformed) {
        EXPECT_EQ(FromUtf8(bytes), expected);
    }
}

}  // namespace
}  // namespace mip
