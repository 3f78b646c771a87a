#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace mip {

struct Program;

/// The program's name, the title of boxes that are shown before there are message files.
inline constexpr wchar_t ProgramTitle[] = L"Manual Install Program";

/// The numbered texts of the language files, by what they say. disc/README.md tells where each is used.
namespace messages {
inline constexpr std::int16_t Ok = 6;
inline constexpr std::int16_t ProgramsWaiting = 9;
inline constexpr std::int16_t ProgramsRunning = 10;
inline constexpr std::int16_t ProgramsDone = 11;
inline constexpr std::int16_t CatalogueWaiting = 12;
inline constexpr std::int16_t CatalogueRunning = 13;
inline constexpr std::int16_t CatalogueDone = 14;
inline constexpr std::int16_t ManualsWaiting = 15;
inline constexpr std::int16_t ManualsRunning = 16;
inline constexpr std::int16_t ManualsDone = 17;
inline constexpr std::int16_t ManagerFailed = 18;
inline constexpr std::int16_t NoDatabase = 19;
inline constexpr std::int16_t DatabaseNotOpened = 20;
inline constexpr std::int16_t ChooseFolder = 21;
inline constexpr std::int16_t NotEnoughSpace = 22;
inline constexpr std::int16_t ExtractionFailed = 23;
inline constexpr std::int16_t WhatNow = 24;
inline constexpr std::int16_t Cancelled = 25;
inline constexpr std::int16_t FolderInstructions1 = 27;
inline constexpr std::int16_t FolderInstructions2 = 28;
inline constexpr std::int16_t ReallyCancel = 29;
inline constexpr std::int16_t PleaseWait = 30;
inline constexpr std::int16_t ChangeFolder = 31;
inline constexpr std::int16_t Cancel = 32;
inline constexpr std::int16_t FolderFrame = 33;
inline constexpr std::int16_t Caption = 34;
inline constexpr std::int16_t ColumnModel = 35;
inline constexpr std::int16_t ColumnYear = 37;
inline constexpr std::int16_t ColumnLanguage = 38;
inline constexpr std::int16_t ShortcutName = 43;
inline constexpr std::int16_t StatusNew = 52;
inline constexpr std::int16_t StatusUpdated = 53;
inline constexpr std::int16_t StatusUnchanged = 54;
inline constexpr std::int16_t ColumnStatus = 55;
inline constexpr std::int16_t Agree = 56;
inline constexpr std::int16_t DoNotAgree = 57;
inline constexpr std::int16_t WhichNewManual = 59;
inline constexpr std::int16_t PdfFileName = 60;
inline constexpr std::int16_t Succeeded1 = 64;
inline constexpr std::int16_t Succeeded2 = 65;
inline constexpr std::int16_t DatabaseReadOnly = 67;
inline constexpr std::int16_t ColumnPublication = 68;
inline constexpr std::int16_t ColumnVersion = 69;
inline constexpr std::int16_t ManagerRunning = 70;
inline constexpr std::int16_t UpgradeFailed = 71;
inline constexpr std::int16_t OlderEntry = 72;
inline constexpr std::int16_t OlderEntries = 73;
inline constexpr std::int16_t GoOn = 74;
inline constexpr std::int16_t Closing = 82;
inline constexpr std::int16_t ManualFailed = 83;
inline constexpr std::int16_t MenuCaption = 84;
inline constexpr std::int16_t MenuGuide = 85;
inline constexpr std::int16_t MenuInstall = 86;
inline constexpr std::int16_t GuideNotOpened = 88;
inline constexpr std::int16_t CompanionFailed = 90;
inline constexpr std::int16_t GoOnWithoutCompanion = 91;
inline constexpr std::int16_t MenuBrowse = 93;
inline constexpr std::int16_t Transaction = 94;
inline constexpr std::int16_t TransactionWait = 95;
inline constexpr std::int16_t BadSwitch = 96;
inline constexpr std::int16_t DiscUnreadable = 97;
inline constexpr std::int16_t Unforeseen = 98;
inline constexpr std::int16_t DesktopShortcut = 99;
inline constexpr std::int16_t Legend = 100;
inline constexpr std::int16_t ManualInUse = 101;
inline constexpr std::int16_t ManualOfManuals = 102;
inline constexpr std::int16_t OpeningStartPage = 103;
inline constexpr std::int16_t StartPageNotOpened = 104;
inline constexpr std::int16_t ShutdownReason = 105;
inline constexpr std::int16_t MarkedStatus = 106;
inline constexpr std::int16_t ListName = 107;
inline constexpr std::int16_t HelpPurpose = 108;
inline constexpr std::int16_t HelpSilent = 109;
inline constexpr std::int16_t HelpAccept = 110;
inline constexpr std::int16_t HelpDirectory = 111;
inline constexpr std::int16_t HelpLanguage = 112;
inline constexpr std::int16_t HelpLog = 113;
inline constexpr std::int16_t HelpCheck = 114;
inline constexpr std::int16_t HelpRemove = 115;
inline constexpr std::int16_t HelpHelp = 116;
/// All numbers.
inline constexpr std::int16_t All[] = {6,   9,   10,  11,  12,  13,  14,  15,  16,  17,  18,  19,  20,  21,  22,  23,
                                       24,  25,  27,  28,  29,  30,  31,  32,  33,  34,  35,  37,  38,  43,  52,  53,
                                       54,  55,  56,  57,  59,  60,  64,  65,  67,  68,  69,  70,  71,  72,  73,  74,
                                       82,  83,  84,  85,  86,  88,  90,  91,  93,  94,  95,  96,  97,  98,  99,  100,
                                       101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113, 114, 115, 116};
}  // namespace messages

/// Sets the run's two result texts: what failed, and what the user can do about it. `insert` stands for "@" in the
/// first. The log gets the message's number and text.
void FailRun(Program& program, std::int16_t message, const std::wstring& insert = {});
/// The same for a run that an error stopped in `routine`. The log gets the error, too; a Failure brings its own
/// message.
void FailRun(Program& program, std::int16_t message, std::string_view routine, const std::exception& error);

}  // namespace mip
