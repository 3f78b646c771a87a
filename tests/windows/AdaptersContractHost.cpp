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
#include "text/TextTools.h"

namespace mip {
namespace {

class WindowsContractHost : public ContractHost {
  public:
    WindowsContractHost() {
        files_.CopyToNew(L"Z:" MIP_DISC_FOLDER L"\\SysDir\\RmDir.bat", RmDirBat());
        RemoveScratchKey();
    }
    ~WindowsContractHost() override {
        RemoveScratchKey();
        for (const std::wstring& link : links_) {
            RunBelowWine(L"rm -f " + link);
        }
    }

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
    bool IsStrict() override { return !IsWine(); }
    std::shared_ptr<void> OpenElsewhere(const std::wstring& path) override {
        return std::make_shared<FileHandle>(
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }
    bool MakeLink(const std::wstring& path, const std::wstring& target) override {
        CreateSymbolicLinkW(path.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
        if (IsWine()) {  // which only says that it made one, and cannot remove one, but shows those of its host
            const std::size_t last = path.rfind(L'\\');
            links_.push_back(L"'" + UnixPath(path.substr(0, last)) + L"/" + path.substr(last + 1) + L"'");
            RunBelowWine(L"ln -s '" + UnixPath(target) + L"' " + links_.back());
        }
        return folders_.IsLink(path);
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
    static FARPROC WineCall(const char* library, const char* name) {
        return GetProcAddress(GetModuleHandleW(FromUtf8(library).c_str()), name);
    }
    static bool IsWine() { return WineCall("ntdll.dll", "wine_get_version") != nullptr; }
    static std::wstring UnixPath(const std::wstring& path) {
        using PathOf = char*(CDECL*)(const wchar_t*);
        const auto address = reinterpret_cast<void*>(WineCall("kernel32.dll", "wine_get_unix_file_name"));
        return FromUtf8(reinterpret_cast<PathOf>(address)(path.c_str()));
    }
    /// Runs a command of the host and waits for it.
    void RunBelowWine(const std::wstring& command) {
        const std::wstring done = host_.Path() + L"\\done";
        processes_.StartVisible(L"Z:\\bin\\sh -c \"" + command + L"; echo >'" + UnixPath(host_.Path()) + L"/done'\"");
        for (int polls = 0; !files_.Exists(done) && polls < 500; ++polls) {
            Sleep(10);
        }
        files_.Remove(done);
    }
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
    ScratchFolder host_{L"below Wine"};
    std::vector<std::wstring> links_;  ///< to be removed by the host
};

}  // namespace

std::unique_ptr<ContractHost> MakeContractHost() {
    return std::make_unique<WindowsContractHost>();
}

}  // namespace mip
