#pragma once

#include <algorithm>
#include <optional>
#include <string>

namespace mip {

/// The two parts of a command line.
struct ProgramCall {
    std::wstring Program;
    std::wstring Arguments;  ///< all that follows, with its leading blanks
};

/// Finds the program of a command line as the system does: the quoted first word, or the shortest run of words that
/// `isFile` knows, each also tried with ".exe" added. Nothing when there is no such file.
template <typename IsFile>
std::optional<ProgramCall> FindProgram(const std::wstring& commandLine, IsFile isFile) {
    const auto found = [&](const std::wstring& program) { return isFile(program) || isFile(program + L".exe"); };
    if (commandLine.starts_with(L'"')) {
        const std::size_t end = std::min(commandLine.find(L'"', 1), commandLine.size());
        ProgramCall call{commandLine.substr(1, end - 1), commandLine.substr(std::min(end + 1, commandLine.size()))};
        return found(call.Program) ? std::optional(std::move(call)) : std::nullopt;
    }
    for (std::size_t end = 0; end < commandLine.size();) {
        end = std::min(commandLine.find(L' ', end + 1), commandLine.size());
        if (found(commandLine.substr(0, end))) {
            return ProgramCall{commandLine.substr(0, end), commandLine.substr(end)};
        }
    }
    return std::nullopt;
}

/// True for a batch file, which only the command interpreter can run.
inline bool IsBatchFile(const std::wstring& program) {
    std::wstring extension = program.substr(program.size() - std::min<std::size_t>(program.size(), 4));
    for (wchar_t& c : extension) {
        c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
    }
    return extension == L".bat" || extension == L".cmd";
}

}  // namespace mip
