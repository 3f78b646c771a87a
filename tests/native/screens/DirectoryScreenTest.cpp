#include "screens/DirectoryScreen.h"

#include "app/Failure.h"
#include "app/Messages.h"
#include "tests/native/screens/ScreensTest.h"

namespace mip {
namespace {

class DirectoryScreenTest : public ScreensTest {
  protected:
    DirectoryScreenTest() {
        DiscCatalogueRecord& manual = AddManual(L"K1210MM");
        manual.Model_desc = L"Talis";
        manual.Version = L"3";
        windows_.Tree.AddDrive({L"E:"});
        windows_.Tree.AddDrive({L"\\\\server\\share"});
    }

    void SetFree(const std::wstring& drive, std::uint64_t bytes) { windows_.Tree.DriveOf(drive)->FreeBytes = bytes; }
    DiscCatalogueRecord& Manual() { return program_.DiscCatalogue.Records.back(); }
};

TEST_F(DirectoryScreenTest, SizesAreRoundedUpToTheNextStep) {
    for (const auto& [size, rounded] : {std::pair{123'456'789.0, 130'000'000.0},
                                        {9'999'999.0, 10'000'000.0},
                                        {10'000'000.0, 20'000'000.0},
                                        {0.0, 10'000'000.0},
                                        {12'345'678'901.5, 12'350'000'000.0}}) {
        EXPECT_EQ(RoundUpToTenMillion(size, L"10000000"), rounded);
    }
    EXPECT_EQ(RoundUpToTenMillion(1234, L"200"), 1400);
}

TEST_F(DirectoryScreenTest, TheProgramFilesDriveKeepsAReserve) {
    for (const wchar_t* drive : {L"C:\\", L"E:\\", L"\\\\server\\share\\x"}) {
        SetFree(drive, 400'000'000);
    }
    for (const auto& [folder, free] : {std::pair{L"C:\\Manuals", 50'000'000},
                                       {L"c:", 50'000'000},
                                       {L"E:\\Manuals", 400'000'000},
                                       {L"\\\\server\\share\\Manuals", 400'000'000},
                                       {L"no drive", 0},
                                       {L"Q:\\Manuals", 0}}) {
        EXPECT_EQ(GetUsableFreeSpace(program_.Platform, program_.Paths, folder), free) << folder;
    }
}

TEST_F(DirectoryScreenTest, APdfManualNeedsItsOwnSizeAndAnyOtherAFixedOne) {
    const auto required = [this] { return RequiredBytes(windows_.Platform, program_.Paths, Manual()); };
    EXPECT_EQ(required(), 150'000'000);
    Manual().PdfForm = ManualForm::Pdf;
    EXPECT_EQ(required(), 10'000'000) << "no file";
    windows_.Tree.PutFile(L"D:\\K1210MM\\contents\\K1210MM.pdf", std::string(10'000'001, 'x'));
    EXPECT_EQ(required(), 20'000'000);
    windows_.Tree.Deny(L"D:\\K1210MM\\contents\\K1210MM.pdf");
    EXPECT_EQ(required(), 10'000'000) << "a file that cannot be asked";
    EXPECT_EQ(GetFileSize(program_.Platform, PdfSourcePath(program_.Paths, Manual())), 0);
    EXPECT_TRUE(Logged(L"asking for a file's size"));
}

TEST_F(DirectoryScreenTest, AFolderWithoutRoomIsRefusedAndACancelIsAskedAbout) {
    SetFree(L"C:\\", 499'999'999);
    EXPECT_FALSE(ConfirmFolder(program_, Manual(), L"C:\\Other"));
    EXPECT_EQ(windows_.MessageBoxes.Shown, (std::vector<ShownBox>{{L"message 22", boxes::Information, L"title"}}));
    SetFree(L"C:\\", 500'000'000);
    EXPECT_TRUE(ConfirmFolder(program_, Manual(), L"C:\\Other"));
    EXPECT_EQ(windows_.MessageBoxes.Shown.size(), 1U);
    windows_.MessageBoxes.Answers = {boxes::AnswerNo, boxes::AnswerYes};
    EXPECT_TRUE(!CancelFolder(program_) && program_.Outcome.ResultMessage.empty() && CancelFolder(program_));
    EXPECT_EQ(program_.Outcome.ResultMessage, L"message 25");
}

TEST_F(DirectoryScreenTest, TheTextsNameTheManualAndItsNumberAndTheChosenFolderIsNormalised) {
    std::string messages = windows_.Tree.BytesOf(Workshop::Messages);
    windows_.Tree.PutFile(Workshop::Messages, messages.replace(messages.find("message 59"), 10, "@ of @"));
    program_.Installation.NoFolderCount = 12;
    const DirectoryTexts expected{L"message 34",     L"Talis (Ver.3)", {L"12 of 12", L"message 27", L"message 28"},
                                  L"message 31",     L"message 6",     L"message 32",
                                  L"  message 33  ", L"message 21"};
    EXPECT_EQ(LoadDirectoryScreen(program_, Manual()), expected);
    EXPECT_EQ(ChangedFolder(L"C:\\Manuals", L""), L"C:\\Manuals") << "a cancelled choice";
    EXPECT_EQ(ChangedFolder(L"C:\\Manuals", L"E:\\"), L"E:");
}

TEST_F(DirectoryScreenTest, ARunWithoutQuestionsTakesTheSwitchFolderOrFails) {
    const auto choose = [this] { return ChooseFolderUnasked(program_, Manual(), L"C:\\Manuals"); };
    EXPECT_EQ(choose(), L"C:\\Manuals");
    program_.Switches.Directory = L"E:\\Library\\";
    EXPECT_EQ(choose(), L"E:\\Library");
    SetFree(L"E:\\", 149'999'999);
    try {
        (void)choose();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Message(), messages::NotEnoughSpace);
    }
}

}  // namespace
}  // namespace mip
