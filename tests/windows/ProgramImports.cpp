#include "tests/windows/ProgramImports.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include <windows.h>

namespace mip {

namespace {

/// A program file as it lies on the disk.
class ProgramImage {
  public:
    explicit ProgramImage(const std::wstring& file) {
        std::ifstream stream(std::filesystem::path(file), std::ios::binary);
        bytes_.assign(std::istreambuf_iterator<char>(stream), {});
        const auto& dos = At<IMAGE_DOS_HEADER>(0);
        headers_ = static_cast<DWORD>(dos.e_lfanew);
        if (dos.e_magic != IMAGE_DOS_SIGNATURE || Headers().OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR32_MAGIC) {
            throw std::runtime_error("not a 32-bit program");
        }
    }

    const IMAGE_NT_HEADERS32& Headers() const { return At<IMAGE_NT_HEADERS32>(headers_); }

    /// What lies at an address of the loaded program.
    template <typename T>
    const T& Loaded(DWORD address) const {
        const DWORD first = headers_ + static_cast<DWORD>(sizeof(IMAGE_NT_HEADERS32));
        for (DWORD i = 0; i < Headers().FileHeader.NumberOfSections; ++i) {
            const auto& section =
                At<IMAGE_SECTION_HEADER>(first + i * static_cast<DWORD>(sizeof(IMAGE_SECTION_HEADER)));
            if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData) {
                return At<T>(section.PointerToRawData + address - section.VirtualAddress);
            }
        }
        throw std::runtime_error("an address outside the program");
    }

  private:
    template <typename T>
    const T& At(DWORD offset) const {
        if (offset + sizeof(T) > bytes_.size()) {
            throw std::runtime_error("a program that is cut off");
        }
        return *reinterpret_cast<const T*>(bytes_.data() + offset);
    }

    std::vector<char> bytes_;
    DWORD headers_ = 0;
};

}  // namespace

std::set<std::string> ImportsOf(const std::wstring& programFile) {
    const ProgramImage image(programFile);
    std::set<std::string> names;
    DWORD address = image.Headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (;; address += static_cast<DWORD>(sizeof(IMAGE_IMPORT_DESCRIPTOR))) {
        const auto& import = image.Loaded<IMAGE_IMPORT_DESCRIPTOR>(address);
        if (import.Name == 0) {
            return names;
        }
        std::string name = &image.Loaded<char>(import.Name);
        std::ranges::transform(name, name.begin(), [](unsigned char letter) { return std::tolower(letter); });
        names.insert(name);
    }
}

std::uint16_t CharacteristicsOf(const std::wstring& programFile) {
    return ProgramImage(programFile).Headers().FileHeader.Characteristics;
}

}  // namespace mip
