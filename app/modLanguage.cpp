#include "app/modLanguage.h"

#include <algorithm>
#include <cstddef>

#include "platform/Computer.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

std::wstring GetLanguageCode(const Platform& platform) {
    try {
        return LanguageCodeOf(platform.Computer.LanguageIdentifier());
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("asking for the user's language", error);
        return L"09";
    }
}

std::wstring LanguageCodeOf(const std::wstring& identifier) {
    const std::wstring digits = ToUpper(identifier.substr(0, 4));
    if (digits == L"0804" || digits == L"1004") {
        return L"04S";
    }
    if (digits == L"0404" || digits == L"0C04") {
        return L"04T";
    }
    return digits.substr(std::min<std::size_t>(digits.size(), 2));
}

std::uint16_t MakeLangId(std::uint16_t primary, std::uint16_t sub) {
    return static_cast<std::uint16_t>(sub * 1024 | primary);
}

std::uint32_t MakeLcid(std::uint16_t languageId) {
    return languageId;  // the sort order above it is the default one, 0
}

std::wstring ScreenFont(const std::wstring& languageCode) {
    return languageCode == L"11" ? L"MS Pゴシック" : L"Arial";
}

}  // namespace mip
