#pragma once

#include <cstdint>
#include <string>

#include "app/Program.h"

namespace mip {

/// True when the volume of the path's drive is NTFS; UNC paths never count.
bool IsNtfsVolume(Platform& platform, const std::wstring& path);
/// Grants full control of one file or folder to the Users group, without inheritance. True also where the volume is
/// not NTFS. A failure is shown in a box.
[[nodiscard]] bool GrantFullAccess(Program& program, const std::wstring& path);
/// Opens every installed manual's folder to the Users group. False when the catalogue could not be opened.
bool SecureInstalledManualFolders(Program& program);
/// True when the folder already holds a qualifying entry for the Users group.
bool UsersHaveModifyAccess(Program& program, const std::wstring& path);
[[nodiscard]] bool GrantModifyToUsers(Program& program, const std::wstring& path);
/// "All", or letters of R, W, X, D, P, O for the rights that an access mask holds.
std::wstring MaskToLetters(std::uint32_t mask);
/// "1" when an entry counts as the modify grant, else "0".
std::wstring AceGrantsModify(std::uint8_t aceType, std::uint32_t mask);
/// The system's text for an error code.
std::wstring GetApiErrorText(Platform& platform, std::uint32_t code);

}  // namespace mip
