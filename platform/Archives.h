#pragma once

#include <cstdint>
#include <string>

#include "platform/FaultLog.h"

namespace mip {

/// What an archive's directory says of its contents.
struct ArchiveFacts {
    std::uint64_t BytesOnDrive = 0;  ///< what its files take on a drive, in whole clusters
    std::uint64_t Files = 0;
    /// There is a top-level folder, and at least one file below each of them, at any depth.
    bool HoldsManual = false;
    /// The top-level folder in which everything lies; "" when there are others, or files beside it.
    std::wstring OnlyFolder{};

    bool operator==(const ArchiveFacts&) const = default;
};

/// Archive extraction by a command line in the manner of the 7-Zip command-line tool: "x", the switches "-aoa" and
/// "-hide", the archive's path and the output folder. `Inspect` and `Test` take the very command line that is to
/// extract, so that the look and the extraction cannot disagree.
class Archives {
  public:
    virtual ~Archives() = default;

    /// Extracts with paths and returns 0 for success. Errors become a non-zero result, and are told to `log`; nothing
    /// is thrown.
    virtual std::int32_t SevenZip(const std::wstring& commandLine, FaultLog& log) = 0;
    /// Reads the archive's directory and writes nothing. Throws PlatformError when it cannot be read, or when it
    /// declares an entry that extraction refuses.
    virtual ArchiveFacts Inspect(const std::wstring& commandLine) = 0;
    /// The same, and reads every entry to its end, serving the message loop. Throws PlatformError, also when an entry's
    /// data does not agree with its checksum. What passes can be extracted into an empty folder of a drive with room.
    virtual ArchiveFacts Test(const std::wstring& commandLine) = 0;
};

}  // namespace mip
