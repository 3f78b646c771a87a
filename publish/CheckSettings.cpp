#include <algorithm>
#include <exception>

#include "app/Messages.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/Statements.h"
#include "catalogue/modMDB.h"
#include "catalogue/modModelOrder.h"
#include "platform/Files.h"
#include "publish/CheckDisc.h"
#include "publish/DiscDescription.h"
#include "text/Checked.h"

namespace mip {
namespace {

constexpr std::size_t LongestText = 255;
constexpr std::int16_t AnyLength = INT16_MAX;

/// Checks SysParameter.ini key by key: the program itself stops at the first number that is none.
class SettingsChecker {
  public:
    SettingsChecker(DiscProgram& disc, Findings& findings) : program_(disc.Program), findings_(findings) {}

    void Check() {
        for (const wchar_t* key : {L"LCID_Flg", L"ShortcutIcon"}) {
            Number(key, SystemSection, TextToInt16, std::int16_t{});
        }
        Number(L"ZIP_ExtractTime", SystemSection, TextToInt32, 0);
        for (const wchar_t* key : {L"KVX3_EXE_NAME", L"KVX3_MDB_NAME", L"MCP_EXE_NAME", L"KVX3_NEW_MDB_NAME"}) {
            if (GetSystemParameter(program_, key, SystemSection).empty()) {
                Add(key, "is missing or empty", "name the file");
            }
        }
        (void)ReadSystemParameters(program_);
        program_.Settings.Kvx3NewMdbName = GetSystemParameter(program_, L"KVX3_NEW_MDB_NAME", SystemSection);
        for (const CarInfoField& field : CarInfoFields) {
            program_.Settings.Columns.*field.Length = Number(field.Key, ColumnLengthSection, TextToInt16, AnyLength);
        }
    }

  private:
    template <typename T>
    T Number(const wchar_t* key, const wchar_t* section, T (*convert)(std::wstring_view), T otherwise) {
        const std::wstring value = GetSystemParameter(program_, key, section);
        try {
            return convert(value);
        } catch (const std::exception&) {
            Add(key, "'" + ToUtf8(value) + "' is not a number, so that the program ends at once", "give a number");
            return otherwise;
        }
    }

    void Add(const wchar_t* key, const std::string& text, const char* fix) {
        findings_.push_back({OnDisc(program_.Paths.SysParameterPath), "setting", ToUtf8(key) + ": " + text, fix});
    }

    Program& program_;
    Findings& findings_;
};

/// Checks the texts of one language.
class LanguageChecker {
  public:
    LanguageChecker(DiscProgram& disc, const std::wstring& code, Findings& findings)
        : disc_(disc), code_(code), file_(InSysDir(L"M" + code + L".ini")), findings_(findings) {}

    void Check() {
        if (CheckEncoding(disc_, file_, false, findings_)) {
            disc_.Program.Identity.LanguageCode = code_;
            for (const std::int16_t number : messages::All) {
                CheckText(number);
            }
            disc_.Program.Identity.LanguageCode = L"09";
        }
        const std::wstring licence = InSysDir(L"Licence_" + code_ + L".txt");
        if (RequireFile(disc_, licence, "every language has its terms", findings_)) {
            CheckEncoding(disc_, licence, true, findings_);
        }
    }

  private:
    std::wstring InSysDir(const std::wstring& name) const { return JoinPath(disc_.Program.Paths.SysDirPath, name); }

    void CheckText(std::int16_t number) {
        const std::wstring key = (number < 10 ? L"M00" : number < 100 ? L"M0" : L"M") + std::to_wstring(number);
        if (GetMessageText(disc_.Program, number).empty()) {
            findings_.push_back({OnDisc(file_), "text", ToUtf8(key) + " is missing or empty", "write the text"});
            return;
        }
        const std::wstring whole =
            disc_.Program.Platform.ProfileFiles.ReadString(MessageSection, key, file_, 2 * LongestText);
        if (whole.size() > LongestText) {
            findings_.push_back(
                {OnDisc(file_), "text", ToUtf8(key) + " is cut after 255 characters", "shorten the text"});
        }
    }

