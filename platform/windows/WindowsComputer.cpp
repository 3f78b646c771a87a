#include "platform/windows/WindowsComputer.h"

#include <array>

#include "platform/windows/LastError.h"

namespace mip {

namespace {

constexpr LCID UserDefaultLocale = 0x0400;
constexpr LCTYPE LanguageIdentifierDigits = 1;
constexpr DWORD LongestUserName = 256;

std::wstring WithoutTrailingBackslash(std::wstring folder) {
    const bool driveRoot = folder.size() == 3 && folder[1] == L':';
    if (folder.ends_with(L'\\') && !driveRoot) {
        folder.pop_back();
    }
    return folder;
}

BOOL CALLBACK FindScreen(HWND window, LPARAM found) {
    const bool isScreen = GetPropW(window, ScreenMark) != nullptr && GetWindow(window, GW_OWNER) == nullptr;
    if (!isScreen || IsWindowVisible(window) == 0) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

WindowsComputer::WindowsComputer(const std::wstring& instanceName) {
    SetLastError(ERROR_SUCCESS);
    instanceMark_.Reset(CreateMutexW(nullptr, FALSE, (L"Local\\" + instanceName).c_str()));
    // A mark that is there but may not be opened belongs to an instance with other rights.
    const DWORD code = GetLastError();
    previousInstance_ = code == ERROR_ALREADY_EXISTS || code == ERROR_ACCESS_DENIED;
}

std::wstring WindowsComputer::ProgramFolder() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size()) {
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    return WithoutTrailingBackslash(path.substr(0, path.rfind(L'\\') + 1));
}

std::wstring WindowsComputer::UserName() {
    std::array<wchar_t, LongestUserName + 1> name{};
    auto size = static_cast<DWORD>(name.size());
    if (!GetUserNameW(name.data(), &size)) {
        ThrowLastError("GetUserName", L"");
    }
    return name.data();
}

std::wstring WindowsComputer::LanguageIdentifier() {
    const int size = GetLocaleInfoW(UserDefaultLocale, LanguageIdentifierDigits, nullptr, 0);
    if (size == 0) {
        ThrowLastError("GetLocaleInfo", L"");
    }
    std::wstring digits(static_cast<std::size_t>(size), L'\0');
    if (GetLocaleInfoW(UserDefaultLocale, LanguageIdentifierDigits, digits.data(), size) == 0) {
        ThrowLastError("GetLocaleInfo", L"");
    }
    return digits.substr(0, digits.find(L'\0'));
}

void WindowsComputer::ShowPreviousInstance() {
    HWND screen = nullptr;
    EnumWindows(FindScreen, reinterpret_cast<LPARAM>(&screen));
    if (screen == nullptr) {
        return;
    }
    // Restored, the screen would be the active one.
    const HWND question = GetLastActivePopup(screen);
    if (IsIconic(screen) != 0) {
        ShowWindow(screen, SW_RESTORE);
    }
    SetForegroundWindow(question);
}

void WindowsComputer::StayAwake(bool awake) noexcept {
    SetThreadExecutionState(ES_CONTINUOUS | (awake ? ES_SYSTEM_REQUIRED : 0U));
}

std::string WindowsComputer::ToSystemCodePage(const std::wstring& text) {
    // A likeness ("8" for the sign of infinity) would be another name, so best fits are off where that can be said.
    const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const auto length = static_cast<int>(text.size());
    std::string bytes(text.size() * 4, '\0');
    const int written = WideCharToMultiByte(CP_ACP, flags, text.data(), length, bytes.data(),
                                            static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(written));
    return bytes;
}

std::wstring WindowsComputer::FromSystemCodePage(const std::string& bytes) {
    std::wstring text(bytes.size(), L'\0');  // no code page gives more units than it has bytes
    const auto length = static_cast<int>(bytes.size());
    const int written = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, text.data(), length);
    text.resize(static_cast<std::size_t>(written));
    return text;
}

void WindowsComputer::EndProcess(std::uint32_t exitCode) {
    ExitProcess(exitCode);
}

}  // namespace mip
