#include "tests/native/fakes/FakeProfileFiles.h"

#include "text/TextTools.h"
#include "text/UnicodeText.h"

namespace mip {

namespace {

std::wstring_view TrimSpace(std::wstring_view text) {
    const std::size_t start = text.find_first_not_of(L" \t\r");
    if (start == std::wstring_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(L" \t\r") - start + 1);
}

std::wstring_view WithoutQuotes(std::wstring_view value) {
    const bool quoted =
        value.size() >= 2 && (value.front() == L'"' || value.front() == L'\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The value of the first such key in the first such section.
std::wstring FindValue(std::wstring_view text, const std::wstring& section, const std::wstring& key) {
    bool inSection = false;
    for (const std::wstring& line : Split(text, L'\n')) {
        const std::wstring_view trimmed = TrimSpace(line);
        if (trimmed.starts_with(L'[')) {
            if (inSection) {
                return L"";
            }
            const std::wstring_view name = trimmed.substr(1, trimmed.rfind(L']') - 1);
            inSection = ToUpper(TrimSpace(name)) == ToUpper(section);
        } else if (inSection && !trimmed.starts_with(L';')) {
            const std::size_t equals = trimmed.find(L'=');
            const bool found =
                equals != std::wstring_view::npos && ToUpper(TrimSpace(trimmed.substr(0, equals))) == ToUpper(key);
            if (found) {
                return std::wstring(WithoutQuotes(TrimSpace(trimmed.substr(equals + 1))));
            }
        }
    }
    return L"";
}

}  // namespace

std::wstring FakeProfileFiles::ReadString(const std::wstring& section, const std::wstring& key,
                                          const std::wstring& file, std::size_t capacity) {
    if (faults_.Fails("ProfileFiles.ReadString") || !tree_.HasFile(file) || capacity == 0) {
        return L"";
    }
    const std::string bytes = tree_.BytesOf(file);
    const bool isUtf16 = bytes.starts_with("\xFF\xFE");
    const std::wstring text = isUtf16 ? FromUtf16(std::string_view(bytes).substr(2), ByteOrder::LowFirst)
                                      : computer_.FromSystemCodePage(bytes);
    return FindValue(text, section, key).substr(0, capacity - 1);
}

}  // namespace mip
