#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Archives.h"

namespace mip {

/// An entry of an archive: "folder\name", or "folder\" for a folder of its own.
struct ArchiveEntry {
    std::wstring Name;
    std::string Content = {};
    bool Damaged = false;  ///< its data does not agree with its checksum
};

/// What the archives' contract runs on: the embedded extractor, the library, or the fake. Each build links one host.
class ArchivesHost {
  public:
    virtual ~ArchivesHost() = default;

    virtual mip::Archives& Archives() = 0;
    /// A path in a folder that is the host's own and holds nothing at first.
    virtual std::wstring At(const std::wstring& name) = 0;
    /// Writes an archive, with the folders on the way to it.
    virtual void Put(const std::wstring& path, const std::vector<ArchiveEntry>& entries) = 0;
    /// Content of every file below a folder, by its path from there; a folder ends in a backslash and has none.
    virtual std::map<std::wstring, std::string> Tree(const std::wstring& folder) = 0;
};

std::unique_ptr<ArchivesHost> MakeArchivesHost();

}  // namespace mip
