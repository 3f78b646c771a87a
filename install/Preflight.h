#pragma once

#include <string>

#include "install/ManualPlan.h"

namespace mip {

struct Platform;
struct Program;

/// Looks at everything that decides what happens to a manual whose folder is made below `root`. Changes nothing. Throws
/// Failure when the catalogue does not answer.
ManualFacts LookAtManual(Program& program, const DiscCatalogueRecord& manual, const std::wstring& root);
/// The same for a manual of which only the comparison set goes over the installed edition.
ManualFacts LookAtDifferences(Platform& platform, const DiscCatalogueRecord& manual);

/// True when an unpacked manual can be renamed from the temporary folder to `placed`.
bool CanMoveIntoPlace(const Program& program, const std::wstring& placed);

/// A file of the folder that another program has open, so that the folder cannot go whole; "" when there is none, or
/// the folder cannot be listed.
std::wstring FindFileInUse(Platform& platform, const std::wstring& folder);
/// The same among the files of `target` that a copy of `source` would replace.
std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target);

/// Reads the disc's edition from beginning to end as its installation will, so that the installed one may go. Throws
/// Failure with the message of a failed extraction or copy.
void RequireWholeManual(const Program& program, const DiscCatalogueRecord& manual);
/// Reads every file below a folder of the disc to its end. Throws Failure as above.
void RequireReadableFolder(Platform& platform, const std::wstring& folder);

}  // namespace mip
