#pragma once

#include <sqlite3.h>

#include <map>
#include <string>

#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// The file layer of the embedded database engine over the files of an in-memory Windows. Every call of the engine into
/// it counts for Faults, and a power cut in a write leaves half of it.
class TreeVfs {
  public:
    TreeVfs(FileTree& tree, Faults& faults);
    TreeVfs(const TreeVfs&) = delete;
    TreeVfs& operator=(const TreeVfs&) = delete;
    ~TreeVfs();

    /// The name under which the engine knows this file layer.
    const std::string& Name() const { return name_; }

    // What the engine's calls work on.
    FileTree& Tree() { return tree_; }
    bool Refuses(const char* operation) { return faults_.Next(operation) != Faults::Verdict::Proceed; }
    Faults::Verdict Ask(const char* operation) { return faults_.Next(operation); }
    /// The connection that may write a file, as the engine's rules want it: one at a time. That readers keep a writer
    /// waiting is shown on real files.
    const void*& WriterOf(const FileNode& node) { return writers_[&node]; }

  private:
    FileTree& tree_;
    Faults& faults_;
    std::string name_;
    sqlite3_vfs vfs_{};
    std::map<const FileNode*, const void*> writers_;
};

}  // namespace mip
