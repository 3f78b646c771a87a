#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "platform/PlatformError.h"
#include "platform/archive/ArchiveSystem.h"

namespace mip {

constexpr unsigned UsCodePage = 437;
constexpr unsigned JapaneseCodePage = 932;

/// Of very many cases each so-manieth is tried, all of them where the files are in memory.
#ifdef _WIN32
constexpr std::size_t Stride = 7;
#else
constexpr std::size_t Stride = 1;
#endif

/// Relative path of every file with its content, and of every folder (with a backslash at its end).
using Tree = std::map<std::wstring, std::string>;

/// The files that the archive tests work on, and the extractor's view of them: those in memory, or under Windows those
/// of a temporary folder. Each build links one.
class ArchiveComputer {
  public:
    virtual ~ArchiveComputer() = default;

    virtual mip::Files& Files() = 0;
    virtual mip::Folders& Folders() = 0;
    virtual ArchiveSystem& System() = 0;
    /// A path below a folder that holds nothing at first.
    virtual std::wstring At(const std::wstring& name) = 0;

    /// Writes a file, with the folders on the way to it, and returns its path.
    std::wstring Put(const std::wstring& path, const std::string& bytes) {
        for (std::size_t end = path.find(L'\\', At(L"").size()); end != path.npos; end = path.find(L'\\', end + 1)) {
            if (const std::wstring folder = path.substr(0, end); !Folders().Exists(folder)) {
                Folders().Create(folder);
            }
        }
        Files().Write(path, bytes);
        return path;
    }
    /// What is below a folder; nothing when it is not there.
    Tree TreeOf(const std::wstring& folder, const std::wstring& prefix = L"") {
        Tree tree;
        const FolderListing listing = Folders().Exists(folder) ? Folders().List(folder) : FolderListing{};
        for (const std::wstring& name : listing.Files) {
            tree[prefix + name] = Files().Read(folder + L'\\' + name);
        }
        for (const std::wstring& name : listing.Subfolders) {
            tree[prefix + name + L'\\'];
            tree.merge(TreeOf(folder + L'\\' + name, prefix + name + L'\\'));
        }
        return tree;
    }
};

/// Entries' names are in this code page when they do not say that they are UTF-8.
std::unique_ptr<ArchiveComputer> MakeArchiveComputer(unsigned codePage = UsCodePage);

}  // namespace mip
