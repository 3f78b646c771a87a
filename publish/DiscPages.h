#pragma once

#include <string>
#include <vector>

#include "publish/DiscDescription.h"

namespace mip {

/// A manual's car_info.ci, as the profile services read it.
std::string CarInfoFile(const DiscCatalogueRecord& manual);
/// A manual information file, UTF-8 with the mark: title, kind, publication, folder, version, month.
std::string ManualInfoFile(const std::vector<const ManualDescription*>& manuals);
/// The page that opens a PDF manual. With it an installed PDF manual has its first page, as every manual has.
std::string PdfPage(const ManualDescription& manual);
/// The start page: the template with the table of manuals in place of the line "<!-- manuals -->". Throws
/// std::runtime_error when the template has no such line.
std::string StartPage(const std::string& pageTemplate, const std::vector<ManualDescription>& manuals);

}  // namespace mip
