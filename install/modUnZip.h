#pragma once

#include <cstdint>
#include <string>

#include "app/DiscCatalogue.h"
#include "platform/Platform.h"

namespace mip {

struct Paths;

/// The command line that extracts an archive: "x -aoa -hide ", the archive's path as it stands, a blank and the output
/// folder in its quotes. The look before an extraction asks with the same words.
std::wstring ExtractionCommand(const std::wstring& archivePath, const std::wstring& quotedOutputFolder);
/// The command line for a manual of the disc, into the temporary folder.
std::wstring ExtractionOf(const Paths& paths, const DiscCatalogueRecord& manual);

/// The temporary folder with a backslash, in double quotes.
std::wstring QuotedOutputFolder(const Paths& paths);

/// Runs an extraction by the `SevenZip` command line; 0 means success. Nothing is thrown.
std::int32_t ExtractArchive(Platform& platform, const std::wstring& archivePath,
                            const std::wstring& quotedOutputFolder);

}  // namespace mip
