#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {

InMemoryWindows::InMemoryWindows() {
    Tree.Now = [this] {
        return FileTime{std::chrono::duration_cast<FileTime::duration>(Clock.Time.time_since_epoch())};
    };
    Tree.AddDrive({L"C:"});
    Tree.PutFolder(L"C:\\Windows\\System32");
    Tree.PutFolder(L"C:\\Program Files");
    Tree.PutFolder(Computer.Temporary);
    FakeDrive& disc = Tree.AddDrive({L"D:", L"CDFS", 1'000'000'000});
    Tree.PutFile(Computer.Folder + L"\\SysDir\\RmDir.bat", "@echo off\r\n");
    disc.ReadOnly = true;
    Processes.Running = {L"System", L"explorer.exe"};
}

InMemoryWindows::~InMemoryWindows() = default;

}  // namespace mip
