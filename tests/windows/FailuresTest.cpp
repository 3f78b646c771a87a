// An installation that fails, with the real program: what the user is told, what stays, and that the next run repairs.

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

#include "platform/windows/Handle.h"
#include "forms/ControlIds.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t Brescot[] = L"Brescot2018_Workshop_EN";
constexpr wchar_t Diagnosis[] = L"Diagnosis2023_PDF";
constexpr wchar_t Halden[] = L"Halden2016_Body_EN";
constexpr wchar_t Merivo[] = L"Merivo2020_Workshop_EN";
constexpr wchar_t Ondari[] = L"Ondari2021_Workshop_EN";

std::wstring FolderOf(const std::wstring& manual) {
    return std::wstring(Manuals) + L"\\" + manual;
}

std::wstring ArchiveOf(const std::wstring& manual) {
    return L"D:\\" + manual + L"\\install\\condense\\manual.zip";
}

std::wstring Succeeded() {
    return Message(64) + L"\n" + Message(65);
}

/// Another program has the manual of this name open.
std::wstring InUseTexts(const std::wstring& name) {
    std::wstring text = Message(101);
    return text.replace(text.find(L'@'), 1, name) + L"\n" + Message(24);
}

/// Holds a file open as a program does that shares it with nobody.
FileHandle HoldAlone(const std::wstring& path) {
    FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(file) << GetLastError();
    return file;
}

/// The question whether to go on without a companion program.
HWND WaitForCompanionQuestion(const WorkshopUser& user) {
    const HWND box = user.WaitForDialogOver(user.WaitForProgress());
    EXPECT_EQ(TextOf(box), Message(34));
    EXPECT_EQ(MessageOf(box), Message(90) + Message(91));
    return box;
}

void ExpectYesAndNoWithNoChosen(HWND box) {
    for (const int button : {IDOK, IDCANCEL, IDYES, IDNO}) {
        EXPECT_EQ(GetDlgItem(box, button) != nullptr, button == IDYES || button == IDNO) << button;
    }
    EXPECT_EQ(SendMessageW(GetDlgItem(box, IDNO), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON, DLGC_DEFPUSHBUTTON);
    EXPECT_EQ(SendMessageW(GetDlgItem(box, IDYES), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON, 0);
}

TEST(Failures, WithoutManagerSetupOrWithADamagedNewCatalogueTheRunStops) {
    const std::wstring setup = L"D:\\programs\\man_manager\\setup.exe";
    const std::wstring order = L"D:\\programs\\man_manager\\setup.fail";
    KeepOnDisc({Merivo});
    WriteBytes(order, "moves itself aside");
    const std::string catalogue = BytesOf(Catalogue);
    {
        const WorkshopUser user;
        user.Install();
        EXPECT_EQ(user.ResultTexts(), FailureTexts(18));
        EXPECT_EQ(user.Leave(), 4U);
    }
    EXPECT_EQ(BytesOf(Catalogue), catalogue);

    fs::rename(setup + L".aside", setup);
    fs::remove(order);
    fs::resize_file(L"D:\\programs\\setup\\kvx3new.mdb", 5000);
    const WorkshopUser user;
    user.Install();
    EXPECT_EQ(user.ResultTexts(), FailureTexts(71));
    EXPECT_EQ(user.Leave(), 4U);
    EXPECT_EQ(BytesOf(Catalogue), catalogue);
}

TEST(Failures, ACompanionThatFailsIsAskedAbout) {
    KeepOnDisc({Merivo});
    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "7");
    const auto rows = ReadCatalogue();
    const auto manuals = FilesBelow(Manuals);

    const WorkshopUser user;
    user.Agree();
    const HWND question = WaitForCompanionQuestion(user);
    ExpectYesAndNoWithNoChosen(question);
    user.TypeKey(question, VK_RETURN);
    EXPECT_EQ(user.WaitForResult(), 0);
    EXPECT_EQ(user.ResultTexts(), FailureTexts(90)) << "Enter is a No";
    EXPECT_EQ(ReadCatalogue(), rows);
    EXPECT_TRUE(FilesBelow(Manuals) == manuals);

    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "nolog");
    WriteBytes(L"D:\\programs\\View\\setup.fail", "not a number");
    user.CloseResult();
    user.Agree();
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    EXPECT_EQ(user.WaitForResult(), 1);
    EXPECT_EQ(user.ResultTexts(), Succeeded());
    EXPECT_EQ(user.Leave(), 0U);
    EXPECT_EQ(ReadCatalogue().at(L"K2310MM"), (Row{L"1", FolderOf(Merivo), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(Merivo), Merivo));
}

TEST(Failures, ADamagedArchiveLeavesTheEditionBeforeAndWhatWasInstalled) {
    KeepOnDiscAlone({Brescot, Halden});
    const std::string whole = BytesOf(ArchiveOf(Halden));
    std::string altered = whole;
    altered.at(whole.size() / 2) ^= 0x10;
    const auto before = FilesBelow(FolderOf(Halden));
    const Row haldenRow = ReadCatalogue().at(L"K9310BR");

    for (const std::string& damaged : {whole.substr(0, whole.size() / 2), altered}) {
        WriteBytes(ArchiveOf(Halden), damaged);
        const WorkshopUser user;
        user.Install();
        EXPECT_EQ(user.ResultTexts(), FailureTexts(23));
        EXPECT_EQ(user.Leave(), 4U);
        EXPECT_TRUE(FilesBelow(FolderOf(Halden)) == before);
        EXPECT_EQ(ReadCatalogue().at(L"K9310BR"), haldenRow);
        EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"5", FolderOf(Brescot), L"0"}));
        EXPECT_TRUE(IsDiscEdition(FolderOf(Brescot), Brescot));
    }
}

