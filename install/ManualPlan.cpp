#include "install/ManualPlan.h"

#include <algorithm>

#include "app/DiscCatalogue.h"
#include "app/Messages.h"
#include "text/TextTools.h"

namespace mip {

namespace {

ManualPlan Refused(std::int16_t message, const char* reason) {
    return {.Refusal = message, .Reason = reason};
}

bool IsSameFolder(const std::wstring& one, const std::wstring& other) {
    return ToUpper(one) == ToUpper(other);
}

ManualPlan PlanDifferences(const DiscCatalogueRecord& manual, const ManualFacts& facts) {
    if (facts.Differences <= 0) {
        return Refused(messages::ManualFailed, "the comparison set has no files");
    }
    if (!HaveFree(facts.NeededBytes, facts.FreeBytes)) {
        return Refused(messages::NotEnoughSpace, "the drive has no room for the comparison set");
    }
    return {.Steps = {{Act::RequireReplaceable, facts.Target},
                      {Act::RequireReadable},
                      {Act::Mark, {}, manual.Pub_No},
                      {Act::CopyDifferences, facts.Target, {}, facts.Differences},
                      {Act::Record}}};
}

/// The rows that the manual replaces: its own and its base edition's.
std::vector<ReplacedEdition> ReplacedEditions(const ManualFacts& facts) {
    std::vector<ReplacedEdition> editions;
    for (const auto& edition : {facts.Installed, facts.Base}) {
        if (edition) {
            editions.push_back(*edition);
        }
    }
    return editions;
}

/// What must be known before the first folder goes.
void AddRequirements(std::vector<ManualStep>& steps, const ManualFacts& facts) {
    bool targetGoes = false;
    for (const ReplacedEdition& edition : ReplacedEditions(facts)) {
        if (edition.MayGo) {
            steps.push_back({Act::RequireUnused, edition.Folder});
            targetGoes = targetGoes || IsSameFolder(edition.Folder, facts.Target);
        }
    }
    if (facts.TargetExists && !targetGoes) {
        steps.push_back({Act::RequireUnused, facts.Target});
    }
    if (!steps.empty()) {
        steps.push_back({Act::RequireWhole});
    }
}

void AddRemoval(std::vector<ManualStep>& steps, const ReplacedEdition& edition) {
    steps.push_back({Act::Mark, {}, edition.PubNo});
    steps.push_back({edition.MayGo ? Act::Remove : Act::LeaveAlone, edition.Folder, edition.PubNo});
}

}  // namespace

ManualPlan PlanManual(const DiscCatalogueRecord& manual, const ManualFacts& facts) {
    if (facts.IsDifferential) {
        return PlanDifferences(manual, facts);
    }
    if (!HaveFree(facts.NeededBytes, facts.FreeBytes)) {
        return Refused(messages::NotEnoughSpace, "the drives have no room for the manual");
    }
    ManualPlan plan;
    AddRequirements(plan.Steps, facts);
    if (facts.Installed) {
        AddRemoval(plan.Steps, *facts.Installed);
    }
    if (facts.Base) {
        AddRemoval(plan.Steps, *facts.Base);
        plan.Steps.push_back({Act::RemoveRows, {}, facts.Base->PubNo});
    }
    plan.Steps.push_back({manual.PdfForm == ManualForm::Pdf ? Act::CopyPdf : Act::Extract, facts.Target});
    plan.Steps.push_back({Act::Record});
    return plan;
}

bool HaveFree(const BytesByDrive& needed, const BytesByDrive& free) {
    return std::ranges::all_of(needed, [&](const auto& need) {
        const auto found = free.find(need.first);
        return found == free.end() || found->second >= need.second;
    });
}

}  // namespace mip
