#pragma once

#include <cstdint>

#include <windows.h>

#include "platform/Files.h"

namespace mip {

/// The system counts its ticks from 1601, FileTime counts them from 1970.
inline constexpr std::int64_t TicksFrom1601To1970 = 116'444'736'000'000'000;

inline FileTime FromSystemTime(const FILETIME& time) {
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
    return FileTime(FileTime::duration(static_cast<std::int64_t>(ticks) - TicksFrom1601To1970));
}

inline FILETIME ToSystemTime(FileTime time) {
    const auto ticks = static_cast<std::uint64_t>(time.time_since_epoch().count() + TicksFrom1601To1970);
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
}

}  // namespace mip
