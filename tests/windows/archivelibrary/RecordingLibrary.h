#pragma once

namespace mip {

/// What the archive library of this test was called with last.
struct RecordedCall {
    int Count;  ///< of all calls so far
    void* Owner;
    char CommandLine[512];
    int OutputLength;  ///< -1 without a buffer
    unsigned long OutputSize;
};

/// What the library answers when it cannot do what it was told.
inline constexpr int LibraryFailure = 0x00008020;

}  // namespace mip
