#include "platform/archive/SevenZipCommand.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "text/Arguments.h"

namespace mip {

namespace {

bool EqualsIgnoringCase(std::wstring_view text, std::wstring_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](wchar_t left, wchar_t right) {
        return (left >= L'A' && left <= L'Z' ? left - L'A' + L'a' : left) == right;
    });
}

void TrimFolder(std::wstring& folder) {
    while (folder.size() > 1 && folder.back() == L'\\' && folder[folder.size() - 2] != L':') {
        folder.pop_back();
    }
}

}  // namespace

std::optional<SevenZipCommand> ParseSevenZipCommand(const std::wstring& commandLine) {
    std::vector<std::wstring> bare;
    bool overwritesAll = false;
    for (std::wstring& argument : SplitArguments(commandLine)) {
        if (EqualsIgnoringCase(argument, L"-aoa")) {
            overwritesAll = true;
        } else if (argument.starts_with(L'-')) {
            if (!EqualsIgnoringCase(argument, L"-hide")) {
                return std::nullopt;
            }
        } else {
            bare.push_back(std::move(argument));
        }
    }
    if (!overwritesAll || bare.size() != 3 || !EqualsIgnoringCase(bare[0], L"x") || bare[1].empty() ||
        bare[2].empty()) {
        return std::nullopt;
    }
    TrimFolder(bare[2]);
    return SevenZipCommand{std::move(bare[1]), std::move(bare[2])};
}

}  // namespace mip
