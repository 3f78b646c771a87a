#include "app/Program.h"
#include "manualinfo/modManualInfo.h"

#include <gtest/gtest.h>

#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

constexpr wchar_t Local[] = L"C:\\man_info\\man_info_do.ci";
constexpr wchar_t Disc[] = L"D:\\programs\\setup\\man_info_do.ci";

struct ManualInfo : testing::Test {
    ManualInfo() {
        program.Paths.DiscRootPath = L"D:\\";
        program.Paths.SysDirPath = L"D:\\programs\\setup\\SysDir";
        program.Paths.InstallDir = L"C:\\Manual";
        program.Identity.LanguageCode = L"09";
        program.Identity.FullAccessTrustee = L"Users";
        windows.Computer.CodePage = FakeCodePage::Latin1;
        windows.Tree.PutFolder(L"D:\\A1");
        windows.Tree.PutFolder(L"D:\\B2");
        windows.Tree.PutFile(L"D:\\programs\\setup\\SysDir\\M09.ini",
                             "[MESSAGE]\r\nM072=@1,@2,@3,@4,@5|again @5\r\nM073=Older.\r\nM074=Go on?\r\n");
    }

    ManualInfoCheck Compare(const std::string& local, const std::string& disc) {
        windows.Tree.PutFile(Local, local);
        windows.Tree.PutFile(Disc, disc);
        return CheckLocalManualInfo(program).value();
    }

    InMemoryWindows windows;
    Program program{windows.Platform};
};

TEST_F(ManualInfo, WithoutALocalFileTheDiscsIsTakenAndFailuresAreSaid) {
    const auto box = [](const wchar_t* text) { return ShownBox{text, 0, L"Manual Install Program"}; };
    EXPECT_TRUE(CheckLocalManualInfo(program).value().MayOpen) << "nothing on the disc";
    EXPECT_EQ(windows.MessageBoxes.Shown, std::vector{box(L"Set Access Error = C:\\man_info\\man_info_do.ci")});
    EXPECT_NE(program.Log.Text().find(L"copying the manual information"), std::wstring::npos);
    windows.Tree.PutFile(Disc, "anything");
    EXPECT_TRUE(CheckLocalManualInfo(program).value().MayOpen);
    EXPECT_EQ(windows.Tree.BytesOf(Local), "anything");
    EXPECT_EQ(windows.AccessControl.ListOf(Local).size(), 1u);
    EXPECT_EQ(windows.MessageBoxes.Shown.size(), 1u);
    program.Identity.FullAccessTrustee.clear();
    windows.Tree.Erase(Local);
    EXPECT_TRUE(CheckLocalManualInfo(program)) << "the system says what fails";
    EXPECT_EQ(windows.MessageBoxes.Shown.back(), box(L"Set Access Error = C:\\man_info\\man_info_do.ci"));
    windows.Tree.Erase(L"C:\\man_info");
    windows.Tree.DriveOf(L"C:")->ReadOnly = true;
    EXPECT_FALSE(CheckLocalManualInfo(program));
    EXPECT_EQ(windows.MessageBoxes.Shown.back(), box(L"Vantos Service System Error"));
}

