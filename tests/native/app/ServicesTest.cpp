#include <gtest/gtest.h>

#include "app/ClsRegstry.h"
#include "app/PublicationNumber.h"
#include "app/TextFile.h"
#include "app/modLanguage.h"
#include "app/modRegistry.h"
#include "app/modShell.h"
#include "app/modSysParameter.h"
#include "platform/PlatformError.h"
#include "tests/native/fakes/Workshop.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

using std::chrono::milliseconds;

TEST(Settings, EveryKeyHasItsPlace) {
    Workshop shop;
    shop.PutSettings("LCID_Flg=0\r\nShortcutIcon=0", "LCID_Flg=2\r\nShortcutIcon=1");
    ASSERT_TRUE(shop.StartProgram());
    const Settings& settings = shop.Program().Settings;
    EXPECT_EQ(settings.LcidFlag, 2);
    EXPECT_EQ(settings.ShortcutIconFlag, 1);
    EXPECT_EQ(settings.Kvx3ExeName, L"KVX3.exe");
    EXPECT_EQ(settings.Kvx3MdbName, L"kvx3.mdb");
    EXPECT_EQ(settings.McpExeName, L"Manager.exe");
    EXPECT_EQ(settings.ZipExtractTime, 20);
    EXPECT_EQ(settings.Kvx3NewMdbName, L"kvx3new.mdb");
    EXPECT_EQ(settings.Columns, (ColumnLengths{10, 40, 9, 5, 4, 11, 12, 13, 14}));
}

TEST(Settings, ReadingStopsAtTheFirstBadNumber) {
    const struct {
        const char* From;
        const char* To;
        bool Succeeds;
        std::int16_t LastWidth;  ///< of Pub_No, read before the key in question or not at all
    } cases[] = {{"KVX3_EXE_NAME=KVX3.exe", "", true, 10},
                 {"ZIP_ExtractTime=20", "ZIP_ExtractTime=", false, 0},
                 {"LCID_Flg=0", "LCID_Flg=40000", false, 0},
                 {"Pub_No=10", "Pub_No=one", false, 0},
                 {"Model_desc=40", "Model_desc=2.5", false, 10}};
    for (const auto& given : cases) {
        SCOPED_TRACE(given.From);
        Workshop shop;
        shop.PutSettings(given.From, given.To);
        shop.Program().Paths.SysParameterPath = Workshop::SettingsFile;
        EXPECT_EQ(ReadSystemParameters(shop.Program()), given.Succeeds);
        EXPECT_EQ(shop.Program().Settings.Columns.Pub_No, given.LastWidth);
        EXPECT_EQ(shop.Program().Log.Text().find(L"reading the settings: ") == std::wstring::npos, given.Succeeds);
    }
}

TEST(Messages, FallBackIsByFileAndNotByKey) {
    const std::string longText(300, 'x');
    Workshop shop;
    shop.Program().Paths.SysDirPath = L"D:\\programs\\setup\\SysDir";
    shop.Tree.PutFile(Workshop::Messages, "[MESSAGE]\r\nM005=five\r\nM024=stopped\r\n");
    shop.Tree.PutFile(L"D:\\programs\\setup\\SysDir\\M11.ini",
                      "[MESSAGE]\r\nM005=go\r\nM1234=many\r\nM006=" + longText + "\r\n");
    const auto text = [&](const wchar_t* language, std::int16_t number) {
        shop.Program().Identity.LanguageCode = language;
        return GetMessageText(shop.Program(), number);
    };
    EXPECT_EQ(text(L"07", 5) + text(L"07", 24), L"fivestopped");
    EXPECT_EQ(text(L"11", 5), L"go");
    EXPECT_EQ(text(L"11", 24), L"");
    EXPECT_EQ(text(L"11", 1234), L"many");
    EXPECT_EQ(text(L"11", 6), std::wstring(255, L'x'));
    shop.Tree.Erase(Workshop::Messages);
    EXPECT_EQ(text(L"07", 5), L"");
}

