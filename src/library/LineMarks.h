// The marks at which item lines are split or nested - ( ) , " { } - from the front of a line to its back.
// They are found for 64 bytes at a time, as the bits of a word.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/Text.h"

namespace kvr {

class LineMarks {
 public:
  explicit LineMarks(std::string_view line) : line_(line) { Load(); }
  // The position of the next mark; npos behind the last.
  std::size_t Next() {
    while (bits_ == 0) {
      block_ += kBlock;
      if (block_ >= line_.size()) return npos;
      Load();
    }
    const auto bit = static_cast<std::size_t>(std::countr_zero(bits_));
    bits_ &= bits_ - 1;
    return block_ + bit;
  }

 private:
  static constexpr std::size_t kBlock = 64;

  void Load() {
    const std::string_view rest = line_.substr(block_, kBlock);
    if (rest.size() == kBlock) {
      bits_ = MarksOf(rest.data());
      return;
    }
    char padded[kBlock] = {};
    rest.copy(padded, kBlock);
    bits_ = MarksOf(padded);
  }

#if defined(__SSE2__)
  static std::uint64_t MarksOf(const char* block) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < kBlock; i += 16) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
      const auto are = [](__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); };
      // "(" and ")" differ in their last bit only.
      const __m128i parens = are(_mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(0xFE))), '(');
      const __m128i braces = _mm_or_si128(are(bytes, '{'), are(bytes, '}'));
      const __m128i others = _mm_or_si128(are(bytes, ','), are(bytes, '"'));
      const int marks = _mm_movemask_epi8(_mm_or_si128(parens, _mm_or_si128(braces, others)));
      bits |= static_cast<std::uint64_t>(static_cast<unsigned>(marks)) << i;
    }
    return bits;
  }
#else
  static std::uint64_t MarksOf(const char* block) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
      const char c = block[i];
      const bool isMark = c == '(' || c == ')' || c == ',' || c == '"' || c == '{' || c == '}';
      bits |= std::uint64_t{isMark} << i;
    }
    return bits;
  }
#endif

  std::string_view line_;
  std::size_t block_ = 0;
  std::uint64_t bits_ = 0;
};

}  // namespace kvr
