#include "platform/windows/FileTimes.h"
#include "platform/windows/Handle.h"
#include "startup/windows/WindowsPlatform.h"
#include "tests/ScratchFolder.h"
#include "tests/contract/ContractHost.h"
#include "text/TextTools.h"

namespace mip {
namespace {

class WindowsContractHost : public ContractHost {
  public:
    WindowsContractHost() {
        Computer().Files.CopyToNew(L"Z:" MIP_DISC_FOLDER L"\\SysDir\\RmDir.bat", RmDirBat());
        RegDeleteTreeW(HKEY_CURRENT_USER, ContractKey);
    }
    ~WindowsContractHost() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, ContractKey);
        for (const std::wstring& link : links_) {
            RunBelowWine(L"rm -f " + link);
        }
    }

    const Platform& Computer() override { return computer_.Platform(); }
    std::wstring Scratch() override { return scratch_.Path().wstring(); }
    std::wstring RmDirBat() override { return disc_.Below(L"RmDir.bat"); }
    std::shared_ptr<void> OpenElsewhere(const std::wstring& path) override {
        return std::make_shared<FileHandle>(
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }
    void MakeLink(const std::wstring& path, const std::wstring& target) override {
        CreateSymbolicLinkW(path.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
        if (WineCall("ntdll.dll", "wine_get_version") != nullptr) {
            // It only says that it made one, and cannot remove one, but shows those of its host.
            const std::size_t last = path.rfind(L'\\');
            links_.push_back(L"'" + UnixPath(path.substr(0, last)) + L"/" + path.substr(last + 1) + L"'");
            RunBelowWine(L"ln -s '" + UnixPath(target) + L"' " + links_.back());
        }
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
    static std::wstring UnixPath(const std::wstring& path) {
        using PathOf = char*(CDECL*)(const wchar_t*);
        const auto address = reinterpret_cast<void*>(WineCall("kernel32.dll", "wine_get_unix_file_name"));
        return FromUtf8(reinterpret_cast<PathOf>(address)(path.c_str()));
    }
    /// Runs a command of the host and waits for it.
    void RunBelowWine(const std::wstring& command) {
        const std::wstring done = disc_.Below(L"done");
        Computer().Processes.StartVisible(L"Z:\\bin\\sh -c \"" + command + L"; echo >'" +
                                          UnixPath(disc_.Path().wstring()) + L"/done'\"");
        for (int polls = 0; !Computer().Files.Exists(done) && polls < 500; ++polls) {
            Sleep(10);
        }
        Computer().Files.Remove(done);
    }

    WindowsPlatform computer_{L"Contract"};
    ScratchFolder scratch_{L"contract"};
    ScratchFolder disc_{L"my disc"};
    std::vector<std::wstring> links_;  ///< to be removed by the host
};

}  // namespace

std::unique_ptr<ContractHost> MakeContractHost() {
    return std::make_unique<WindowsContractHost>();
}

}  // namespace mip
