#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include <windows.h>

namespace mip {

/// What a user has in hand. Messages reach a control wherever it is; the others do as the device does: keys go to where
/// the keyboard is, and a click to what lies under the pointer.
enum class Input { Messages, Keyboard, Mouse };

/// Uses the program as a user does, by its windows, from another process. A wait that is in vain throws
/// std::runtime_error, which says what was waited for.
class WindowDriver {
  public:
    static constexpr std::chrono::seconds Patience{60};
    /// For a whole installation.
    static constexpr std::chrono::seconds LongPatience{180};

    /// Starts the program.
    explicit WindowDriver(const std::wstring& commandLine, Input input = Input::Messages);
    WindowDriver(const WindowDriver&) = delete;
    WindowDriver& operator=(const WindowDriver&) = delete;
    /// Ends the program if it still runs.
    ~WindowDriver();

    /// The program's visible screen that has this control, or null.
    HWND FindScreen(int control) const;
    /// Waits for it; a screen that is modal counts as soon as it can be used.
    HWND WaitForScreen(int control) const;
    /// The visible dialog over a screen, for example a message box or the folder browser, or null.
    HWND FindDialogOver(HWND screen) const;
    HWND WaitForDialogOver(HWND screen) const;
    /// The first visible dialog that the program shows, whatever it lies over: a message box before any screen.
    HWND WaitForBox() const;
    void WaitUntilGone(HWND screen) const;
    /// The code with which the program ended. `look` is called again and again until then.
    DWORD WaitForEnd() const;
    DWORD WaitForEnd(const std::function<void()>& look) const;
    std::optional<DWORD> ExitCode() const;

    /// Waits until the button can be pressed and presses it.
    void Press(HWND screen, int button) const;
    /// Answers a message box with one of its buttons (IDOK, IDYES, IDNO).
    void Answer(HWND box, int button) const;
    void CloseByTitleBar(HWND screen) const;
    /// A key press with its character, to the control.
    void TypeKey(HWND control, WPARAM key) const;

    void WaitUntil(const std::string& what, const std::function<bool()>& condition,
                   std::chrono::seconds patience = Patience) const;

  private:
    void PressByKeyboard(HWND screen, HWND control) const;

    Input input_;
    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
};

/// A control's text, read from any process.
std::wstring TextOf(HWND control);
std::wstring TextOf(HWND screen, int control);
/// What a list view shows, read from any process: header and rows, a line for each and a tab between columns.
std::wstring ListText(HWND list);
/// The message of a message box.
std::wstring MessageOf(HWND box);

}  // namespace mip
