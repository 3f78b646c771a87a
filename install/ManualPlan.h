#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace mip {

struct DiscCatalogueRecord;

/// A row of the installed manuals that a new manual replaces.
struct ReplacedEdition {
    std::wstring PubNo;
    std::wstring Folder;
    bool MayGo = false;  ///< the folder is a place for a manual; otherwise it is left alone, whatever the row says
};

/// Bytes by drive ("C:").
using BytesByDrive = std::map<std::wstring, double>;

/// What is known about a manual before anything is done to install it.
struct ManualFacts {
    bool IsDifferential = false;  ///< only the comparison set's files go over the installed edition
    std::wstring Target;          ///< the folder that the manual is to have, or has
    bool TargetExists = false;
    std::optional<ReplacedEdition> Installed{};
    std::optional<ReplacedEdition> Base{};  ///< the base edition of a later one, when that is installed
    std::int32_t Differences = 0;           ///< files of the comparison set; -1 when they could not be counted
    /// Bytes that each drive must have free, and has; empty when that could not be found out.
    BytesByDrive NeededBytes{};
    BytesByDrive FreeBytes{};
};

enum class Act {
    RequireUnused,       ///< no other program has a file of Folder open
    RequireWhole,        ///< the disc's edition can be read to its end
    RequireReplaceable,  ///< no other program has a file of Folder open that the comparison set replaces
    RequireReadable,     ///< the comparison set can be read to its end
    Mark,                ///< from here on the rows of PubNo count as unusable
    Remove,              ///< Folder
    LeaveAlone,          ///< Folder, which a row names and which is no place for a manual
    RemoveRows,          ///< of PubNo
    Extract,             ///< the archive, whose top-level folder comes to lie beside or over Folder
    CopyPdf,             ///< into Folder
    CopyDifferences,     ///< into Folder
    Record,              ///< the manual counts as installed
};

struct ManualStep {
    Act What;
    std::wstring Folder{};
    std::wstring PubNo{};
    std::int32_t Files = 0;  ///< that CopyDifferences is going to copy

    bool operator==(const ManualStep&) const = default;
};

/// What happens to one manual: the steps in their order, or the number of the message with which it is refused.
struct ManualPlan {
    std::vector<ManualStep> Steps{};
    std::int16_t Refusal = 0;
    std::string Reason{};  ///< of the refusal, for the log
};

/// The plan that follows from the record and the facts, and from nothing else. Nothing goes before the last that can be
/// known is known: that no other program is in the way and, where something goes, that its successor is whole.
ManualPlan PlanManual(const DiscCatalogueRecord& manual, const ManualFacts& facts);

/// True when each drive has the bytes free that it needs.
bool HaveFree(const BytesByDrive& needed, const BytesByDrive& free);

}  // namespace mip
