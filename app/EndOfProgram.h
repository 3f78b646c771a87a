#pragma once

#include <cstdint>

namespace mip {

struct Program;

/// What becomes of the temporary extraction folder when the program ends.
enum class TemporaryFolder : std::int16_t { Remove = 0, Keep = 1 };

/// How the screens end the program, which is the business of the room above them. Does not return.
using EndOfProgram = void (*)(Program& program, TemporaryFolder temporary);

}  // namespace mip
