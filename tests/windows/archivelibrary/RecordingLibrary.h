#pragma once

namespace mip {

/// What the archive library of this test was called with last.
struct RecordedCall {
    int Count;
    void* Owner;
    char CommandLine[512];
    int OutputLength;  ///< -1 without a buffer
    unsigned long OutputSize;
};

/// What `SevenZip` answers.
inline constexpr int RecordedResult = 0x00008020;

}  // namespace mip
