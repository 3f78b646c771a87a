#pragma once

#include "app/Program.h"

namespace mip {

/// Opens the disc's installation guide; a box says so when that fails.
void OpenInstallationGuide(Program& program);

}  // namespace mip
