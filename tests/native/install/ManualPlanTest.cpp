#include "install/ManualPlan.h"

#include <gtest/gtest.h>

#include "app/DiscCatalogue.h"
#include "app/Failure.h"
#include "app/Messages.h"
#include "catalogue/clsMDB.h"
#include "install/Preflight.h"
#include "tests/native/install/DiscWorkshop.h"

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

TEST(Preflight, CountsWhatEachDriveNeedsAndHas) {
    constexpr double Pages = 4 * 4096;
    constexpr double Least = 256 * 1024;
    const std::wstring lib = L"C:\\Manuals";
    const struct {
        const char* Label;
        std::wstring PubNo, Root, Installed;
        BytesByDrive Needed;
        double Free = 1'000'000;
    } cases[] = {
        {"renamed to where nothing is", L"AAAA1MM", lib, L"", {{L"C:", Least + Pages}}},
        {"copied to another drive", L"AAAA1MM", L"e:\\Lib", L"", {{L"C:", Least + Pages}, {L"E:", Pages}}},
        {"copied over a folder", L"FFFF1MM", lib, L"", {{L"C:", Least + 2 * Pages}}},
        {"copied without a folder", L"BBBB1MM", lib, L"", {{L"C:", Least + 2 * 4096}}},
        {"renamed over its edition", L"FFFF1MM", lib, lib + L"\\ffff1mm", {{L"C:", Least + Pages}}},
        {"no edition is there", L"GGGG1MM", lib, lib + L"\\GGGG1MM", {{L"C:", Least + 2 * Pages}}},
        {"what goes makes room", L"AAAA1MM", lib, lib + L"\\FFFF1MM", {{L"C:", Least}}, Least + Pages - 1},
        {"just enough room", L"AAAA1MM", lib, lib + L"\\FFFF1MM", {{L"C:", Least + Pages}}, Least + Pages},
        {"PDF", L"DDDD1MM", L"E:\\Lib", L"", {{L"C:", Least}, {L"E:", 2 * 4096}}},
    };
    DiscWorkshop shop;
    shop.Tree.AddDrive({.Name = L"E:"});
    for (const wchar_t* pubNo : {L"AAAA1MM", L"BBBB1MM", L"FFFF1MM", L"GGGG1MM"}) {
        shop.PutArchiveManual(pubNo, 2);
    }
    shop.Archives.Put(L"D:\\BBBB1MM\\install\\condense\\manual.zip", {{L"read me.txt", "page"}});
    shop.PutPdfManual(L"DDDD1MM", 1);
    shop.PutInstalledManual(L"FFFF1MM", 1);
    shop.Tree.PutFile(lib + L"\\GGGG1MM\\note.txt");
    DiscCatalogueRecord manual;
    for (const auto& given : cases) {
        SCOPED_TRACE(given.Label);
        manual.Pub_No = manual.FolderName = given.PubNo;
        manual.InstalledPath = given.Installed;
        manual.PdfForm = given.PubNo == L"DDDD1MM" ? ManualForm::Pdf : ManualForm::Archive;
        manual.SourcePath = L"D:\\" + given.PubNo +
                            (manual.PdfForm == ManualForm::Pdf ? L"\\contents" : L"\\install\\condense\\manual.zip");
        shop.Tree.DriveOf(L"C:")->FreeBytes = static_cast<std::uint64_t>(given.Free);
        const ManualFacts facts = LookAtManual(shop.Program(), manual, given.Root);
        EXPECT_EQ(facts.NeededBytes, given.Needed);
        EXPECT_EQ(facts.FreeBytes.at(L"C:"), given.Free);
        EXPECT_EQ(facts.FreeBytes.size(), given.Needed.size());
    }
    shop.PutComparisonSet(L"FFFF1MM", 2);
    shop.Tree.PutFile(L"D:\\FFFF1MM\\install\\compare\\pictures\\new.svg", std::string(4097, ' '));
    manual.InstalledPath = lib + L"\\FFFF1MM";
    manual.ComparePath = L"D:\\FFFF1MM\\install\\compare";
    EXPECT_EQ(LookAtDifferences(shop.Platform, manual).NeededBytes, (BytesByDrive{{L"C:", 2 * 4096}})) << "one is new";
    shop.Program().CatalogDb = std::make_unique<clsMDB>(shop.Platform);
    EXPECT_THROW(LookAtManual(shop.Program(), manual, lib), Failure) << "the catalogue does not answer";
}

}  // namespace
}  // namespace mip
