// The real program on the sample workshop computer, used by its windows and with its switches. Drive D: is the sample
// disc.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <windows.h>

#include <oleacc.h>

#include "forms/ControlIds.h"
#include "platform/sqlite/SqliteEngine.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

/// Everything that the sample disc brings is on the computer and in the catalogue.
void ExpectInstalled() {
    std::map<std::wstring, std::wstring> versions;
    for (const auto& [pubNo, row] : ReadCatalogue()) {
        versions[pubNo] = row.Version;
        const bool isPdf = pubNo == L"K8040PD";
        EXPECT_TRUE(Exists(row.Path + (isPdf ? L"\\contents\\K8040PD.pdf" : L"\\contents\\index.html")));
        const std::wstring folder = row.Path.substr(row.Path.rfind(L'\\') + 1);
        EXPECT_EQ(row.Path, std::wstring(Manuals) + L'\\' + folder);
        EXPECT_TRUE(!Exists(L"D:\\" + folder) || IsDiscEdition(row.Path, folder))
            << std::string(pubNo.begin(), pubNo.end());
    }
    const std::map<std::wstring, std::wstring> expected{
        {L"K1211MM", L"1"}, {L"K1220WJ", L"1"}, {L"K2310MM", L"1"}, {L"K3420MM", L"5"}, {L"K4710MM", L"4"},
        {L"K5150MM", L"2"}, {L"K6233EV", L"1"}, {L"K7810JP", L"1"}, {L"K8040PD", L"2"}, {L"K9310BR", L"7"}};
    EXPECT_EQ(versions, expected);
    EXPECT_TRUE(Exists(std::wstring(ManagerFolder) + L"\\ManualManager.exe"));
    EXPECT_FALSE(Exists(std::wstring(ManagerFolder) + L"\\UnZipTemp"));
    const auto isDatabase = [](const auto& file) { return file.second.starts_with("SQLite format 3"); };
    EXPECT_EQ(std::ranges::count_if(FilesBelow(ManagerFolder), isDatabase), 1) << "no backup, no other catalogue";
}

/// A window's name as a screen reader gets it; prints what else it gets.
std::wstring AccessibleNameOf(HWND window) {
    IAccessible* object = nullptr;
    VARIANT self{};
    self.vt = VT_I4;
    VARIANT role{};
    BSTR name = nullptr;
    long children = 0;
    AccessibleObjectFromWindow(window, OBJID_CLIENT, IID_IAccessible, reinterpret_cast<void**>(&object));
    object->get_accName(self, &name);
    object->get_accRole(self, &role);
    object->get_accChildCount(&children);
    object->Release();
    std::printf("\"%ls\", role %ld, children %ld\n", name, role.lVal, children);
    return name != nullptr ? name : L"";
}

