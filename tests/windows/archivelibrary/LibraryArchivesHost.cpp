#include <windows.h>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsArchives.h"
#include "platform/windows/WindowsComputer.h"
#include "tests/native/archive/ZipArchivesHost.h"

namespace mip {
namespace {

/// A program beside which the archive library stands.
class LibraryArchivesHost : public ZipArchivesHost {
  public:
    LibraryArchivesHost() {
        wchar_t self[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        std::filesystem::copy_file(std::filesystem::path(self).parent_path() / "recording-library.dll",
                                   program_.Path() / "7-zip32.dll");
    }

    mip::Archives& Archives() override { return archives_; }

  private:
    class ProgramComputer : public WindowsComputer {
      public:
        explicit ProgramComputer(std::wstring folder)
            : WindowsComputer(L"archives contract"), folder_(std::move(folder)) {}
        std::wstring ProgramFolder() override { return folder_; }

      private:
        std::wstring folder_;
    };

    ScratchFolder program_;
    ProgramComputer computer_{program_.Path().wstring()};
    WindowsArchiveSystem system_;
    CountingClock clock_;
    EmbeddedArchives embedded_{system_, clock_};
    WindowsArchives archives_{computer_, embedded_};
};

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<LibraryArchivesHost>();
}

}  // namespace mip
