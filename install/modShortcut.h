#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace mip {

/// What a shortcut file says. Empty texts are set too when the caller asks for it.
struct ShortcutSpec {
    std::wstring Target;
    std::wstring Arguments;
    std::wstring WorkingFolder;
    std::wstring Description;
    std::wstring Icon;
    std::wstring HotKey;
    std::int16_t WindowStyle = 0;

    bool operator==(const ShortcutSpec&) const = default;
};

/// Numbers of the shell's special folders.
namespace specialFolders {
inline constexpr int Programs = 2;        ///< the user's Programs folder of the Start menu
inline constexpr int CommonDesktop = 25;  ///< the desktop that all users share
}  // namespace specialFolders

/// The shortcut of a program, started in a normal window from C:\.
ShortcutSpec ProgramShortcut(const std::wstring& target);
/// Path of "name.lnk" in a special folder; in the root of the current drive when there is no such folder.
std::wstring GetShortcutPath(Platform& platform, int specialFolder, const std::wstring& name);
/// Writes a shortcut file. False when that failed.
bool CreateShortcut(Platform& platform, const std::wstring& file, const ShortcutSpec& spec, bool setEmptyFields);
/// The same for a program, unless a file of that name is there already.
void CreateProgramShortcut(Platform& platform, const std::wstring& file, const std::wstring& target);
/// A shortcut on the desktop that all users share, unless there is one of that name.
void CreateDesktopShortcut(Platform& platform, const std::wstring& name, const std::wstring& target);

}  // namespace mip
