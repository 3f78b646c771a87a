#pragma once

#include <filesystem>

#include "publish/DiscPlatform.h"
#include "publish/Findings.h"

namespace mip {

/// Reads a disc's folder as the program does, and all of it. The findings come sorted by file. Throws PlatformError and
/// std::filesystem::filesystem_error when the disc cannot be read.
Findings CheckDisc(const std::filesystem::path& root);
/// The same for a disc's image, which is unpacked into a temporary folder.
Findings CheckImage(const std::filesystem::path& image);

/// The parts of the check: each adds what it finds. Settings come first, the catalogue's model order before the
/// manuals.
void CheckSettings(DiscProgram& disc, Findings& findings);
void CheckTexts(DiscProgram& disc, Findings& findings);
void CheckCatalogue(DiscProgram& disc, Findings& findings);
void CheckManuals(DiscProgram& disc, Findings& findings);
/// An archive, its loose pages and its comparison set.
void CheckArchive(DiscProgram& disc, const DiscCatalogueRecord& manual, Findings& findings);
/// The manual information files, against the manuals that were found before.
void CheckManualInfo(DiscProgram& disc, Findings& findings);
/// Every name on the disc.
void CheckNames(DiscProgram& disc, Findings& findings);
/// Where the start pages lead.
void CheckLinks(DiscProgram& disc, Findings& findings);

/// A path of drive D: as a finding shows it.
std::string OnDisc(const std::wstring& path);
/// Adds a finding for a text file that is read differently from computer to computer. False then.
bool CheckEncoding(DiscProgram& disc, const std::wstring& file, bool utf8IsKnown, Findings& findings);
/// Adds a finding when a file is not there. False then.
bool RequireFile(DiscProgram& disc, const std::wstring& file, const std::string& fix, Findings& findings);

}  // namespace mip
