#pragma once

#include "platform/ProfileFiles.h"
#include "tests/native/fakes/FakeComputer.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// Reads as the system's profile calls do: UTF-16 with the mark FF FE, or the system's code page. They know no other
/// mark, so the first line of a file that has one is not understood.
class FakeProfileFiles : public ProfileFiles {
  public:
    FakeProfileFiles(FileTree& tree, FakeComputer& computer, Faults& faults)
        : tree_(tree), computer_(computer), faults_(faults) {}

    std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                            std::size_t capacity) override;

  private:
    FileTree& tree_;
    FakeComputer& computer_;
    Faults& faults_;
};

}  // namespace mip
