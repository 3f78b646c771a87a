#pragma once

#include <string>
#include <vector>

namespace mip {

/// The base edition of a publication: the same number with 0 as its fifth character. "" for a base edition itself.
/// Throws ConversionError when the fifth character is not a digit.
std::wstring BaseEditionOf(const std::wstring& pubNo);
/// The numbers that later editions of a publication can have, the next one first: greater digits as the fifth
/// character. None when that is not a digit.
std::vector<std::wstring> LaterEditionsOf(const std::wstring& pubNo);

}  // namespace mip
