#include "samples/setups/SampleSetup.h"

#include <windows.h>

#include <array>
#include <system_error>

namespace mip {

namespace {

void ThrowIf(bool failed, const char* what) {
    if (failed) {
        const DWORD code = GetLastError();
        throw std::system_error(static_cast<int>(code), std::system_category(), what);
    }
}

std::wstring OwnPath() {
    std::array<wchar_t, 1024> buffer{};
    const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    ThrowIf(length == 0 || length == buffer.size(), "own path");
    return std::wstring(buffer.data(), length);
}

std::wstring Beside(const std::wstring& name) {
    const std::wstring own = OwnPath();
    return own.substr(0, own.find_last_of(L'\\') + 1) + name;
}

// The first line of a small file, "" when it cannot be read.
std::string FirstLine(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return "";
    }
    std::array<char, 256> buffer{};
    DWORD read = 0;
    const BOOL done = ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr);
    CloseHandle(file);
    const std::string text(buffer.data(), done ? read : 0);
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

std::wstring ReadMachineText(const std::wstring& key, const std::wstring& name) {
    std::array<wchar_t, 512> buffer{};
    DWORD bytes = sizeof(buffer);
    const LSTATUS status =
        RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, buffer.data(), &bytes);
    return status == ERROR_SUCCESS ? std::wstring(buffer.data()) : std::wstring();
}

void WriteMachineText(const std::wstring& key, const std::wstring& name, const std::wstring& text) {
    const LSTATUS status = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), REG_SZ, text.c_str(),
                                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    SetLastError(static_cast<DWORD>(status));
    ThrowIf(status != ERROR_SUCCESS, "registry value");
}

std::wstring KorvexFolder(const std::wstring& name) {
    return ReadMachineText(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir") +
           L"\\Vantor\\Korvex\\" + name;
}

void CreateFolderTree(const std::wstring& folder) {
    for (std::size_t end = folder.find(L'\\', 3); end != std::wstring::npos; end = folder.find(L'\\', end + 1)) {
        CreateDirectoryW(folder.substr(0, end).c_str(), nullptr);
    }
    const BOOL created = CreateDirectoryW(folder.c_str(), nullptr);
    ThrowIf(!created && GetLastError() != ERROR_ALREADY_EXISTS, "folder");
}

void InstallFile(const std::wstring& name, const std::wstring& folder) {
    const std::wstring target = folder + L"\\" + name;
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
    ThrowIf(!CopyFileW(Beside(name).c_str(), target.c_str(), FALSE), "copy");
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
}

void WriteTextFile(const std::wstring& path, const std::string& text) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    ThrowIf(file == INVALID_HANDLE_VALUE, "create file");
    DWORD written = 0;
    const BOOL done = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    const DWORD code = GetLastError();
    CloseHandle(file);
    SetLastError(code);
    ThrowIf(!done || written != text.size(), "write file");
}

std::string OrderedFailure() {
    std::array<char, 256> buffer{};
    const DWORD length = GetEnvironmentVariableA("SAMPLE_SETUP_FAIL", buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length > 0 && length < buffer.size()) {
        return std::string(buffer.data(), length);
    }
    return FirstLine(Beside(L"setup.fail"));
}

void MoveSetupAside() {
    const std::wstring own = OwnPath();
    ThrowIf(!MoveFileExW(own.c_str(), (own + L".aside").c_str(), MOVEFILE_REPLACE_EXISTING), "move setup");
}

int RunLoggedSetup(const std::wstring& logFolder, const std::function<void()>& steps) {
    std::string log = "Setup started\r\n";
    std::string result = OrderedFailure();
    const bool failureOrdered = !result.empty();
    const bool leaveLog = result != "nolog";
    try {
        CreateFolderTree(logFolder);
        if (!failureOrdered) {
            steps();
            log += "Files installed\r\n";
            result = "0";
        }
    } catch (const std::system_error& error) {
        log += "Failed: " + std::string(error.what()) + "\r\n";
        result = std::to_string(error.code().value());
    }
    if (leaveLog) {
        WriteTextFile(logFolder + L"\\setup.log", log + result + "\r\n");
    }
    return result == "0" ? 0 : 1;
}

}  // namespace mip
