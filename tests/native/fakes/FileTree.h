#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "tests/native/fakes/Faults.h"

namespace mip {

/// A drive ("C:") or a share ("\\server\share") of the in-memory Windows.
struct FakeDrive {
    std::wstring Name;
    std::wstring FileSystem = L"NTFS";
    std::uint64_t FreeBytes = 100'000'000'000;  ///< shrinks and grows with what is written and removed
    bool ReadOnly = false;                      ///< a disc: every write is refused
    bool Present = true;                        ///< false: no disc in the drive
};

enum class NodeKind { Folder, File, Link };

/// A file, a folder or a link to a folder. Content is read and written in place by `Read`, `Write` and `Resize`, which
/// keep the drive's free space, the time and the archive attribute as the file system does.
class FileNode {
  public:
    std::wstring Name;
    NodeKind Kind = NodeKind::Folder;
    std::uint32_t Attributes = 0;
    FileTime Modified{};
    std::string Bytes;
    std::wstring LinkTarget;
    /// Above 0 while the file is open somewhere: it can then be read and copied, but not removed or replaced.
    int OpenHandles = 0;
    /// Children by upper-cased name: listings come in that order, as NTFS gives them.
    std::map<std::wstring, std::shared_ptr<FileNode>> Children;

    bool IsReadOnly() const { return (Attributes & attributes::ReadOnly) != 0; }
    /// Copies at most `size` bytes from `offset` and returns how many there were.
    std::size_t Read(std::uint64_t offset, void* buffer, std::size_t size) const;
    /// Writes at `offset`, growing the file with zeros where needed. Throws PlatformError (AccessDenied, DiskFull).
    void Write(std::uint64_t offset, const void* data, std::size_t size);
    void Resize(std::uint64_t size);
    /// Brings what was written, here and below, to the drive: a power cut takes it no more.
    void Flush();

  private:
    friend class FileTree;
    std::optional<std::string> flushed_;  ///< what is on the drive; nothing when that is all of `Bytes`
    class FileTree* tree_ = nullptr;
    FakeDrive* drive_ = nullptr;
};

/// The drives and files of the in-memory Windows. The operations here are for setting up and checking tests: no fault
/// and no read-only drive stops them, and what they write is on the drive at once. The program's own access goes
/// through FakeFiles and its companions.
class FileTree {
  public:
    FakeDrive& AddDrive(FakeDrive drive);
    /// The drive of a path, or null.
    FakeDrive* DriveOf(const std::wstring& path) { return Locate(path).Drive; }

    /// Creates or replaces a file, with every folder on the way. Returns the node for further settings.
    FileNode& PutFile(const std::wstring& path, const std::string& bytes = "", std::uint32_t bits = 0);
    FileNode& PutFolder(const std::wstring& path);
    /// A link to a folder (junction) that lookups follow.
    FileNode& PutLink(const std::wstring& path, const std::wstring& target);
    /// Removes a file, a link, or a folder with all below it; absence is no error.
    void Erase(const std::wstring& path) {
        if (const Place place = Locate(path, false); place.Node && place.Parent) {
            Detach(place);
        }
    }
    /// Every operation on the object, except for asking whether it exists, is refused (AccessDenied).
    void Deny(const std::wstring& path) { denied_.insert(PartsOf(path)); }

    /// The node of a path, links followed; null when there is none.
    std::shared_ptr<FileNode> Find(const std::wstring& path) { return Locate(path).Node; }
    bool HasFile(const std::wstring& path) { return Has(path, NodeKind::File); }
    bool HasFolder(const std::wstring& path) { return Has(path, NodeKind::Folder); }
    /// A file's content; fails the test with PlatformError when there is none.
    std::string BytesOf(const std::wstring& path);
    /// Content of every file below a folder (or drive "C:\") by its path, links not followed; folders that are empty
    /// appear with a trailing backslash. For comparing states.
    std::map<std::wstring, std::string> Snapshot(const std::wstring& folder);

    /// What becomes of the bytes that were written but not flushed when the power went: all kept; all lost, so that a
    /// file is what it was at its last flush; or every second page lost, the first to begin with. A page that was never
    /// on the drive is then zeros. Names and removals are kept, as a file system with a journal keeps them.
    enum class Unflushed { Kept, Lost, EverySecondPage };
    void SettleAfterPowerCut(Unflushed unflushed);

    /// What a path leads to. `Code` is 0, or the Win32 code that an open of it gives.
    struct Place {
        std::shared_ptr<FileNode> Node = {};    ///< null when the last component does not exist
        std::shared_ptr<FileNode> Parent = {};  ///< null for a drive's root
        std::wstring Leaf = {};
        FakeDrive* Drive = nullptr;
        std::uint32_t Code = 0;
    };
    /// `followLast`: whether a link in the last component is followed.
    Place Locate(const std::wstring& path, bool followLast = true) { return Walk(path, followLast, 0); }
    bool IsDenied(const std::wstring& path) const { return denied_.contains(PartsOf(path)); }

    std::shared_ptr<FileNode> AddChild(const Place& place, NodeKind kind);
    /// Takes a node out of its folder and gives its space back; what it holds goes with it.
    void Detach(const Place& place);

    /// The time that new and written files get.
    std::function<FileTime()> Now = [] { return FileTime{}; };

  private:
    struct Volume {
        std::unique_ptr<FakeDrive> Drive;
        std::shared_ptr<FileNode> Root;
    };

    /// The drive ("" when there is none) and the names below it in capitals, with "." and ".." resolved.
    static std::vector<std::wstring> PartsOf(const std::wstring& path, bool asKeys = true);
    bool Has(const std::wstring& path, NodeKind kind) {
        const std::shared_ptr<FileNode> node = Find(path);
        return node && node->Kind == kind;
    }
    static void Settle(FileNode& node, Unflushed unflushed);
    Place Walk(const std::wstring& path, bool followLast, int depth);
    /// Makes the folders on the way to a path and a node there, in the place of another one.
    FileNode& Make(const std::wstring& path, NodeKind kind);

    std::map<std::wstring, Volume> volumes_;
    std::set<std::vector<std::wstring>> denied_;
};

/// The base of a fake that works on the files.
class OnTree : public Counted {
  public:
    OnTree(FileTree& tree, Faults& faults) : Counted(faults), tree_(tree) {}

  protected:
    FileTree& tree_;
};

}  // namespace mip
