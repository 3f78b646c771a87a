#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/Program.h"
#include "tests/native/fakes/CatalogueWindows.h"

namespace mip {

/// A workshop's computer with a catalogue of layout 2, and a disc in the drive that brings an empty one of layout 3
/// with a model order. The program has started on it and opened the catalogue.
struct Workshop : CatalogueWindows {
    /// `records` are the manuals of the catalogue, with the rows that they have in M_type when Pdf_flg is not empty.
    explicit Workshop(const std::vector<InstalledRecord>& records = {});
    /// With a catalogue file made before.
    explicit Workshop(const std::string& databaseBytes);

    /// A new process on the same computer: what start-up sets, and the catalogue opened. False when it does not open.
    bool StartProgram();
    mip::Program& Program() { return *program_; }

    /// All rows of the catalogue at a path with the form that M_type has for each, by a gateway of its own.
    std::vector<InstalledRecord> Rows(const std::wstring& databasePath = CurrentDatabase);
    std::int16_t Version(const std::wstring& databasePath = CurrentDatabase);

    static constexpr wchar_t InstallDir[] = L"C:\\Korvex\\Manual";
    static constexpr wchar_t CurrentDatabase[] = L"C:\\Korvex\\Manual\\KVX3.mdb";
    static constexpr wchar_t Backup[] = L"C:\\Korvex\\Manual\\BACK_KVX3.mdb";
    static constexpr wchar_t Mark[] = L"C:\\Korvex\\Manual\\KVX3.mdb.upgrade";
    static constexpr wchar_t NewCopy[] = L"C:\\Korvex\\Manual\\KVX3_NEW.mdb";
    static constexpr wchar_t NewSource[] = L"D:\\programs\\setup\\KVX3_NEW.mdb";

  private:
    void PutNewSource();

    std::unique_ptr<mip::Program> program_;
};

/// In the place of the engine for Jet files: finds the content of all of them in one file, and notes what it is sent.
struct JetStandIn : DatabaseEngine {
    struct Connection : DatabaseConnection {
        Connection(std::unique_ptr<DatabaseConnection> real, std::vector<std::wstring>& sent)
            : Real(std::move(real)), Sent(sent) {}
        DatabaseConnection& Note(const std::wstring& text) { return Sent.push_back(text), *Real; }
        void Execute(const std::wstring& sql) override { Note(sql).Execute(sql); }
        std::unique_ptr<Recordset> Query(const std::wstring& sql) override { return Note(sql).Query(sql); }
        void BeginTransaction() override { Note(L"(begin)").BeginTransaction(); }
        void CommitTransaction() override { Note(L"(commit)").CommitTransaction(); }
        void RollbackTransaction() override { Note(L"(rollback)").RollbackTransaction(); }
        std::unique_ptr<DatabaseConnection> Real;
        std::vector<std::wstring>& Sent;
    };

    explicit JetStandIn(Workshop& workshop) : Computer(workshop) { workshop.JetEngine.Engine = this; }
    std::unique_ptr<DatabaseConnection> Open(const std::wstring&) override {
        Sent.push_back(L"(open)");
        return std::make_unique<Connection>(Computer.Embedded.Open(Content), Sent);
    }
    /// Makes a Jet file of an SQLite one.
    static void TakeOver(Workshop& workshop, const std::wstring& path) {
        workshop.Tree.PutFile(Content, workshop.Tree.BytesOf(path));
        workshop.Tree.Find(path)->Bytes = std::string("\0\1\0\0Standard Jet DB\0", 20);
    }

    static constexpr wchar_t Content[] = L"C:\\Temp\\content of the Jet file";
    Workshop& Computer;
    std::vector<std::wstring> Sent;
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
