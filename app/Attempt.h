#pragma once

#include <exception>
#include <string_view>
#include <type_traits>

#include "platform/FaultLog.h"

namespace mip {

/// Runs a step; what it throws is its failure, and a line in the log. True when the step has ended, and did not return
/// false.
template <typename Step>
bool Attempt(FaultLog& log, std::string_view routine, Step&& step) {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Step>>) {
            step();
            return true;
        } else {
            return step();
        }
    } catch (const std::exception& error) {
        log.Trapped(routine, error);
        return false;
    }
}

}  // namespace mip
