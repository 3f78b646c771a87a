#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace mip {

/// Starts a command line hidden and waits until the process has ended, yielding to the message loop once a second.
/// True when it could be started; its exit code is not looked at.
bool RunAndWait(Platform& platform, const std::wstring& commandLine);
/// Sleeps; more than 32 seconds overflow the 16-bit milliseconds and do not wait at all.
void PauseSeconds(Clock& clock, std::int16_t seconds);
/// The same, as other parts of the system name it.
inline constexpr auto& WaitSeconds = PauseSeconds;
/// True when the name is none of the entries from 1 on, compared exactly.
bool IsProgramNotRunning(const std::vector<std::wstring>& processNames, const std::wstring& program);

}  // namespace mip
