// Goes through every screen of the program as a user would and asks for a picture of each:
//     tour.exe PROGRAM PICTURE_FOLDER [ARGUMENTS OF THE PROGRAM]
// screenshots.py takes them. The exit code is 0 when the program came to its proper end.

#include <cstdio>
#include <stdexcept>
#include <string>

#include "forms/ControlIds.h"
#include "tools/screenshots/Photographer.h"
#include "tools/screenshots/WindowDriver.h"

#include <commctrl.h>
#include <shellapi.h>

namespace mip {

namespace {

class Tour {
  public:
    Tour(const std::wstring& program, const std::wstring& folder) : driver_(program), photographer_(folder) {}

    /// Returns the program's exit code.
    DWORD Go() {
        const HWND menu = driver_.WaitForScreen(ids::cmdStartInstall);
        TakePicture(menu, L"1-menu");
        driver_.Press(menu, ids::cmdStartInstall);
        Agree();
        WatchInstallation();
        return Leave();
    }

  private:
    void Agree() {
        const HWND agreement = driver_.WaitForScreen(ids::T_CONTRACT);
        driver_.Press(agreement, ids::O_Value + 1);
        driver_.WaitUntil("the choice to be made",
                          [&] { return IsWindowEnabled(GetDlgItem(agreement, ids::B_OK)) != 0; });
        TakePicture(agreement, L"2-agreement");
        driver_.Press(agreement, ids::B_OK);
    }

    /// Answers the questions for a folder until the result is shown.
    void WatchInstallation() {
        const HWND progress = driver_.WaitForScreen(ids::L_STEP + 2);
        Sleep(500);
        TakePicture(progress, L"3-progress-programs");
        const auto hasResult = [&] {
            if (const HWND directory = driver_.FindScreen(ids::L_InstalPath)) {
                AnswerFolder(directory);
            } else if (!sawWork_ && ShowsWork(progress)) {
                TakePicture(progress, L"5-progress-manuals");
                // The work may have gone on before the picture was there, and a question may lie over it.
                sawWork_ = ShowsWork(progress) && driver_.FindScreen(ids::L_InstalPath) == nullptr;
            }
            if (driver_.ExitCode()) {
                throw std::runtime_error("the program ended during the installation");
            }
            return driver_.FindScreen(ids::vaSpread) != nullptr;
        };
        driver_.WaitUntil("the result screen", hasResult, WindowDriver::LongPatience);
    }

    void AnswerFolder(HWND directory) {
        if (!sawDirectory_) {
            sawDirectory_ = true;
            TakePicture(directory, L"4-directory");
            driver_.Press(directory, ids::B_CHANGE);
            const HWND browser = driver_.WaitForDialogOver(directory);
            TakePicture(browser, L"4-directory-browse");
            PostMessageW(browser, WM_COMMAND, IDCANCEL, 0);
            driver_.WaitUntilGone(browser);
        }
        driver_.Press(directory, ids::B_OK);
        driver_.WaitUntilGone(directory);
    }

    static bool ShowsWork(HWND progress) {
        for (int bar = 0; bar < 3; ++bar) {
            const HWND control = GetDlgItem(progress, ids::pgBar + bar);
            if (IsWindowVisible(control) != 0 && SendMessageW(control, PBM_GETPOS, 0, 0) > 300) {
                return true;
            }
        }
        return false;
    }

    DWORD Leave() {
        const HWND result = driver_.WaitForScreen(ids::vaSpread);
        TakePicture(result, L"6-result");
        driver_.Press(result, ids::B_OK);
        driver_.WaitUntil("the menu or the end",
                          [this] { return driver_.ExitCode() || driver_.FindScreen(ids::cmdStartInstall) != nullptr; });
        if (!driver_.ExitCode()) {
            const HWND menu = driver_.WaitForScreen(ids::cmdStartInstall);
            TakePicture(menu, L"7-menu-again");
            driver_.CloseByTitleBar(menu);
            const HWND terms = driver_.WaitForScreen(ids::L_TarmMsg);
            TakePicture(terms, L"8-closing");
            driver_.Press(terms, ids::B_OK);
        }
        return driver_.WaitForEnd();
    }

    static bool IsPainted(HWND window) {
        bool painted = GetUpdateRect(window, nullptr, FALSE) == 0;
        for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            painted = painted && (IsWindowVisible(child) == 0 || GetUpdateRect(child, nullptr, FALSE) == 0);
        }
        return painted;
    }

    void TakePicture(HWND window, const std::wstring& name) const {
        SetCursorPos(2, 2);  // out of the way
        driver_.WaitUntil("everything to be painted", [&] { return IsPainted(window); });
        Sleep(300);
        photographer_.Take(window, name);
    }

    WindowDriver driver_;
    Photographer photographer_;
    bool sawDirectory_ = false;
    bool sawWork_ = false;
};

int Run(int count, wchar_t** arguments) {
    if (count < 3) {
        std::puts("say PROGRAM PICTURE_FOLDER [ARGUMENTS]");
        return 2;
    }
    std::wstring program = L"\"" + std::wstring(arguments[1]) + L"\"";
    for (int i = 3; i < count; ++i) {
        program += L" \"" + std::wstring(arguments[i]) + L"\"";
    }
    try {
        const DWORD code = Tour(program, arguments[2]).Go();
        std::printf("the program ended with %lu\n", code);
        return code == 0 ? 0 : 1;
    } catch (const std::runtime_error& failure) {
        std::printf("tour: %s\n", failure.what());
        return 1;
    }
}

}  // namespace

}  // namespace mip

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const int status = mip::Run(count, arguments);
    LocalFree(arguments);
    return status;
}
