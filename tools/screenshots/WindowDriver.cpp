#include "tools/screenshots/WindowDriver.h"

#include <stdexcept>
#include <vector>

#include <commctrl.h>

namespace mip {

namespace {

constexpr wchar_t DialogClass[] = L"#32770";
/// A hand is slower than the first moments of a screen, in which the system still passes the keyboard to it.
constexpr DWORD HandDelay = 400;  // milliseconds
/// The identifier of a message box's text.
constexpr int MessageTextId = 0xFFFF;

bool IsDialog(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, 64);
    return std::wstring(name) == DialogClass;
}

struct DialogSearch {
    DWORD ProcessId;
    std::vector<HWND> Found;
};

BOOL CALLBACK CollectVisibleDialog(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<DialogSearch*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == search.ProcessId && IsWindowVisible(window) != 0 && IsDialog(window)) {
        search.Found.push_back(window);
    }
    return TRUE;
}

/// The top-level dialogs of a process that can be seen, front to back.
std::vector<HWND> VisibleDialogs(DWORD processId) {
    DialogSearch search{processId, {}};
    EnumWindows(CollectVisibleDialog, reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

void SendKey(WORD key, WORD held = 0) {
    const auto send = [](WORD code, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    };
    if (held != 0) {
        send(held, 0);
    }
    send(key, 0);
    send(key, KEYEVENTF_KEYUP);
    if (held != 0) {
        send(held, KEYEVENTF_KEYUP);
    }
}

void Click(POINT place) {
    SetCursorPos(place.x, place.y);
    for (const DWORD flags : {DWORD{MOUSEEVENTF_LEFTDOWN}, DWORD{MOUSEEVENTF_LEFTUP}}) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    }
}

RECT AreaOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

/// The control of a screen that the keyboard is with; null while another one has it.
HWND FocusOf(HWND screen) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(screen, nullptr), &info);
    return GetForegroundWindow() == screen ? info.hwndFocus : nullptr;
}

}  // namespace

WindowDriver::WindowDriver(const std::wstring& commandLine, Input input) : input_(input) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    std::wstring buffer = commandLine;
    if (CreateProcessW(nullptr, buffer.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started) == 0) {
        throw std::runtime_error("the program cannot be started, error " + std::to_string(GetLastError()));
    }
    CloseHandle(started.hThread);
    process_ = started.hProcess;
    processId_ = started.dwProcessId;
}

WindowDriver::~WindowDriver() {
    if (!ExitCode()) {
        TerminateProcess(process_, 99);
    }
    CloseHandle(process_);
}

HWND WindowDriver::FindScreen(int control) const {
    for (const HWND dialog : VisibleDialogs(processId_)) {
        if (GetDlgItem(dialog, control) != nullptr) {
            return dialog;
        }
    }
    return nullptr;
}

HWND WindowDriver::WaitForScreen(int control) const {
    HWND screen = nullptr;
    WaitUntil("screen with control " + std::to_string(control), [&] {
        screen = FindScreen(control);
        return screen != nullptr && IsWindowEnabled(screen) != 0;
    });
    return screen;
}

HWND WindowDriver::FindDialogOver(HWND screen) const {
    for (const HWND dialog : VisibleDialogs(processId_)) {
        if (GetWindow(dialog, GW_OWNER) == screen) {
            return dialog;
        }
    }
    return nullptr;
}

HWND WindowDriver::WaitForDialogOver(HWND screen) const {
    HWND dialog = nullptr;
    WaitUntil("a dialog over the screen", [&] {
        dialog = FindDialogOver(screen);
        return dialog != nullptr;
    });
    return dialog;
}

HWND WindowDriver::WaitForBox() const {
    HWND box = nullptr;
    WaitUntil("a message box", [&] {
        const auto dialogs = VisibleDialogs(processId_);
        box = dialogs.empty() ? nullptr : dialogs.front();
        return box != nullptr && GetDlgItem(box, MessageTextId) != nullptr;
    });
    return box;
}

void WindowDriver::WaitUntilGone(HWND screen) const {
    WaitUntil("a screen to close", [&] { return IsWindow(screen) == 0 || IsWindowVisible(screen) == 0; });
}

DWORD WindowDriver::WaitForEnd() const {
    return WaitForEnd([] {});
}

DWORD WindowDriver::WaitForEnd(const std::function<void()>& look) const {
    const auto hasEnded = [&] {
        look();
        return ExitCode().has_value();
    };
    WaitUntil("the program's end", hasEnded, LongPatience);
    return *ExitCode();
}

std::optional<DWORD> WindowDriver::ExitCode() const {
    DWORD code = 0;
    if (WaitForSingleObject(process_, 0) != WAIT_OBJECT_0 || GetExitCodeProcess(process_, &code) == 0) {
        return {};
    }
    return code;
}

