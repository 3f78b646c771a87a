#include "app/modShell.h"

#include <algorithm>
#include <memory>

#include "platform/Clock.h"
#include "platform/Processes.h"
#include "text/Checked.h"

namespace mip {

bool RunAndWait(Platform& platform, const std::wstring& commandLine) {
    try {
        const std::unique_ptr<RunningProcess> process = platform.Processes.StartHidden(commandLine);
        std::uint32_t exitCode = StillActive;
        while (exitCode == StillActive) {
            PauseSeconds(platform.Clock, 1);
            exitCode = process->ExitCode();
            platform.Clock.YieldToMessages();
        }
        return true;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("running a program", error);
        return false;
    }
}

void PauseSeconds(Clock& clock, std::int16_t seconds) {
    try {
        clock.Sleep(std::chrono::milliseconds{Multiply16(seconds, 1000)});
    } catch (const OverflowError&) {
        // A wait that does not fit is no wait.
    }
}

bool IsProgramNotRunning(const std::vector<std::wstring>& processNames, const std::wstring& program) {
    return processNames.empty() ||
           std::find(processNames.begin() + 1, processNames.end(), program) == processNames.end();
}

}  // namespace mip
