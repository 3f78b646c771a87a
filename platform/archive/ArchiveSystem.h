#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Files.h"

namespace mip {

/// The bytes of an archive file, readable at any place.
class ArchiveBytes {
  public:
    virtual ~ArchiveBytes() = default;

    virtual std::uint64_t Size() = 0;
    /// Fills the buffer from `offset` on and returns how many bytes there were; fewer than asked for only at the end
    /// of the file. Throws PlatformError.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) = 0;
};

/// A file while it is extracted. Destroying it before `Finish` removes what was written.
class ExtractedFile {
  public:
    virtual ~ExtractedFile() = default;

    /// Appends. Throws PlatformError.
    virtual void Write(std::span<const char> bytes) = 0;
    /// Sets the modification time, when there is one, and closes. Throws PlatformError.
    virtual void Finish(const std::optional<FileTime>& modified) = 0;
};

/// What the embedded extractor asks of the computer. Paths are absolute, parts joined by backslashes, of any length.
/// `CreateFolder`, `CreateNewFile` and the files that it gives are used by several threads at once.
class ArchiveSystem {
  public:
    virtual ~ArchiveSystem() = default;

    /// Throws PlatformError when the file cannot be opened.
    virtual std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) = 0;
    /// Creates one level; an existing folder is no error. Throws PlatformError (PathNotFound when the parent is
    /// missing).
    virtual void CreateFolder(const std::wstring& folder) = 0;
    /// Creates the file or replaces an existing one, read-only or not, with no attribute set. Throws PlatformError
    /// (PathNotFound when the folder is missing).
    virtual std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) = 0;
    /// Bytes that may still be written to the volume of an existing folder. Throws PlatformError.
    virtual std::uint64_t FreeBytes(const std::wstring& folder) = 0;
    /// The code page of archive names that do not say they are UTF-8.
    virtual unsigned NameCodePage() = 0;
    /// Text of a code page (65001 is UTF-8); nothing when the bytes are not text of that code page.
    virtual std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) = 0;
    /// The name in the case in which the file system compares names.
    virtual std::wstring FoldCase(std::wstring name) = 0;
};

}  // namespace mip
