#include "text/Arguments.h"

namespace mip {

std::vector<std::wstring> SplitArguments(std::wstring_view commandLine) {
    std::vector<std::wstring> arguments;
    bool inQuotes = false;
    bool inArgument = false;
    for (const wchar_t character : commandLine) {
        const bool separates = !inQuotes && (character == L' ' || character == L'\t');
        if (!separates && !inArgument) {
            arguments.emplace_back();
        }
        inArgument = !separates;
        if (character == L'"') {
            inQuotes = !inQuotes;
        } else if (!separates) {
            arguments.back() += character;
        }
    }
    return arguments;
}

}  // namespace mip
