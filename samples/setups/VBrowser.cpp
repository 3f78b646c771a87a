// Stand-in of the manual viewer: notes how it was started in "VBrowser.log" beside it, and shows the page's path.
#include "samples/setups/SampleWindow.h"

#include <windows.h>

#include <array>
#include <string>

namespace {

std::string Utf8(const std::wstring& text) {
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), size, bytes.data(), length, nullptr, nullptr);
    return bytes;
}

// One line for each start, so that a test can tell what the viewer was asked to show.
void NoteCommandLine(const std::wstring& commandLine) {
    std::array<wchar_t, 1024> own{};
    GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
    const std::wstring path(own.data());
    const std::wstring note = path.substr(0, path.find_last_of(L'.')) + L".log";
    HANDLE file = CreateFileW(note.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    const std::string line = Utf8(commandLine) + "\r\n";
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* arguments, int) {
    NoteCommandLine(GetCommandLineW());
    return mip::ShowSampleWindow(
        {L"VantorView", L"Vantor View", L"Vantor View", std::wstring(L"Page to show:\n\n") + arguments});
}
