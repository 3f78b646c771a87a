#pragma once

#include <cstdint>
#include <string>

#include "security/modAddFullAccess.h"

namespace mip {

struct Identity;
struct Platform;

/// True when the folder already holds a qualifying entry for the Users group.
bool UsersHaveModifyAccess(Platform& platform, const Identity& identity, const std::wstring& path);
/// Grants reading, writing, running and deleting to the Users group, inherited by everything below. Shows nothing.
[[nodiscard]] bool GrantModifyToUsers(Platform& platform, const Identity& identity, const std::wstring& path);
/// "All", or letters of R, W, X, D, P, O for the rights that an access mask holds.
std::wstring MaskToLetters(std::uint32_t mask);
/// "1" when an entry counts as the modify grant, else "0".
std::wstring AceGrantsModify(std::uint8_t aceType, std::uint32_t mask);

}  // namespace mip
