#pragma once

#include <string>

#include "platform/Registry.h"

namespace mip {

struct Paths;
struct Platform;

/// A string value, at most 255 characters; "" when the key or the value is absent.
std::wstring ReadRegistryString(Registry& registry, Hive hive, const std::wstring& key, const std::wstring& valueName);
/// Reads the registry and derives the installation paths; creates the Link folder when it is missing.
void ReadInstallPaths(Platform& platform, const std::wstring& languageCode, Paths& paths);
/// Reads the paths again after a setup. False, and the paths as they were, when one that a run cannot do without has
/// become empty.
[[nodiscard]] bool RereadInstallPaths(Platform& platform, const std::wstring& languageCode, Paths& paths);

}  // namespace mip
