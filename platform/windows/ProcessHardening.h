#pragma once

namespace mip {

/// To be called before anything else: a disc that is taken out is an error of the program's, not a box of the system's;
/// and libraries come from the system's folder and the program's, never from the current one.
void HardenProcess();

}  // namespace mip
