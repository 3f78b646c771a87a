// Linked into the program, it makes it believe that the user works with high contrast. Wine knows nothing of it and
// answers that it is off.

#include <windows.h>

namespace {

BOOL WINAPI AnswerForHighContrast(UINT action, UINT size, PVOID data, UINT change) {
    if (action == SPI_GETHIGHCONTRAST) {
        static_cast<HIGHCONTRASTW*>(data)->dwFlags = HCF_AVAILABLE | HCF_HIGHCONTRASTON;
        return TRUE;
    }
    const FARPROC real = GetProcAddress(GetModuleHandleW(L"user32.dll"), "SystemParametersInfoW");
    return reinterpret_cast<decltype(&AnswerForHighContrast)>(reinterpret_cast<void*>(real))(action, size, data,
                                                                                             change);
}

}  // namespace

extern "C" decltype(&AnswerForHighContrast) importedSystemParametersInfo asm("__imp__SystemParametersInfoW@16");
decltype(&AnswerForHighContrast) importedSystemParametersInfo = AnswerForHighContrast;
