#include "tests/native/startup/Workshop.h"

#include <stdexcept>

namespace mip {
namespace {

constexpr char SettingsText[] =
    "[SYSTEM INFORMATION]\r\nLCID_Flg=0\r\nShortcutIcon=1\r\nKVX3_EXE_NAME=KVX3.exe\r\nKVX3_MDB_NAME=kvx3.mdb\r\n"
    "MCP_EXE_NAME=Manager.exe\r\nZIP_ExtractTime=90000\r\nKVX3_NEW_MDB_NAME=new.mdb\r\n"
    "[MDB COLUMN LENGTH]\r\nPub_No=1\r\nModel_desc=2\r\nModel_ID=3\r\nVersion=4\r\nYear=5\r\nKubun=6\r\nCountry=7\r\n"
    "Lang=8\r\nLdup=9\r\n";

constexpr char MessagesText[] =
    "[MESSAGE]\r\nM019=no database\r\nM020=not opened\r\nM024=stopped\r\nM067=read-only\r\nM070=manager running\r\n"
    "M072=@1/@2/@3/@4/@5|older\r\nM073=Older manuals.\r\nM074=Go on?\r\nM096=\"Bad switch: \"\r\n";

class PlainConnection : public DatabaseConnection {
  public:
    explicit PlainConnection(std::shared_ptr<int> open) : open_(std::move(open)) { ++*open_; }
    ~PlainConnection() override { --*open_; }

    void Execute(const std::wstring& sql) override { throw PlatformError("Execute", sql, 1); }
    std::unique_ptr<Recordset> Query(const std::wstring& sql) override { throw PlatformError("Query", sql, 1); }
    void BeginTransaction() override {}
    void CommitTransaction() override {}
    void RollbackTransaction() override {}

  private:
    std::shared_ptr<int> open_;
};

}  // namespace

void RecordedScreens::Show(const char* name) {
    if (Fail) {
        throw std::runtime_error("no window");
    }
    Shown.push_back(name);
}

/// As the windows do.
void RecordedScreens::ShowStartPage() {
    OpenDiscIndex(program_);
}

std::unique_ptr<DatabaseConnection> PlainEngine::Open(const std::wstring& path) {
    if (Refuse) {
        throw PlatformError("Open", path, 1);
    }
    return std::make_unique<PlainConnection>(OpenConnections);
}

Workshop::Workshop() {
    Windows.SqliteEngine.Engine = &Engine;
    PutSettings();
    Windows.Tree.PutFile(std::wstring(SysDir) + L"\\M09.ini", MessagesText);
    Windows.Tree.PutFile(L"D:\\index.html");
    Windows.Tree.PutFile(std::wstring(Library) + L"\\KVX3.exe");
    Windows.Tree.PutFile(std::wstring(Library) + L"\\kvx3.mdb", std::string("SQLite format 3\0 rows", 21));
    const auto put = [this](const wchar_t* key, const wchar_t* name, const wchar_t* value) {
        Windows.Registry.Put(Hive::LocalMachine, key, name, value);
    };
    put(L"SOFTWARE\\VANTOR\\Korvex", L"ProgramPath", L"C:\\Korvex");
    put(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir", L"C:\\Program Files");
    put(LibraryKey, L"InstallDir", Library);
}

void Workshop::Start(const std::vector<std::wstring>& arguments) {
    try {
        Main(Program, Flow, arguments);
    } catch (const ProcessEnded& end) {
        ExitCode = end.ExitCode;
    }
}

void Workshop::PutSettings(const std::string& from, const std::string& to) {
    std::string text = SettingsText;
    if (!from.empty()) {
        text.replace(text.find(from), from.size(), to);
    }
    Windows.Tree.PutFile(std::wstring(SysDir) + L"\\SysParameter.ini", text);
}

}  // namespace mip
