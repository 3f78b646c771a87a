#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mip {

/// A shortcut file's property and its text, in the order in which they are set.
struct ShortcutProperty {
    std::wstring Name;
    std::wstring Value;
};

/// How a document's window is shown.
namespace showCommands {
inline constexpr int Normal = 1;
inline constexpr int Maximised = 3;
/// Of the values that the shell returns.
inline constexpr std::intptr_t LowestSuccess = 32;
}  // namespace showCommands

class Shell {
  public:
    virtual ~Shell() = default;

    /// Performs a verb on a document in a window shown as `showCommand`, owned by the active screen.
    /// Returns the shell's value: below 32 is a failure.
    virtual std::intptr_t OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) = 0;
    /// Path of a special folder by its number; "" when there is none.
    virtual std::wstring SpecialFolder(int number) = 0;
    /// Writes a shortcut file through the scripting shell: the text properties in order, then the window style when
    /// it is not nothing, then Save. Throws PlatformError with an HRESULT.
    virtual void SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                              std::optional<std::int16_t> windowStyle) = 0;
};

/// A browser window driven by automation. Operations throw PlatformError with an HRESULT; a browser that is gone
/// throws from every one of them.
class BrowserWindow {
  public:
    virtual ~BrowserWindow() = default;
    virtual void Navigate(const std::wstring& address) = 0;
    virtual bool IsBusy() = 0;
    virtual int ReadyState() = 0;
    virtual void Show() = 0;
    /// Ends the browser.
    virtual void Quit() = 0;
};

/// An open window of the shell's window collection.
struct OpenWindow {
    std::wstring DocumentType;  ///< type name of its document ("HTMLDocument"), "" when it cannot be asked
    std::wstring Address;       ///< the document's URL, "" when it cannot be asked
    std::unique_ptr<BrowserWindow> Window;
};

class Browsers {
  public:
    virtual ~Browsers() = default;

    /// The windows that the shell knows; one that cannot be queried is left out. Throws PlatformError when the shell
    /// has no such collection.
    virtual std::vector<OpenWindow> OpenWindows() = 0;
    /// Starts a new browser, not yet visible. Throws PlatformError when no browser automation object can be had.
    virtual std::unique_ptr<BrowserWindow> StartBrowser() = 0;
};

}  // namespace mip
