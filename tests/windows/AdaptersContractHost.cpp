#include <algorithm>

#include "platform/windows/FileTimes.h"
#include "platform/windows/Handle.h"
#include "startup/windows/WindowsPlatform.h"
#include "tests/ScratchFolder.h"
#include "tests/contract/ContractHost.h"
#include "tools/screenshots/WorkshopUser.h"
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
        for (const std::string& link : links_) {
            RunOutside("rm " + link);
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
        if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
            CreateSymbolicLinkW(path.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
            return;
        }
        // Wine only says that it made one, and cannot remove one, but shows those of its host.
        links_.push_back(OutsidePath(path));
        RunOutside("ln -s " + OutsidePath(target) + " " + links_.back());
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
    static std::string OutsidePath(const std::wstring& path) {
        std::string name = "\"$PWD/" + ToUtf8(path.substr(3)) + "\"";
        std::ranges::replace(name, '\\', '/');
        return name;
    }

    WindowsPlatform computer_{L"Contract"};
    ScratchFolder scratch_{L"contract"};
    ScratchFolder disc_{L"my disc"};
    std::vector<std::string> links_;  ///< to be removed by the host
};

}  // namespace

std::unique_ptr<ContractHost> MakeContractHost() {
    return std::make_unique<WindowsContractHost>();
}

}  // namespace mip
