#include "platform/windows/WindowsProcesses.h"

#include <windows.h>

#include <tlhelp32.h>

#include "platform/PlatformError.h"
#include "platform/ProgramSearch.h"
#include "platform/ScopeGuard.h"
#include "platform/windows/Handle.h"
#include "platform/windows/LastError.h"

namespace mip {

namespace {

/// Carries a batch file's command line to the interpreter. See StartBatch.
constexpr const wchar_t* BatchVariable = L"MIP_BATCH_COMMAND";

class WindowsRunningProcess : public RunningProcess {
  public:
    explicit WindowsRunningProcess(KernelHandle process) : process_(std::move(process)) {}

    std::uint32_t ExitCode() override {
        DWORD code = 0;
        if (!GetExitCodeProcess(process_.Get(), &code)) {
            ThrowLastError("GetExitCodeProcess", L"");
        }
        return code;
    }

  private:
    KernelHandle process_;
};

struct StartedProcess {
    KernelHandle Process;
    DWORD Id = 0;
};

StartedProcess CreateProcessFor(const wchar_t* application, std::wstring commandLine, WORD showCommand, DWORD flags) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = showCommand;
    PROCESS_INFORMATION created{};
    if (!CreateProcessW(application, commandLine.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr, &startup,
                        &created)) {
        ThrowLastError("CreateProcess", commandLine);
    }
    const KernelHandle thread(created.hThread);
    return {KernelHandle(created.hProcess), created.dwProcessId};
}

std::wstring InterpreterPath() {
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size())));
    return folder + L"\\cmd.exe";
}

/// The interpreter expands %NAME% once, before it looks at quotes and operators, and does not look at the outcome
/// again. So the command line travels in a variable: whatever stands between its quotes, a percent sign included, is
/// kept.
StartedProcess StartBatch(const std::wstring& commandLine, WORD showCommand, DWORD flags) {
    const std::wstring interpreter = InterpreterPath();
    if (!SetEnvironmentVariableW(BatchVariable, commandLine.c_str())) {
        ThrowLastError("SetEnvironmentVariable", commandLine);
    }
    const ScopeGuard clear([] { SetEnvironmentVariableW(BatchVariable, nullptr); });
    const std::wstring arguments = L" /d /v:off /s /c \"%" + std::wstring(BatchVariable) + L"%\"";
    return CreateProcessFor(interpreter.c_str(), L"\"" + interpreter + L"\"" + arguments, showCommand, flags);
}

/// A name without a folder is left to the system's own search.
bool IsFile(const std::wstring& path) {
    if (!path.starts_with(L"\\\\") && path.find(L":\\") != 1) {
        return false;
    }
    const DWORD found = GetFileAttributesW(path.c_str());
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// The program is named to the system, which then searches for no other. Where the command line names it with a blank
/// and no quotes, it is quoted as the system does after a search: a program takes its arguments apart at the blanks.
StartedProcess Start(const std::wstring& commandLine, WORD showCommand, DWORD batchFlags) {
    const std::optional<ProgramCall> call = FindProgram(commandLine, IsFile);
    if (!call) {
        return CreateProcessFor(nullptr, commandLine, showCommand, 0);
    }
    const std::wstring quoted = L"\"" + call->Program + L"\"" + call->Arguments;
    if (!IsBatchFile(call->Program)) {
        const bool needsQuotes = !commandLine.starts_with(L'"') && call->Program.find(L' ') != std::wstring::npos;
        return CreateProcessFor(call->Program.c_str(), needsQuotes ? quoted : commandLine, showCommand, 0);
    }
    if (!AreBatchArguments(call->Arguments)) {
        throw PlatformError("CreateProcess", commandLine, errors::InvalidName);
    }
    return StartBatch(quoted, showCommand, batchFlags);
}

}  // namespace

std::optional<std::vector<std::wstring>> WindowsProcesses::Snapshot() {
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    if (!snapshot || !Process32FirstW(snapshot.Get(), &entry)) {
        return std::nullopt;
    }
    std::vector<std::wstring> names;
    do {
        names.emplace_back(entry.szExeFile);
    } while (Process32NextW(snapshot.Get(), &entry));
    return names;
}

std::unique_ptr<RunningProcess> WindowsProcesses::StartHidden(const std::wstring& commandLine) {
    const StartedProcess started = Start(commandLine, SW_HIDE, CREATE_NO_WINDOW);
    KernelHandle query(OpenProcess(PROCESS_QUERY_INFORMATION, TRUE, started.Id));
    if (!query) {
        ThrowLastError("OpenProcess", commandLine);
    }
    return std::make_unique<WindowsRunningProcess>(std::move(query));
}

void WindowsProcesses::StartVisible(const std::wstring& commandLine) {
    const StartedProcess started = Start(commandLine, SW_SHOWNORMAL, 0);
    AllowSetForegroundWindow(started.Id);
}

}  // namespace mip
