#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace mip {

/// The copy of a database that an upgrade keeps until the new one has opened. It is named "BACK_" and the database's
/// name; where somebody else's file has that name, "BACK_2_" and so on. A mark beside the database says which file it
/// is: the mark is on the drive before the backup and goes after it, so a file that no mark names is never touched.
class UpgradeBackup {
  public:
    /// Finds what an earlier upgrade has left. Throws PlatformError when its mark cannot be read.
    UpgradeBackup(Platform& platform, const std::wstring& database);
    UpgradeBackup(const UpgradeBackup&) = delete;
    UpgradeBackup& operator=(const UpgradeBackup&) = delete;

    /// Where the program's own backup is, or was to be; "" when there is none.
    const std::wstring& Path() const { return path_; }
    /// Copies the database, which must be closed. The whole copy is on the drive when this returns. Throws
    /// PlatformError.
    void Make();
    /// Lets the backup take the database's place in one step. Throws PlatformError; the backup stays then.
    void PutBack();
    /// Removes the backup and then its mark. A file that stays is left to the next start.
    void Discard();

  private:
    std::wstring PathOf(std::int16_t number) const;
    std::int16_t FreeNumber() const;

    Platform& platform_;
    const std::wstring database_;
    const std::wstring mark_;        ///< holds the number of the backup's name
    const std::wstring unfinished_;  ///< becomes the mark, then the backup
    std::wstring path_;
};

}  // namespace mip
