#pragma once

namespace mip {

struct Program;

/// Opens the disc's installation guide; a box says so when that fails.
void OpenInstallationGuide(const Program& program);

}  // namespace mip
