#pragma once

#include <string>
#include <string_view>

namespace mip {

/// An entry's name as a path below the output folder: parts joined by backslashes, none at its end. Throws BadArchive
/// for a name that could land elsewhere or that Windows would change or refuse: parent and current steps, absolute
/// paths, drives, streams, device names, empty parts, blanks or dots at the end of a part, characters that names may
/// not hold, and excessive length.
std::wstring CheckedEntryName(std::wstring_view name);

}  // namespace mip
