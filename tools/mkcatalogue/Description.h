#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/ModelOrder.h"

namespace mip {

/// What a new catalogue holds.
struct Description {
    std::int16_t Version = 0;
    std::vector<ModelOrderEntry> Models;

    bool operator==(const Description&) const = default;
};

/// A fault in a description; `what` is one English line, without the file's name.
class DescriptionError : public std::runtime_error {
  public:
    DescriptionError(std::size_t line, const std::string& text)
        : std::runtime_error("line " + std::to_string(line) + ": " + text) {}
};

/// Reads a description: UTF-8 text, one entry a line, `version N` once, and `model ID<TAB>description<TAB>order number`
/// for each model. Empty lines and lines that begin with # say nothing. Throws DescriptionError.
Description ParseDescription(std::string_view bytes);

}  // namespace mip
