#include "tests/contract/ContractHost.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

class FakeContractHost : public ContractHost {
  public:
    FakeContractHost() {
        windows_.Tree.PutFolder(Scratch());
        windows_.Tree.PutFile(RmDirBat());
        windows_.Tree.PutFile(L"C:\\Windows\\System32\\cmd.exe");
        windows_.Processes.On(L"cmd.exe", [](const std::wstring& commandLine) {
            const std::wstring code = commandLine.substr(commandLine.rfind(L' ') + 1);
            return ScriptedEnd{static_cast<std::uint32_t>(std::stoul(code)), 3};
        });
    }

    const Platform& Computer() override { return windows_.Platform; }
    std::wstring Scratch() override { return L"C:\\Temp\\contract"; }
    std::wstring RmDirBat() override { return L"C:\\Temp\\my disc\\SysDir\\RmDir.bat"; }
    std::shared_ptr<void> OpenElsewhere(const std::wstring& path) override {
        const std::shared_ptr<FileNode> file = windows_.Tree.Find(path);
        ++file->OpenHandles;
        return {nullptr, [file](void*) { --file->OpenHandles; }};
    }
    void MakeLink(const std::wstring& path, const std::wstring& target) override {
        windows_.Tree.PutLink(path, target);
    }
    void SetModified(const std::wstring& path, FileTime time) override { windows_.Tree.Find(path)->Modified = time; }
    /// Counts as not there: the registry in memory keeps strings only.
    void PutRegistryNumber(const std::wstring&, const std::wstring&) override {}

  private:
    InMemoryWindows windows_;
};

}  // namespace

std::unique_ptr<ContractHost> MakeContractHost() {
    return std::make_unique<FakeContractHost>();
}

}  // namespace mip
