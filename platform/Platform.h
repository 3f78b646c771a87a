#pragma once

#include "platform/FaultLog.h"

namespace mip {

class AccessControl;
class AccountNames;
class Archives;
class Browsers;
class Clock;
class Computer;
class DatabaseEngine;
class FileVersions;
class Files;
class Folders;
class MessageBoxes;
class Processes;
class ProfileFiles;
class Registry;
class Shell;
class Volumes;

/// All that the program asks of the computer. The entry point fills it once; it outlives everything that uses it.
struct Platform {
    mip::Files& Files;
    mip::Folders& Folders;
    mip::Volumes& Volumes;
    mip::FileVersions& FileVersions;
    mip::ProfileFiles& ProfileFiles;
    mip::Registry& Registry;
    mip::Processes& Processes;
    mip::Clock& Clock;
    mip::Computer& Computer;
    mip::AccountNames& AccountNames;
    mip::AccessControl& AccessControl;
    mip::Shell& Shell;
    mip::Browsers& Browsers;
    mip::Archives& Archives;
    DatabaseEngine& JetEngine;     ///< ADO with the Jet provider
    DatabaseEngine& SqliteEngine;  ///< the embedded engine
    mip::MessageBoxes& MessageBoxes;
    mip::FaultLog& FaultLog = NoFaultLog::Instance();
};

}  // namespace mip
