#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace mip {

/// Windows initialisation files ("profiles"), in the system code page or UTF-16 with a byte-order mark.
class ProfileFiles {
  public:
    virtual ~ProfileFiles() = default;

    /// The value of a key as the profile services give it (surrounding blanks and one pair of quotes removed), cut to
    /// `capacity` - 1 characters; "" for an absent file, section or key. `capacity` counts the terminating NUL.
    virtual std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                                    std::size_t capacity) = 0;
    /// The same for several keys of a section, in their order; in one reading of the file where that can be done.
    virtual std::vector<std::wstring> ReadStrings(const std::wstring& section, const std::vector<std::wstring>& keys,
                                                  const std::wstring& file, std::size_t capacity) {
        std::vector<std::wstring> values;
        for (const std::wstring& key : keys) {
            values.push_back(ReadString(section, key, file, capacity));
        }
        return values;
    }
};

}  // namespace mip
