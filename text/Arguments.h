#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mip {

/// The arguments of a command line. Quotes hold blanks together and are taken away; a backslash is an ordinary
/// character, so that a quoted folder may end in one.
std::vector<std::wstring> SplitArguments(std::wstring_view commandLine);

}  // namespace mip
