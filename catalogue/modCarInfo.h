#pragma once

#include <string>

namespace mip {

struct ColumnLengths;
struct DiscCatalogue;
struct DiscCatalogueRecord;
struct Program;

/// Reads every manual folder of the disc into Program::DiscCatalogue and classifies it against the catalogue database.
/// False after a fatal error; its texts are in the disc catalogue, which has none when the disc could not be listed.
[[nodiscard]] bool ScanDiscCatalogue(Program& program);
/// Reads, validates and classifies one folder; appends one record. Throws when the file or a version cannot be read.
void ReadCatalogueRecord(Program& program, const std::wstring& folderName);
bool HasCatalogueFile(const Program& program, const std::wstring& folderName);
/// True when all nine lengths are in range; fills the error texts otherwise.
bool ValidateCatalogueRecord(const ColumnLengths& lengths, const DiscCatalogueRecord& record, DiscCatalogue& catalogue);
bool CheckFieldLength(const std::wstring& value, std::int16_t maximum, bool emptyAllowed);
/// True when a later revision of the record's publication is installed. A database error stops the scan, as one in the
/// record's own look-up does.
bool IsSupersededPublication(Program& program, std::int16_t recordNumber);

}  // namespace mip
