#include "tests/native/fakes/FakeShell.h"

#include <algorithm>

#include "app/modFile.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t PathNotFoundResult = 0x80070003;
constexpr std::uint32_t ClassNotRegistered = 0x80040154;
constexpr std::uint32_t Disconnected = 0x80010108;
constexpr std::intptr_t ShellAccessDenied = 5;

class FakeBrowserWindow : public BrowserWindow {
  public:
    FakeBrowserWindow(std::shared_ptr<ScriptedBrowser> browser, Faults& faults)
        : browser_(std::move(browser)), faults_(faults) {}

    void Navigate(const std::wstring& address) override {
        Check("Navigate");
        browser_->Navigated.push_back(address);
        browser_->Address = address;
        busyPolls_ = browser_->BusyPolls;
        readyPolls_ = browser_->ReadyPolls;
    }
    bool IsBusy() override {
        Check("IsBusy");
        return busyPolls_-- > 0;
    }
    int ReadyState() override {
        Check("ReadyState");
        return readyPolls_-- > 0 ? 1 : 4;
    }
    void Show() override {
        Check("Show");
        browser_->Shown = true;
    }

  private:
    void Check(const std::string& operation) {
        faults_.Check("BrowserWindow." + operation, browser_->Address, Disconnected);
        if (browser_->Gone) {
            throw PlatformError(operation, browser_->Address, Disconnected);
        }
    }

    std::shared_ptr<ScriptedBrowser> browser_;
    Faults& faults_;
    int busyPolls_ = 0;
    int readyPolls_ = 0;
};

}  // namespace

std::wstring SavedShortcut::Text(const std::wstring& property) const {
    const auto found = std::find_if(Properties.begin(), Properties.end(),
                                    [&](const ShortcutProperty& candidate) { return candidate.Name == property; });
    return found == Properties.end() ? L"" : found->Value;
}

std::intptr_t FakeShell::OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) {
    if (faults_.Fails("Shell.OpenDocument")) {
        return ShellAccessDenied;
    }
    Opened.push_back({verb, document, showCommand});
    return OpenResult;
}

std::wstring FakeShell::SpecialFolder(int number) {
    const auto folder = SpecialFolders.find(number);
    return faults_.Fails("Shell.SpecialFolder") || folder == SpecialFolders.end() ? L"" : folder->second;
}

void FakeShell::SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                             std::optional<std::int16_t> windowStyle) {
    faults_.Check("Shell.SaveShortcut", file, PathNotFoundResult);
    if (!tree_.HasFolder(file.substr(0, file.rfind(L'\\')))) {
        throw PlatformError("SaveShortcut", file, PathNotFoundResult);
    }
    SavedShortcut shortcut{properties, windowStyle};
    std::string bytes;
    for (const ShortcutProperty& property : properties) {
        bytes += ToUtf8(property.Name + L"=" + property.Value + L"\n");
    }
    tree_.PutFile(file, bytes);
    Shortcuts[file] = std::move(shortcut);
}

std::vector<OpenWindow> FakeBrowsers::OpenWindows() {
    faults_.Check("Browsers.OpenWindows", L"", ClassNotRegistered);
    if (!HasWindowCollection) {
        throw PlatformError("OpenWindows", L"", ClassNotRegistered);
    }
    std::vector<OpenWindow> windows;
    for (const std::shared_ptr<ScriptedBrowser>& browser : Open) {
        windows.push_back(
            {browser->DocumentType, browser->Address, std::make_unique<FakeBrowserWindow>(browser, faults_)});
    }
    return windows;
}

std::unique_ptr<BrowserWindow> FakeBrowsers::StartBrowser() {
    faults_.Check("Browsers.StartBrowser", L"", ClassNotRegistered);
    if (!CanStart) {
        throw PlatformError("StartBrowser", L"", ClassNotRegistered);
    }
    Started.push_back(std::make_shared<ScriptedBrowser>(NewBrowser));
    return std::make_unique<FakeBrowserWindow>(Started.back(), faults_);
}

}  // namespace mip
