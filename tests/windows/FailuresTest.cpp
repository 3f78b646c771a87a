// An installation that fails, with the real program: what the user is told, what stays, and that the next run repairs.

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

#include "forms/ControlIds.h"
#include "platform/windows/Handle.h"
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

/// Installs what is on the disc, from the program's start to its end.
void ExpectRun(const std::wstring& texts, DWORD exitCode) {
    const WorkshopUser user;
    user.Install();
    EXPECT_EQ(user.ResultTexts(), texts);
    EXPECT_EQ(user.Leave(), exitCode);
}

/// The question whether to go on without a companion program.
HWND WaitForCompanionQuestion(const WorkshopUser& user) {
    const HWND box = user.WaitForDialogOver(user.WaitForProgress());
    EXPECT_EQ(TextOf(box), Message(34));
    EXPECT_EQ(MessageOf(box), Message(90) + Message(91));
    return box;
}

/// All that is installed: the rows and the files.
auto Library() {
    return std::pair(ReadCatalogue(), FilesBelow(Manuals));
}

/// What is installed of one manual.
auto Installed(const std::wstring& pubNo, const std::wstring& manual) {
    return std::pair(ReadCatalogue().at(pubNo), FilesBelow(FolderOf(manual)));
}

/// The disc's edition of a manual is recorded and there.
void ExpectDiscEdition(const std::wstring& pubNo, const std::wstring& version, const std::wstring& manual) {
    EXPECT_EQ(ReadCatalogue().at(pubNo), (Row{version, FolderOf(manual), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(manual), manual));
}

TEST(Failures, WithoutManagerSetupOrWithADamagedNewCatalogueTheRunStops) {
    const std::wstring setup = L"D:\\programs\\man_manager\\setup.exe";
    const std::wstring order = L"D:\\programs\\man_manager\\setup.fail";
    KeepOnDisc({Merivo});
    WriteBytes(order, "moves itself aside");
    const std::string catalogue = BytesOf(Catalogue);
    ExpectRun(FailureTexts(18), 4);
    EXPECT_EQ(BytesOf(Catalogue), catalogue);

    fs::rename(setup + L".aside", setup);
    fs::remove(order);
    fs::resize_file(L"D:\\programs\\setup\\kvx3new.mdb", 5000);
    ExpectRun(FailureTexts(71), 4);
    EXPECT_EQ(BytesOf(Catalogue), catalogue);
}

TEST(Failures, ACompanionThatFailsIsAskedAbout) {
    KeepOnDisc({Merivo});
    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "7");
    const auto before = Library();

    const WorkshopUser user;
    user.Agree();
    const HWND question = WaitForCompanionQuestion(user);
    for (const int button : {IDOK, IDCANCEL, IDYES, IDNO}) {
        EXPECT_EQ(GetDlgItem(question, button) != nullptr, button == IDYES || button == IDNO) << button;
        const LRESULT kind = SendMessageW(GetDlgItem(question, button), WM_GETDLGCODE, 0, 0);
        EXPECT_EQ((kind & DLGC_DEFPUSHBUTTON) != 0, button == IDNO) << button;
    }
    user.TypeKey(question, VK_RETURN);
    EXPECT_EQ(user.WaitForResult(), 0);
    EXPECT_EQ(user.ResultTexts(), FailureTexts(90)) << "Enter is a No";
    EXPECT_TRUE(Library() == before);

    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "nolog");
    WriteBytes(L"D:\\programs\\View\\setup.fail", "not a number");
    user.CloseResult();
    user.Agree();
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    EXPECT_EQ(user.WaitForResult(), 1);
    EXPECT_EQ(user.ResultTexts(), Succeeded());
    EXPECT_EQ(user.Leave(), 0U);
    ExpectDiscEdition(L"K2310MM", L"1", Merivo);
}

TEST(Failures, ADamagedArchiveLeavesTheEditionBeforeAndWhatWasInstalled) {
    KeepOnDiscAlone({Brescot, Halden});
    const std::string whole = BytesOf(ArchiveOf(Halden));
    std::string altered = whole;
    altered.at(whole.size() / 2) ^= 0x10;
    const auto before = Installed(L"K9310BR", Halden);
    for (const std::string& damaged : {whole.substr(0, whole.size() / 2), altered}) {
        WriteBytes(ArchiveOf(Halden), damaged);
        ExpectRun(FailureTexts(23), 4);
        EXPECT_TRUE(Installed(L"K9310BR", Halden) == before);
        ExpectDiscEdition(L"K3420MM", L"5", Brescot);
    }
}

TEST(Failures, ANewManualThatFailsIsNotRecorded) {
    KeepOnDiscAlone({Merivo, Diagnosis});
    const auto rows = ReadCatalogue();
    {
        const std::wstring pdf = FolderOf(Diagnosis) + L"\\contents\\K8040PD.pdf";
        WriteBytes(pdf, "copied by hand, and open");
        const FileHandle lock = HoldAlone(pdf);
        ExpectRun(InUseTexts(L"All models  K8040PD"), 4);
    }
    EXPECT_EQ(ReadCatalogue(), rows);

    KeepOnDisc({Merivo});
    const std::string archive = BytesOf(ArchiveOf(Merivo));
    WriteBytes(ArchiveOf(Merivo), archive.substr(0, archive.size() - 1000));
    ExpectRun(FailureTexts(23), 4);
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
    ExpectDiscEdition(L"K3420MM", L"5", Brescot);
    EXPECT_FALSE(ReadCatalogue().contains(L"K2310MM"));
    EXPECT_FALSE(Exists(FolderOf(Merivo)));
}

TEST(Failures, AManualThatIsOpenElsewhereStaysAsItIs) {
    KeepOnDiscAlone({Brescot, Ondari});
    const auto all = Library();
    const auto ondari = Installed(L"K4710MM", Ondari);
    const WorkshopUser user;
    const auto installWhileOpen = [&](const wchar_t* manual, const wchar_t* name) {
        const FileHandle lock = HoldAlone(FolderOf(manual) + L"\\contents\\index.html");
        user.Install();
        EXPECT_EQ(user.ResultTexts(), InUseTexts(name));
    };
    installWhileOpen(Brescot, L"Brescot  K3420MM");
    EXPECT_TRUE(Library() == all);
    user.CloseResult();
    installWhileOpen(Ondari, L"Ondari  K4710MM");
    ExpectDiscEdition(L"K3420MM", L"5", Brescot);
    EXPECT_TRUE(Installed(L"K4710MM", Ondari) == ondari);
    user.CloseResult();
    user.Install();
    EXPECT_EQ(user.ResultTexts(), Succeeded());
    EXPECT_EQ(user.Leave(), 0U);
    ExpectDiscEdition(L"K4710MM", L"4", Ondari);
}

}  // namespace
}  // namespace mip
