#pragma once

#include <chrono>

namespace mip {

/// Local wall-clock time to the second, as the catalogue records it.
using DateTime = std::chrono::local_seconds;

}  // namespace mip
