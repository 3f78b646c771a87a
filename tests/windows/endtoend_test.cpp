// The real program on the sample workshop computer, used by its windows. Drive D: is the sample disc.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include <windows.h>

#include "platform/sqlite/SqliteEngine.h"
#include "screens/forms/ControlIds.h"
#include "tests/windows/ProgramImports.h"
#include "tests/windows/WindowDriver.h"

namespace mip {
namespace {

constexpr wchar_t ProgramFile[] = L"D:\\programs\\setup\\ManualInstall.exe";
constexpr wchar_t Catalogue[] = L"C:\\Program Files\\Vantor\\Korvex\\Manual\\kvx3.mdb";

struct Row {
    std::wstring Version;
    std::wstring Path;
};

/// The installed manuals by publication.
std::map<std::wstring, Row> ReadCatalogue() {
    std::map<std::wstring, Row> rows;
    const auto connection = SqliteEngine().Open(Catalogue);
    const auto recordset = connection->Query(L"SELECT Pub_No,Version,INSPath FROM M_manage");
    for (; !recordset->AtEnd(); recordset->MoveNext()) {
        const auto text = [&](std::int32_t column) { return std::get<std::wstring>(recordset->Field(column)); };
        rows[text(0)] = {text(1), text(2)};
    }
    return rows;
}

std::string BytesOf(const wchar_t* path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

class EndToEnd : public testing::Test {
  protected:
    static std::wstring CommandLine(const std::wstring& switches = L"/LANG=09") {
        return L"\"" + std::wstring(ProgramFile) + L"\" " + switches;
    }

    static void Agree(const WindowDriver& user) {
        const HWND menu = user.WaitForScreen(ids::cmdStartInstall);
        user.Press(menu, ids::cmdStartInstall);
        const HWND agreement = user.WaitForScreen(ids::T_CONTRACT);
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(agreement, ids::B_OK))) << "nothing is chosen yet";
        EXPECT_NE(TextOf(agreement, ids::T_CONTRACT).find(L"TERMS OF USE"), std::wstring::npos);
        user.Press(agreement, ids::O_Value + 1);
        user.Press(agreement, ids::B_OK);
    }

    /// Waits for the result screen and does `answer` at every question for a folder. Returns how many there were.
    template <typename Answer>
    static int WaitForResult(const WindowDriver& user, Answer answer) {
        int questions = 0;
        while (user.FindScreen(ids::vaSpread) == nullptr) {
            const HWND directory = user.FindScreen(ids::L_InstalPath);
            if (directory != nullptr) {
                ++questions;
                answer(directory);
                user.WaitUntilGone(directory);
            }
            if (user.ExitCode()) {
                throw std::runtime_error("the program ended during the installation");
            }
            Sleep(20);
        }
        return questions;
    }

    /// From the result screen through the menu and the closing screen to the end.
    static DWORD Leave(const WindowDriver& user) {
        user.Press(user.WaitForScreen(ids::vaSpread), ids::B_OK);
        user.CloseByTitleBar(user.WaitForScreen(ids::cmdStartInstall));
        user.Press(user.WaitForScreen(ids::L_TarmMsg), ids::B_OK);
        return user.WaitForEnd();
    }

