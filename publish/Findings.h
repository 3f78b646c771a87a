#pragma once

#include <string>
#include <tuple>
#include <vector>

namespace mip {

/// Something of a disc that would fail or surprise at a workshop.
struct Finding {
    std::string File;  ///< below the disc's root, parts joined by slashes; "" for the disc as a whole
    std::string Code;  ///< a short name of the kind, for scripts
    std::string Text;
    std::string Fix;  ///< what the publisher does about it

    bool operator<(const Finding& other) const {
        return std::tie(File, Code, Text) < std::tie(other.File, other.Code, other.Text);
    }
};

using Findings = std::vector<Finding>;

/// One line a finding.
std::string FindingsText(const Findings& findings);
/// An array of objects with the members file, code, text and fix.
std::string FindingsJson(const Findings& findings);

}  // namespace mip
