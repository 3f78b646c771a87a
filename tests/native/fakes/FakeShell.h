#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Shell.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"
#include "text/TextTools.h"

namespace mip {

struct OpenedDocument {
    std::wstring Verb;
    std::wstring Document;
    int ShowCommand = 0;
    bool operator==(const OpenedDocument&) const = default;
};

struct SavedShortcut {
    std::vector<ShortcutProperty> Properties;
    std::optional<std::int16_t> WindowStyle;
    /// The text of a property, "" when it was not set.
    std::wstring Text(const std::wstring& property) const {
        const auto found = std::ranges::find(Properties, property, &ShortcutProperty::Name);
        return found == Properties.end() ? L"" : found->Value;
    }
};

/// Documents are recorded; shortcuts are recorded and written as files of the tree.
class FakeShell : public Shell, private OnTree {
  public:
    using OnTree::OnTree;

    std::intptr_t OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) override {
        if (faults_.Fails("Shell.OpenDocument")) {
            return errors::AccessDenied;
        }
        Opened.push_back({verb, document, showCommand});
        return OpenResult;
    }
    std::wstring SpecialFolder(int number) override {
        return faults_.Fails("Shell.SpecialFolder") ? L"" : SpecialFolders[number];
    }
    void SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                      std::optional<std::int16_t> windowStyle) override {
        constexpr std::uint32_t PathNotFoundResult = 0x80070003;
        faults_.Check("Shell.SaveShortcut", file, PathNotFoundResult);
        if (!tree_.HasFolder(file.substr(0, file.rfind(L'\\')))) {
            throw PlatformError("SaveShortcut", file, PathNotFoundResult);
        }
        std::string bytes;
        for (const ShortcutProperty& property : properties) {
            bytes += ToUtf8(property.Name + L"=" + property.Value + L"\n");
        }
        tree_.PutFile(file, bytes);
        Shortcuts[file] = {properties, windowStyle};
    }

    std::vector<OpenedDocument> Opened;
    std::intptr_t OpenResult = showCommands::LowestSuccess;
    std::map<int, std::wstring> SpecialFolders;
    /// By the path as it was given.
    std::map<std::wstring, SavedShortcut> Shortcuts;
};

/// A browser as the test scripts and sees it.
struct ScriptedBrowser {
    std::wstring DocumentType = L"HTMLDocument";
    std::wstring Address;
    int BusyPolls = 0;   ///< how many times IsBusy answers true after each navigation
    int ReadyPolls = 0;  ///< how many times ReadyState answers 1 before it answers 4
    bool Gone = false;   ///< every operation fails
    std::vector<std::wstring> Navigated;
    bool Shown = false;
    bool Quit = false;
    bool RefusesPages = false;  ///< every navigation fails
};

class FakeBrowsers : public Browsers, private Counted {
  public:
    using Counted::Counted;

    std::vector<OpenWindow> OpenWindows() override {
        Check("Browsers.OpenWindows", HasWindowCollection);
        std::vector<OpenWindow> windows;
        for (const std::shared_ptr<ScriptedBrowser>& browser : Open) {
            windows.push_back({browser->DocumentType, browser->Address, std::make_unique<Window>(browser, faults_)});
        }
        return windows;
    }
    std::unique_ptr<BrowserWindow> StartBrowser() override {
        Check("Browsers.StartBrowser", CanStart);
        Started.push_back(std::make_shared<ScriptedBrowser>(NewBrowser));
        return std::make_unique<Window>(Started.back(), faults_);
    }

    std::vector<std::shared_ptr<ScriptedBrowser>> Open;
    std::vector<std::shared_ptr<ScriptedBrowser>> Started;
    bool HasWindowCollection = true;
    bool CanStart = true;
    /// What a started browser is like.
    ScriptedBrowser NewBrowser;

  private:
    class Window : public BrowserWindow {
      public:
        Window(std::shared_ptr<ScriptedBrowser> browser, Faults& faults)
            : browser_(std::move(browser)), faults_(faults) {}

        void Navigate(const std::wstring& address) override {
            Check("BrowserWindow.Navigate");
            if (browser_->RefusesPages) {
                throw PlatformError("BrowserWindow.Navigate", address, 0x80004005);
            }
            browser_->Navigated.push_back(address);
            browser_->Address = address;
            busyPolls_ = browser_->BusyPolls;
            readyPolls_ = browser_->ReadyPolls;
        }
        bool IsBusy() override {
            Check("BrowserWindow.IsBusy");
            return busyPolls_-- > 0;
        }
        int ReadyState() override {
            Check("BrowserWindow.ReadyState");
            return readyPolls_-- > 0 ? 1 : 4;
        }
        void Show() override {
            Check("BrowserWindow.Show");
            browser_->Shown = true;
        }
        void Quit() override {
            Check("BrowserWindow.Quit");
            browser_->Quit = true;
        }

      private:
        void Check(const char* operation) {
            constexpr std::uint32_t Disconnected = 0x80010108;
            faults_.Check(operation, browser_->Address, Disconnected);
            if (browser_->Gone) {
                throw PlatformError(operation, browser_->Address, Disconnected);
            }
        }

        std::shared_ptr<ScriptedBrowser> browser_;
        Faults& faults_;
        int busyPolls_ = 0;
        int readyPolls_ = 0;
    };

    void Check(const char* operation, bool works) {
        constexpr std::uint32_t ClassNotRegistered = 0x80040154;
        faults_.Check(operation, L"", ClassNotRegistered);
        if (!works) {
            throw PlatformError(operation, L"", ClassNotRegistered);
        }
    }
};

}  // namespace mip
