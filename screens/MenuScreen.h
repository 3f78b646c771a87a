#pragma once

namespace mip {

struct Program;
enum class Opening;

/// Opens the disc's installation guide; a box says so when that fails.
void OpenInstallationGuide(const Program& program);
/// A box says so when the start page did not open.
void ReportStartPage(const Program& program, Opening opening);

}  // namespace mip
