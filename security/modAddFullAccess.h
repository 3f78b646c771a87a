#pragma once

#include <cstdint>
#include <string>

#include "platform/Security.h"

namespace mip {

struct Identity;
struct Platform;

/// True when the volume of the path's drive is NTFS; UNC paths never count.
bool IsNtfsVolume(Platform& platform, const std::wstring& path);
/// Merges one entry into the object's access-control list. Throws PlatformError with a Win32 code.
void MergeIntoAccessList(AccessControl& accessControl, const std::wstring& path, const ExplicitAccess& entry);
/// Grants full control of one file or folder to the Users group, without inheritance. True also where the volume is
/// not NTFS. A failure is shown in a box.
[[nodiscard]] bool GrantFullAccess(Platform& platform, const Identity& identity, const std::wstring& path);
/// The system's text for an error code.
std::wstring GetApiErrorText(Platform& platform, std::uint32_t code);
/// Shows the system's text for an error code in a box without a title of its own.
void ShowApiError(Platform& platform, std::uint32_t code);

}  // namespace mip
