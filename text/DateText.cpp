#include "text/DateText.h"

#include <array>
#include <cstddef>

#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year_month_day;

/// Appends the separator and a number in two digits.
void AppendPart(std::wstring& text, wchar_t separator, unsigned value) {
    text += separator;
    text += static_cast<wchar_t>(L'0' + value / 10);
    text += static_cast<wchar_t>(L'0' + value % 10);
}

/// A run of digits at the front, taken off the text. Throws when its length is outside the limits.
int TakeNumber(std::wstring_view& text, std::size_t minimum, std::size_t maximum) {
    int value = 0;
    std::size_t length = 0;
    while (length < text.size() && text[length] >= L'0' && text[length] <= L'9' && length < maximum) {
        value = value * 10 + (text[length] - L'0');
        ++length;
    }
    if (length < minimum) {
        throw ConversionError();
    }
    text.remove_prefix(length);
    return value;
}

void TakeCharacter(std::wstring_view& text, wchar_t expected) {
    if (!text.starts_with(expected)) {
        throw ConversionError();
    }
    text.remove_prefix(1);
}

std::chrono::local_days TakeDate(std::wstring_view& text) {
    const int year = TakeNumber(text, 4, 4);
    const wchar_t separator = text.starts_with(L'-') ? L'-' : L'/';
    TakeCharacter(text, separator);
    const int month = TakeNumber(text, 1, 2);
    TakeCharacter(text, separator);
    const int day = TakeNumber(text, 1, 2);
    const year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                              std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok()) {
        throw ConversionError();
    }
    return std::chrono::local_days{date};
}

seconds TakeTime(std::wstring_view& text) {
    const int hour = TakeNumber(text, 1, 2);
    TakeCharacter(text, L':');
    const int minute = TakeNumber(text, 2, 2);
    TakeCharacter(text, L':');
    const int second = TakeNumber(text, 2, 2);
    if (hour > 23 || minute > 59 || second > 59) {
        throw ConversionError();
    }
    return hours{hour} + minutes{minute} + seconds{second};
}

}  // namespace

std::wstring FormatDateTime(DateTime time) {
    const auto day = std::chrono::floor<days>(time);
    const year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    std::wstring text = PadWithZeros(static_cast<int>(date.year()), 4);
    AppendPart(text, L'/', static_cast<unsigned>(date.month()));
    AppendPart(text, L'/', static_cast<unsigned>(date.day()));
    AppendPart(text, L' ', static_cast<unsigned>(clock.hours().count()));
    AppendPart(text, L':', static_cast<unsigned>(clock.minutes().count()));
    AppendPart(text, L':', static_cast<unsigned>(clock.seconds().count()));
    return text;
}

std::wstring FormatMonthYear(DateTime time) {
    static constexpr std::array names{L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                      L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    const year_month_day date{std::chrono::floor<days>(time)};
    return std::wstring(names[static_cast<unsigned>(date.month()) - 1]) + L' ' +
           PadWithZeros(static_cast<int>(date.year()), 4);
}

DateTime ParseDateTime(std::wstring_view text) {
    text = TrimBlanks(text);
    DateTime time = TakeDate(text);
    if (!text.empty()) {
        TakeCharacter(text, L' ');
        text = TrimBlanks(text);
        time += TakeTime(text);
    }
    if (!text.empty()) {
        throw ConversionError();
    }
    return time;
}

}  // namespace mip
