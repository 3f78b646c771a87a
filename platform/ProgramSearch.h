#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "text/TextTools.h"

namespace mip {

/// The two parts of a command line.
struct ProgramCall {
    std::wstring Program;    ///< the file that was found
    std::wstring Arguments;  ///< all that follows, with its leading blanks
};

/// Whether words joined by blanks can be one path. A path among the arguments must not be taken into it: the system
/// would resolve its ".." over the program's own folder and find any file.
inline bool CanBeOnePath(const std::wstring& words) {
    return words.find(L' ') == std::wstring::npos ||
           (words.find_first_of(L"\"/:*?<>|", 2) == std::wstring::npos && words.find(L"..") == std::wstring::npos &&
            !words.ends_with(L' '));
}

/// Finds the program of a command line: the quoted first word, or else the longest run of words that `isFile` knows, so
/// that no program of a shorter name gets in between. Each is also tried with ".exe" added. Nothing when there is no
/// such file.
template <typename IsFile>
std::optional<ProgramCall> FindProgram(const std::wstring& commandLine, IsFile isFile) {
    const auto callOf = [&](const std::wstring& words, std::size_t end) -> std::optional<ProgramCall> {
        for (const std::wstring& program : {words, words + L".exe"}) {
            if (isFile(program)) {
                return ProgramCall{program, commandLine.substr(std::min(end, commandLine.size()))};
            }
        }
        return std::nullopt;
    };
    if (commandLine.starts_with(L'"')) {
        const std::size_t end = std::min(commandLine.find(L'"', 1), commandLine.size());
        return callOf(commandLine.substr(1, end - 1), end + 1);
    }
    std::optional<ProgramCall> call;
    for (std::size_t end = commandLine.size(); !call && end != std::wstring::npos && end > 0;
         end = commandLine.rfind(L' ', end - 1)) {
        const std::wstring words = commandLine.substr(0, end);
        call = CanBeOnePath(words) ? callOf(words, end) : std::nullopt;
    }
    return call;
}

/// True for a batch file, which only the command interpreter can run.
inline bool IsBatchFile(const std::wstring& program) {
    const std::wstring name = ToUpperAscii(program);
    return name.ends_with(L".BAT") || name.ends_with(L".CMD");
}

/// Whether a batch file's arguments are nothing but words and quoted texts. The interpreter takes what follows an
/// operator outside quotes, or a line's end, for a command of its own.
inline bool AreBatchArguments(const std::wstring& arguments) {
    bool isQuoted = false;
    for (const wchar_t c : arguments) {
        isQuoted = isQuoted != (c == L'"');
        const bool isOperator = std::wstring_view(L"&|<>^()").find(c) != std::wstring_view::npos;
        if (c < L' ' || (isOperator && !isQuoted)) {
            return false;
        }
    }
    return !isQuoted;
}

}  // namespace mip
