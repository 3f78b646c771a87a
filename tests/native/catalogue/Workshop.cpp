#include "tests/native/catalogue/Workshop.h"

#include "catalogue/Statements.h"
#include "catalogue/modMDB.h"
#include "text/DateText.h"

namespace mip {

namespace {

constexpr wchar_t Model[] = L"INSERT INTO M_order (Model_ID,Model_desc,OrderNo) VALUES ('KX1','Kombi',2)";

std::vector<std::wstring> InsertStatements(const std::vector<InstalledRecord>& records) {
    std::vector<std::wstring> texts;
    for (const InstalledRecord& record : records) {
        texts.push_back(statements::InsertInstalled(record));
        if (!record.Pdf_flg.empty()) {
            texts.push_back(statements::InsertCarriedType(record.Pub_No, record.Pdf_flg));
        }
    }
    return texts;
}

}  // namespace

Workshop::Workshop(const std::vector<InstalledRecord>& records) {
    PutCatalogue(CurrentDatabase, 2, InsertStatements(records));
    PutNewSource();
    StartProgram();
}

Workshop::Workshop(const std::string& databaseBytes) {
    Tree.PutFile(CurrentDatabase, databaseBytes);
    PutNewSource();
    StartProgram();
}

void Workshop::PutNewSource() {
    static std::string made;  // once for all, since fault loops need very many workshops
    if (made.empty()) {
        PutCatalogue(NewSource, 3, {Model});
        made = Tree.BytesOf(NewSource);
    }
    Tree.PutFile(NewSource, made);
}

bool Workshop::StartProgram() {
    program_ = std::make_unique<mip::Program>(Platform);
    program_->Paths.InstallDir = InstallDir;
    program_->Paths.ProgramFolder = L"D:\\programs\\setup";
    program_->Paths.DiscRootPath = L"D:\\";
    program_->Paths.SysDirPath = L"D:\\programs\\setup\\SysDir";
    program_->Paths.MdbPath = CurrentDatabase;
    program_->Settings.Kvx3MdbName = L"KVX3.mdb";
    program_->Settings.Kvx3NewMdbName = L"KVX3_NEW.mdb";
    program_->Settings.Columns = {10, 20, 10, 4, 4, 4, 4, 4, 4};
    program_->Identity.UserName = L"O'Brien";
    program_->Identity.LanguageCode = L"09";
    program_->Identity.FullAccessTrustee = L"Users";
    program_->Installation.InstallTime1 = ParseDateTime(L"2024/05/06 07:08:10");
    program_->Installation.InstallTime2 = ParseDateTime(L"2024/05/06 07:08:11");
    program_->CatalogDb = std::make_unique<clsMDB>(program_->Platform);
    return program_->CatalogDb->Pcls_MdbOpen(CurrentDatabase);
}

std::vector<InstalledRecord> Workshop::Rows(const std::wstring& databasePath) {
    mip::Program reader(Platform);
    reader.CatalogDb = std::make_unique<clsMDB>(Platform);
    return reader.CatalogDb->Pcls_MdbOpen(databasePath) ? ListedRows(reader) : std::vector<InstalledRecord>{};
}

std::int16_t Workshop::Version(const std::wstring& databasePath) {
    clsMDB reader(Platform);
    return reader.Pcls_MdbOpen(databasePath) ? ReadDatabaseVersion(reader) : std::int16_t{-1};
}

std::vector<InstalledRecord> ListedRows(Program& program) {
    std::vector<InstalledRecord> rows;
    for (const InstalledRecord& row : OpenInstalledList(program, 0)) {
        rows.push_back(row);
    }
    return rows;
}

InstalledRecord SampleRecord(int number) {
    const std::wstring digits = std::to_wstring(100 + number);
    return Make<InstalledRecord>(
        L"K" + digits + L"0E", L"Driver's manual " + digits, L"KX1", std::to_wstring(1 + number % 4), L"2019",
        number % 2 == 0 ? L"" : L"整備", L"GB", L"EN", L"1", L"O'Brien",
        ParseDateTime(L"2021/03/04 05:06:07") + std::chrono::hours(number), L"C:\\Korvex\\Manual\\カバー " + digits,
        number % 3 == 0 ? L"1" : L"0", number % 5 == 0 ? std::wstring(255, L'メ') : L"", number % 2 == 0 ? L"1" : L"0",
        ManualForm::Archive);
}

std::vector<InstalledRecord> SampleRecords(int count) {
    std::vector<InstalledRecord> records;
    for (int number = 0; number < count; ++number) {
        records.push_back(SampleRecord(number));
    }
    return records;
}

}  // namespace mip
