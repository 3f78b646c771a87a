#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/native/fakes/Workshop.h"

namespace mip {

/// With a catalogue of layout 2, older than the disc's. The program has started and opened it.
struct CatalogueWorkshop : Workshop {
    /// `records` are the manuals of the catalogue, with the rows that they have in M_type when Pdf_flg is not empty.
    explicit CatalogueWorkshop(const std::vector<InstalledRecord>& records = {});
    /// With a catalogue file made before.
    explicit CatalogueWorkshop(const std::string& databaseBytes);

    /// As it does for a Workshop, for a user and at a time of the tests' own.
    bool StartProgram();
    /// All rows of the catalogue with the form that M_type has for each, by a gateway of its own.
    std::vector<InstalledRecord> Rows();
    std::int16_t Version();

    /// The files of the library but the diagnostic program.
    std::map<std::wstring, std::string> LibraryFiles();

    static constexpr wchar_t Backup[] = L"C:\\Vantor\\BACK_kvx3.mdb";
    static constexpr wchar_t Mark[] = L"C:\\Vantor\\kvx3.mdb.upgrade";
    static constexpr wchar_t NewCopy[] = L"C:\\Vantor\\kvx3new.mdb";
};

/// In the place of the engine for Jet files: finds the content of all of them in one file, and notes what it is sent.
struct JetStandIn : DatabaseEngine {
    struct Connection : DatabaseConnection {
        Connection(std::unique_ptr<DatabaseConnection> real, JetStandIn& engine)
            : Real(std::move(real)), Engine(engine) {}
        DatabaseConnection& Note(const std::wstring& text) {
            return Engine.Sent.push_back(text), Engine.OnSent(), *Real;
        }
        void Execute(const std::wstring& sql) override { Note(sql).Execute(sql); }
        std::unique_ptr<Recordset> Query(const std::wstring& sql) override { return Note(sql).Query(sql); }
        void BeginTransaction() override { Note(L"(begin)").BeginTransaction(); }
        void CommitTransaction() override { Note(L"(commit)").CommitTransaction(); }
        void RollbackTransaction() override { Note(L"(rollback)").RollbackTransaction(); }
        std::unique_ptr<DatabaseConnection> Real;
        JetStandIn& Engine;
    };

    explicit JetStandIn(CatalogueWorkshop& workshop) : Computer(workshop) { workshop.JetEngine.Engine = this; }
    std::unique_ptr<DatabaseConnection> Open(const std::wstring&) override {
        Sent.push_back(L"(open)");
        return std::make_unique<Connection>(Computer.Embedded.Open(Content), *this);
    }
    /// Makes a Jet file of an SQLite one.
    static void TakeOver(CatalogueWorkshop& workshop, const std::wstring& path) {
        workshop.Tree.PutFile(Content, workshop.Tree.BytesOf(path));
        workshop.Tree.Find(path)->Bytes = std::string("\0\1\0\0Standard Jet DB\0", 20);
    }

    static constexpr wchar_t Content[] = L"C:\\Temp\\content of the Jet file";
    CatalogueWorkshop& Computer;
    std::vector<std::wstring> Sent;
    std::function<void()> OnSent = [] {};
};

/// A record of these members, in their order.
template <class Record, class... Values>
Record Make(Values&&... values) {
    return {std::forward<Values>(values)...};
}

/// All rows of the catalogue that a program has open.
std::vector<InstalledRecord> ListedRows(Program& program);

/// An installed manual with something in every column; `number` tells them apart.
InstalledRecord SampleRecord(int number);
std::vector<InstalledRecord> SampleRecords(int count);

}  // namespace mip
