#include <gtest/gtest.h>

#include "catalogue/Statements.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "platform/PlatformError.h"
#include "tests/native/catalogue/CatalogueWorkshop.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

using Texts = std::vector<std::wstring>;

DiscCatalogueRecord DiscRecord() {
    return Make<DiscCatalogueRecord>(Selection::Undecided, L"K'10", L"3", L"Kombi カバー", L"KX1", L"EN", L"1", L"2019",
                                     L"", L"GB", std::int16_t{0}, InstallKind::Undecided, InstallState::None, L"", L"",
                                     false, ManualForm::Pdf, L"", L"");
}

constexpr wchar_t InsertOfDiscRecord[] =
    L"INSERT INTO M_manage ( [Pub_No]\r\n,[Model_desc]\r\n,[Model_ID]\r\n,[Version]\r\n,[Year]\r\n,[Kubun]\r\n,"
    L"[Country]\r\n,[Lang]\r\n,[Ldup]\r\n,[InsUser]\r\n,[InsDate]\r\n,[InsPath]\r\n,[Adjust_flg]\r\n,[Memo_txt]\r\n ) "
    L" VALUES(\n'K''10',\n'Kombi カバー',\n'KX1',\n'3',\n'2019',\n'',\n'GB',\n'EN',\n'1',\n'O''Brien',\n"
    L"Cdate('2024/05/06 07:08:10'),\n'C:\\it''s',\n'0',\n'')\n";

TEST(StatementsTest, TextsAreExactlyThese) {
    const std::pair<std::wstring, const wchar_t*> cases[] = {
        {statements::FindInstalled(L"K'10"), L"SELECT * FROM M_manage WHERE Pub_No = 'K''10'"},
        {statements::FindInstalledAmong({L"K'1", L"K2"}),
         L"SELECT * FROM M_manage WHERE Pub_No IN ('K''1','K2') ORDER BY Pub_No"},
        {statements::ReadLastInstallPath, L"SELECT INSPath FROM M_manage ORDER BY INSDate DESC"},
        {statements::InstalledList(),
         L"SELECT  MM.Pub_No AS Pub_No \r\n,Model_desc \r\n,Model_ID \r\n,Version \r\n,[Year] \r\n,Kubun \r\n,Country "
         L"\r\n,Lang \r\n,Ldup \r\n,InsUser \r\n,InsDate \r\n,InsPath \r\n,Adjust_flg \r\n,Memo_txt \r\n,Pdf_flg \r\n "
         L"FROM M_manage MM LEFT JOIN M_type MT ON MM.PUB_NO = MT.PUB_NO "},
        {statements::ReregisterInstallPath(L"K'10", L"D:\\it's"),
         L"UPDATE M_manage SET  INSPath = 'D:\\it''s', Adjust_flg = 0  WHERE Pub_No = 'K''10'"},
        {statements::ReadSystem, L"SELECT * FROM M_system"},
        {statements::ReadAllInstalled, L"SELECT * FROM M_manage"},
        {statements::ReadModelOrder, L"SELECT * FROM M_order"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(text, expected);
    }
}

TEST(StatementsTest, ChangesAreSentInTransactions) {
    CatalogueWorkshop shop;
    JetStandIn jet(shop);
    JetStandIn::TakeOver(shop, Workshop::MdbPath);
    ASSERT_TRUE(shop.StartProgram());
    Program& program = shop.Program();
    const auto sent = [&jet](bool done) {
        EXPECT_TRUE(done);
        return std::exchange(jet.Sent, {});
    };
    jet.Sent.clear();
    const Texts removal{L"(begin)", L"DELETE FROM M_manage WHERE Pub_No = 'K''10'",
                        L"DELETE FROM M_type WHERE Pub_No = 'K''10'"};
    Texts registration = removal;
    registration.insert(
        registration.end(),
        {InsertOfDiscRecord, L" INSERT INTO M_type (PUB_NO,PDF_FLG)  VALUES(\n'K''10',\n'1')\n", L"(commit)"});
    EXPECT_EQ(sent(RegisterInstalledManual(program, DiscRecord(), L"C:\\it's", InstallState::New)), registration);
    EXPECT_EQ(sent(MarkForAdjustment(*program.CatalogDb, L"K'10")),
              (Texts{L"(begin)", L"UPDATE M_manage SET  Adjust_flg = '1'  WHERE Pub_No = 'K''10'", L"(commit)"}));
    EXPECT_EQ(sent(RemoveInstalledManual(*program.CatalogDb, L"K'10")),
              (Texts{removal[0], removal[1], removal[2], L"(commit)"}));
    EXPECT_EQ(sent(InsertInstalledRecord(*program.CatalogDb, program.Installed, L"1")),
              (Texts{InsertOfDiscRecord, L"INSERT INTO M_type (PUB_NO,PDF_FLG) VALUES ( 'K''10','1')"}));
}

class ModMdbTest : public testing::Test {
  protected:
    CatalogueWorkshop shop_{SampleRecords(3)};
    Program& program_ = shop_.Program();
};

TEST_F(ModMdbTest, RegistrationReplacesTheRowsOfThePublication) {
    DiscCatalogueRecord manual = DiscRecord();
    manual.Model_desc = std::wstring(255, L'長');
    ASSERT_TRUE(RegisterInstalledManual(program_, manual, L"C:\\it's", InstallState::New));
    manual.Version = L"4";
    manual.PdfForm = ManualForm::Archive;
    ASSERT_TRUE(RegisterInstalledManual(program_, manual, L"C:\\カバー", InstallState::Update));
    const auto expected = Make<InstalledRecord>(L"K'10", manual.Model_desc, L"KX1", L"4", L"2019", L"", L"GB", L"EN",
                                                L"1", L"O'Brien", ParseDateTime(L"2024/05/06 07:08:11"), L"C:\\カバー",
                                                L"0", L"", L"", ManualForm::Archive);
    EXPECT_EQ(FindInstalledRecord(program_, L"k'10"), (Lookup{MdbOk, expected}));
    EXPECT_EQ(program_.Installed, expected);
    const std::vector<InstalledRecord> rows = shop_.Rows();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows.back().Pdf_flg, L"0");
}

