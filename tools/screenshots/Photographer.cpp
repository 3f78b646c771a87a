#include "tools/screenshots/Photographer.h"

#include <cstdio>
#include <stdexcept>

namespace mip {

void Photographer::Take(HWND window, const std::wstring& name) const {
    constexpr DWORD Step = 20;         // milliseconds
    constexpr DWORD Patience = 30000;  // milliseconds
    RECT area{};
    GetWindowRect(window, &area);
    const std::wstring request = folder_ + L"\\" + name + L".request";
    const std::wstring unfinished = folder_ + L"\\" + name + L".new";
    FILE* file = _wfopen(unfinished.c_str(), L"wb");
    if (file == nullptr) {
        throw std::runtime_error("the folder for the pictures cannot be written");
    }
    std::fprintf(file, "%ld %ld %ld %ld\n", area.left, area.top, area.right - area.left, area.bottom - area.top);
    std::fclose(file);
    MoveFileExW(unfinished.c_str(), request.c_str(), MOVEFILE_REPLACE_EXISTING);
    for (DWORD waited = 0; GetFileAttributesW(request.c_str()) != INVALID_FILE_ATTRIBUTES; waited += Step) {
        if (waited > Patience) {
            throw std::runtime_error("nobody takes the pictures");
        }
        Sleep(Step);
    }
    std::printf("%ls\n", name.c_str());
}

}  // namespace mip
