#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/DiscCatalogue.h"
#include "app/ExitCode.h"
#include "app/InstalledRecord.h"
#include "app/ModelOrder.h"
#include "app/RunBoxes.h"
#include "app/RunLog.h"
#include "app/Switches.h"
#include "platform/Platform.h"

namespace mip {

class clsMDB;

/// The settings of SysDir\SysParameter.ini.
struct Settings {
    std::int16_t LcidFlag = 0;
    std::int16_t ShortcutIconFlag = 0;  ///< not 0: the manager program also gets a Start-menu shortcut
    std::wstring Kvx3ExeName;           ///< the diagnostic program's file name
    std::wstring Kvx3MdbName;           ///< the catalogue database's file name
    std::wstring McpExeName;            ///< the manager program's file name
    std::int32_t ZipExtractTime = 0;    ///< seconds that an extraction is expected to take
    std::wstring Kvx3NewMdbName;        ///< the file name of the new database that the disc brings
    ColumnLengths Columns;
};

/// Every path that start-up derives. Folders have no trailing backslash unless said otherwise.
struct Paths {
    std::wstring ProgramFolder;
    std::wstring SysParameterPath;
    std::wstring SysDirPath;
    std::wstring RmDirBatPath;
    std::wstring DiscRootPath;    ///< ends in a backslash
    std::wstring SecondDiscBase;  ///< drive of the program folder, ends in a backslash

    std::wstring ProgramPath;
    std::wstring ProgramFilesDir;
    std::wstring SystemDrive;
    std::wstring LinkManualPath;
    std::wstring LinkPath;
    std::wstring ViewerExePath;
    std::wstring ViewerInstallDir;
    std::wstring ManualInstallDir;
    std::wstring LinkFolderPath;
    std::wstring InstallDir;
    std::wstring UnZipTempPath;

    std::wstring MdbPath;
    std::wstring LdbPath;
};

/// What a run hands to the result screen and to the end of the program.
struct Outcome {
    bool ResultKind = false;  ///< true when all steps of the run succeeded
    std::wstring ResultMessage;
    std::wstring ResultSubMessage;
    bool InstallCancelled = false;
    bool ManagerInstalled = false;  ///< the manager program's setup ran in this run
    int ManualsRecorded = 0;        ///< manuals recorded in this run
    bool RunFinished = false;       ///< an installation run has ended since the program started
    mip::ExitCode ExitCode = ExitCode::Done;
};

/// The installation run's own values.
struct Installation {
    std::wstring InstallPath;               ///< the folder below which manual folders are created (also: install root)
    std::int16_t CurrentManual = 0;         ///< index into the disc catalogue, from 1
    std::int16_t NoFolderCount = 0;         ///< manuals of this run that had no folder yet
    std::vector<std::wstring> MadeFolders;  ///< manual folders that did not exist before this run
    DateTime InstallTime0{};
    DateTime InstallTime1{};  ///< recorded for new manuals
    DateTime InstallTime2{};  ///< recorded for updated manuals
};

/// The disc's texts as they were at the start, for the time after the disc has been taken out.
struct KeptTexts {
    std::map<std::wstring, std::wstring> Messages;  ///< the language's numbered messages, by key
    std::wstring Agreement;
};

/// The names that start-up learns about the user and the computer.
struct Identity {
    std::wstring LanguageCode;  ///< "11", "09", "04S", ...
    std::wstring UserName;
    std::wstring FullAccessTrustee;  ///< the Users group's name as the look-up's raw buffer, see modGetUsersName.h
    std::wstring FolderTrustee;      ///< the same text, for the folder grant
};

/// All state of one process. Functions ask for the part that they need.
struct Program {
    explicit Program(const mip::Platform& platform);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    mip::Switches Switches;
    RunLog Log;

  private:
    RunBoxes runBoxes_;
    mip::Platform runPlatform_;  ///< the computer, with the boxes of a quiet run kept from the screen, and the log

  public:
    mip::Platform& Platform;
    mip::Settings Settings;
    mip::Paths Paths;
    mip::Identity Identity;
    mip::KeptTexts KeptTexts;
    std::vector<std::wstring> ProcessNames;  ///< entry 0 is "", the running processes from 1

    std::shared_ptr<clsMDB> CatalogDb;  ///< null while no catalogue is open; the program is its one owner
    mip::DiscCatalogue DiscCatalogue;
    mip::ModelOrderList ModelOrder;
    InstalledRecord Installed;  ///< the installed-record fields, overwritten by every look-up

    mip::Installation Installation;
    mip::Outcome Outcome;
    std::wstring WindowTitle;  ///< caption of the screen loaded last; title of message boxes
};

}  // namespace mip
