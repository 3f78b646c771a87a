#include "tests/native/catalogue/CatalogueWorkshop.h"

#include "catalogue/Statements.h"
#include "catalogue/modMDB.h"
#include "text/DateText.h"

namespace mip {

namespace {

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

CatalogueWorkshop::CatalogueWorkshop(const std::vector<InstalledRecord>& records) {
    PutCatalogue(MdbPath, 2, InsertStatements(records));
    StartProgram();
}

CatalogueWorkshop::CatalogueWorkshop(const std::string& databaseBytes) {
    Tree.PutFile(MdbPath, databaseBytes);
    StartProgram();
}

bool CatalogueWorkshop::StartProgram() {
    Tree.Erase(Messages);  // which costs the many starts of the loops too much
    Computer.User = L"O'Brien";
    const bool started = Workshop::StartProgram();
    Program().Installation.InstallTime1 = ParseDateTime(L"2024/05/06 07:08:10");
    Program().Installation.InstallTime2 = ParseDateTime(L"2024/05/06 07:08:11");
    return started;
}

std::vector<InstalledRecord> CatalogueWorkshop::Rows() {
    mip::Program reader(Platform);
    reader.CatalogDb = std::make_unique<clsMDB>(Platform);
    return reader.CatalogDb->Pcls_MdbOpen(MdbPath) ? ListedRows(reader) : std::vector<InstalledRecord>{};
}

std::int16_t CatalogueWorkshop::Version() {
    clsMDB reader(Platform);
    return reader.Pcls_MdbOpen(MdbPath) ? ReadDatabaseVersion(reader) : std::int16_t{-1};
}

std::map<std::wstring, std::string> CatalogueWorkshop::LibraryFiles() {
    auto files = Tree.Snapshot(InstallDir);
    files.erase(L"C:\\Vantor\\KVX3.exe");
    return files;
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
