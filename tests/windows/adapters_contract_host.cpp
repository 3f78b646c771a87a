#include <windows.h>

#include "platform/windows/FileTimes.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsProfileFiles.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsVolumes.h"
#include "tests/contract/ContractHost.h"
#include "tests/windows/ScratchFolder.h"

namespace mip {
namespace {

class WindowsContractHost : public ContractHost {
  public:
    WindowsContractHost() {
        files_.CopyToNew(L"Z:" MIP_DISC_FOLDER L"\\SysDir\\RmDir.bat", RmDirBat());
        RemoveScratchKey();
    }
    ~WindowsContractHost() override { RemoveScratchKey(); }

    mip::Files& Files() override { return files_; }
    mip::Folders& Folders() override { return folders_; }
    mip::Volumes& Volumes() override { return volumes_; }
    mip::ProfileFiles& ProfileFiles() override { return profileFiles_; }
    mip::Registry& Registry() override { return registry_; }
    mip::Processes& Processes() override { return processes_; }
    mip::Clock& Clock() override { return clock_; }

    std::wstring Scratch() override { return scratch_.Path(); }
    std::wstring ScratchKey() override { return L"Software\\Contract k"; }
    std::wstring RmDirBat() override { return disc_.Path() + L"\\RmDir.bat"; }
    std::wstring CommandThatExitsWith(std::uint32_t code) override {
        return L"C:\\windows\\system32\\cmd.exe /c exit " + std::to_wstring(code);
    }
    bool ProtectsReadOnlyFiles() override {
        return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr;
    }
    std::shared_ptr<void> OpenElsewhere(const std::wstring& path) override {
        return std::make_shared<FileHandle>(
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }
    bool MakeLink(const std::wstring& path, const std::wstring& target) override {
        return CreateSymbolicLinkW(path.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
    }
    void SetModified(const std::wstring& path, FileTime time) override {
        const FileHandle file(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        const FILETIME modified = ToSystemTime(time);
        ASSERT_TRUE(SetFileTime(file.Get(), nullptr, nullptr, &modified));
    }
    void PutRegistryNumber(const std::wstring& key, const std::wstring& name) override {
        const DWORD number = 1;
        ASSERT_EQ(ERROR_SUCCESS,
                  RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name.c_str(), REG_DWORD, &number, sizeof number));
    }

  private:
    void RemoveScratchKey() { RegDeleteTreeW(HKEY_CURRENT_USER, ScratchKey().c_str()); }

    WindowsFiles files_;
    WindowsFolders folders_;
    WindowsVolumes volumes_;
    WindowsProfileFiles profileFiles_;
    WindowsRegistry registry_;
    WindowsProcesses processes_;
    WindowsClock clock_;
    ScratchFolder scratch_{L"contract"};
    ScratchFolder disc_{L"my disc"};
};

}  // namespace

std::unique_ptr<ContractHost> MakeContractHost() {
    return std::make_unique<WindowsContractHost>();
}

}  // namespace mip
