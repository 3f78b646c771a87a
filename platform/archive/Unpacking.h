#pragma once

#include <string>

#include "platform/Archives.h"

namespace mip {

class ArchiveSystem;
class Clock;

/// Extracts everything into a folder, which is created when it is missing. Throws PlatformError; an archive that is
/// refused, or too large for the free space, has then written nothing.
void ExtractArchiveTo(const std::wstring& archive, const std::wstring& folder, ArchiveSystem& system, Clock& clock);

/// Reads the directory and makes every refusal of an extraction that it can show. Throws PlatformError.
ArchiveFacts InspectArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock);
/// Reads everything as an extraction would and writes nothing. Throws PlatformError.
ArchiveFacts TestArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock);

}  // namespace mip
