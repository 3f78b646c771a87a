#pragma once

#include <cstdint>
#include <string>

namespace mip {

class ArchiveSystem;
class Clock;

/// Extracts everything into a folder, which is created when it is missing. Throws PlatformError; an archive that is
/// refused, or too large for the free space, has then written nothing.
void ExtractArchiveTo(const std::wstring& archive, const std::wstring& folder, ArchiveSystem& system, Clock& clock);

/// Reads everything as an extraction would and writes nothing. Returns the number of files; throws PlatformError.
std::uint64_t TestArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock);

}  // namespace mip
