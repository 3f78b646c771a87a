#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsFiles.h"
#include "tests/ScratchFolder.h"
#include "tests/native/archive/ArchiveComputer.h"

namespace mip {
namespace {

class WindowsArchiveComputer : public ArchiveComputer {
  public:
    explicit WindowsArchiveComputer(unsigned codePage) : system_(codePage) {}

    mip::Files& Files() override { return files_; }
    mip::Folders& Folders() override { return folders_; }
    ArchiveSystem& System() override { return system_; }
    std::wstring At(const std::wstring& name) override { return folder_.Below(name); }

  private:
    ScratchFolder folder_{L"archives"};
    WindowsFiles files_;
    WindowsFolders folders_;
    WindowsArchiveSystem system_;
};

}  // namespace

std::unique_ptr<ArchiveComputer> MakeArchiveComputer(unsigned codePage) {
    return std::make_unique<WindowsArchiveComputer>(codePage);
}

}  // namespace mip
