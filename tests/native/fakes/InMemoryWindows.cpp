#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {

InMemoryWindows::InMemoryWindows() {
    using namespace std::chrono;
    Clock.Time = local_days{year{2024} / May / 6} + hours{7} + minutes{8} + seconds{9};
    Tree.Now = [this] { return FileTime{duration_cast<FileTime::duration>(Clock.Time.time_since_epoch())}; };
    Tree.AddDrive({L"C:"});
    Tree.PutFolder(L"C:\\Windows\\System32");
    Tree.PutFolder(L"C:\\Program Files");
    Tree.PutFolder(Computer.Temporary);
    FakeDrive& disc = Tree.AddDrive({L"D:", L"CDFS", 1'000'000'000});
    Tree.PutFile(Computer.Folder + L"\\SysDir\\RmDir.bat", "@echo off\r\n");
    disc.ReadOnly = true;
    Processes.Running = {L"System", L"explorer.exe"};
}

}  // namespace mip
