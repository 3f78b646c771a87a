#include <windows.h>

#include <array>
#include <ctime>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/PlatformError.h"
#include "platform/windows/Handle.h"
#include "platform/windows/ProcessHardening.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsVolumes.h"
#include "tests/ScratchFolder.h"

namespace mip {
namespace {

TEST(Handles, EachHandleIsClosedOnceAndKeepsTheLastError) {
    HANDLE raw = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    KernelHandle first(raw);
    KernelHandle second(std::move(first));
    first = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_TRUE(SetEvent(first.Get()));
    EXPECT_EQ(nullptr, *first.Receive());
    EXPECT_FALSE(SetEvent(raw));

    SetLastError(ERROR_DISK_FULL);
    { const FindHandle stale(reinterpret_cast<HANDLE>(0x7FFFFFF0)); }
    EXPECT_EQ(DWORD{ERROR_DISK_FULL}, GetLastError());
}

TEST(WindowsFilesTest, AFileThatCannotBeReadToItsEndIsNeitherCopiedNorReadThrough) {
    const ScratchFolder scratch;
    // The memory of a process opens as a file, but its first page cannot be read.
    EXPECT_THROW(WindowsFiles().CopyToNew(L"Z:\\proc\\self\\mem", scratch.Below(L"copy")), PlatformError);
    EXPECT_TRUE(std::filesystem::is_empty(scratch.Path()));
    EXPECT_THROW(WindowsFiles().ReadThrough(L"Z:\\proc\\self\\mem"), PlatformError);
}

TEST(WindowsFilesTest, FilesThatOthersWriteCanBeCopied) {
    const ScratchFolder scratch;
    WindowsFiles files;
    const std::wstring open = scratch.Write(L"open.mdb", "rows");
    const FileHandle other(CreateFileW(open.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr));
    files.CopyToNew(open, scratch.Below(L"copy.mdb"));
    EXPECT_EQ("rows", files.Read(scratch.Below(L"copy.mdb")));
    EXPECT_THROW(files.Remove(open), PlatformError);
}

TEST(WindowsClockTest, TellsLocalTimeToTheSecond) {
    const auto local = [] {
        std::time_t now = std::time(nullptr);
        std::tm parts = *std::localtime(&now);
        return std::chrono::local_seconds{std::chrono::seconds{_mkgmtime(&parts)}};
    };
    const auto before = local();
    const DateTime now = WindowsClock().Now();
    EXPECT_TRUE(before <= now && now <= local()) << (now - before).count() << " s from the C library's time";
}

TEST(WindowsVolumesTest, TellsAllFreeBytes) {
    constexpr double OthersMayTake = 500e6;
    ULARGE_INTEGER expected{};
    ASSERT_TRUE(GetDiskFreeSpaceExW(L"C:\\", &expected, nullptr, nullptr));
    EXPECT_NEAR(WindowsVolumes().FreeBytes(L"C:\\"), static_cast<double>(expected.QuadPart), OthersMayTake);
}

TEST(ProcessHardeningTest, NoBoxesAndNoLibrariesFromTheCurrentFolder) {
    const ScratchFolder scratch;
    // A program's file loads as a library too.
    const std::wstring self = WindowsComputer(L"Adapters").ProgramFolder() + L"\\windows_adapters.exe";
    WindowsFiles().CopyToNew(self, scratch.Below(L"planted.dll"));
    std::array<wchar_t, MAX_PATH> current{};
    GetCurrentDirectoryW(static_cast<DWORD>(current.size()), current.data());
    SetCurrentDirectoryW(scratch.Path().c_str());
    EXPECT_TRUE(LibraryHandle(LoadLibraryW(L"planted.dll")));
    SetErrorMode(0);  // the starter's may have been inherited

    HardenProcess();
    EXPECT_FALSE(LibraryHandle(LoadLibraryW(L"planted.dll")));
    EXPECT_TRUE(LibraryHandle(LoadLibraryW(L"version.dll")));
    EXPECT_EQ(GetErrorMode() & SEM_FAILCRITICALERRORS, UINT{SEM_FAILCRITICALERRORS});
    SetCurrentDirectoryW(current.data());
}

int pressed = 0;

INT_PTR CALLBACK NoteCommand(HWND, UINT message, WPARAM wParam, LPARAM) {
    pressed = message == WM_COMMAND ? LOWORD(wParam) : pressed;
    return FALSE;
}

TEST(WindowsClockTest, KeysWorkInModelessDialogsAndAQuitMessageWaitsForTheLoop) {
    struct alignas(4) {
        DLGTEMPLATE Dialog{DWORD{WS_POPUP | WS_VISIBLE}, 0, 0, 0, 0, 100, 60};
        std::array<WORD, 3> Rest{};
    } form;
    const HWND dialog = CreateDialogIndirectParamW(nullptr, &form.Dialog, nullptr, &NoteCommand, 0);
    for (const int id : {IDOK, IDCANCEL}) {
        CreateWindowW(L"BUTTON", L"Button", DWORD{WS_CHILD | WS_VISIBLE | WS_TABSTOP}, 0, 0, 40, 20, dialog,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    }
    SetFocus(GetDlgItem(dialog, IDOK));
    PostMessageW(GetDlgItem(dialog, IDOK), WM_KEYDOWN, VK_TAB, 0);
    WindowsClock().YieldToMessages();
    EXPECT_EQ(GetDlgItem(dialog, IDCANCEL), GetFocus());
    PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
    WindowsClock().YieldToMessages();
    EXPECT_EQ(IDCANCEL, pressed);

    PostMessageW(dialog, WM_COMMAND, 77, 0);
    PostQuitMessage(5);
    WindowsClock().YieldToMessages();
    WindowsClock().YieldToMessages();
    EXPECT_EQ(77, pressed);
    MSG message{};
    EXPECT_EQ(0, GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(5u, message.wParam);
    DestroyWindow(dialog);
}

TEST(WindowsComputerTest, TellsUserFoldersLanguageAndCodePage) {
    WindowsComputer computer(L"Adapters");
    EXPECT_NE(L"", computer.UserName());
    EXPECT_EQ(4u, computer.LanguageIdentifier().size());
    EXPECT_TRUE(WindowsFiles().Exists(computer.ProgramFolder() + L"\\windows_adapters.exe"));

    EXPECT_EQ("C:\\Temp", computer.ToSystemCodePage(L"C:\\Temp"));
    EXPECT_EQ("", computer.ToSystemCodePage(L""));
    EXPECT_EQ(L"abc", computer.FromSystemCodePage("abc"));
    ASSERT_EQ(GetACP(), 1252U) << "what follows is for the code page of the tests' computer";
    EXPECT_EQ("\xE9?8?", computer.ToSystemCodePage(L"é説8∞"));
    EXPECT_EQ(L"é€", computer.FromSystemCodePage("\xE9\x80"));
}

std::array<wchar_t, 100> shownTitle{};

void CALLBACK NoteTitleAndClose(HWND, UINT, UINT_PTR timer, DWORD) {
    if (const HWND box = GetActiveWindow(); FindWindowExW(box, nullptr, L"Button", nullptr) != nullptr) {
        KillTimer(nullptr, timer);
        GetWindowTextW(box, shownTitle.data(), static_cast<int>(shownTitle.size()));
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    }
}

TEST(WindowsMessageBoxesTest, ABoxWithoutATitleNamesTheProgram) {
    SetTimer(nullptr, 0, 20, &NoteTitleAndClose);
    EXPECT_EQ(boxes::AnswerOk, WindowsMessageBoxes().Show(L"Text", boxes::Ok, L""));
    EXPECT_STREQ(L"Manual Install Program", shownTitle.data());
}

/// Started with this argument, the program only tells by its exit code how its window was to be shown.
constexpr const wchar_t* TellShowState = L"--tell-show-state";

const bool told = [] {
    if (std::wstring_view(GetCommandLineW()).ends_with(TellShowState)) {
        STARTUPINFOW startup{};
        GetStartupInfoW(&startup);
        ExitProcess((startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? 100u + startup.wShowWindow : 99u);
    }
    return false;
}();

TEST(WindowsProcessesTest, ProgramsStartHidden) {
    ASSERT_FALSE(told);
    const std::wstring program = WindowsComputer(L"Adapters").ProgramFolder() + L"\\windows_adapters.exe";
    const auto process = WindowsProcesses().StartHidden(L"\"" + program + L"\" " + TellShowState);
    for (int polls = 0; process->ExitCode() == StillActive && polls < 1500; ++polls) {
        Sleep(20);
    }
    EXPECT_EQ(100u + SW_HIDE, process->ExitCode());
}

}  // namespace
}  // namespace mip
