#include "screens/MaintenanceScreen.h"

#include "catalogue/modMDB.h"
#include "screens/AgreementScreen.h"
#include "screens/MenuScreen.h"
#include "screens/modBrowser.h"
#include "tests/native/screens/ScreensTest.h"

namespace mip {
namespace {

class MaintenanceScreenTest : public ScreensTest {
  protected:
    void Install(const std::wstring& pubNo, const std::wstring& pdfForm = L"0", const std::wstring& adjustFlag = L"0") {
        windows_.PutRow(pubNo, 1, L"C:\\Manuals\\" + pubNo, adjustFlag, pdfForm);
    }
    void Put(const std::wstring& path) { windows_.Tree.PutFile(L"C:\\Manuals\\" + path); }

    /// The manuals' marks, or "gone".
    std::wstring MarksOf(const std::vector<std::wstring>& pubNos) {
        std::wstring marks;
        for (const std::wstring& pubNo : pubNos) {
            const Lookup manual = FindInstalledRecord(program_, pubNo);
            marks += pubNo + L" " + (manual.Found() ? manual.Record.Adjust_flg : L"gone") + L"|";
        }
        return marks;
    }
};

TEST_F(MaintenanceScreenTest, AManualWithoutItsFilesIsMarkedFirstAndDeletedAtTheNextCheck) {
    const std::vector<std::wstring> all{L"WHOLE", L"NOINDEX", L"NOCONTENTS", L"NOTHING", L"PDF", L"NOPDF"};
    for (const std::wstring& pubNo : std::vector(all.begin(), all.begin() + 4)) {
        Install(pubNo);
    }
    Install(L"PDF", L"1", L"1");
    Install(L"NOPDF", L"1", L" 1");
    for (const wchar_t* file : {L"WHOLE\\index.html", L"WHOLE\\contents\\page.html", L"NOINDEX\\contents\\page.html",
                                L"NOCONTENTS\\index.html", L"PDF\\contents\\PDF.pdf"}) {
        Put(file);
    }
    EXPECT_TRUE(CheckInstalledManuals(program_));
    EXPECT_EQ(MarksOf(all), L"WHOLE 0|NOINDEX 1|NOCONTENTS 1|NOTHING 1|PDF 1|NOPDF 1|");
    Put(L"NOINDEX\\index.html");
    EXPECT_TRUE(CheckInstalledManuals(program_));
    EXPECT_EQ(MarksOf(all), L"WHOLE 0|NOINDEX 1|NOCONTENTS gone|NOTHING gone|PDF 1|NOPDF gone|");
    windows_.Tree.Erase(L"C:\\Manuals\\WHOLE");
    windows_.Tree.DriveOf(L"C:")->ReadOnly = true;
    EXPECT_FALSE(CheckInstalledManuals(program_));
    EXPECT_TRUE(Logged(L"\tNOINDEX\tmarked\r\n") && Logged(L"\tNOPDF\trow removed\r\n"));
}

TEST_F(MaintenanceScreenTest, RemovingOneManualTakesFolderAndRowAndOtherwiseTheExitCodeTells) {
    for (const wchar_t* pubNo : {L"K1210MM", L"K2310MM"}) {
        Install(pubNo);
        Put(pubNo + std::wstring(L"\\contents\\index.html"));
    }
    program_.Switches.Remove = L"K9999MM";
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::CouldNotStart) << "not installed";
    EXPECT_TRUE(windows_.Processes.StartedHidden.empty());

    program_.Switches.Remove = L"K1210MM";
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::Done);
    EXPECT_EQ(MarksOf({L"K1210MM", L"K2310MM"}), L"K1210MM gone|K2310MM 0|");
    EXPECT_FALSE(windows_.Tree.HasFolder(L"C:\\Manuals\\K1210MM"));
    EXPECT_TRUE(windows_.Tree.HasFolder(L"C:\\Manuals\\K2310MM"));
    EXPECT_EQ(windows_.Clock.Sleeps, std::vector<std::chrono::milliseconds>(5, std::chrono::seconds(1)));

    windows_.Tree.Erase(program_.Paths.RmDirBatPath);
    EXPECT_TRUE(RemoveOneManual(program_, L"C:\\Manuals\\K2310MM", L"K2310MM"));
    EXPECT_EQ(MarksOf({L"K2310MM"}), L"K2310MM gone|") << "also when its folder cannot be removed";

    program_.Switches = {};
    program_.Switches.Check = true;
    program_.CatalogDb = std::make_unique<clsMDB>(windows_.Platform);
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::FailedPartWay) << "catalogue closed";
    EXPECT_TRUE(Logged(L"\tK9999MM\tnot installed\r\n") && Logged(L"\tK1210MM\tdone\r\n"));
}

using OtherScreensTest = ScreensTest;

TEST_F(OtherScreensTest, TheAgreementIsThatOfTheLanguageElseTheEnglishOne) {
    const std::wstring folder = program_.Paths.SysDirPath;
    program_.Identity.LanguageCode = L"11";
    EXPECT_EQ(LoadAgreementText(program_), L"");
    windows_.Tree.PutFile(folder + L"\\Licence_09.txt", "One\r\nTwo");
    EXPECT_EQ(LoadAgreementText(program_), L"One\r\nTwo\r\n");
    windows_.Tree.PutFile(folder + L"\\Licence_11.txt", std::string("\xFF\xFE\x0C\x54", 4));
    EXPECT_EQ(LoadAgreementText(program_), L"同\r\n");
    windows_.Tree.Deny(folder + L"\\Licence_11.txt");
    EXPECT_EQ(LoadAgreementText(program_), L"") << "a file that cannot be read is no reason for another language";
    EXPECT_TRUE(Logged(L"reading the terms of use"));
}

TEST_F(OtherScreensTest, TheGuideIsOpenedByTheShellAndAFailureIsSaid) {
    OpenInstallationGuide(program_);
    EXPECT_EQ(windows_.Shell.Opened, (std::vector<OpenedDocument>{{L"Open", L"D:\\\\install.html", 3}}));
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
    windows_.Shell.OpenResult = 31;
    OpenInstallationGuide(program_);
    ReportStartPage(program_, Opening::Failed);
    EXPECT_EQ(windows_.MessageBoxes.Shown, (std::vector<ShownBox>{{L"message 88", boxes::Exclamation, L"title"},
                                                                  {L"message 104", boxes::Exclamation, L"title"}}));
}

}  // namespace
}  // namespace mip
