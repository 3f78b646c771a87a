#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/modFile.h"
#include "platform/DriveName.h"
#include "platform/Processes.h"
#include "platform/ProgramSearch.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"
#include "text/TextTools.h"

namespace mip {

/// What a started command ends with, and how many polls of its exit code find it still running.
struct ScriptedEnd {
    std::uint32_t ExitCode = 0;
    int Polls = 0;
};

/// Programs are files of the tree. What one does is the handler set for it; without a handler it ends with 0, and a
/// file named "RmDir.bat" removes the folder of its one argument as the disc's batch file does; each file and folder
/// that it removes is a call of its own to Faults.
class FakeProcesses : public Processes, private OnTree {
  public:
    using OnTree::OnTree;
    using Handler = std::function<ScriptedEnd(const std::wstring& commandLine)>;

    std::optional<std::vector<std::wstring>> Snapshot() override {
        return faults_.Fails("Processes.Snapshot") ? std::nullopt : Running;
    }
    std::unique_ptr<RunningProcess> StartHidden(const std::wstring& commandLine) override {
        faults_.Check("Processes.StartHidden", commandLine);
        StartedHidden.push_back(commandLine);
        return std::make_unique<RunningFake>(Start(commandLine), faults_);
    }
    void StartVisible(const std::wstring& commandLine) override {
        faults_.Check("Processes.StartVisible", commandLine);
        StartedVisible.push_back(commandLine);
        Start(commandLine);
    }

    /// Called when a program is started, by its full path or its file name. It may change the tree and must not expect
    /// faults to be counted for that.
    void On(const std::wstring& program, Handler handler) { handlers_[ToUpper(program)] = std::move(handler); }

    /// What `Snapshot` gives; nothing for a computer that has no snapshot.
    std::optional<std::vector<std::wstring>> Running;
    std::vector<std::wstring> StartedHidden;
    std::vector<std::wstring> StartedVisible;

  private:
    struct RunningFake : RunningProcess {
        RunningFake(ScriptedEnd end, Faults& faults) : End(end), Counter(faults) {}
        std::uint32_t ExitCode() override {
            Counter.Check("RunningProcess.ExitCode", L"");
            return End.Polls-- > 0 ? StillActive : End.ExitCode;
        }
        ScriptedEnd End;
        Faults& Counter;
    };

    ScriptedEnd Start(const std::wstring& commandLine) {
        const auto call = FindProgram(commandLine, [this](const std::wstring& path) { return tree_.HasFile(path); });
        if (!call || (IsBatchFile(call->Program) && !AreBatchArguments(call->Arguments))) {
            throw PlatformError("Start", commandLine, call ? errors::InvalidName : errors::FileNotFound);
        }
        const std::wstring name = ToUpper(LastComponent(call->Program));
        for (const std::wstring& key : {ToUpper(call->Program), name}) {
            if (const auto handler = handlers_.find(key); handler != handlers_.end()) {
                return handler->second(commandLine);
            }
        }
        return {name == L"RMDIR.BAT" ? RunRmDir(call->Arguments) : 0u};
    }

    /// The disc's RmDir.bat: 1 when it refuses its argument or something stays, else 0.
    std::uint32_t RunRmDir(const std::wstring& arguments) {
        std::wstring folder(TrimBlanks(arguments));
        std::erase(folder, L'"');
        const bool absolute = folder.starts_with(L"\\\\") || (folder.size() > 2 && folder.substr(1, 2) == L":\\");
        const FileTree::Place place = tree_.Locate(folder, false);
        const std::wstring drive(DriveNameOf(folder));
        const bool isRoot = drive.empty() || folder.find_first_not_of(L'\\', drive.size()) == std::wstring::npos;
        if (!absolute || isRoot || (place.Node && !place.Parent)) {
            return 1;
        }
        const bool isThere = place.Node && place.Node->Kind != NodeKind::File;
        return !isThere || (!place.Drive->ReadOnly && RemoveTree(folder)) ? 0 : 1;
    }

    /// Removes a folder from its leaves on, as the interpreter does: read-only files too, a link without what it points
    /// to. What is open or fails stays, and so do the folders above it; the rest goes. True when nothing is left.
    bool RemoveTree(const std::wstring& path) {
        const FileTree::Place place = tree_.Locate(path, false);
        bool empty = true;
        for (const auto children = place.Node->Children; const auto& [key, child] : children) {
            empty = RemoveTree(path + L"\\" + child->Name) && empty;
        }
        if (!empty || place.Node->OpenHandles > 0 || faults_.Fails("RmDir")) {
            return false;
        }
        tree_.Detach(place);
        return true;
    }

    std::map<std::wstring, Handler> handlers_;
};

}  // namespace mip
