#include "install/VersionStamp.h"

#include "app/Attempt.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/modSysParameter.h"
#include "platform/Computer.h"
#include "platform/Files.h"
#include "security/modAddFullAccess.h"

namespace mip {

namespace {

/// The stamp as Forms Data Format 1.2 (PDF reference, "Forms Data Format"): one field and the PDF that it belongs to.
std::wstring StampText(const std::wstring& version, const std::wstring& pdfFileName) {
    const std::wstring lines[] = {
        L"%FDF-1.2",
        L"1 0 obj",
        L"<<",
        L"/FDF << /Fields [",
        L"<< /V (Ver " + version + L")/T (ver_mam_man)>> ]",
        L"/F (./" + pdfFileName + L") >>",
        L">>",
        L"endobj",
        L"trailer",
        L"<<",
        L"/Root 1 0 R",
        L"",
        L">>",
        L"%%EOF",
    };
    std::wstring text;
    for (const std::wstring& line : lines) {
        text += line + L"\r\n";
    }
    return text;
}

std::wstring StampPath(const Paths& paths) {
    return paths.InstallDir + L"\\mam_man.fdf";
}

std::string StampBytes(const Program& program, const std::wstring& version) {
    return program.Platform.Computer.ToSystemCodePage(
        StampText(version, GetMessageText(program, messages::PdfFileName)));
}

void ClearReadOnly(Files& files, const std::wstring& path) {
    if (files.Exists(path) && (files.Status(path).Attributes & attributes::ReadOnly) != 0) {
        files.SetAttributes(path, attributes::Normal);
    }
}

}  // namespace

bool IsVersionStamped(const Program& program, const std::wstring& version) {
    const std::wstring path = StampPath(program.Paths);
    return Attempt(program.Platform.FaultLog, "reading the version stamp", [&] {
        return program.Platform.Files.Exists(path) && program.Platform.Files.Read(path) == StampBytes(program, version);
    });
}

bool WriteVersionStamp(const Program& program, const std::wstring& version) {
    return Attempt(program.Platform.FaultLog, "writing the version stamp", [&] {
        const std::wstring path = StampPath(program.Paths);
        ClearReadOnly(program.Platform.Files, path);
        program.Platform.Files.Write(path, StampBytes(program, version));
        return GrantFullAccess(program.Platform, program.Identity, path);
    });
}

}  // namespace mip
