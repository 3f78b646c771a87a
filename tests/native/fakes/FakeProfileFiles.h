#pragma once

#include "platform/ProfileFiles.h"
#include "tests/native/fakes/FakeComputer.h"
#include "tests/native/fakes/FileTree.h"
#include "text/ProfileText.h"

namespace mip {

/// Reads as the system's profile calls do: UTF-16 with the mark FF FE, or the system's code page. They know no other
/// mark, so the first line of a file that has one is not understood.
class FakeProfileFiles : public ProfileFiles, private OnTree {
  public:
    FakeProfileFiles(FileTree& tree, FakeComputer& computer, Faults& faults)
        : OnTree(tree, faults), computer_(computer) {}

    std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                            std::size_t capacity) override {
        if (faults_.Fails("ProfileFiles.ReadString") || !tree_.HasFile(file) || tree_.IsDenied(file) || capacity == 0) {
            return L"";
        }
        const std::string bytes = tree_.BytesOf(file);
        const std::wstring text = IsUtf16Profile(bytes) ? Utf16ProfileText(bytes) : computer_.FromSystemCodePage(bytes);
        return ProfileValue(text, section, key).substr(0, capacity - 1);
    }

  private:
    FakeComputer& computer_;
};

}  // namespace mip