void WindowDriver::Press(HWND screen, int button) const {
    WaitUntil("button " + std::to_string(button), [&] {
        const HWND control = GetDlgItem(screen, button);
        return control != nullptr && IsWindowVisible(control) != 0 && IsWindowEnabled(control) != 0;
    });
    const HWND control = GetDlgItem(screen, button);
    if (input_ != Input::Messages) {
        Sleep(HandDelay);
    }
    if (input_ == Input::Keyboard) {
        return PressByKeyboard(screen, control);
    }
    if (input_ == Input::Mouse) {
        const RECT area = AreaOf(control);
        const POINT middle{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
        WaitUntil("a control to lie open", [&] { return WindowFromPoint(middle) == control; });
        return Click(middle);
    }
    PostMessageW(control, BM_CLICK, 0, 0);
}

/// Walks to the control with Tab, again where a key came too early for a screen.
void WindowDriver::PressByKeyboard(HWND screen, HWND control) const {
    constexpr std::chrono::milliseconds KeyLost{500};
    HWND last = nullptr;
    auto sent = std::chrono::steady_clock::now();
    WaitUntil("the keyboard to come to control " + std::to_string(GetDlgCtrlID(control)), [&] {
        const HWND focus = FocusOf(screen);
        const auto now = std::chrono::steady_clock::now();
        if (focus != nullptr && focus != control && (focus != last || now - sent > KeyLost)) {
            last = focus;
            sent = now;
            SendKey(VK_TAB);
        }
        return focus == control;
    });
    SendKey(VK_SPACE);
}

void WindowDriver::Answer(HWND box, int button) const {
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    WaitUntilGone(box);
}

void WindowDriver::CloseByTitleBar(HWND screen) const {
    if (input_ == Input::Keyboard) {
        return SendKey(VK_F4, VK_MENU);
    }
    if (input_ == Input::Mouse) {
        const RECT area = AreaOf(screen);
        const int button = GetSystemMetrics(SM_CYSIZE);
        return Click({area.right - GetSystemMetrics(SM_CXFIXEDFRAME) - button / 2,
                      area.top + GetSystemMetrics(SM_CYFIXEDFRAME) + button / 2});
    }
    PostMessageW(screen, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void WindowDriver::TypeKey(HWND control, WPARAM key) const {
    PostMessageW(control, WM_KEYDOWN, key, 1);
    PostMessageW(control, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void WindowDriver::WaitUntil(const std::string& what, const std::function<bool()>& condition,
                             std::chrono::seconds patience) const {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("waited in vain for " + what);
        }
        Sleep(20);
    }
}

std::wstring TextOf(HWND control) {
    const auto length = static_cast<std::size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length, L'\0');
    SendMessageW(control, WM_GETTEXT, length + 1, reinterpret_cast<LPARAM>(text.data()));
    return text;
}

std::wstring TextOf(HWND screen, int control) {
    return TextOf(GetDlgItem(screen, control));
}

std::wstring ListText(HWND list) {
    // The list fills what lies in its own process.
    struct Answer {
        LVITEMW Cell{};
        LVCOLUMNW Title{};
        wchar_t Text[260]{};
    };
    DWORD owner = 0;
    GetWindowThreadProcessId(list, &owner);
    const HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, owner);
    auto* there = static_cast<Answer*>(VirtualAllocEx(process, nullptr, sizeof(Answer), MEM_COMMIT, PAGE_READWRITE));
    const auto textOf = [&](int row, int col) {
        Answer answer;
        answer.Title.mask = LVCF_TEXT;
        answer.Cell.iSubItem = col;
        answer.Cell.pszText = answer.Title.pszText = there->Text;
        answer.Cell.cchTextMax = answer.Title.cchTextMax = 260;
        WriteProcessMemory(process, there, &answer, sizeof answer, nullptr);
        if (row < 0) {
            SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(col), reinterpret_cast<LPARAM>(&there->Title));
        } else {
            SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&there->Cell));
        }
        ReadProcessMemory(process, there, &answer, sizeof answer, nullptr);
        return std::wstring(answer.Text);
    };
    std::wstring text;
    const int columns = Header_GetItemCount(ListView_GetHeader(list));
    for (int row = -1; row < ListView_GetItemCount(list); ++row) {
        for (int col = 0; col < columns; ++col) {
            text += textOf(row, col) + (col + 1 < columns ? L"\t" : L"\r\n");
        }
    }
    VirtualFreeEx(process, there, 0, MEM_RELEASE);
    CloseHandle(process);
    return text;
}

std::wstring MessageOf(HWND box) {
    return TextOf(box, MessageTextId);
}

}  // namespace mip