    /// Everything that the sample disc brings is on the computer and in the catalogue.
    static void ExpectInstalled() {
        std::map<std::wstring, std::wstring> versions;
        for (const auto& [pubNo, row] : ReadCatalogue()) {
            versions[pubNo] = row.Version;
            const bool isPdf = pubNo == L"K8040PD";
            EXPECT_TRUE(Exists(row.Path + (isPdf ? L"\\contents\\K8040PD.pdf" : L"\\contents\\index.html")));
        }
        EXPECT_EQ(versions, (std::map<std::wstring, std::wstring>{{L"K1211MM", L"1"},
                                                                  {L"K1220WJ", L"1"},
                                                                  {L"K2310MM", L"1"},
                                                                  {L"K3420MM", L"5"},
                                                                  {L"K4710MM", L"4"},
                                                                  {L"K5150MM", L"2"},
                                                                  {L"K6233EV", L"1"},
                                                                  {L"K7810JP", L"1"},
                                                                  {L"K8040PD", L"2"},
                                                                  {L"K9310BR", L"7"}}));
        EXPECT_TRUE(Exists(L"C:\\Program Files\\Vantor\\Korvex\\Manual\\ManualManager.exe"));
        EXPECT_FALSE(Exists(L"C:\\Program Files\\Vantor\\Korvex\\Manual\\UnZipTemp"));
    }
};

TEST_F(EndToEnd, AUserInstallsTheDisc) {
    const WindowDriver user(CommandLine());
    Agree(user);
    EXPECT_EQ(WaitForResult(user, [&](HWND directory) { user.Press(directory, ids::B_OK); }), 5);

    const HWND result = user.WaitForScreen(ids::vaSpread);
    EXPECT_EQ(TextOf(result, ids::L_ErrorMsg + 1), L"The installation is complete.");
    const std::wstring list = TextOf(result, ids::vaSpread);
    EXPECT_EQ(std::ranges::count(list, L'\n'), 9) << "a header and eight manuals";
    EXPECT_NE(list.find(L"Merivo\t2020\tEN\tK2310MM\t1\tNew\r\n"), std::wstring::npos);
    EXPECT_NE(list.find(L"Brescot\t2018\tEN\tK3420MM\t5\tUpdated\r\n"), std::wstring::npos);

    EXPECT_EQ(Leave(user), 0U);
    ExpectInstalled();
}

TEST_F(EndToEnd, ASilentRunInstallsTheSameWithoutAWindow) {
    const WindowDriver user(CommandLine(L"/VERYSILENT /ACCEPT /LANG=09 /LOG=C:\\run.log"));
    while (!user.ExitCode()) {
        ASSERT_EQ(user.FindScreen(ids::B_OK), nullptr);
        ASSERT_EQ(user.FindScreen(ids::L_STEP + 2), nullptr);
        Sleep(50);
    }
    EXPECT_EQ(user.WaitForEnd(), 0U);
    ExpectInstalled();
    const std::string log = BytesOf(L"C:\\run.log");
    for (const char* pubNo : {"K2310MM", "K4710MM", "K8040PD"}) {
        EXPECT_NE(log.find(pubNo), std::string::npos) << pubNo;
    }
}

TEST_F(EndToEnd, RefusingTheTermsChangesNothing) {
    const std::string before = BytesOf(Catalogue);
    const WindowDriver user(CommandLine());
    user.Press(user.WaitForScreen(ids::cmdStartInstall), ids::cmdStartInstall);
    const HWND agreement = user.WaitForScreen(ids::T_CONTRACT);
    user.Press(agreement, ids::O_Value + 2);
    user.Press(agreement, ids::B_OK);
    EXPECT_EQ(user.WaitForEnd(), 2U);
    EXPECT_EQ(BytesOf(Catalogue), before);
}

TEST_F(EndToEnd, CancellingAtTheFolderKeepsWhatIsInstalledAndSaysSo) {
    const WindowDriver user(CommandLine());
    Agree(user);
    WaitForResult(user, [&](HWND directory) {
        user.Press(directory, ids::B_Cancel);
        const HWND box = user.WaitForDialogOver(directory);
        PostMessageW(box, WM_COMMAND, IDYES, 0);
    });
    const HWND result = user.WaitForScreen(ids::vaSpread);
    EXPECT_EQ(TextOf(result, ids::L_ErrorMsg + 1),
              L"The installation was cancelled before all manuals were installed.");
    EXPECT_EQ(Leave(user), 5U);
    for (const auto& [pubNo, row] : ReadCatalogue()) {
        EXPECT_TRUE(Exists(row.Path + L"\\contents\\index.html")) << row.Path.size();
    }
}

TEST_F(EndToEnd, TheProgramNeedsNothingButWindows) {
    const std::set<std::string> imports = ImportsOf(ProgramFile);
    EXPECT_TRUE(imports.contains("user32.dll"));
    const std::set<std::string> ofWindows{"advapi32.dll", "bcrypt.dll",  "comctl32.dll", "gdi32.dll",   "kernel32.dll",
                                          "msvcrt.dll",   "ole32.dll",   "oleaut32.dll", "shell32.dll", "shlwapi.dll",
                                          "user32.dll",   "version.dll", "ws2_32.dll",   "ntdll.dll"};
    for (const std::string& library : imports) {
        EXPECT_TRUE(ofWindows.contains(library)) << library;
    }
}

}  // namespace
}  // namespace mip
