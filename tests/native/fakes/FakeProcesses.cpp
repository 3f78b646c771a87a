#include "tests/native/fakes/FakeProcesses.h"

#include "app/modFile.h"
#include "platform/DriveName.h"
#include "platform/ProgramSearch.h"
#include "text/TextTools.h"

namespace mip {

namespace {

class FakeRunningProcess : public RunningProcess {
  public:
    FakeRunningProcess(ScriptedEnd end, Faults& faults) : end_(end), faults_(faults) {}

    std::uint32_t ExitCode() override {
        faults_.Check("RunningProcess.ExitCode", L"");
        return end_.Polls-- > 0 ? StillActive : end_.ExitCode;
    }

  private:
    ScriptedEnd end_;
    Faults& faults_;
};

/// Removes a folder from its leaves on, as the interpreter does: read-only files too, a link without what it points to.
/// What is open or fails stays, and so do the folders above it; the rest goes. True when nothing is left.
bool RemoveTree(FileTree& tree, Faults& faults, const std::wstring& path) {
    const FileTree::Place place = tree.Locate(path, false);
    bool empty = true;
    if (place.Node->Kind == NodeKind::Folder) {
        const auto children = place.Node->Children;
        for (const auto& [key, child] : children) {
            empty = RemoveTree(tree, faults, path + L"\\" + child->Name) && empty;
        }
    }
    if (!empty || place.Node->OpenHandles > 0 || faults.Fails("RmDir")) {
        return false;
    }
    tree.Detach(place);
    return true;
}

/// The disc's RmDir.bat: 1 when it refuses its argument or something stays, else 0.
ScriptedEnd RunRmDir(FileTree& tree, Faults& faults, const std::wstring& arguments) {
    std::wstring folder(TrimBlanks(arguments));
    std::erase(folder, L'"');
    const bool absolute = folder.starts_with(L"\\\\") || (folder.size() > 2 && folder.substr(1, 2) == L":\\");
    const FileTree::Place place = tree.Locate(folder, false);
    const std::wstring drive(DriveNameOf(folder));
    const bool isRoot = drive.empty() || folder.find_first_not_of(L'\\', drive.size()) == std::wstring::npos;
    if (!absolute || isRoot || (place.Node && !place.Parent)) {
        return {1};
    }
    if (!place.Node || place.Node->Kind == NodeKind::File) {
        return {0};
    }
    const bool removed = !place.Drive->ReadOnly && RemoveTree(tree, faults, folder);
    return {removed ? 0u : 1u};
}

}  // namespace

std::optional<std::vector<std::wstring>> FakeProcesses::Snapshot() {
    return faults_.Fails("Processes.Snapshot") ? std::nullopt : Running;
}

std::unique_ptr<RunningProcess> FakeProcesses::StartHidden(const std::wstring& commandLine) {
    faults_.Check("Processes.StartHidden", commandLine);
    StartedHidden.push_back(commandLine);
    return std::make_unique<FakeRunningProcess>(Start(commandLine), faults_);
}

void FakeProcesses::StartVisible(const std::wstring& commandLine) {
    faults_.Check("Processes.StartVisible", commandLine);
    StartedVisible.push_back(commandLine);
    Start(commandLine);
}

void FakeProcesses::On(const std::wstring& program, Handler handler) {
    handlers_[ToUpper(program)] = std::move(handler);
}

ScriptedEnd FakeProcesses::Start(const std::wstring& commandLine) {
    const std::optional<ProgramCall> call =
        FindProgram(commandLine, [this](const std::wstring& path) { return tree_.HasFile(path); });
    if (!call) {
        throw PlatformError("Start", commandLine, errors::FileNotFound);
    }
    if (IsBatchFile(call->Program) && !AreBatchArguments(call->Arguments)) {
        throw PlatformError("Start", commandLine, errors::InvalidName);
    }
    const std::wstring name = ToUpper(LastComponent(call->Program));
    for (const std::wstring& key : {ToUpper(call->Program), name}) {
        if (const auto handler = handlers_.find(key); handler != handlers_.end()) {
            return handler->second(commandLine);
        }
    }
    return name == L"RMDIR.BAT" ? RunRmDir(tree_, faults_, call->Arguments) : ScriptedEnd{};
}

}  // namespace mip