TEST_F(ModMdbTest, RegistrationCountsWholeOrNotAtAll) {
    const std::string old = shop_.Tree.BytesOf(Workshop::MdbPath);
    const std::vector<InstalledRecord> oldRows = shop_.Rows();
    const std::vector<InstalledRecord> others{oldRows[0], oldRows[2]};
    DiscCatalogueRecord manual = DiscRecord();
    manual.Pub_No = SampleRecord(1).Pub_No;
    for (std::size_t n = 1;; ++n) {
        shop_.Tree.PutFile(Workshop::MdbPath, old);
        ASSERT_TRUE(shop_.StartProgram());
        shop_.Faults.FailCall(n);
        const bool done = RegisterInstalledManual(shop_.Program(), manual, L"C:\\new", InstallState::New);
        const bool hit = shop_.Faults.Hit();
        shop_.Faults.Reset();
        const std::vector<InstalledRecord> rows = shop_.Rows();
        ASSERT_EQ(rows.size(), 3u) << n;
        if (done || rows != oldRows) {  // an error after the last step is reported although everything was done
            EXPECT_TRUE(rows.back().INSPath == L"C:\\new" && rows.back().Pdf_flg == L"1") << n;
            EXPECT_EQ(std::vector(rows.begin(), rows.end() - 1), others) << n;
        }
        EXPECT_TRUE(RegisterInstalledManual(shop_.Program(), manual, L"C:\\again", InstallState::New)) << n;
        if (!hit) {
            EXPECT_TRUE(done);
            EXPECT_GT(n, 10u);
            break;
        }
    }
}

TEST_F(ModMdbTest, UpdatesTouchOneRowOnly) {
    const std::wstring pubNo = SampleRecord(1).Pub_No;
    EXPECT_TRUE(MarkForAdjustment(*program_.CatalogDb, pubNo));
    shop_.Tree.SettleAfterPowerCut(FileTree::Unflushed::Lost);  // the mark is on the drive all the same
    EXPECT_EQ(shop_.Rows()[1].Adjust_flg, L"1");
    EXPECT_TRUE(ReregisterInstallPath(*program_.CatalogDb, pubNo, L"E:\\new's"));
    std::vector<InstalledRecord> expected = SampleRecords(3);
    expected[1].INSPath = L"E:\\new's";
    EXPECT_EQ(shop_.Rows(), expected);
    EXPECT_TRUE(RemoveInstalledManual(*program_.CatalogDb, pubNo));
    expected.erase(expected.begin() + 1);
    EXPECT_EQ(shop_.Rows(), expected);
    EXPECT_EQ(FindInstalledRecord(program_, pubNo).Status, MdbEnd);
}

