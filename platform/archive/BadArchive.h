#pragma once

#include <string>

#include "platform/PlatformError.h"

namespace mip {

/// An archive that is damaged, or that asks for something that extraction refuses. The object is the entry's name, as
/// far as it is known.
class BadArchive : public PlatformError {
  public:
    explicit BadArchive(std::string_view fault, std::wstring entry = {})
        : PlatformError(fault, std::move(entry), InvalidData), fault_(fault) {}

    /// The same fault, its object led by the archive's path.
    BadArchive In(const std::wstring& archive) const {
        return BadArchive(fault_, Object().empty() ? archive : archive + L", " + Object());
    }

  private:
    static constexpr std::uint32_t InvalidData = 13;

    std::string fault_;
};

}  // namespace mip
