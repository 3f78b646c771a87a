#include "publish/CheckDisc.h"

#include <functional>
#include <set>

#include "platform/sqlite/SqliteEngine.h"
#include "publish/CommandLine.h"
#include "tests/native/publish/Publisher.h"

namespace mip {
namespace {

class CheckDiscTest : public PublisherTest {
  protected:
    void Replace(const std::string& file, const std::string& from, const std::string& to) const {
        std::string bytes = ReadWhole(At(file));
        const std::size_t place = bytes.find(from);
        ASSERT_NE(place, std::string::npos) << file << ": " << from;
        WriteWhole(At(file), bytes.replace(place, from.size(), to), DateTime{});
    }
    /// The same in a file of UTF-16; the texts are ASCII.
    void ReplaceWide(const std::string& file, const std::string& from, const std::string& to) const {
        const auto wide = [](const std::string& text) {
            std::string bytes;
            for (const char c : text) {
                bytes += {c, '\0'};
            }
            return bytes;
        };
        Replace(file, wide(from), wide(to));
    }
    void Rename(const std::string& from, const std::string& to) const { std::filesystem::rename(At(from), At(to)); }
    void Remove(const std::string& name) const { std::filesystem::remove_all(At(name)); }
};

TEST_F(CheckDiscTest, NamesEveryPlantedFaultAndNothingElse) {
    std::vector<TestManual> manuals;
    for (int i = 0; i < 17; ++i) {
        manuals.push_back({"M" + std::to_string(10 + i), "A" + std::to_string(10 + i) + "10AA", "2", i >= 15});
        PutSource(manuals.back());
    }
    Make(DescriptionOf(manuals), "d");
    const std::string setup = "d/programs/setup/";
    const std::string longName(104, 'n');
    struct Fault {
        const char* Label;
        std::function<void()> Plant;
        std::vector<std::pair<std::string, std::string>> Found;  ///< file and code
    };
    const Fault faults[] = {
        {"a setting that is no number",
         [&] { Replace(setup + "SysDir/SysParameter.ini", "ShortcutIcon=1", "ShortcutIcon=?"); },
         {{"programs/setup/SysDir/SysParameter.ini", "setting"}}},
        {"a text that a language lacks",
         [&] { ReplaceWide(setup + "SysDir/M11.ini", "M024=", "X024="); },
         {{"programs/setup/SysDir/M11.ini", "text"}}},
        {"a language without terms",
         [&] { Remove(setup + "SysDir/Licence_11.txt"); },
         {{"programs/setup/SysDir/Licence_11.txt", "missing"}}},
        {"no manager's setup",
         [&] { Remove("d/programs/man_manager/setup.exe"); },
         {{"programs/man_manager/setup.exe", "missing"}}},
        {"an address that leads nowhere",
         [&] { Replace("d/index.html", "</html>", "<a href=\"gone%20page.html#x\"></a>"); },
         {{"index.html", "link"}}},
        {"a version that is no number",
         [&] { ReplaceWide("d/M10/car_info.ci", "Version=2", "Version=2b"); },
         {{"M10/car_info.ci", "number"}}},
        {"an unknown model", [&] { ReplaceWide("d/M11/car_info.ci", "TLS", "ABC"); }, {{"M11/car_info.ci", "model"}}},
        {"two fields that the program stops at",
         [&] {
             ReplaceWide("d/M12/car_info.ci", "Year=2021", "Year=2021/22");
             ReplaceWide("d/M12/car_info.ci", "Country=JP", "Country=");
         },
         {{"M12/car_info.ci", "length"}, {"M12/car_info.ci", "length"}}},
        {"a number without an edition's digit",
         [&] { ReplaceWide("d/M13/car_info.ci", "A1310AA", "A13XXAA"); },
         {{"M13/car_info.ci", "publication"}}},
        {"two editions of one publication, and a superseded pair",
         [&] {
             ReplaceWide("d/M15/car_info.ci", "A1510AA", "a1410aa");
             ReplaceWide("d/M16/car_info.ci", "A1610AA", "A1411AA");
         },
         {{"M15/car_info.ci", "double"}, {"M14/car_info.ci", "superseded"}, {"M15/car_info.ci", "superseded"}}},
        {"text in some code page",
         [&] {
             Put("d/M17/car_info.ci",
                 "[CAR_INFO]\nPub_No=A1710AA\nVersion=1\nModel_desc=\xB6\nModel_ID=TLS\n"
                 "Lang=JA\nLdup=1\nYear=2021\nCountry=JP\n");
         },
         {{"M17/car_info.ci", "encoding"}}},
        {"a damaged archive",
         [&] { Replace("d/M18/install/condense/manual.zip", "PK\x03\x04", "PK\x03\x05"); },
         {{"M18/install/condense/manual.zip", "archive"}}},
        {"no archive", [&] { Remove("d/M19/install"); }, {{"M19/install/condense/manual.zip", "missing"}}},
        {"another page in the archive than loose",
         [&] { Put("d/M20/contents/index.html", "other"); },
         {{"M20/contents/index.html", "page"}}},
        {"a set with a page of its own and another page than the archive's",
         [&] {
             Put("d/M21/install/compare/deep/own.html", "");
             Put("d/M21/install/compare/index.html", "other");
         },
         {{"M21/install/compare/deep/own.html", "set"}, {"M21/install/compare/index.html", "set"}}},
        {"a set that no edition comes before, and an empty one",
         [&] {
             ReplaceWide("d/M22/car_info.ci", "Version=2", "Version=1");
             Put("d/M22/install/compare/index.html", "contents of A2210AA");
             std::filesystem::create_directories(At("d/M23/install/compare"));
         },
         {{"M22/install/compare", "set"}, {"M23/install/compare", "set"}}},
        {"an archive with another folder, in a folder with a blank",
         [&] {
             Rename("d/M24", "d/M 24");
             for (const char* file : {"man_info_do.ci", "man_info_us.ci"}) {
                 Replace(setup + file, "M24", "M 24");
             }
             Replace("d/index.html", "M24/", "M%2024/");
         },
         {{"M 24", "blank"}, {"M 24/install/condense/manual.zip", "archive"}}},
        {"a PDF without its page",
         [&] { Remove("d/M25/contents/index.html"); },
         {{"M25/contents/index.html", "missing"}}},
        {"a PDF of another name",
         [&] {
             Rename("d/M26/contents/A2610AA.pdf", "d/M26/contents/manual.pdf");
             Replace("d/index.html", "A2610AA.pdf", "manual.pdf");
         },
         {{"M26/contents/manual.pdf", "pdf"}}},
        {"lines of the manual information",
         [&] {
             Replace(setup + "man_info_do.ci", "M10,2,2023/07", "M10,2,2023/7/x");
             Replace(setup + "man_info_us.ci", "M11", "M99");
         },
         {{"programs/setup/man_info_do.ci", "manual-info"},
          {"programs/setup/man_info_do.ci", "manual-info"},
          {"programs/setup/man_info_us.ci", "manual-info"}}},
        {"a manual without its description", [&] { Put("d/M27/contents/index.html", ""); }, {{"M27", "ignored"}}},
        {"a name that a disc cuts", [&] { Put("d/" + longName, ""); }, {{longName, "name"}}},
        {"a model twice in the order",
         [&] {
             SqliteEngine()
                 .Open(TextOf(At(setup + "kvx3new.mdb")))
                 ->Execute(L"INSERT INTO M_order VALUES ('TLS','Talis',7)");
         },
         {{"programs/setup/kvx3new.mdb", "catalogue"}}},
    };
    std::multiset<std::pair<std::string, std::string>> expected;
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.Label);
        fault.Plant();
        expected.insert(fault.Found.begin(), fault.Found.end());
    }
    std::multiset<std::pair<std::string, std::string>> found;
    const Findings findings = CheckDisc(At("d"));
    for (const Finding& finding : findings) {
        found.emplace(finding.File, finding.Code);
    }
    EXPECT_EQ(found, expected) << FindingsText(findings);
}