TEST(Failures, ANewManualThatFailsIsNotRecorded) {
    KeepOnDiscAlone({Merivo, Diagnosis});
    const auto rows = ReadCatalogue();
    {
        const std::wstring pdf = FolderOf(Diagnosis) + L"\\contents\\K8040PD.pdf";
        WriteBytes(pdf, "copied by hand, and open");
        const FileHandle lock = HoldAlone(pdf);
        const WorkshopUser user;
        user.Install();
        EXPECT_EQ(user.ResultTexts(), InUseTexts(L"All models  K8040PD"));
        EXPECT_EQ(user.Leave(), 4U);
    }
    EXPECT_EQ(ReadCatalogue(), rows);

    KeepOnDisc({Merivo});
    const std::string archive = BytesOf(ArchiveOf(Merivo));
    WriteBytes(ArchiveOf(Merivo), archive.substr(0, archive.size() - 1000));
    {
        const WorkshopUser user;
        user.Install();
        EXPECT_EQ(user.ResultTexts(), FailureTexts(23));
        EXPECT_EQ(user.Leave(), 4U);
    }
    EXPECT_EQ(ReadCatalogue(), rows);
    EXPECT_FALSE(Exists(FolderOf(Merivo)));

    WriteBytes(ArchiveOf(Merivo), archive);
    const WorkshopUser user;
    user.Agree();
    user.WaitForResult([&](HWND directory) {
        // The program holds the file open, which keeps every other Windows program from deleting it.
        RunOutside("rm 'Program Files/Vantor/Korvex/Manual/kvx3.mdb'");
        user.Press(directory, ids::B_OK);
    });
    EXPECT_EQ(user.ResultTexts(), Message(24) + L"\n");
    EXPECT_EQ(user.Leave(), 4U);
    EXPECT_FALSE(Exists(Catalogue));
}

TEST(Failures, CancelAtTheFolderKeepsWhatIsInstalled) {
    KeepOnDiscAlone({Brescot, Merivo});
    const WorkshopUser user;
    user.Agree();
    const int questions = user.WaitForResult([&](HWND directory) {
        user.Press(directory, ids::B_Cancel);
        const HWND box = user.WaitForDialogOver(directory);
        EXPECT_EQ(MessageOf(box), Message(29));
        user.Answer(box, IDYES);
    });
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(user.ResultTexts(), FailureTexts(25));
    EXPECT_EQ(user.Leave(), 5U);
    EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"5", FolderOf(Brescot), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(Brescot), Brescot));
    EXPECT_FALSE(ReadCatalogue().contains(L"K2310MM"));
    EXPECT_FALSE(Exists(FolderOf(Merivo)));
}

TEST(Failures, AManualThatIsOpenElsewhereStaysAsItIs) {
    KeepOnDiscAlone({Brescot, Ondari});
    const auto rows = ReadCatalogue();
    const auto installed = FilesBelow(Manuals);
    const WorkshopUser user;
    {
        const FileHandle lock = HoldAlone(FolderOf(Brescot) + L"\\contents\\index.html");
        user.Install();
        EXPECT_EQ(user.ResultTexts(), InUseTexts(L"Brescot  K3420MM"));
    }
    EXPECT_EQ(ReadCatalogue(), rows);
    EXPECT_TRUE(FilesBelow(Manuals) == installed);
    user.CloseResult();
    const auto before = FilesBelow(FolderOf(Ondari));
    {
        const FileHandle lock = HoldAlone(FolderOf(Ondari) + L"\\contents\\index.html");
        user.Install();
        EXPECT_EQ(user.ResultTexts(), InUseTexts(L"Ondari  K4710MM"));
    }
    EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"5", FolderOf(Brescot), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(Brescot), Brescot));
    EXPECT_EQ(ReadCatalogue().at(L"K4710MM"), rows.at(L"K4710MM"));
    EXPECT_TRUE(FilesBelow(FolderOf(Ondari)) == before);
    user.CloseResult();
    user.Install();
    EXPECT_EQ(user.ResultTexts(), Succeeded());
    EXPECT_EQ(user.Leave(), 0U);
    EXPECT_EQ(ReadCatalogue().at(L"K4710MM"), (Row{L"4", FolderOf(Ondari), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(Ondari), Ondari));
}

}  // namespace
}  // namespace mip
