#include "screens/ScreenFlow.h"

#include "tests/native/screens/ScreensTest.h"

namespace mip {
namespace {

class ScreenFlowTest : public ScreensTest {
  protected:
    RecordedScreens screens_{program_};
    ScreenFlow flow_{program_, screens_, EndProgram};
};

using Names = std::vector<std::string>;

TEST_F(ScreenFlowTest, LeavingBeforeARunIsNotSuccessAndRefusingASecondOneKeepsTheExitCode) {
    EXPECT_EQ(ExitCodeOf([this] { flow_.CloseMenu(); }), 2U);
    EXPECT_EQ(ExitCodeOf([this] { flow_.AnswerAgreement(false); }), 2U);
    EXPECT_TRUE(screens_.Shown.empty());
    EXPECT_TRUE(windows_.Processes.StartedHidden.empty()) << "nothing is removed";
    program_.Outcome.RunFinished = true;
    program_.Outcome.ExitCode = ExitCode::Done;
    EXPECT_EQ(ExitCodeOf([this] { flow_.AnswerAgreement(false); }), 0U);
    flow_.CloseMenu();
    EXPECT_EQ(screens_.Shown, Names{"closing"});
}

TEST_F(ScreenFlowTest, TheResultButtonEndsTheProgramWhenNothingWasInstalled) {
    program_.Outcome.ExitCode = ExitCode::FailedPartWay;
    EXPECT_EQ(ExitCodeOf([this] { flow_.CloseResult(); }), 4U);
    EXPECT_TRUE(windows_.Processes.StartedHidden.empty()) << "the temporary folder is kept";
}

TEST_F(ScreenFlowTest, TheResultButtonClearsUpAndOpensTheManuals) {
    windows_.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\rest.html");
    windows_.Tree.PutFile(L"C:\\Manuals\\K1\\contents\\index.html");
    windows_.PutRow(L"K1", 1, L"C:\\Manuals\\K1");
    program_.Outcome.ManagerInstalled = true;
    bool servesMessages = false;
    windows_.Clock.OnYield = [&] {
        servesMessages = windows_.AccessControl.ListOf(L"C:\\Manuals\\K1").size() == 1 && screens_.Shown.empty();
    };
    flow_.CloseResult();
    EXPECT_TRUE(servesMessages) << "after the grant";
    EXPECT_FALSE(windows_.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp"));
    EXPECT_EQ(screens_.Shown, Names{"menu"});
}

TEST_F(ScreenFlowTest, AnUnreadableCatalogueIsSaidAndTheTemporaryFolderRemoved) {
    windows_.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\rest.html");
    EXPECT_EQ(ExitCodeOf([this] { flow_.FailResult(); }), 4U);
    EXPECT_EQ(windows_.MessageBoxes.Shown,
              (std::vector<ShownBox>{{L"MDB READ ERROR", boxes::Exclamation, L"Manual Install Program"}}));
    EXPECT_FALSE(windows_.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp"));
}

TEST_F(ScreenFlowTest, AQuietRunEndsWithItsOwnExitCode) {
    program_.Outcome.ExitCode = ExitCode::CancelledPartWay;
    program_.Outcome.ManualsRecorded = 1;
    program_.Switches.VerySilent = true;
    flow_.ChooseScreens();
    windows_.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\rest.html");
    EXPECT_EQ(ExitCodeOf([this] { flow_.ShowResult(); }), 5U);
    EXPECT_FALSE(windows_.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp"));
    EXPECT_EQ(flow_.AskForFolder({}, L"C:\\Manuals"), L"C:\\Manuals");
    program_.Outcome.RunFinished = true;
    EXPECT_EQ(ExitCodeOf([this] { flow_.CloseMenu(); }), 5U);
    program_.Switches.Remove = L"K9999MM";
    program_.CatalogDb = std::make_unique<clsMDB>(windows_.Platform);
    EXPECT_EQ(ExitCodeOf([this] { flow_.Begin(); }), 1U);
}

}  // namespace
}  // namespace mip