TEST(PublisherCommandLineTest, OptionsAreTakenOnceAndWithTheirValues) {
    const auto read = [](const std::vector<std::filesystem::path>& arguments) {
        return CommandLine(arguments, {"--base"}, {"--json"});
    };
    EXPECT_EQ(read({"in", "--base", "--json", "out"}).Value("--base"), "--json");
    EXPECT_EQ(read({"in", "--json", "out"}).Rest(2)[1], "out");
    EXPECT_THROW(read({"--base", "a", "--base", "b"}), UsageError);
    EXPECT_THROW(read({"--base"}), UsageError);
    EXPECT_THROW(read({"--bass", "a"}), UsageError);
}

TEST_F(CheckDiscTest, FindingsAreLinesOrJson) {
    const Findings findings{{"a\"b", "name", "is\nbad", "rename it"}, {"", "empty", "has no manual", "add one"}};
    EXPECT_EQ(FindingsText({findings[1]}), "disc: has no manual; add one [empty]\n");
    EXPECT_EQ(FindingsJson(findings),
              "[\n  {\"file\": \"a\\\"b\", \"code\": \"name\", \"text\": \"is\\u000abad\", \"fix\": \"rename it\"},\n"
              "  {\"file\": \"\", \"code\": \"empty\", \"text\": \"has no manual\", \"fix\": \"add one\"}\n]\n");
}

}  // namespace
}  // namespace mip
