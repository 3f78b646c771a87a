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

/// All rows of the catalogue that a program has open.
std::vector<InstalledRecord> ListedRows(Program& program);

/// An installed manual with something in every column; `number` tells them apart.
InstalledRecord SampleRecord(int number);
std::vector<InstalledRecord> SampleRecords(int count);

}  // namespace mip