TEST_F(ManualInfo, ComparisonDecidesAboutQuestionAndCopy) {
    const std::string good = "m,n,,A1,,2010/05\r\n";
    const struct {
        const char* Label;
        std::string Local, Disc;
        std::size_t Older;
        bool Copied, MayOpen = true;
    } cases[] = {
        {"same date", "m,n,,A1,,2010/05\r\n", "m,n,,A1,,2010/05,more\r\n", 0, false},
        {"newer", "m,n,,A1,,2010/05", "m,n,,A1,,2010/06,more", 0, true},
        {"unknown key", "", "m,n,,A1,,1990/01\n", 0, true},
        {"key in another case", "m,n,,a1,,2020/01", "m,n,,A1,,1990/01", 0, true},
        {"first local entry counts", "m,n,,A1,,2010/05\nm,n,,A1,,2012/05", "m,n,,A1,,2011/05", 0, true},
        {"not on the disc", "m,n,,C3,,2010/05", "m,n,,C3,,2009/05", 0, false},
        {"older", "m,n,,A1,,2010/05", "m,n,,A1,,2010/04", 1, false, false},
        {"older and newer", "m,n,,A1,,2010/05\nm,n,,B2,,2010/05", "m,n,,A1,,2010/04\nm,n,,B2,,2011/01", 1, false,
         false},
        {"empty disc file", "m,n,,A1,,2010/05", "", 0, false},
        {"too few fields", good, "m,n,,A1,2010/05", 0, false, false},
        {"impossible month", "m,n,,A1,,2010/13", good, 0, false, false},
        {"no date", good, "m,n,,A1,,", 0, false, false},
        {"day too much", good, "m,n,,A1,,2010/05/01", 0, false, false},
        {"empty line", good + "\r\n" + good, good, 0, false, false},
        {"binary", good, std::string("\0\xFF\x80,,,,,\x1A", 9), 0, false, false},
        {"UTF-16 cut short", "\xFF\xFE" + good, good, 0, false, false},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.Label);
        const ManualInfoCheck check = Compare(given.Local, given.Disc);
        EXPECT_EQ(check.OlderEntryLines.size(), given.Older);
        EXPECT_EQ(check.MayOpen, given.MayOpen);
        EXPECT_EQ(windows.Tree.BytesOf(Local), given.Copied ? given.Disc : given.Local);
    }
    EXPECT_NE(program.Log.Text().find(L"comparing the manual information: "), std::wstring::npos);
    EXPECT_EQ(windows.Clock.Sleeps, std::vector(12, std::chrono::milliseconds{1000})) << "three for each copy";
    EXPECT_EQ(windows.Clock.Yields, 12);
}

TEST_F(ManualInfo, QuestionNamesTheOlderEntriesInAnyEncoding) {
    std::string utf16 = "\xFF\xFE";
    for (const char byte : std::string("M\xE9,name,,A1,,2010/04")) {
        utf16 += {byte, '\0'};
    }
    for (const std::string& disc :
         {std::string("M\xE9,name,,A1,,2010/04"), std::string("\xEF\xBB\xBFM\xC3\xA9,name,,A1,,2010/04\r\n"), utf16}) {
        const ManualInfoCheck check = Compare("m,n,,A1,,2010/05", disc);
        windows.MessageBoxes.Answers = {boxes::AnswerNo};
        EXPECT_EQ(AskAboutManualInfo(program, check), boxes::AnswerNo);
        EXPECT_EQ(
            windows.MessageBoxes.Shown.back(),
            (ShownBox{L"Mé,name,A1,Apr 2010,name\ragain name\r\rOlder.\rGo on?", 52, L"Vantor Manual Information"}));
    }
}

TEST_F(ManualInfo, InstallationRefreshesOlderCopiesSilently) {
    using std::chrono::hours;
    windows.Tree.PutFolder(L"C:\\Manual");
    windows.Tree.PutFile(L"D:\\programs\\setup\\man_info_us.ci", "user");
    FileNode& disc = windows.Tree.PutFile(Disc, "disc");
    PrepareManualInfo(program.Platform, program.Paths);
    EXPECT_EQ(windows.Tree.BytesOf(Local), "disc");
    FileNode& placed = windows.Tree.PutFile(L"C:\\Manual\\man_info_do.ci", "mine");
    for (const hours later : {hours{1}, hours{0}}) {
        placed.Modified = disc.Modified + later;
        PlaceManualInfo(program.Platform, program.Paths);
        EXPECT_EQ(windows.Tree.BytesOf(L"C:\\Manual\\man_info_do.ci"), "mine") << later.count();
    }
    EXPECT_EQ(windows.Tree.BytesOf(L"C:\\Manual\\man_info_us.ci"), "user");
    placed.Modified = disc.Modified - hours{1};
    windows.Tree.Erase(L"D:\\programs\\setup\\man_info_us.ci");
    PlaceManualInfo(program.Platform, program.Paths);
    EXPECT_EQ(windows.Tree.BytesOf(L"C:\\Manual\\man_info_do.ci"), "disc");

    windows.Faults.FailFrom(1);
    EXPECT_NO_THROW(PrepareManualInfo(program.Platform, program.Paths));
    EXPECT_NO_THROW(PlaceManualInfo(program.Platform, program.Paths));
    EXPECT_TRUE(windows.MessageBoxes.Shown.empty());
}

}  // namespace
}  // namespace mip
