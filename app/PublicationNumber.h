#pragma once

#include <string>
#include <vector>

namespace mip {

/// The fifth character of a publication number is its revision.

/// The base edition of a publication: the same number with revision 0. "" for a base edition itself. Throws
/// ConversionError when the revision is not a digit.
std::wstring BaseEditionOf(const std::wstring& pubNo);
/// The numbers of a publication's later revisions, the next one first; none when its revision is not a digit.
std::vector<std::wstring> LaterRevisionsOf(const std::wstring& pubNo);

}  // namespace mip
