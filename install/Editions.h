#pragma once

#include <cstdint>
#include <string>

#include "app/Program.h"
#include "platform/Platform.h"

namespace mip {

/// The base edition of a publication: the same number with 0 as its fifth character. "" for a base edition itself.
/// Throws ConversionError when the fifth character is not a digit.
std::wstring BaseEditionOf(const std::wstring& pubNo);

/// True when the drives have room for the manual's files: the archive's contents twice while it is extracted and
/// copied, once for a PDF manual. The installed edition, which makes room first, counts in its favour. What cannot
/// be found out does not stop the manual here; extraction or copy will tell.
bool HasRoomForManual(const Program& program, const DiscCatalogueRecord& manual);

/// A file of the folder that another program has open, so that the folder cannot go whole; "" when there is none, or
/// the folder cannot be listed.
std::wstring FindFileInUse(Platform& platform, const std::wstring& folder);
/// The same among the files of `target` that a copy of `source` would replace.
std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target);

/// True when the disc's edition can be read from beginning to end, so that the installed one may go.
bool IsManualWhole(const Program& program, const DiscCatalogueRecord& manual);

}  // namespace mip
