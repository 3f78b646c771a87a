#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace mip {

struct Platform;
struct Program;

/// Runs the manager program's setup silently and makes its Start-menu shortcut where the settings ask for it. False,
/// with the result texts set, when there is no setup of that path.
[[nodiscard]] bool InstallManagerProgram(Program& program, const std::wstring& setupPath);
/// Runs the link program's setup; false unless its log ends in the result code 0.
[[nodiscard]] bool InstallLinkProgram(Program& program, const std::wstring& setupPath);
/// The same for the viewer.
[[nodiscard]] bool InstallViewerProgram(Program& program, const std::wstring& setupPath);

/// Asks whether the installation goes on although a companion program could not be set up.
[[nodiscard]] bool GoesOnWithoutCompanion(const Program& program);

/// The last line of a text file, "" for an empty one. Throws PlatformError.
std::wstring ReadLastLine(Platform& platform, const std::wstring& file);

/// The four numbers of a program's file version, most significant first; nothing when it has none.
using FileVersionNumbers = std::array<std::uint32_t, 4>;
std::optional<FileVersionNumbers> GetFileVersionNumbers(Platform& platform, const std::wstring& file);

}  // namespace mip
