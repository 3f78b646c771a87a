#pragma once

#include <cstdint>

namespace mip {

/// What the process ends with.
enum class ExitCode : std::uint32_t {
    Done = 0,           ///< all done
    CouldNotStart = 1,  ///< bad switch, settings, database
    NotAccepted = 2,    ///< agreement not accepted, or cancelled before anything was installed
    NoDiagnosticProgram = 3,
    FailedPartWay = 4,  ///< the installation failed part way
    CancelledPartWay = 5,
};

}  // namespace mip
