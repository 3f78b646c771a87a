#pragma once

#include <cstdint>
#include <string>

namespace mip {

/// Archive extraction. `SevenZip` takes a command line in the manner of the 7-Zip command-line tool and returns 0 for
/// success; only "x" with "-aoa" and "-hide" is ever asked for.
class Archives {
  public:
    virtual ~Archives() = default;

    /// Extracts with paths. Errors become a non-zero result; nothing is thrown.
    virtual std::int32_t SevenZip(const std::wstring& commandLine) = 0;
    /// True when the archive opens, lists at least one file, holds no entry that extraction would refuse, and every
    /// entry's data agrees with its checksum. Reads the archive to its end, serving the message loop, and writes
    /// nothing: the last look before an installed edition is removed.
    virtual bool IsWhole(const std::wstring& archive) = 0;
    /// Bytes that the files which the archive's directory declares take on a drive, in whole clusters; throws
    /// PlatformError when it cannot be read.
    virtual std::uint64_t DeclaredSize(const std::wstring& archive) = 0;
};

}  // namespace mip
