#pragma once

#include <cstdint>
#include <string>

namespace mip {

/// The two 32-bit words of a file version, most significant first.
struct FixedFileVersion {
    std::uint32_t Most = 0;
    std::uint32_t Least = 0;
};

/// Version resources of executables.
class FileVersions {
  public:
    virtual ~FileVersions() = default;

    /// The file version of the fixed file information. Throws PlatformError with a Win32 code when the file has none.
    virtual FixedFileVersion Read(const std::wstring& path) = 0;
};

}  // namespace mip
