#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Processes.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// What a started command ends with, and how many polls of its exit code find it still running.
struct ScriptedEnd {
    std::uint32_t ExitCode = 0;
    int Polls = 0;
};

/// Programs are files of the tree. What one does is the handler set for it; without a handler it ends with 0, and a
/// file named "RmDir.bat" removes the folder of its one argument as the disc's batch file does; each file and folder
/// that it removes is a call of its own to Faults.
class FakeProcesses : public Processes {
  public:
    using Handler = std::function<ScriptedEnd(const std::wstring& commandLine)>;

    FakeProcesses(FileTree& tree, Faults& faults) : tree_(tree), faults_(faults) {}

    std::optional<std::vector<std::wstring>> Snapshot() override;
    std::unique_ptr<RunningProcess> StartHidden(const std::wstring& commandLine) override;
    void StartVisible(const std::wstring& commandLine) override;

    /// Called when a program is started, by its full path or its file name. It may change the tree and must not expect
    /// faults to be counted for that.
    void On(const std::wstring& program, Handler handler);

    /// What `Snapshot` gives; nothing for a computer that has no snapshot.
    std::optional<std::vector<std::wstring>> Running;
    std::vector<std::wstring> StartedHidden;
    std::vector<std::wstring> StartedVisible;

  private:
    ScriptedEnd Start(const std::wstring& commandLine);

    FileTree& tree_;
    Faults& faults_;
    std::map<std::wstring, Handler> handlers_;
};

}  // namespace mip
