#pragma once

#include <chrono>

namespace mip {

/// Local wall-clock time to the second, as the catalogue records it.
using DateTime = std::chrono::local_seconds;

/// Day zero of the database's dates, 30 December 1899: a date that nobody has entered.
inline constexpr DateTime ZeroDate{std::chrono::local_days{std::chrono::year{1899} / std::chrono::December / 30}};

}  // namespace mip
