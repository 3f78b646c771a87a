// Extracts arbitrary bytes as an archive, on a computer that is not there. Whatever they are: no crash, no path outside
// the output folder, no file besides those that the directory declares, and a tested archive extracts into a folder
// that is empty at first.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/PlatformError.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/fakes/FakeArchiveSystem.h"
#include "tests/native/fakes/FakeComputer.h"

namespace mip {
namespace {

constexpr std::uint64_t Room = 1 << 20;
constexpr std::wstring_view Folder = L"C:\\out";
constexpr wchar_t Command[] = L"x -aoa -hide C:\\fuzz.zip \"C:\\out\\\"";

std::optional<ArchiveFacts> FactsOf(const auto& look) {
    try {
        return look();
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/// What is written must be inside the output folder, and new.
class System : public FakeArchiveSystem {
  public:
    using FakeArchiveSystem::FakeArchiveSystem;

    void CreateFolder(const std::wstring& folder) override {
        Require(folder == Folder || IsInside(folder));
        FakeArchiveSystem::CreateFolder(folder);
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        Require(IsInside(path));
        auto file = FakeArchiveSystem::CreateNewFile(path);
        const std::lock_guard lock(mutex_);
        Require(files_.insert(ToUpper(path)).second);
        return file;
    }
    std::uint64_t Files() const { return files_.size(); }

  private:
    static bool IsInside(const std::wstring& path) {
        const std::wstring_view name = std::wstring_view(path).substr(std::min(path.size(), Folder.size() + 1));
        return path.starts_with(Folder) && path[Folder.size()] == L'\\' && !name.empty() &&
               name.find_first_of(L"/:*?\"<>|") == name.npos && name.find(L"..\\") == name.npos &&
               !name.ends_with(L'.') && !name.starts_with(L'\\');
    }

    std::mutex mutex_;  // the extractor writes on several threads
    std::set<std::wstring> files_;
};

}  // namespace
}  // namespace mip

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mip::Faults faults;
    mip::FakeClock clock(faults);
    mip::FileTree tree;
    mip::FakeDrive& drive = tree.AddDrive({L"C:"});
    tree.PutFile(L"C:\\fuzz.zip", {reinterpret_cast<const char*>(data), size});
    drive.FreeBytes = mip::Room;
    mip::System system(tree, faults);
    mip::EmbeddedArchives archives(system, clock);
    const auto inspected = mip::FactsOf([&] { return archives.Inspect(mip::Command); });
    const auto tested = mip::FactsOf([&] { return archives.Test(mip::Command); });
    const bool extracted = archives.SevenZip(mip::Command, mip::NoFaultLog::Instance()) == 0;
    mip::Require(!tested || inspected == tested);
    mip::Require(!tested || extracted || tested->BytesOnDrive > mip::Room);
    mip::Require(!extracted || (tested && system.Files() == tested->Files));
    return 0;
}
