// Counts a mark in a line. The inner loop counts in bytes, which the compiler turns into a few instructions
// for sixteen or more characters.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace kvr {

inline std::size_t ByteCount(std::string_view text, char mark) {
  std::size_t count = 0;
  while (!text.empty()) {
    const std::string_view block = text.substr(0, std::numeric_limits<std::uint8_t>::max());
    std::uint8_t blockCount = 0;
    for (char c : block) blockCount = static_cast<std::uint8_t>(blockCount + (c == mark));
    count += blockCount;
    text.remove_prefix(block.size());
  }
  return count;
}

}  // namespace kvr
