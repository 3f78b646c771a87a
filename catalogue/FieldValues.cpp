#include "catalogue/FieldValues.h"

#include <array>
#include <charconv>
#include <utility>

#include "text/Checked.h"
#include "text/DateText.h"

namespace mip {
namespace {

struct TextOf {
    std::wstring operator()(std::monostate) const { return {}; }
    std::wstring operator()(std::wstring&& text) const { return std::move(text); }
    std::wstring operator()(std::int64_t number) const { return std::to_wstring(number); }
    std::wstring operator()(DateTime date) const { return FormatDateTime(date); }

    std::wstring operator()(double number) const {
        std::array<char, 32> digits{};
        const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
        return {digits.data(), result.ptr};
    }
};

}  // namespace

std::wstring FieldText(FieldValue value) {
    return std::visit(TextOf{}, std::move(value));
}

std::int16_t FieldInt16(const FieldValue& value) {
    return TextToInt16(FieldText(value));
}

DateTime FieldDate(const FieldValue& value) {
    const DateTime* date = std::get_if<DateTime>(&value);
    return date != nullptr ? *date : ParseDateTime(FieldText(value));
}

}  // namespace mip
