#pragma once

#include "platform/Platform.h"
#include "tests/native/fakes/FakeArchives.h"
#include "tests/native/fakes/FakeComputer.h"
#include "tests/native/fakes/FakeFiles.h"
#include "tests/native/fakes/FakeProcesses.h"
#include "tests/native/fakes/FakeProfileFiles.h"
#include "tests/native/fakes/FakeRegistry.h"
#include "tests/native/fakes/FakeSecurity.h"
#include "tests/native/fakes/FakeShell.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// A whole computer in memory. At the start it has drive C: (NTFS, with C:\Windows\System32, C:\Program Files and
/// C:\Temp) and, in drive D:, a read-only disc that holds the program's folder with SysDir\RmDir.bat; an empty
/// registry; no database engine. `Tree` sets files up and checks them, `Faults` makes calls fail.
struct InMemoryWindows {
    // Both elsewhere, so that not every test compiles all fakes.
    InMemoryWindows();
    ~InMemoryWindows();
    InMemoryWindows(const InMemoryWindows&) = delete;
    InMemoryWindows& operator=(const InMemoryWindows&) = delete;

    mip::Faults Faults;
    FileTree Tree;
    FakeFiles Files{Tree, Faults};
    FakeFolders Folders{Tree, Faults};
    FakeVolumes Volumes{Tree, Faults};
    FakeFileVersions FileVersions{Faults};
    FakeClock Clock{Faults};
    FakeComputer Computer{Faults};
    FakeProfileFiles ProfileFiles{Tree, Computer, Faults};
    FakeRegistry Registry{Faults};
    FakeProcesses Processes{Tree, Faults};
    FakeAccountNames AccountNames{Faults};
    FakeAccessControl AccessControl{Tree, AccountNames, Faults};
    FakeShell Shell{Tree, Faults};
    FakeBrowsers Browsers{Faults};
    FakeArchives Archives{Tree, Faults};
    SettableEngine JetEngine{Faults};
    SettableEngine SqliteEngine{Faults};
    FakeMessageBoxes MessageBoxes{Faults};

    mip::Platform Platform{Files,     Folders,  Volumes,   FileVersions, ProfileFiles,  Registry,
                           Processes, Clock,    Computer,  AccountNames, AccessControl, Shell,
                           Browsers,  Archives, JetEngine, SqliteEngine, MessageBoxes};
};

}  // namespace mip
