#include "tests/native/fakes/Workshop.h"

#include <stdexcept>

#include "app/Messages.h"
#include "catalogue/modMDB.h"

namespace mip {
namespace {

constexpr char SettingsText[] =
    "[SYSTEM INFORMATION]\r\nLCID_Flg=0\r\nShortcutIcon=0\r\nKVX3_EXE_NAME=KVX3.exe\r\nKVX3_MDB_NAME=kvx3.mdb\r\n"
    "MCP_EXE_NAME=Manager.exe\r\nZIP_ExtractTime=20\r\nKVX3_NEW_MDB_NAME=kvx3new.mdb\r\n"
    "[MDB COLUMN LENGTH]\r\nPub_No=10\r\nModel_desc=40\r\nModel_ID=9\r\nVersion=5\r\nYear=4\r\nKubun=11\r\n"
    "Country=12\r\nLang=13\r\nLdup=14\r\n";

std::string MessagesText() {
    std::string text = "[MESSAGE]\r\n";
    for (const std::int16_t number : messages::All) {
        const std::string digits = std::to_string(number);
        const char* filled = number == messages::ManualOfManuals ? " @1/@2" : "";
        text += "M" + std::string(3 - digits.size(), '0') + digits + "=message " + digits + filled + "\r\n";
    }
    return text;
}

}  // namespace

void RecordedScreens::Show(const char* name) {
    if (Fail) {
        throw PlatformError("window", L"no window", errors::AccessDenied);
    }
    Shown.push_back(name);
}

void Process::Start(const std::vector<std::wstring>& arguments) {
    try {
        Main(Program, Flow, arguments);
    } catch (const ProcessEnded& end) {
        ExitCode = end.ExitCode;
    }
}

Workshop::Workshop() {
    SqliteEngine.Engine = &Embedded;
    static std::string newCatalogue;  // once for all, since fault loops need very many workshops
    if (newCatalogue.empty()) {
        PutCatalogue(NewSource, 3, {L"INSERT INTO M_order (Model_ID,Model_desc,OrderNo) VALUES ('KX1','Kombi',2)"});
        newCatalogue = Tree.BytesOf(NewSource);
    }
    for (const wchar_t* path : {NewSource, MdbPath}) {
        Tree.PutFile(path, newCatalogue);
    }
    PutSettings();
    Tree.PutFile(Messages, MessagesText());
    Tree.PutFile(L"D:\\index.html");
    Tree.PutFile(L"C:\\Vantor\\KVX3.exe");
    Tree.PutFolder(L"C:\\Korvex");
    for (const auto& [key, name, value] :
         {std::tuple{L"SOFTWARE\\VANTOR\\Korvex", L"ProgramPath", L"C:\\Korvex"},
          {L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir", L"C:\\Program Files"},
          {LibraryKey, L"InstallDir", InstallDir}}) {
        Registry.Put(Hive::LocalMachine, key, name, value);
    }
}

void Workshop::PutSettings(const std::string& from, const std::string& to) {
    std::string text = SettingsText;
    if (!from.empty()) {
        text.replace(text.find(from), from.size(), to);
    }
    Tree.PutFile(SettingsFile, text);
}

void Workshop::PutCatalogue(const std::wstring& path, std::int16_t layoutVersion,
                            const std::vector<std::wstring>& statements) {
    const std::wstring workFile = Computer.Temporary + L"\\new catalogue.mdb";
    {
        const auto connection = Embedded.Create(workFile, layoutVersion);
        connection->BeginTransaction();
        for (const std::wstring& statement : statements) {
            connection->Execute(statement);
        }
        connection->CommitTransaction();
    }
    Tree.PutFile(path, Tree.BytesOf(workFile));
    Tree.Erase(workFile);
}

void Workshop::PutRow(const std::wstring& pubNo, int version, const std::wstring& folder,
                      const std::wstring& adjustFlag, const std::wstring& pdfForm) {
    InstalledRecord record;
    record.Pub_No = pubNo;
    record.Version = std::to_wstring(version);
    record.INSPath = folder;
    record.Adjust_flg = adjustFlag;
    record.INSDate = Clock.Now();
    if (!InsertInstalledRecord(*Program().CatalogDb, record, pdfForm)) {
        throw std::runtime_error("the catalogue took no row");
    }
}

bool Workshop::StartProgram() {
    Run.reset();  // its catalogue is free before the next start looks at it
    Run = std::make_unique<Process>(Platform);
    Run->Start();
    return Run->Screens.Shown == std::vector<std::string>{"menu"};
}

StartedWorkshop::StartedWorkshop() {
    if (!StartProgram()) {
        throw std::runtime_error("the program does not start");
    }
}

}  // namespace mip
