#pragma once

#include <cstdint>
#include <functional>

#include "platform/PlatformError.h"

namespace mip {

/// The code with which an action of an adapter fails; 0 when it succeeds.
inline std::uint32_t CodeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const PlatformError& error) {
        return error.Code();
    }
    return 0;
}

}  // namespace mip
