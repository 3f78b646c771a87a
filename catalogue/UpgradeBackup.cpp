#include "catalogue/UpgradeBackup.h"

#include <stdexcept>

#include "app/modFile.h"
#include "catalogue/DatabaseFiles.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::int16_t LastNumber = 99;

}  // namespace

UpgradeBackup::UpgradeBackup(Platform& platform, const std::wstring& database)
    : platform_(platform),
      database_(database),
      mark_(database + L".upgrade"),
      unfinished_(database + L".upgrade-part") {
    if (!platform_.Files.Exists(mark_)) {
        return;
    }
    const std::wstring number = FromUtf8(platform_.Files.Read(mark_));
    try {
        path_ = PathOf(TextToInt16(number));
    } catch (const std::logic_error& error) {
        platform_.FaultLog.Trapped("reading the mark of an upgrade", error);  // not one of ours
    }
}

std::wstring UpgradeBackup::PathOf(std::int16_t number) const {
    const std::wstring prefix = number == 1 ? L"BACK_" : L"BACK_" + std::to_wstring(number) + L"_";
    return JoinPath(GetParentFolder(database_), prefix + LastComponent(database_));
}

/// A name counts as free only when the file system says that nothing has it: the backup will replace what is there.
std::int16_t UpgradeBackup::FreeNumber() const {
    for (std::int16_t number = 1; number <= LastNumber; ++number) {
        if (CodeOf([&] { (void)platform_.Files.Status(PathOf(number)); }) == errors::FileNotFound) {
            return number;
        }
    }
    throw PlatformError("Backup", PathOf(LastNumber), errors::FileExists);
}

void UpgradeBackup::Make() {
    const std::int16_t number = FreeNumber();
    path_ = PathOf(number);
    platform_.Files.Write(unfinished_, std::to_string(number));
    platform_.Files.Move(unfinished_, mark_);
    CopyFileReplacing(platform_, database_, unfinished_);
    platform_.Files.Move(unfinished_, path_);
}

void UpgradeBackup::PutBack() {
    const std::wstring journal = JournalOf(database_);
    if (!mip::Discard(platform_, journal)) {
        throw PlatformError("Remove", journal, errors::AccessDenied);
    }
    platform_.Files.Move(path_, database_);
}

void UpgradeBackup::Discard() {
    (void)mip::Discard(platform_, unfinished_);
    if (!path_.empty() && mip::Discard(platform_, path_) && mip::Discard(platform_, mark_)) {
        path_.clear();
    }
}

}  // namespace mip
