#include <algorithm>

#include "app/modSysParameter.h"
#include "catalogue/modCarInfo.h"
#include "publish/CheckDisc.h"
#include "tests/native/publish/Publisher.h"
#include "text/DateText.h"

namespace mip {
namespace {

class MakeDiscTest : public PublisherTest {
  protected:
    /// The names of a comparison set's files.
    std::string SetOf(const std::string& disc, const std::string& folder) const {
        std::string names;
        const std::filesystem::path set = At(disc) / folder / "install" / "compare";
        for (const auto& [name, bytes] : std::filesystem::exists(set) ? FilesOf(set) : FilesOf(At("empty"))) {
            names += name + "=" + bytes + " ";
        }
        return names;
    }
};

TEST_F(MakeDiscTest, TheSameInputGivesTheSameDiscAndTheProgramReadsIt) {
    const TestManual html{"Fuyune_JA", "K7810JP", "1"};
    const TestManual pdf{"Wiring_PDF", "K1220WJ", "3", true};
    PutSource(html);
    PutSource(pdf);
    const std::string description = DescriptionOf({html, pdf}) + "Title = 配線図\n";
    EXPECT_EQ(Make(description, "one"), std::vector<std::string>{});
    Make(description, "two");
    EXPECT_EQ(FilesOf(At("one")), FilesOf(At("two")));
    EXPECT_EQ(FindingsText(CheckDisc(At("one"))), "");

    DiscProgram disc(At("one"));
    ASSERT_TRUE(ReadSystemParameters(disc.Program));
    ASSERT_TRUE(ScanDiscCatalogue(disc.Program));
    ASSERT_EQ(disc.Program.DiscCatalogue.Records.size(), 3U);
    const DiscCatalogueRecord& record = disc.Program.DiscCatalogue.Records[1];
    EXPECT_EQ(record.Model_desc, L"フユネ");
    EXPECT_EQ(record.Kubun, L"\"整備書\"");
    EXPECT_EQ(disc.Program.DiscCatalogue.Records[2].PdfForm, ManualForm::Pdf);
    EXPECT_NE(ReadWhole(At("one/index.html")).find("Wiring_PDF/contents/K1220WJ.pdf\">配線図"), std::string::npos);
    Put("dated", "");
    SetTime(At("dated"), ParseDateTime(L"2023/10/02 08:00:00"));
    EXPECT_EQ(std::filesystem::last_write_time(At("one/index.html")), std::filesystem::last_write_time(At("dated")));
}

TEST_F(MakeDiscTest, FaultsNameLineAndFieldAndLeaveNothing) {
    const TestManual manual{"Fuyune", "K7810JP"};
    PutSource(manual);
    Put("sources/bad/contents/page.html", "");
    const std::string whole = DescriptionOf({manual});
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = whole;
        return text.replace(text.find(from), from.size(), to);
    };
    const std::string twice = whole + Section({"Talis", "K7811JP"});
    PutSource({"Talis", "K7811JP"});
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"", 1, ""},
        {DescriptionOf({}), 8, ""},
        {with("[disc]", "[disk]"), 2, ""},
        {with("Layout = 2", "Layout = two"), 3, "Layout"},
        {with("Date = 2023", "Date = 23"), 4, "Date"},
        {with("Guide = install.html\n", ""), 2, "Guide"},
        {with("TLS = Talis", "TLS"), 8, ""},
        {with("Fuyune]", "Fuyune 2]"), 9, ""},
        {with("Fuyune]", "programs]"), 9, ""},
        {with("Pub_No", "Publication"), 10, "Publication"},
        {with("K7810JP", "KX"), 10, "Pub_No"},
        {with("K7810JP", "K7810JP-LONG"), 10, "Pub_No"},
        {with("K7810JP", "K7810J?"), 10, "Pub_No"},
        {twice, 10, "Pub_No"},
        {with("Version = 2", "Version = 2a"), 11, "Version"},
        {with("= TLS", "= ABC"), 13, "Model_ID"},
        {with("Country = JP", "Lang = JP"), 17, "Lang"},
        {with("2023/07", "2023/13"), 18, "Issued"},
        {with("Source = Fuyune", "Source = nothing"), 19, "Source"},
        {with("Source = Fuyune", "Source = bad"), 19, "Source"},
        {with("Form = html", "Form = word"), 20, "Form"},
        {with("Form = html", "Form = pdf"), 19, "Source"},
        {with("JA", "\xB6"), 14, ""},
        {with("JA", "J\rA"), 14, ""},
    };
    for (const auto& [text, line, field] : cases) {
        try {
            Make(text, "disc");
            ADD_FAILURE() << "accepted: " << text;
        } catch (const DescriptionFaults& faults) {
            const auto isIt = [&](const DescriptionFault& fault) { return fault.Line == line && fault.Field == field; };
            EXPECT_TRUE(std::ranges::any_of(faults.Faults(), isIt)) << line << field << '\n' << faults.what();
        }
        EXPECT_FALSE(std::filesystem::exists(At("disc")) || std::filesystem::exists(At("disc.partial"))) << text;
    }
    std::filesystem::create_directories(At("disc"));
    EXPECT_THROW(Make(whole, "disc"), std::runtime_error);
    EXPECT_NO_THROW(Make(whole, "new/"));
    Put("program/SysDir/SysParameter.ini", "[SYSTEM INFORMATION]\r\nLCID_Flg=0\r\n");
    EXPECT_THROW(Make(whole, "disc2"), std::runtime_error);
}

TEST_F(MakeDiscTest, AComparisonSetTurnsTheEditionBeforeIntoThisOne) {
    TestManual manual{"Fuyune", "K7810JP", "1"};
    std::filesystem::create_directories(At("empty"));
    PutSource(manual);
    Put("sources/Fuyune/contents/old.html", "as it was");
    Make(DescriptionOf({manual}), "first");
    manual.Version = "2";
    Put("sources/Fuyune/contents/index.html", "now");
    Put("sources/Fuyune/contents/new/page.html", "new");
    const std::string second = DescriptionOf({manual});
    EXPECT_TRUE(Make(second, "loose", "first").empty());
    EXPECT_EQ(SetOf("loose", "Fuyune"), "index.html=now new/page.html=new ");

    // A disc may bring the archive alone.
    std::filesystem::remove_all(At("first/Fuyune/contents"));
    Make(second, "packed", "first");
    EXPECT_EQ(FilesOf(At("packed")), FilesOf(At("loose")));

    manual.Version = "3";
    Make(DescriptionOf({manual}), "later", "first");
    EXPECT_EQ(SetOf("later", "Fuyune"), "");
    std::filesystem::remove(At("sources/Fuyune/contents/old.html"));
    EXPECT_EQ(Make(second, "less", "first").size(), 1U);
    EXPECT_EQ(SetOf("less", "Fuyune"), "");
    Put("sources/Fuyune/contents/old.html", "as it was");
    Put("sources/Fuyune/index.html", "another entrance");
    EXPECT_EQ(Make(second, "outside", "first").size(), 1U);
    EXPECT_EQ(SetOf("outside", "Fuyune"), "");
}

}  // namespace
}  // namespace mip
