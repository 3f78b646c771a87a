#pragma once

#include <string>

namespace mip {

struct ColumnLengths;
struct DiscCatalogueRecord;
struct Paths;
struct Platform;
struct Program;

/// Reads every manual folder of the disc into Program::DiscCatalogue and classifies it against the catalogue database.
/// False after a fatal error; its texts are in the disc catalogue, which has none when the disc could not be listed.
[[nodiscard]] bool ScanDiscCatalogue(Program& program);
/// Reads, validates and classifies one folder; appends one record. False when the scan must stop there: the disc
/// catalogue then has the error's texts, and the record what was known of it.
[[nodiscard]] bool ReadCatalogueRecord(Program& program, const std::wstring& folderName);
bool HasCatalogueFile(Platform& platform, const Paths& paths, const std::wstring& folderName);
/// "" when all nine lengths are in range, else the text about the first that is not.
std::wstring ValidateCatalogueRecord(const ColumnLengths& lengths, const DiscCatalogueRecord& record);
bool CheckFieldLength(const std::wstring& value, std::int16_t maximum, bool emptyAllowed);
/// True when a later revision of the publication is installed. Throws when the catalogue does not answer.
bool IsSupersededPublication(Program& program, const std::wstring& pubNo);

}  // namespace mip
