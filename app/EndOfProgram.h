#pragma once

namespace mip {

struct Program;

/// What becomes of the temporary extraction folder when the program ends.
enum class TemporaryFolder { Remove, Keep };

/// How the screens end the program, which is the business of the room above them. Does not return.
using EndOfProgram = void (*)(Program& program, TemporaryFolder temporary);

}  // namespace mip
