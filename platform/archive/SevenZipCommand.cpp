#include "platform/archive/SevenZipCommand.h"

#include <algorithm>
#include <string_view>

#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::wstring_view Blanks = L" \t";

std::wstring_view Trimmed(std::wstring_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

/// Takes the first word off a text that begins with no blank, and the blanks behind it.
std::wstring_view TakeWord(std::wstring_view& text) {
    const std::wstring_view word = text.substr(0, text.find_first_of(Blanks));
    text = Trimmed(text.substr(word.size()));
    return word;
}

/// Where the last argument begins: behind the last blank that stands in no quotes.
std::size_t StartOfLastArgument(std::wstring_view text) {
    std::size_t start = 0;
    bool inQuotes = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] == L'"') {
            inQuotes = !inQuotes;
        } else if (!inQuotes && Blanks.find(text[place]) != Blanks.npos) {
            start = place + 1;
        }
    }
    return start;
}

std::wstring FolderOf(std::wstring_view argument) {
    std::wstring folder(argument);
    std::erase(folder, L'"');
    while (folder.size() > 1 && folder.back() == L'\\' && folder[folder.size() - 2] != L':') {
        folder.pop_back();
    }
    return folder;
}

}  // namespace

std::optional<SevenZipCommand> ParseSevenZipCommand(const std::wstring& commandLine) {
    std::wstring_view text = Trimmed(commandLine);
    bool isKnown = ToUpperAscii(TakeWord(text)) == L"X";
    bool overwritesAll = false;
    while (text.starts_with(L'-')) {
        const std::wstring word = ToUpperAscii(TakeWord(text));
        const bool isOverwrite = word == L"-AOA";
        overwritesAll = overwritesAll || isOverwrite;
        isKnown = isKnown && (isOverwrite || word == L"-HIDE");
    }
    const std::size_t start = StartOfLastArgument(text);
    const std::wstring_view archive = WithoutDoubleQuotes(Trimmed(text.substr(0, start)));
    std::wstring folder = FolderOf(text.substr(start));
    isKnown = isKnown && overwritesAll && !archive.empty() && archive.find(L'"') == archive.npos && !folder.empty() &&
              !folder.starts_with(L'-');
    return isKnown ? std::optional(SevenZipCommand{std::wstring(archive), std::move(folder)}) : std::nullopt;
}

}  // namespace mip
