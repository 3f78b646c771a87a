#include "install/ManualPlan.h"

#include <gtest/gtest.h>

#include "app/DiscCatalogue.h"
#include "app/Messages.h"

namespace mip {
namespace {

using Steps = std::vector<ManualStep>;

constexpr wchar_t Target[] = L"C:\\M\\K1210MM";
const ReplacedEdition OldName{L"K1210MM", L"C:\\M\\old", true};
const ReplacedEdition NoPlace{L"K1210MM", L"C:\\Precious", false};
const ReplacedEdition SameName{L"K1210MM", L"c:\\m\\k1210mm", true};
const ReplacedEdition Base{L"K1200MM", L"C:\\M\\K1200MM", true};

struct PlanCase {
    const char* Label;
    ManualFacts Facts;
    Steps Expected;
    std::int16_t Refusal = 0;
};

const BytesByDrive Short{{L"C:", 100}};

const PlanCase Cases[] = {
    {"new", {.Target = Target}, {{Act::Extract, Target}, {Act::Record}}},
    {"the target is there, recorded by nobody",
     {.Target = Target, .TargetExists = true},
     {{Act::RequireUnused, Target}, {Act::RequireWhole}, {Act::Extract, Target}, {Act::Record}}},
    {"an edition under another name",
     {.Target = Target, .Installed = OldName},
     {{Act::RequireUnused, L"C:\\M\\old"},
      {Act::RequireWhole},
      {Act::Mark, {}, L"K1210MM"},
      {Act::Remove, L"C:\\M\\old", L"K1210MM"},
      {Act::Extract, Target},
      {Act::Record}}},
    {"an edition in the target is asked about once",
     {.Target = Target, .TargetExists = true, .Installed = SameName},
     {{Act::RequireUnused, L"c:\\m\\k1210mm"},
      {Act::RequireWhole},
      {Act::Mark, {}, L"K1210MM"},
      {Act::Remove, L"c:\\m\\k1210mm", L"K1210MM"},
      {Act::Extract, Target},
      {Act::Record}}},
    {"a row that names no place for a manual",
     {.Target = Target, .Installed = NoPlace},
     {{Act::Mark, {}, L"K1210MM"},
      {Act::LeaveAlone, L"C:\\Precious", L"K1210MM"},
      {Act::Extract, Target},
      {Act::Record}}},
    {"a base edition goes with its rows",
     {.Target = Target, .Base = Base},
     {{Act::RequireUnused, L"C:\\M\\K1200MM"},
      {Act::RequireWhole},
      {Act::Mark, {}, L"K1200MM"},
      {Act::Remove, L"C:\\M\\K1200MM", L"K1200MM"},
      {Act::RemoveRows, {}, L"K1200MM"},
      {Act::Extract, Target},
      {Act::Record}}},
    {"no room", {.Target = Target, .NeededBytes = Short, .FreeBytes = {{L"C:", 99}}}, {}, messages::NotEnoughSpace},
    {"just enough room, and a drive that could not be asked",
     {.Target = Target, .NeededBytes = {{L"C:", 100}, {L"", 1}}, .FreeBytes = {{L"C:", 100}}},
     {{Act::Extract, Target}, {Act::Record}}},
    {"differences",
     {.IsDifferential = true, .Target = Target, .Differences = 3},
     {{Act::RequireReplaceable, Target},
      {Act::RequireReadable},
      {Act::Mark, {}, L"K1210MM"},
      {Act::CopyDifferences, Target, {}, 3},
      {Act::Record}}},
    {"no differences", {.IsDifferential = true, .Target = Target}, {}, messages::ManualFailed},
    {"differences that cannot be counted",
     {.IsDifferential = true, .Target = Target, .Differences = -1},
     {},
     messages::ManualFailed},
    {"no room for the differences",
     {.IsDifferential = true, .Target = Target, .Differences = 3, .NeededBytes = Short, .FreeBytes = {{L"C:", 99}}},
     {},
     messages::NotEnoughSpace},
};

TEST(ManualPlan, FollowsFromTheFacts) {
    for (const PlanCase& given : Cases) {
        SCOPED_TRACE(given.Label);
        DiscCatalogueRecord manual;
        manual.Pub_No = L"K1210MM";
        const ManualPlan plan = PlanManual(manual, given.Facts);
        EXPECT_EQ(plan.Steps, given.Expected);
        EXPECT_EQ(plan.Refusal, given.Refusal);
        EXPECT_EQ(plan.Reason.empty(), given.Refusal == 0);
    }
}

}  // namespace
}  // namespace mip
