#pragma once

#include <string>
#include <vector>

namespace mip {

/// The fifth character of a publication number is its revision; the base edition is the same number with 0 there. ""
/// for a base edition itself. Throws ConversionError when the fifth character is not a digit.
std::wstring BaseEditionOf(const std::wstring& pubNo);
/// The numbers of a publication's later revisions, the next one first: greater digits as the fifth character. None when
/// that is not a digit.
std::vector<std::wstring> LaterRevisionsOf(const std::wstring& pubNo);

}  // namespace mip
