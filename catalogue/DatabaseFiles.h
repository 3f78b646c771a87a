#pragma once

#include <string>

#include "platform/Platform.h"

namespace mip {

/// What the embedded engine keeps beside a database while it changes it. Left there by a power cut, it would be applied
/// to the next database of that name.
std::wstring JournalOf(const std::wstring& database);
/// Deletes a file that is of no use any more. A file that is held, by a virus scanner for instance, gets a second try.
/// False, and a line in the log, when it stays.
bool Discard(Platform& platform, const std::wstring& file);
/// The same for a database with its journal.
void DiscardDatabase(Platform& platform, const std::wstring& database);

}  // namespace mip
