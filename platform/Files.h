#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <ratio>
#include <string>
#include <vector>

namespace mip {

/// A moment in the 100-nanosecond ticks of the file system, coordinated universal time.
using FileTime = std::chrono::sys_time<std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>>;

/// File attribute bits, with the values of the Windows file system.
namespace attributes {
inline constexpr std::uint32_t ReadOnly = 0x01;
inline constexpr std::uint32_t Hidden = 0x02;
inline constexpr std::uint32_t System = 0x04;
inline constexpr std::uint32_t Directory = 0x10;
inline constexpr std::uint32_t Archive = 0x20;
inline constexpr std::uint32_t Normal = 0x80;
}  // namespace attributes

struct FileStatus {
    std::uint64_t Size = 0;  ///< bytes
    FileTime Modified;
    std::uint32_t Attributes = 0;
};

/// Single files. Paths are absolute, parts joined by backslashes; names compare without regard to case.
/// Every operation but `Exists` and `IsInUse` throws PlatformError with a Win32 code.
class Files {
  public:
    /// Takes a file's name and the code with which its copy failed, 0 when it did not.
    using Copied = std::function<void(const std::wstring& name, std::uint32_t code)>;

    virtual ~Files() = default;

    /// True when a file (not a folder) of that path exists; false also when it cannot be asked.
    virtual bool Exists(const std::wstring& path) = 0;
    /// A file without attributes has 0; attributes::Normal is never reported.
    virtual FileStatus Status(const std::wstring& path) = 0;
    /// `bits` 0 or attributes::Normal clears every attribute.
    virtual void SetAttributes(const std::wstring& path, std::uint32_t bits) = 0;
    /// Copies content and modification time into a file that must not exist yet (FileExists otherwise). The new file
    /// has no attributes set, whatever the source's are. On failure no part of the new file stays.
    virtual void CopyToNew(const std::wstring& source, const std::wstring& destination) = 0;
    /// Copies files of one folder to new ones of another, as CopyToNew does each; several may be under way at once.
    /// `copied` is called by this thread for every file, in any order. When it throws, no further copy is begun and the
    /// exception passes on.
    virtual void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                              const std::wstring& destination, const Copied& copied) = 0;
    /// Renames within one volume, replacing an existing file in one step: after a crash the destination is the old
    /// file or the new one.
    virtual void Move(const std::wstring& source, const std::wstring& destination) = 0;
    virtual void Remove(const std::wstring& path) = 0;
    /// True when another program has the file open in a way that keeps it from being removed; false also when it
    /// cannot be asked.
    virtual bool IsInUse(const std::wstring& path) = 0;
    /// The first `limit` bytes, or all there are.
    virtual std::string Read(const std::wstring& path, std::uint64_t limit = UINT64_MAX) = 0;
    /// Reads the file to its end and keeps nothing of it, serving the message loop now and then. Returns when every
    /// byte could be read.
    virtual void ReadThrough(const std::wstring& path) = 0;
    /// Creates or replaces the file with these bytes.
    virtual void Write(const std::wstring& path, const std::string& bytes) = 0;
    /// Adds these bytes to the end of the file, which is created where needed.
    virtual void Append(const std::wstring& path, const std::string& bytes) = 0;
};

/// What a folder holds, names only, in the order in which the file system lists them.
struct FolderListing {
    std::vector<std::wstring> Subfolders;
    std::vector<std::wstring> Files;
    std::vector<std::wstring> Links;  ///< to folders and to files; they stand in neither of the other two
    bool operator==(const FolderListing&) const = default;
};

/// Folders. The same path rules as for Files.
class Folders {
  public:
    virtual ~Folders() = default;

    /// True when a folder of that path exists; false also when it cannot be asked.
    virtual bool Exists(const std::wstring& folder) = 0;
    /// True when the path itself, not what it leads to, is a link to a folder or a file: a symbolic link, a junction or
    /// a mount point; false also when it cannot be asked.
    virtual bool IsLink(const std::wstring& folder) = 0;
    /// Creates one level; throws PlatformError (AlreadyExists, PathNotFound, ...).
    virtual void Create(const std::wstring& folder) = 0;
    /// Renames a folder with all that it holds, within one volume, in one step: after a crash it is in the one place or
    /// in the other. The destination must not exist. What the folder holds keeps its access entries. Throws
    /// PlatformError, AccessDenied when a file below it is open.
    virtual void Move(const std::wstring& source, const std::wstring& destination) = 0;
    /// Removes an empty folder. Throws PlatformError.
    virtual void Remove(const std::wstring& folder) = 0;
    /// One pass over the folder. Links have a list of their own, so that a walk over the others never leaves the folder
    /// that it started in. Throws PlatformError.
    virtual FolderListing List(const std::wstring& folder) = 0;
};

/// Drives and shares.
class Volumes {
  public:
    virtual ~Volumes() = default;

    /// Drive letter and colon ("D:"), or server and share of a UNC path ("\\server\share"), or "".
    virtual std::wstring DriveName(const std::wstring& path) = 0;
    /// Bytes that the current user may still write below the root ("C:\"): sectors per cluster times bytes per sector
    /// times free clusters. Throws PlatformError.
    virtual double FreeBytes(const std::wstring& root) = 0;
    /// Name of the file system ("NTFS") of a root folder. Throws PlatformError.
    virtual std::wstring FileSystemName(const std::wstring& root) = 0;
    /// True when both paths, or the nearest folders above them that exist, lie on one volume (links followed) and have
    /// one drive name, so that a folder can be renamed from the one to the other; false also when it cannot be asked.
    virtual bool IsOneVolume(const std::wstring& one, const std::wstring& other) = 0;
    /// Returns when all that was written below the folder so far, links not followed, is on its drive and outlasts a
    /// power cut. Throws PlatformError.
    virtual void Flush(const std::wstring& folder) = 0;
};

}  // namespace mip
