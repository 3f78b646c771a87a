#pragma once

#include <functional>

namespace mip {

struct Program;

/// Opens every installed manual's folder to the Users group; `folderDone`, where given, is called after each. False
/// when the catalogue could not be opened.
bool SecureInstalledManualFolders(Program& program, const std::function<void()>& folderDone = {});

}  // namespace mip
