#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/DiscCatalogue.h"
#include "text/DateTime.h"
#include "tools/mkcatalogue/Description.h"

namespace mip {

/// What is wrong in a description, and where.
struct DescriptionFault {
    std::size_t Line = 0;
    std::string Field;  ///< the key or section; "" when it is the line as a whole
    std::string Text;

    bool operator==(const DescriptionFault&) const = default;
};

/// All faults of a description, in the order of their lines.
class DescriptionFaults : public std::runtime_error {
  public:
    explicit DescriptionFaults(std::vector<DescriptionFault> faults);

    const std::vector<DescriptionFault>& Faults() const { return faults_; }

  private:
    std::vector<DescriptionFault> faults_;
};

/// Where each key of a section stands; the section's own line under "".
using KeyLines = std::map<std::wstring, std::size_t>;

struct ManualDescription {
    DiscCatalogueRecord Record;  ///< the nine values, the form and the folder's name
    std::wstring Title;
    std::wstring Issued;  ///< "yyyy/mm"
    std::filesystem::path Source;
    KeyLines Lines;

    /// The line of a key, or of the section when the key is not there.
    std::size_t LineOf(const std::wstring& key) const;
};

/// One disc.
struct DiscDescription {
    Description Catalogue;  ///< the new catalogue's layout version and model order
    DateTime Date{};        ///< the time of all that is made
    std::wstring Label;     ///< of the image
    std::filesystem::path StartPage;
    std::filesystem::path Guide;
    std::vector<std::wstring> UserLanguages;  ///< of the manuals in man_info_us.ci; none: all
    std::vector<ManualDescription> Manuals;
};

/// Reads a description. UTF-8 text of sections `[disc]`, `[models]` and `[manual FOLDER]` with lines `key = value`;
/// empty lines and lines that begin with # or ; say nothing. Throws DescriptionFaults.
DiscDescription ParseDiscDescription(std::string_view bytes);

/// What can be said of the values without the disc's settings and without a look at the sources: faults are added.
void CheckDescription(const DiscDescription& description, std::vector<DescriptionFault>& faults);
/// The values against the settings' column lengths.
void CheckFieldLengths(const DiscDescription& description, const ColumnLengths& lengths,
                       std::vector<DescriptionFault>& faults);
/// Throws DescriptionFaults when there are any.
void ThrowFaults(std::vector<DescriptionFault> faults);

/// The nine fields of a car_info.ci in their order there.
struct CarInfoField {
    const wchar_t* Key;
    std::wstring DiscCatalogueRecord::*Value;
    std::int16_t ColumnLengths::*Length;
    bool MayBeEmpty = false;
};
extern const std::array<CarInfoField, 9> CarInfoFields;

}  // namespace mip
