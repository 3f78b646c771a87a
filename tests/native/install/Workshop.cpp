#include "tests/native/install/Workshop.h"

#include <gtest/gtest.h>

#include "app/Messages.h"
#include "app/modRegistry.h"
#include "app/modSysParameter.h"
#include "catalogue/modMDB.h"
#include "install/modManualInstall.h"
#include "startup/modMain.h"

namespace mip {

namespace {

constexpr wchar_t Library[] = L"C:\\Vantor";
constexpr std::int16_t Layout = 2;

void SetPaths(Paths& paths) {
    paths.ProgramFolder = L"D:\\programs\\setup";
    paths.SysDirPath = paths.ProgramFolder + L"\\SysDir";
    paths.SysParameterPath = paths.SysDirPath + L"\\SysParameter.ini";
    paths.RmDirBatPath = paths.SysDirPath + L"\\RmDir.bat";
    paths.DiscRootPath = L"D:\\";
    paths.SecondDiscBase = L"D:\\";
    paths.MdbPath = std::wstring(Library) + L"\\kvx3.mdb";
}

void SetRegistry(FakeRegistry& registry) {
    const auto write = [&](const wchar_t* key, const wchar_t* name, const wchar_t* value) {
        registry.WriteString(Hive::LocalMachine, key, name, value);
    };
    write(L"SOFTWARE\\VANTOR\\Korvex", L"ProgramPath", L"C:\\Korvex");
    write(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir", L"C:\\Program Files");
    write(L"SOFTWARE\\Vantor\\Korvex\\ManualLink", L"InstallDir", Library);
}

/// Of a run that must not show any.
class NoScreens : public Screens {
  public:
    void ShowMenu() override { ADD_FAILURE(); }
    void ShowAgreement() override { ADD_FAILURE(); }
    void ShowInstallation() override { ADD_FAILURE(); }
    void ShowResult() override { ADD_FAILURE(); }
    void ShowClosing() override { ADD_FAILURE(); }
    void ShowMaintenance() override { ADD_FAILURE(); }
    void ShowStartPage() override { ADD_FAILURE(); }
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord&, const std::wstring&) override {
        ADD_FAILURE();
        return std::nullopt;
    }
};

std::string Narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

}  // namespace

void RecordingView::SetBar(Bar bar, const BarState& state) {
    Bars[bar] = state;
    if (state.Visible) {
        ShownBars[bar].push_back(state);
    }
}

std::optional<std::wstring> RecordingView::AskForFolder(const DiscCatalogueRecord&, const std::wstring& proposal) {
    ++FoldersAsked;
    return OnAskForFolder ? OnAskForFolder(proposal) : proposal;
}

Workshop::Workshop() {
    Windows.SqliteEngine.Engine = &Engine;
    SetPaths(Run.Paths);
    SetRegistry(Windows.Registry);
    ReadInstallPaths(Run.Platform, Run.Identity.LanguageCode, Run.Paths);
    Run.Identity = {L"09", L"Mechanic", L"Users", L"Users"};

    std::string messages = "[MESSAGE]\r\n";
    for (int number = 1; number <= messages::Last; ++number) {
        const std::string digits = std::to_string(number);
        const char* filled = number == messages::ManualOfManuals ? " @1/@2" : "";
        messages += "M" + std::string(3 - digits.size(), '0') + digits + "=message " + digits + filled + "\r\n";
    }
    Windows.Tree.PutFile(Run.Paths.SysDirPath + L"\\M09.ini", messages);
    Windows.Tree.PutFile(L"D:\\programs\\man_manager\\setup.exe", "setup");
    Windows.Tree.PutFile(L"D:\\programs\\man_manager\\Manager.exe", "manager");
    Windows.Tree.PutFile(Run.Paths.SysParameterPath,
                         "[SYSTEM INFORMATION]\r\nLCID_Flg=0\r\nShortcutIcon=0\r\nKVX3_EXE_NAME=KVX3.exe\r\n"
                         "KVX3_MDB_NAME=kvx3.mdb\r\nMCP_EXE_NAME=Manager.exe\r\nZIP_ExtractTime=20\r\n"
                         "KVX3_NEW_MDB_NAME=kvx3new.mdb\r\n[MDB COLUMN LENGTH]\r\nPub_No=10\r\nModel_desc=40\r\n"
                         "Model_ID=10\r\nVersion=5\r\nYear=4\r\nKubun=10\r\nCountry=10\r\nLang=10\r\nLdup=10\r\n");
    Windows.Tree.PutFile(std::wstring(Library) + L"\\KVX3.exe", "diagnostic program");
    Windows.Tree.PutFolder(Library);
    Windows.Tree.PutFile(std::wstring(Library) + L"\\Manager.exe", "manager");

    FakeDrive& disc = *Windows.Tree.DriveOf(L"D:\\");
    disc.ReadOnly = false;
    Engine.Create(Run.Paths.ProgramFolder + L"\\kvx3new.mdb", Layout);
    disc.ReadOnly = true;
    Engine.Create(Run.Paths.MdbPath, Layout);
    EXPECT_TRUE(ReadSystemParameters(Run));
    OpenCatalogue(Run);
    View.OnAskForFolder = [](const std::wstring&) { return L"C:\\Manuals"; };
}

Workshop::Pages Workshop::ManualPages(const std::wstring& folder, const std::string& edition) {
    return {{folder + L"\\index.html", "frame of " + edition},
            {folder + L"\\contents\\index.html", "contents of " + edition},
            {folder + L"\\contents\\engine.html", "engine of " + edition},
            {folder + L"\\contents\\pictures\\engine.svg", "picture of " + edition}};
}

void Workshop::PutCarInfo(const std::wstring& pubNo, int version) {
    Windows.Tree.PutFile(L"D:\\" + pubNo + L"\\car_info.ci",
                         "[CAR_INFO]\r\nPub_No=" + Narrow(pubNo) + "\r\nVersion=" + std::to_string(version) +
                             "\r\nModel_desc=Aria\r\nModel_ID=AR1\r\nLang=EN\r\nLdup=0\r\nYear=2020\r\nKubun=\r\n"
                             "Country=GB\r\n");
}

void Workshop::PutArchiveManual(const std::wstring& pubNo, int version) {
    PutCarInfo(pubNo, version);
    Windows.Archives.Put(L"D:\\" + pubNo + L"\\install\\condense\\manual.zip",
                         ManualPages(pubNo, Narrow(pubNo) + " " + std::to_string(version)));
}

void Workshop::PutPdfManual(const std::wstring& pubNo, int version) {
    PutCarInfo(pubNo, version);
    Windows.Tree.PutFile(L"D:\\" + pubNo + L"\\contents\\" + pubNo + L".pdf", "%PDF-1.4");
    Windows.Tree.PutFile(L"D:\\" + pubNo + L"\\contents\\index.html", "opens the PDF");
}

void Workshop::PutComparisonSet(const std::wstring& pubNo, int version) {
    Windows.Tree.PutFile(L"D:\\" + pubNo + L"\\install\\compare\\engine.html",
                         "engine of " + Narrow(pubNo) + " " + std::to_string(version));
}

void Workshop::PutInstalledManual(const std::wstring& pubNo, int version) {
    for (const auto& [name, bytes] : ManualPages(pubNo, Narrow(pubNo) + " " + std::to_string(version))) {
        Windows.Tree.PutFile(L"C:\\Manuals\\" + name, bytes);
    }
    PutRow(pubNo, version, L"C:\\Manuals\\" + pubNo);
}

void Workshop::PutRow(const std::wstring& pubNo, int version, const std::wstring& folder) {
    InstalledRecord record;
    record.Pub_No = pubNo;
    record.Version = std::to_wstring(version);
    record.INSPath = folder;
    record.Adjust_flg = L"0";
    record.Pdf_flg = L"0";
    record.INSDate = Windows.Clock.Now();
    if (!InsertInstalledRecord(*Run.CatalogDb, record)) {
        throw std::runtime_error("the catalogue took no row");
    }
}

void Workshop::OpenCatalogue(Program& program) {
    program.CatalogDb = std::make_unique<clsMDB>(program.Platform);
    if (!program.CatalogDb->Pcls_MdbOpen(program.Paths.MdbPath)) {
        throw std::runtime_error("the catalogue does not open");
    }
}

Workshop::QuietRun Workshop::RunQuietly() {
    Program program(Windows.Platform);
    NoScreens none;
    ScreenFlow flow(program, none, EndProgram);
    try {
        Main(program, flow, {L"/VERYSILENT", L"/ACCEPT", L"/DIR=C:\\Manuals"});
    } catch (const ProcessEnded& end) {
        return {end.ExitCode, program.Log.Text()};
    }
    return {};
}

bool Workshop::Install() {
    InstallationDriver driver(Run, View, View);
    driver.FormLoad();
    return driver.RunInstallation();
}

std::map<std::wstring, Workshop::Row> Workshop::Rows() {
    Windows.Faults.Reset();
    clsMDB database(Windows.Platform);
    if (!database.Pcls_MdbOpen(Run.Paths.MdbPath)) {
        throw std::runtime_error("the catalogue does not open");
    }
    std::map<std::wstring, Row> rows;
    for (const InstalledRecord& record : ReadAllInstalled(Run, database, 0)) {
        rows[record.Pub_No] = {record.Version, record.INSPath, record.Adjust_flg};
    }
    return rows;
}

}  // namespace mip