TEST_F(ModMdbTest, LastInstallPathIsThatOfTheLatestDate) {
    EXPECT_EQ(GetLastInstallPath(*program_.CatalogDb), SampleRecord(2).INSPath);
    CatalogueWorkshop empty;
    EXPECT_EQ(GetLastInstallPath(*empty.Program().CatalogDb), L"");
    empty.Faults.FailFrom(1);
    EXPECT_EQ(GetLastInstallPath(*empty.Program().CatalogDb), L"");
}

TEST_F(ModMdbTest, FormIsToldByTheFilesAndByTheTypeTable) {
    InstalledRecord record = SampleRecord(7);
    record.Pdf_flg = L"";
    CatalogueWorkshop shop({record});
    shop.Tree.PutFile(record.INSPath + L"\\contents\\" + record.Pub_No + L".PDF");
    ASSERT_EQ(FindInstalledRecord(shop.Program(), record.Pub_No).Status, MdbOk);
    EXPECT_EQ(shop.Program().Installed.InstalledPdfForm, ManualForm::Pdf);
    ASSERT_EQ(shop.Rows().size(), 1u);  // listed without a row in the type table
    EXPECT_EQ(shop.Rows()[0].Pdf_flg, L"");
}

TEST_F(ModMdbTest, NullsAreReadAsEmptyTextsAndDayZeroOtherDatesAreAnError) {
    ASSERT_EQ(program_.CatalogDb->Pcls_MdbExecute(L"INSERT INTO M_manage (Pub_No) VALUES ('K9')"), MdbOk);
    InstalledRecord expected;
    expected.Pub_No = L"K9";
    expected.INSDate = ParseDateTime(L"1899/12/30 00:00:00");
    EXPECT_EQ(FindInstalledRecord(program_, L"K9"), (Lookup{MdbOk, expected}));
    EXPECT_EQ(program_.Installed, expected);
    EXPECT_EQ(GetLastInstallPath(*program_.CatalogDb), SampleRecord(2).INSPath);
    ASSERT_EQ(program_.CatalogDb->Pcls_MdbExecute(L"UPDATE M_manage SET INSDate = 'x' WHERE Pub_No LIKE 'K101%'"),
              MdbOk);
    EXPECT_EQ(FindInstalledRecord(program_, SampleRecord(1).Pub_No).Status, MdbError);
    EXPECT_EQ(program_.Installed, expected) << "as it was before the row that cannot be read";
}

TEST_F(ModMdbTest, VersionIsANumberOrMinusOne) {
    const struct {
        const wchar_t* Values;
        std::int16_t Version;
    } cases[] = {{L"(5)", 5}, {L"('12')", 12}, {L"(40000)", -1}, {L"('two')", -1}, {L"(NULL)", -1}, {L"", -1}};
    for (const auto& [values, version] : cases) {
        clsMDB& database = *program_.CatalogDb;
        ASSERT_EQ(database.Pcls_MdbExecute(L"DELETE FROM M_system"), MdbOk);
        if (*values != L'\0') {
            ASSERT_EQ(database.Pcls_MdbExecute(std::wstring(L"INSERT INTO M_system VALUES ") + values), MdbOk);
        }
        EXPECT_EQ(ReadDatabaseVersion(database), version) << ToUtf8(values);
    }
}

TEST_F(ModMdbTest, ModelOrderIsLoadedUpToWhatCannotBeRead) {
    clsMDB& database = *program_.CatalogDb;
    ModelOrderList list;
    EXPECT_EQ(LoadModelOrder(database, list), MdbEnd);
    EXPECT_EQ(list.Entries.size(), 1u);
    for (const wchar_t* values : {L"'KX1','a',3", L"NULL,NULL,NULL", L"'KX1','b',4", L"'big','',40000"}) {
        ASSERT_EQ(database.Pcls_MdbExecute(std::wstring(L"INSERT INTO M_order VALUES(") + values + L")"), MdbOk);
    }
    EXPECT_EQ(LoadModelOrder(database, list), MdbError);
    const std::vector<ModelOrderEntry> expected{{}, {L"KX1", L"a", 3}, {L"", L"", 0}, {L"KX1", L"b", 4}};
    EXPECT_EQ(list.Entries, expected);
    EXPECT_EQ(list.ModelOrderCount, 3);
    EXPECT_EQ(FindOrderNo(list, L"KX1"), 3);
    EXPECT_EQ(FindOrderNo(list, L"kx1"), 0);
}

}  // namespace
}  // namespace mip