    DiscProgram& disc_;
    std::wstring code_;
    std::wstring file_;
    Findings& findings_;
};

/// Checks the new catalogue that lies beside the program.
class CatalogueChecker {
  public:
    CatalogueChecker(DiscProgram& disc, Findings& findings)
        : program_(disc.Program),
          file_(JoinPath(program_.Paths.ProgramFolder, program_.Settings.Kvx3NewMdbName)),
          findings_(findings) {}

    void Check() {
        clsMDB database(program_.Platform);
        if (!program_.Platform.Files.Exists(file_)) {
            Add("is not there, so that no workshop's catalogue gets this layout", "make it with mkcatalogue");
        } else if (!database.Pcls_MdbOpen(file_)) {
            Add(IsJet() ? "is a Jet database, which cannot be checked here" : "is no catalogue, or damaged",
                "make it with mkcatalogue");
        } else {
            CheckLayout(database);
            CheckModelOrder(database);
        }
    }

  private:
    bool IsJet() const { return program_.Platform.Files.Read(file_, 16).find("Standard") != std::string::npos; }

    void CheckLayout(clsMDB& database) {
        if (ReadDatabaseVersion(database) < 1) {
            Add("tells no layout version from 1 on", "make it with mkcatalogue");
        }
        if (database.Pcls_MdbCreate(InstalledListSlot, statements::InstalledList()) != MdbEnd) {
            Add("has no empty tables M_manage and M_type", "make it with mkcatalogue");
        }
    }

    void CheckModelOrder(clsMDB& database) {
        ModelOrderList& order = program_.ModelOrder;
        if (LoadModelOrder(database, order) == MdbError) {
            return Add("has no readable model order", "make it with mkcatalogue");
        }
        for (std::size_t i = 1; i < order.Entries.size(); ++i) {
            const ModelOrderEntry& entry = order.Entries[i];
            if (FindOrderNo(order, entry.Model_ID) != entry.OrderNo) {
                Add("has the model " + ToUtf8(entry.Model_ID) + " twice in its order", "leave one of them");
            }
        }
    }

    void Add(const std::string& text, const char* fix) { findings_.push_back({OnDisc(file_), "catalogue", text, fix}); }

    Program& program_;
    std::wstring file_;
    Findings& findings_;
};

/// The codes of the languages that have a message file.
std::vector<std::wstring> LanguageCodes(const Program& program) {
    std::vector<std::wstring> codes;
    for (const std::wstring& name : program.Platform.Folders.List(program.Paths.SysDirPath).Files) {
        const std::wstring upper = ToUpper(name);
        if (upper.starts_with(L"M") && upper.ends_with(L".INI")) {
            codes.push_back(name.substr(1, name.size() - 5));
        }
    }
    return codes;
}

}  // namespace

void CheckSettings(DiscProgram& disc, Findings& findings) {
    const std::wstring& file = disc.Program.Paths.SysParameterPath;
    if (RequireFile(disc, file, "without its settings the program ends at once", findings)) {
        CheckEncoding(disc, file, false, findings);
        SettingsChecker(disc, findings).Check();
    }
}

void CheckTexts(DiscProgram& disc, Findings& findings) {
    const std::wstring& folder = disc.Program.Paths.SysDirPath;
    RequireFile(disc, JoinPath(folder, L"M09.ini"), "it serves every language without a file of its own", findings);
    if (disc.Program.Platform.Folders.Exists(folder)) {
        for (const std::wstring& code : LanguageCodes(disc.Program)) {
            LanguageChecker(disc, code, findings).Check();
        }
    }
}

void CheckCatalogue(DiscProgram& disc, Findings& findings) {
    if (!disc.Program.Settings.Kvx3NewMdbName.empty()) {
        CatalogueChecker(disc, findings).Check();
    }
}

}  // namespace mip
