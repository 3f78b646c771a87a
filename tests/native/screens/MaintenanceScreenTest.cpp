#include "screens/MaintenanceScreen.h"

#include "catalogue/modMDB.h"
#include "screens/AgreementScreen.h"
#include "screens/MenuScreen.h"
#include "tests/native/screens/ScreensTest.h"

namespace mip {
namespace {

class MaintenanceScreenTest : public ScreensTest {
  protected:
    void Install(const std::wstring& pubNo, const std::wstring& pdfForm = L"0", const std::wstring& adjustFlag = L"0") {
        InstalledRecord record;
        record.Pub_No = pubNo;
        record.INSPath = L"C:\\Manuals\\" + pubNo;
        record.Pdf_flg = pdfForm;
        record.Adjust_flg = adjustFlag;
        record.INSDate = windows_.Clock.Now();
        ASSERT_TRUE(InsertInstalledRecord(*program_.CatalogDb, record));
    }
    void Put(const std::wstring& path) { windows_.Tree.PutFile(L"C:\\Manuals\\" + path); }

    /// The manual's mark, or "gone".
    std::wstring MarkOf(const std::wstring& pubNo) {
        const Lookup manual = FindInstalledRecord(program_, pubNo);
        return manual.Found() ? manual.Record.Adjust_flg : L"gone";
    }
};

TEST_F(MaintenanceScreenTest, AManualWithoutItsFilesIsMarkedFirstAndDeletedAtTheNextCheck) {
    for (const wchar_t* pubNo : {L"WHOLE", L"NOINDEX", L"NOCONTENTS", L"NOTHING"}) {
        Install(pubNo);
    }
    Install(L"PDF", L"1", L"1");
    Install(L"NOPDF", L"1", L" 1");
    Put(L"WHOLE\\index.html");
    Put(L"WHOLE\\contents\\page.html");
    Put(L"NOINDEX\\contents\\page.html");
    Put(L"NOCONTENTS\\index.html");
    Put(L"PDF\\contents\\PDF.pdf");

    const auto marks = [this] {
        std::wstring all;
        for (const wchar_t* pubNo : {L"WHOLE", L"NOINDEX", L"NOCONTENTS", L"NOTHING", L"PDF", L"NOPDF"}) {
            all += pubNo + (L" " + MarkOf(pubNo)) + L"|";
        }
        return all;
    };
    EXPECT_TRUE(CheckInstalledManuals(program_));
    EXPECT_EQ(marks(), L"WHOLE 0|NOINDEX 1|NOCONTENTS 1|NOTHING 1|PDF 1|NOPDF 1|");
    Put(L"NOINDEX\\index.html");
    EXPECT_TRUE(CheckInstalledManuals(program_));
    EXPECT_EQ(marks(), L"WHOLE 0|NOINDEX 1|NOCONTENTS gone|NOTHING gone|PDF 1|NOPDF gone|");
}

TEST_F(MaintenanceScreenTest, RemovingOneManualTakesFolderAndRow) {
    Install(L"K1210MM");
    Install(L"K2310MM");
    Put(L"K1210MM\\contents\\index.html");
    Put(L"K2310MM\\contents\\index.html");
    program_.Switches.Remove = L"K1210MM";
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::Done);
    EXPECT_EQ(MarkOf(L"K1210MM"), L"gone");
    EXPECT_EQ(MarkOf(L"K2310MM"), L"0");
    EXPECT_FALSE(windows_.Tree.HasFolder(L"C:\\Manuals\\K1210MM"));
    EXPECT_TRUE(windows_.Tree.HasFolder(L"C:\\Manuals\\K2310MM"));
    EXPECT_EQ(windows_.Processes.StartedHidden,
              (std::vector<std::wstring>{L"\"D:\\programs\\setup\\SysDir\\RmDir.bat\" \"C:\\Manuals\\K1210MM\""}));
    EXPECT_EQ(windows_.Clock.Sleeps.front(), std::chrono::seconds(1));
}

TEST_F(MaintenanceScreenTest, TheRowGoesEvenWhenTheFolderCannotBeRemoved) {
    Install(L"K1210MM");
    windows_.Tree.Erase(program_.Paths.RmDirBatPath);
    EXPECT_TRUE(RemoveOneManual(program_, L"C:\\Manuals\\K1210MM", L"K1210MM"));
    EXPECT_EQ(MarkOf(L"K1210MM"), L"gone");
}

TEST_F(MaintenanceScreenTest, TheExitCodeTellsWhatCouldNotBeDone) {
    Install(L"K1210MM");
    program_.Switches.Remove = L"K9999MM";
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::CouldNotStart) << "not installed";
    EXPECT_TRUE(windows_.Processes.StartedHidden.empty());

    program_.Switches = {};
    program_.Switches.Check = true;
    program_.CatalogDb = std::make_unique<clsMDB>(windows_.Platform);
    RunMaintenance(program_);
    EXPECT_EQ(program_.Outcome.ExitCode, ExitCode::FailedPartWay) << "catalogue closed";
}

class OtherScreensTest : public ScreensTest {};

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
}

TEST_F(OtherScreensTest, TheGuideIsOpenedByTheShellAndAFailureIsSaid) {
    OpenInstallationGuide(program_);
    EXPECT_EQ(windows_.Shell.Opened, (std::vector<OpenedDocument>{{L"Open", L"D:\\\\install.html", 3}}));
    EXPECT_TRUE(windows_.MessageBoxes.Shown.empty());
    windows_.Shell.OpenResult = 31;
    OpenInstallationGuide(program_);
    EXPECT_EQ(windows_.MessageBoxes.Shown, (std::vector<ShownBox>{{L"message 88", boxes::Exclamation, L"title"}}));
}

}  // namespace
}  // namespace mip
