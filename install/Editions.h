#pragma once

#include <string>
#include <vector>

#include "platform/Platform.h"

namespace mip {

struct DiscCatalogueRecord;
struct Program;

/// The base edition of a publication: the same number with 0 as its fifth character. "" for a base edition itself.
/// Throws ConversionError when the fifth character is not a digit.
std::wstring BaseEditionOf(const std::wstring& pubNo);

/// True when the drives have room for the manual's files: the archive's contents twice while it is extracted and
/// copied, once for a PDF manual. The folders that are going to be removed first count in its favour. What cannot be
/// found out does not stop the manual here; extraction or copy will tell.
bool HasRoomForManual(const Program& program, const DiscCatalogueRecord& manual,
                      const std::vector<std::wstring>& goingFolders);
/// The same for the files of `source` that a copy puts in place of those of `target`.
bool HasRoomForCopy(Platform& platform, const std::wstring& source, const std::wstring& target);

/// A file of the folder that another program has open, so that the folder cannot go whole; "" when there is none, or
/// the folder cannot be listed.
std::wstring FindFileInUse(Platform& platform, const std::wstring& folder);
/// The same among the files of `target` that a copy of `source` would replace.
std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target);

/// Reads the disc's edition from beginning to end as its installation will, so that the installed one may go. Throws
/// Failure with the message of a failed extraction or copy.
void RequireWholeManual(const Program& program, const DiscCatalogueRecord& manual);
/// Reads every file below a folder of the disc to its end. Throws Failure as above.
void RequireReadableFolder(Platform& platform, const std::wstring& folder);

}  // namespace mip
