#include "app/TextFile.h"

#include <string_view>

#include "platform/Computer.h"
#include "platform/Files.h"
#include "text/TextTools.h"
#include "text/UnicodeText.h"

namespace mip {

std::wstring DecodeTextFile(const std::string& bytes, Computer& computer) {
    const std::string_view view = bytes;
    if (view.starts_with("\xFF\xFE")) {
        return FromUtf16(view.substr(2), ByteOrder::LowFirst);
    }
    if (view.starts_with("\xFE\xFF")) {
        return FromUtf16(view.substr(2), ByteOrder::HighFirst);
    }
    if (view.starts_with("\xEF\xBB\xBF")) {
        return FromUtf8(view.substr(3));
    }
    return computer.FromSystemCodePage(bytes);
}

std::vector<std::wstring> ReadTextLines(const Platform& platform, const std::wstring& file) {
    return SplitLines(DecodeTextFile(platform.Files.Read(file), platform.Computer));
}

}  // namespace mip
