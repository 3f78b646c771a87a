#pragma once

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <map>
#include <string>

#include "tools/screenshots/WindowDriver.h"

namespace mip {

/// Where things are on the sample workshop computer, whose drive D: is the sample disc.
inline constexpr wchar_t ProgramFile[] = L"D:\\programs\\setup\\ManualInstall.exe";
inline constexpr wchar_t Manuals[] = L"C:\\Vantor Manuals";
inline constexpr wchar_t ManagerFolder[] = L"C:\\Program Files\\Vantor\\Korvex\\Manual";
inline constexpr wchar_t Catalogue[] = L"C:\\Program Files\\Vantor\\Korvex\\Manual\\kvx3.mdb";

/// What the catalogue says of an installed manual.
struct Row {
    std::wstring Version;
    std::wstring Path;
    /// "1" from the moment its files are touched until the next edition is recorded.
    std::wstring Adjust;

    bool operator==(const Row&) const = default;
};

/// Shows a row in a test's output.
void PrintTo(const Row& row, std::ostream* out);

/// The installed manuals by publication.
std::map<std::wstring, Row> ReadCatalogue();
/// The bytes of every file below a folder by its path.
std::map<std::wstring, std::string> FilesBelow(const std::wstring& folder);
std::string BytesOf(const std::wstring& path);
void WriteBytes(const std::wstring& path, const std::string& bytes);
bool Exists(const std::wstring& path);
/// The program's English text of this number.
std::wstring Message(int number);
/// Both lines of the result screen after a failure: this message, and what the user can do.
std::wstring FailureTexts(int message);
/// Takes all manuals but these, named by their folders, from the disc: what a run does not need costs it seconds.
void KeepOnDisc(std::initializer_list<std::wstring> folders);
/// The same, and nothing is left to do before the manuals but to read the disc: no companion setups, no upgrade.
void KeepOnDiscAlone(std::initializer_list<std::wstring> folders);
/// The installed folder holds the disc's edition of this manual: every loose page on the disc is there, byte for byte.
bool IsDiscEdition(const std::wstring& installedFolder, const std::wstring& manual);
/// Runs a shell command of the machine that Wine runs on, in the folder that is drive C:, and returns what it printed.
/// Throws std::runtime_error with that when it fails.
std::string RunOutside(const std::string& command);

/// A user of the installed program's screens, from its start to its end.
class WorkshopUser : public WindowDriver {
  public:
    explicit WorkshopUser(const std::wstring& switches = L"/LANG=09", Input input = Input::Messages);

    /// From the menu through the agreement to the progress screen.
    void Agree() const;
    HWND WaitForProgress() const;
    /// Waits for the result screen and does `answer` at every question for a folder. Returns how many there were.
    int WaitForResult(const std::function<void(HWND)>& answer) const;
    /// The same with OK for an answer.
    int WaitForResult() const;
    /// The first line of the result screen that is shown, and the second below it.
    std::wstring ResultTexts() const;
    /// From the result screen back to the menu.
    void CloseResult() const;
    /// From the result screen to the end: through the menu and the closing screen, unless nothing was installed.
    DWORD Leave() const;
    /// Starts an installation from the menu, agrees, and goes on to its result, with OK at every question.
    void Install() const;
};

}  // namespace mip
