#pragma once

#include <functional>
#include <string>

/// What the three sample setups share. Every failure throws std::system_error with the Win32 code.
namespace mip {

/// Where the companion programs live and are recorded.
inline constexpr wchar_t ManualLinkKey[] = L"SOFTWARE\\Vantor\\Korvex\\ManualLink";
inline constexpr wchar_t ViewerKey[] = L"SOFTWARE\\Vantor\\Korvex\\VantorView";

/// A text value below HKEY_LOCAL_MACHINE, "" when there is none.
std::wstring ReadMachineText(const std::wstring& key, const std::wstring& name);
void WriteMachineText(const std::wstring& key, const std::wstring& name, const std::wstring& text);

/// "C:\Program Files\Vantor\Korvex\" and `name`, wherever this computer keeps its program files.
std::wstring KorvexFolder(const std::wstring& name);

/// Creates the folder and its parents.
void CreateFolderTree(const std::wstring& folder);

/// Copies a file that lies beside this setup into the folder, over an older copy. The file keeps its time, by which a
/// later run sees that nothing newer is on the disc.
void InstallFile(const std::wstring& name, const std::wstring& folder);

void WriteTextFile(const std::wstring& path, const std::string& text);

/// A failure ordered by a tester: the text of "setup.fail" beside this setup, or of the environment variable
/// SAMPLE_SETUP_FAIL; "" for none. The text goes into the log as it is; "nolog" means that no log is left.
std::string OrderedFailure();

/// Moves this running setup aside, as if the disc had been taken out under it.
void MoveSetupAside();

/// Runs `steps` unless a failure is ordered and leaves "setup.log" in the folder, its last line "0" or the failure.
/// Returns the exit code: 0, or 1 after a failure.
int RunLoggedSetup(const std::wstring& logFolder, const std::function<void()>& steps);

}  // namespace mip