TEST(EndToEnd, AUserInstallsTheDisc) {
    const std::wstring stamp = std::wstring(ManagerFolder) + L"\\mam_man.fdf";
    WriteBytes(stamp, "%FDF-1.2\r\n" + std::string(1000, '%'));
    SetFileAttributesW(stamp.c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(L"D:\\programs\\setup\\kvx3new.mdb", FILE_ATTRIBUTE_READONLY);

    const WorkshopUser user;
    user.Agree();
    EXPECT_EQ(user.WaitForResult(), 5);

    const HWND result = user.WaitForScreen(ids::vaSpread);
    EXPECT_EQ(TextOf(result, ids::L_ErrorMsg + 1), L"The installation is complete.");
    const HWND listView = GetDlgItem(result, ids::vaSpread);
    const std::wstring list = ListText(listView);
    EXPECT_TRUE(list.starts_with(Message(35) + L'\t' + Message(37) + L'\t')) << "the header";
    EXPECT_EQ(std::ranges::count(list, L'\n'), 9) << "a header and eight manuals";
    EXPECT_EQ(AccessibleNameOf(listView), Message(107));
    EXPECT_NE(list.find(L"Merivo\t2020\tEN\tK2310MM\t1\tNew\r\n"), std::wstring::npos);
    EXPECT_NE(list.find(L"Brescot\t2018\tEN\tK3420MM\t5\tUpdated\r\n"), std::wstring::npos);

    EXPECT_EQ(user.Leave(), 0U);
    ExpectInstalled();
    EXPECT_EQ(BytesOf(stamp),
              "%FDF-1.2\r\n1 0 obj\r\n<<\r\n/FDF << /Fields [\r\n<< /V (Ver 2.1.7)/T (ver_mam_man)>> ]\r\n"
              "/F (./ManualManager_EN.pdf) >>\r\n>>\r\nendobj\r\ntrailer\r\n<<\r\n/Root 1 0 R\r\n\r\n>>\r\n%%EOF\r\n");
    // Opened as forms data, the stamp fills the field of the manager's manual.
    EXPECT_EQ(RunOutside("perl " MIP_FORM_FILLER " 'Program Files/Vantor/Korvex/Manual/mam_man.fdf' filled.pdf"),
              "ver_mam_man=Ver 2.1.7\n");
}

TEST(EndToEnd, ASilentRunInstallsTheSameAndASecondOneFindsNothingToDo) {
    const std::wstring switches = L"/VERYSILENT /ACCEPT /LANG=09 /LOG=C:\\run.log";
    const auto run = [&] {
        const WorkshopUser user(switches);
        return user.WaitForEnd([&] {
            EXPECT_EQ(user.FindScreen(ids::B_OK), nullptr);
            EXPECT_EQ(user.FindScreen(ids::L_STEP + 2), nullptr);
        });
    };
    EXPECT_EQ(run(), 0U);
    ExpectInstalled();
    const std::string log = BytesOf(L"C:\\run.log");
    for (const char* pubNo : {"K2310MM", "K4710MM", "K8040PD"}) {
        EXPECT_NE(log.find(pubNo), std::string::npos) << pubNo;
    }

    const auto manuals = FilesBelow(Manuals);
    const auto others = FilesBelow(ManagerFolder);
    EXPECT_GT(manuals.size(), 200U);
    EXPECT_EQ(run(), 0U);
    EXPECT_TRUE(FilesBelow(Manuals) == manuals);
    EXPECT_TRUE(FilesBelow(ManagerFolder) == others) << "the catalogue, the manager, the stamp";
}

TEST(EndToEnd, AWholeRunNeedsTheKeyboardAloneOrTheMouseAlone) {
    KeepOnDiscAlone({L"Diagnosis2023_PDF"});
    for (const Input input : {Input::Keyboard, Input::Mouse}) {
        SCOPED_TRACE(input == Input::Keyboard ? "keyboard" : "mouse");
        SqliteEngine().Open(Catalogue)->Execute(L"DELETE FROM M_manage WHERE Pub_No='K8040PD'");
        const WorkshopUser user(L"/LANG=09", input);
        user.Agree();
        EXPECT_EQ(user.WaitForResult(), 1);
        EXPECT_EQ(user.Leave(), 0U);
        EXPECT_TRUE(ReadCatalogue().contains(L"K8040PD"));
    }
}

TEST(EndToEnd, RefusingTheTermsChangesNothing) {
    const std::string before = BytesOf(Catalogue);
    const WorkshopUser user;
    user.Press(user.WaitForScreen(ids::cmdStartInstall), ids::cmdStartInstall);
    const HWND agreement = user.WaitForScreen(ids::T_CONTRACT);
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(agreement, ids::B_OK))) << "nothing is chosen yet";
    EXPECT_NE(TextOf(agreement, ids::T_CONTRACT).find(L"TERMS OF USE"), std::wstring::npos);
    for (const int choice : {1, 2}) {
        user.Press(agreement, ids::O_Value + choice);
    }
    user.Press(agreement, ids::B_OK);
    EXPECT_EQ(user.WaitForEnd(), 2U);
    EXPECT_EQ(BytesOf(Catalogue), before);
}

constexpr wchar_t DiagnosisFolder[] = L"C:\\Other manuals\\Diagnosis2023_PDF";
constexpr wchar_t Kestren[] = L"K5150MM";

/// Runs the program to its end, watching that it shows the screen with this control and no question or result.
DWORD RunWithScreen(const std::wstring& switches, int control) {
    const WorkshopUser user(L"/LANG=09 " + switches);
    bool wasSeen = false;
    const DWORD exitCode = user.WaitForEnd([&] {
        wasSeen = wasSeen || user.FindScreen(control) != nullptr;
        EXPECT_EQ(user.FindScreen(ids::B_OK), nullptr);
    });
    EXPECT_TRUE(wasSeen);
    return exitCode;
}

DWORD Maintain(const std::wstring& maintenance) {
    return RunWithScreen(maintenance, ids::L_TransactionMsg);
}

TEST(EndToEnd, ASilentInstallationThenCheckThenRemoval) {
    KeepOnDiscAlone({L"Diagnosis2023_PDF"});
    EXPECT_EQ(RunWithScreen(L"/SILENT /ACCEPT \"/DIR=C:\\Other manuals\"", ids::L_STEP + 2), 0U);
    EXPECT_EQ(ReadCatalogue().at(L"K8040PD"), (Row{L"2", DiagnosisFolder, L"0"}));
    EXPECT_TRUE(IsDiscEdition(DiagnosisFolder, L"Diagnosis2023_PDF"));

    const std::string catalogue = BytesOf(Catalogue);
    EXPECT_EQ(Maintain(L"/CHECK"), 0U);
    EXPECT_TRUE(BytesOf(Catalogue) == catalogue) << "every manual is there";
    EXPECT_EQ(Maintain(L"/REMOVE=K0000XX"), 1U);
    EXPECT_TRUE(BytesOf(Catalogue) == catalogue) << "no such manual";

    auto rows = ReadCatalogue();
    const std::wstring folder = rows.at(Kestren).Path;
    EXPECT_EQ(Maintain(std::wstring(L"/REMOVE=") + Kestren), 0U);
    EXPECT_FALSE(Exists(folder));
    rows.erase(Kestren);
    EXPECT_EQ(ReadCatalogue(), rows);

    std::filesystem::remove_all(DiagnosisFolder);
    EXPECT_EQ(Maintain(L"/CHECK"), 0U);
    rows.at(L"K8040PD").Adjust = L"1";
    EXPECT_EQ(ReadCatalogue(), rows) << "marked at the first check";
}

}  // namespace
}  // namespace mip
