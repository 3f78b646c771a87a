#pragma once

#include <cstdint>

namespace mip {

/// What a file of this size takes on a drive: whole clusters of 4 KiB, the usual ones. A manual of many small pages
/// takes up to twice the sum of their sizes.
constexpr std::uint64_t SizeInClusters(std::uint64_t size) {
    constexpr std::uint64_t Cluster = 4096;
    return size > UINT64_MAX - Cluster ? size : (size + Cluster - 1) / Cluster * Cluster;
}

}  // namespace mip
