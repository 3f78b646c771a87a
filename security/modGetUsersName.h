#pragma once

#include <string>

#include "platform/Platform.h"

namespace mip {

/// The outcome of looking up the built-in Users group.
struct UsersGroup {
    std::wstring UsersGroupName;      ///< the whole 255-character buffer: name, NUL, blanks; "" when the look-up failed
    std::wstring UsersNameErrorText;  ///< "" or what went wrong
};

/// Resolves S-1-5-32-545 to its local account name.
UsersGroup ResolveUsersGroup(Platform& platform);
/// The name buffer of ResolveUsersGroup, whatever the outcome.
std::wstring GetUsersGroupName(Platform& platform);

}  // namespace mip
