#include "screens/AgreementScreen.h"

#include "app/Program.h"
#include "app/TextFile.h"
#include "app/modFile.h"
#include "platform/FaultLog.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"

namespace mip {

std::wstring LoadAgreementText(const Program& program) {
    Platform& platform = program.Platform;
    for (const std::wstring& language : {program.Identity.LanguageCode, std::wstring(L"09")}) {
        const std::wstring file = JoinPath(program.Paths.SysDirPath, L"Licence_" + language + L".txt");
        if (!platform.Files.Exists(file)) {
            continue;
        }
        std::wstring text;
        try {
            for (const std::wstring& line : ReadTextLines(platform, file)) {
                text += line + L"\r\n";
            }
        } catch (const PlatformError& error) {
            platform.FaultLog.Trapped("reading the terms of use", error);
            return program.KeptTexts.Agreement;
        }
        return text;
    }
    return program.KeptTexts.Agreement;
}

}  // namespace mip
