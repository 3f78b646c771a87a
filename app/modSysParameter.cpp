#include "app/modSysParameter.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "app/Messages.h"
#include "app/Program.h"
#include "platform/Files.h"
#include "platform/ProfileFiles.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// Characters of the profile services' buffer, its NUL included.
constexpr std::size_t ProfileBufferSize = 256;

std::wstring MessageFile(const Program& program, const std::wstring& languageCode) {
    return program.Paths.SysDirPath + L"\\M" + languageCode + L".ini";
}

std::wstring ReadValue(Platform& platform, const std::wstring& file, const std::wstring& section,
                       const std::wstring& key) {
    try {
        return CutAtNul(platform.ProfileFiles.ReadString(section, key, file, ProfileBufferSize));
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("reading " + ToUtf8(file), error);
        return L"";
    }
}

/// The message file of the language, or the English one; "" when neither is there.
std::wstring FindMessageFile(const Program& program) {
    for (const std::wstring& language : {program.Identity.LanguageCode, std::wstring(L"09")}) {
        const std::wstring file = MessageFile(program, language);
        if (program.Platform.Files.Exists(file)) {
            return file;
        }
    }
    return {};
}

std::wstring MessageKey(std::int16_t number) {
    return L"M" + PadWithZeros(number, 3);
}

void ReadColumnLengths(const Program& program, ColumnLengths& columns) {
    const auto read = [&program](const wchar_t* key) {
        return TextToInt16(GetSystemParameter(program, key, ColumnLengthSection));
    };
    columns.Pub_No = read(L"Pub_No");
    columns.Model_desc = read(L"Model_desc");
    columns.Model_ID = read(L"Model_ID");
    columns.Version = read(L"Version");
    columns.Year = read(L"Year");
    columns.Kubun = read(L"Kubun");
    columns.Country = read(L"Country");
    columns.Lang = read(L"Lang");
    columns.Ldup = read(L"Ldup");
}

}  // namespace

std::wstring GetProfileValue(Platform& platform, const std::wstring& file, const std::wstring& section,
                             const std::wstring& key) {
    return platform.Files.Exists(file) ? ReadValue(platform, file, section, key) : L"";
}

std::vector<std::wstring> GetProfileValues(Platform& platform, const std::wstring& file, const std::wstring& section,
                                           const std::vector<std::wstring>& keys) {
    try {
        std::vector<std::wstring> values = platform.ProfileFiles.ReadStrings(section, keys, file, ProfileBufferSize);
        for (std::wstring& value : values) {
            value = CutAtNul(value);
        }
        return values;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("reading " + ToUtf8(file), error);
        return std::vector<std::wstring>(keys.size());
    }
}

std::wstring GetSystemParameter(const Program& program, const std::wstring& key, const std::wstring& section) {
    return GetProfileValue(program.Platform, program.Paths.SysParameterPath, section, key);
}

std::wstring GetMessageIniValue(const Program& program, const std::wstring& section, const std::wstring& key) {
    const std::wstring file = FindMessageFile(program);
    std::wstring value = file.empty() ? L"" : ReadValue(program.Platform, file, section, key);
    if (value.empty() && section == MessageSection) {
        const auto kept = program.KeptTexts.Messages.find(key);
        value = kept == program.KeptTexts.Messages.end() ? L"" : kept->second;
    }
    return value;
}

void KeepMessageTexts(Program& program) {
    const std::wstring file = FindMessageFile(program);
    if (file.empty()) {
        return;
    }
    std::vector<std::wstring> keys;
    std::ranges::transform(messages::All, std::back_inserter(keys), MessageKey);
    std::vector<std::wstring> texts = GetProfileValues(program.Platform, file, MessageSection, keys);
    for (std::size_t index = 0; index < keys.size(); ++index) {
        program.KeptTexts.Messages[keys[index]] = std::move(texts[index]);
    }
}

std::wstring GetMessageText(const Program& program, std::int16_t number) {
    return GetMessageIniValue(program, MessageSection, MessageKey(number));
}

bool ReadSystemParameters(Program& program) {
    const auto read = [&program](const wchar_t* key) { return GetSystemParameter(program, key, SystemSection); };
    Settings& settings = program.Settings;
    try {
        settings.LcidFlag = TextToInt16(read(L"LCID_Flg"));
        settings.ShortcutIconFlag = TextToInt16(read(L"ShortcutIcon"));
        settings.Kvx3ExeName = read(L"KVX3_EXE_NAME");
        settings.Kvx3MdbName = read(L"KVX3_MDB_NAME");
        settings.McpExeName = read(L"MCP_EXE_NAME");
        settings.ZipExtractTime = TextToInt32(read(L"ZIP_ExtractTime"));
        settings.Kvx3NewMdbName = read(L"KVX3_NEW_MDB_NAME");
        ReadColumnLengths(program, settings.Columns);
        return true;
    } catch (const std::exception& error) {
        program.Log.Trapped("reading the settings", error);
        return false;
    }
}

}  // namespace mip
