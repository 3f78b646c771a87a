#pragma once

#include <string>

namespace mip {

struct Paths;
struct Platform;
struct Program;

/// The catalogue is writable by every user of the computer, and this program runs with an administrator's rights: a
/// folder that a row names is removed or opened to all users only when it is a place for a manual.

/// True for an absolute path below a drive or share, spelled as the file system spells it: no quote or other forbidden
/// character, no empty part, no "." or "..", no part that ends in a blank or a dot.
bool IsPlainPath(const std::wstring& path);

/// True when manual folders may be made in the folder: a plain path or a drive's root, and not within the system's own
/// folder.
bool IsRootForManuals(Platform& platform, const Paths& paths, const std::wstring& folder);

/// Why a folder that a row names is neither removed nor opened to users, in English; "" for a place for a manual: a
/// plain path, not within the system's folder, holding none of the folders that the system or the programs live in, no
/// link, and, when it exists, with "contents" in it or made by this run.
std::wstring WhyLeftAlone(const Program& program, const std::wstring& folder);

/// True for a place for a manual. Otherwise the log says why the folder is left alone.
bool MayTouchFolder(Program& program, const std::wstring& folder);

}  // namespace mip
