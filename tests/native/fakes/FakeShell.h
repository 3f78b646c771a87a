#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Shell.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

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
    std::wstring Text(const std::wstring& property) const;
};

/// Documents are recorded; shortcuts are recorded and written as files of the tree.
class FakeShell : public Shell {
  public:
    FakeShell(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    std::intptr_t OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) override;
    std::wstring SpecialFolder(int number) override;
    void SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                      std::optional<std::int16_t> windowStyle) override;

    std::vector<OpenedDocument> Opened;
    std::intptr_t OpenResult = 42;
    std::map<int, std::wstring> SpecialFolders;
    /// By the path as it was given.
    std::map<std::wstring, SavedShortcut> Shortcuts;

  private:
    FileTree& tree_;
    Faults& faults_;
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
};

class FakeBrowsers : public Browsers {
  public:
    explicit FakeBrowsers(Faults& faults) : faults_(faults) {}

    std::vector<OpenWindow> OpenWindows() override;
    std::unique_ptr<BrowserWindow> StartBrowser() override;

    std::vector<std::shared_ptr<ScriptedBrowser>> Open;
    std::vector<std::shared_ptr<ScriptedBrowser>> Started;
    bool HasWindowCollection = true;
    bool CanStart = true;
    /// What a started browser is like.
    ScriptedBrowser NewBrowser;

  private:
    Faults& faults_;
};

}  // namespace mip