TEST(InstallPaths, AreDerivedFromTheRegistryAndTheViewerHasADefaultFolder) {
    const struct {
        const wchar_t* Language;
        const wchar_t* Registered;
        const wchar_t* Viewer;
    } cases[] = {{L"09", L"F:\\View", L"F:\\View\\VBrowser.exe"},
                 {L"09", L"", L"E:\\Programs\\Vantor\\Korvex\\View\\VBrowser.exe"},
                 {L"11", L"", L"C:\\Program Files\\Vantor\\Korvex\\View\\VBrowser.exe"}};
    for (const auto& given : cases) {
        Workshop shop;
        const auto put = [&](const wchar_t* key, const wchar_t* name, const wchar_t* value) {
            shop.Registry.Put(Hive::LocalMachine, key, name, value);
        };
        put(Workshop::LibraryKey, L"InstallDir", L"C:\\Vantor\\");
        put(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir", L"E:\\Programs");
        put(L"SOFTWARE\\Vantor\\Korvex\\VantorView", L"InstallDir", given.Registered);
        Paths& paths = shop.Program().Paths;
        ReadInstallPaths(shop.Program().Platform, given.Language, paths);
        EXPECT_EQ(paths.SystemDrive, L"E:");
        EXPECT_EQ(paths.LinkManualPath, L"C:\\Korvex\\Link\\Manual");
        EXPECT_EQ(paths.LinkFolderPath, L"E:\\Programs\\Vantor\\Korvex\\Link");
        EXPECT_EQ(paths.UnZipTempPath, L"C:\\Vantor\\UnZipTemp");
        EXPECT_EQ(paths.ViewerExePath, given.Viewer);
        EXPECT_TRUE(shop.Tree.HasFolder(L"C:\\Korvex\\Link"));
        put(Workshop::LibraryKey, L"InstallDir", std::wstring(256, L'x').c_str());
        EXPECT_TRUE(RereadInstallPaths(shop.Program().Platform, given.Language, paths));
        EXPECT_EQ(paths.InstallDir, std::wstring(255, L'x'));
        EXPECT_EQ(shop.Program().Log.Text(), L"") << "the link folder is made once";
    }
    InMemoryWindows bare;
    Program program(bare.Platform);
    ReadInstallPaths(program.Platform, L"", program.Paths);
    EXPECT_EQ(program.Paths.UnZipTempPath, L"\\UnZipTemp");
    EXPECT_EQ(bare.Faults.Calls(), 4u) << "no folder is made where there is no path";
}

TEST(PerUserSettings, AbsentSettingIsStoredWithItsFirstDefault) {
    InMemoryWindows windows;
    ClsRegstry settings(windows.Registry);
    settings.AppName = L"App";
    settings.Section = L"Main";
    EXPECT_FALSE(settings.ChkReg());
    EXPECT_EQ(settings.GetReg(L"Colour", L"red"), L"red");
    EXPECT_EQ(settings.GetReg(L"Colour", L"blue"), L"red");
    constexpr wchar_t key[] = L"Software\\Vantor\\Settings\\App\\Main";
    EXPECT_EQ(windows.Registry.ReadString(Hive::CurrentUser, key, L"Colour"), L"red");
    settings.SavReg(L"Empty", L"");
    EXPECT_EQ(settings.GetReg(L"Empty", L"x"), L"");
    EXPECT_EQ(settings.GetAllReg().size(), 2u);
    settings.DelReg(L"Empty");
    EXPECT_TRUE(settings.ChkReg() && settings.GetAllReg().size() == 1);
    settings.DelReg(L"");
    EXPECT_FALSE(settings.ChkReg());
}

TEST(Processes, ArePolledEverySecondUntilTheyEnd) {
    Workshop shop;
    shop.Tree.PutFile(L"C:\\setup.exe");
    shop.Processes.On(L"setup.exe", [](const std::wstring&) { return ScriptedEnd{7, 2}; });
    EXPECT_TRUE(RunAndWait(shop.Program().Platform, L"C:\\setup.exe /s"));
    EXPECT_EQ(shop.Clock.Sleeps, std::vector<milliseconds>(3, milliseconds{1000}));
    EXPECT_EQ(shop.Clock.Yields, 3);
    EXPECT_FALSE(RunAndWait(shop.Program().Platform, L"C:\\missing.exe"));
    EXPECT_EQ(shop.Clock.Sleeps.size(), 3u);
    EXPECT_NE(shop.Program().Log.Text().find(L"running a program: "), std::wstring::npos);
}

TEST(Processes, NamesAreComparedExactlyFromOneOnAndWaitsBeyondSixteenBitsAreNone) {
    EXPECT_TRUE(IsProgramNotRunning({}, L"m.exe"));
    EXPECT_TRUE(IsProgramNotRunning({L"m.exe", L"M.EXE"}, L"m.exe"));
    EXPECT_FALSE(IsProgramNotRunning({L"", L"m.exe"}, L"m.exe"));
    EXPECT_FALSE(IsProgramNotRunning({L"", L"a.exe", L"m.exe"}, L"m.exe"));
    InMemoryWindows windows;
    for (const auto& wait : {PauseSeconds, WaitSeconds}) {
        wait(windows.Clock, 33);
        wait(windows.Clock, 32);
    }
    EXPECT_EQ(windows.Clock.Sleeps, std::vector<milliseconds>(2, milliseconds{32000}));
}

TEST(QuietRun, BoxesAreLoggedAndGetTheirDefaultAnswer) {
    Workshop shop;
    shop.Run->Start({L"/SILENT", L"/ACCEPT", L"/LOG=C:\\mip.log"});
    MessageBoxes& shown = shop.Program().Platform.MessageBoxes;
    EXPECT_EQ(shown.Show(L"go on?\r\nreally", boxes::YesNo, L""), boxes::AnswerYes);
    EXPECT_EQ(shown.Show(L"stop?", boxes::YesNo | boxes::SecondButtonDefault, L""), boxes::AnswerNo);
    EXPECT_EQ(shown.Show(L"done", boxes::Ok, L""), boxes::AnswerOk);
    EXPECT_TRUE(shop.MessageBoxes.Shown.empty());
    shop.AccessControl.SystemMessages[0] = L"well done";
    RunLog& log = shop.Program().Log;
    log.Message(7, L"seven");
    log.SetContext(L"install", L"A1");
    log.Trapped("trying", PlatformError("Open", L"", 0));
    log.Trapped("trying", PlatformError("Open", L"C:\\x", 5, L"its own words"));
    EXPECT_EQ(shop.LogText(),
              "2024-05-06 07:08:09\tstart-up\t\tstarted\r\n2024-05-06 07:08:09\tmessage\t\tgo on?  really\r\n"
              "2024-05-06 07:08:09\tmessage\t\tstop?\r\n2024-05-06 07:08:09\tmessage\t\tdone\r\n"
              "2024-05-06 07:08:09\tstart-up\t\tmessage 7: seven\r\n"
              "2024-05-06 07:08:09\tinstall\tA1\ttrying: Open failed with code 0\r\n"
              "2024-05-06 07:08:09\tinstall\tA1\ttrying: Open failed with code 5 on C:\\x: its own words\r\n");
    shop.Tree.Deny(L"C:\\mip.log");
    EXPECT_NO_THROW(shop.Program().Log.Write(L"install", L"A1", L"done")) << "a lost log file stops nothing";
    for (std::size_t line = 0; line < RunLog::Capacity; ++line) {
        log.Write(L"", L"", std::to_wstring(line));
    }
    EXPECT_TRUE(log.Text().starts_with(L"2024-05-06 07:08:09\t\t\t0\r\n"));
}

TEST(TextFiles, AreReadInTheirOwnEncoding) {
    InMemoryWindows windows;
    FakeComputer& computer = windows.Computer;
    computer.CodePage = FakeCodePage::Latin1;
    using namespace std::string_literals;
    for (const std::string& bytes : {"\xE9"s, "\xEF\xBB\xBF\xC3\xA9"s, "\xFF\xFE\xE9\0"s, "\xFE\xFF\0\xE9"s}) {
        EXPECT_EQ(DecodeTextFile(bytes, computer), L"é");
    }
    EXPECT_EQ(ToUtf8(DecodeTextFile("\xFF\xFE\x3D\xD8\x97\xDE"s, computer)), "\xF0\x9F\x9A\x97");
    EXPECT_EQ(DecodeTextFile("\xFF\xFE\x3D\xD8\x41\0\x42"s, computer), L"\uFFFDA\uFFFD");
}

TEST(Language, CodesOfIdentifiers) {
    const std::vector<std::pair<const wchar_t*, const wchar_t*>> cases{
        {L"0411", L"11"},  {L"0409", L"09"},  {L"0809", L"09"},  {L"0407", L"07"}, {L"0804", L"04S"},
        {L"1004", L"04S"}, {L"0404", L"04T"}, {L"0c04", L"04T"}, {L"1404", L"04"}, {L"040c", L"0C"},
        {L"0411;", L"11"}, {L"041", L"1"},    {L"0", L""},
    };
    for (const auto& [identifier, code] : cases) {
        EXPECT_EQ(LanguageCodeOf(identifier), code);
        EXPECT_EQ(ScreenFont(code), std::wstring_view(code) == L"11" ? L"MS Pゴシック" : L"Arial");
    }
    EXPECT_EQ(MakeLcid(MakeLangId(0, 1)), 0x0400u);
}

TEST(PublicationNumbers, HaveTheEditionAsFifthCharacter) {
    EXPECT_EQ(BaseEditionOf(L"K4713MM"), L"K4710MM");
    EXPECT_EQ(BaseEditionOf(L"K4719MM"), L"K4710MM");
    EXPECT_EQ(BaseEditionOf(L"K4710MM"), L"");
    EXPECT_EQ(LaterRevisionsOf(L"K4717MM"), (std::vector<std::wstring>{L"K4718MM", L"K4719MM"}));
    for (const wchar_t* bad : {L"K471XMM", L"K471", L"", L"K471\uFF13MM"}) {
        EXPECT_THROW(BaseEditionOf(bad), ConversionError);
    }
}

}  // namespace
}  // namespace mip
