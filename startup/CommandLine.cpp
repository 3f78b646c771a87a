#include "startup/CommandLine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "text/TextTools.h"

namespace mip {
namespace {

struct PlainSwitch {
    std::wstring_view Name;
    bool Switches::*Flag;
};

struct ValueSwitch {
    std::wstring_view Name;
    std::wstring Switches::*Value;
    bool (*IsComplete)(std::wstring_view value);
};

bool IsAnyText(std::wstring_view value) {
    return !value.empty() && value.find(L'"') == std::wstring_view::npos;
}

bool IsAbsoluteFolder(std::wstring_view value) {
    return IsAnyText(value) && (value.find(L":\\") == 1 || value.starts_with(L"\\\\"));
}

/// Two or three letters or digits: the code names the message file.
bool IsLanguageCode(std::wstring_view value) {
    const auto isPart = [](wchar_t part) {
        return (part >= L'0' && part <= L'9') || (part >= L'A' && part <= L'Z') || (part >= L'a' && part <= L'z');
    };
    return (value.size() == 2 || value.size() == 3) && std::all_of(value.begin(), value.end(), isPart);
}

constexpr std::array plainSwitches{
    PlainSwitch{L"/?", &Switches::Help},
    PlainSwitch{L"/SILENT", &Switches::Silent},
    PlainSwitch{L"/VERYSILENT", &Switches::VerySilent},
    PlainSwitch{L"/ACCEPT", &Switches::Accept},
    PlainSwitch{L"/CHECK", &Switches::Check},
};

constexpr std::array valueSwitches{
    ValueSwitch{L"/REMOVE", &Switches::Remove, IsAnyText},
    ValueSwitch{L"/DIR", &Switches::Directory, IsAbsoluteFolder},
    ValueSwitch{L"/LANG", &Switches::Language, IsLanguageCode},
    ValueSwitch{L"/LOG", &Switches::LogFile, IsAnyText},
};

bool ReadPlain(const std::wstring& name, Switches& switches) {
    for (const PlainSwitch& plain : plainSwitches) {
        if (plain.Name == name) {
            switches.*plain.Flag = true;
            return true;
        }
    }
    return false;
}

bool ReadWithValue(const std::wstring& name, std::wstring_view value, Switches& switches) {
    for (const ValueSwitch& valued : valueSwitches) {
        if (valued.Name == name && valued.IsComplete(value)) {
            switches.*valued.Value = std::wstring(value);
            return true;
        }
    }
    return false;
}

bool ReadOne(const std::wstring& argument, Switches& switches) {
    const std::size_t equals = argument.find(L'=');
    const std::wstring name = ToUpper(argument.substr(0, equals));
    if (equals == std::wstring::npos) {
        return ReadPlain(name, switches);
    }
    return ReadWithValue(name, WithoutDoubleQuotes(std::wstring_view(argument).substr(equals + 1)), switches);
}

/// The switch that cannot stand as it does beside the others.
std::optional<std::wstring> FindMisplaced(const Switches& switches) {
    if (switches.Check && !switches.Remove.empty()) {
        return L"/REMOVE=" + switches.Remove;
    }
    if (switches.IsQuiet() && !switches.Accept && !switches.IsMaintenance()) {
        return switches.VerySilent ? L"/VERYSILENT" : L"/SILENT";
    }
    return std::nullopt;
}

}  // namespace

Switches ReadSwitches(const std::vector<std::wstring>& arguments) {
    Switches switches;
    std::optional<std::wstring> bad;
    for (const std::wstring& argument : arguments) {
        if (!ReadOne(argument, switches) && !bad) {
            bad = argument;
        }
    }
    switches.Language = ToUpper(switches.Language);
    if (switches.Help) {  // who asks wants to be answered
        switches.Silent = switches.VerySilent = false;
    }
    if (!bad) {
        bad = FindMisplaced(switches);
    }
    if (bad) {
        throw BadSwitch(*bad, switches);
    }
    return switches;
}

}  // namespace mip
