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
  // The position of the next mark, of the next one that is no comma; npos behind the last.
  std::size_t Next() {
    return Next([this] { return commas_ | others_; });
  }
  std::size_t NextButCommas() {
    return Next([this] { return others_; });
  }

 private:
  static constexpr std::size_t kBlock = 64;

  // The lowest of the wanted bits; it and those below it are passed.
  template <class Wanted>
  std::size_t Next(Wanted&& wanted) {
    while (wanted() == 0) {
      block_ += kBlock;
      if (block_ >= line_.size()) return npos;
      Load();
    }
    const auto bit = static_cast<std::size_t>(std::countr_zero(wanted()));
    const std::uint64_t behind = ~std::uint64_t{1} << bit;
    commas_ &= behind;
    others_ &= behind;
    return block_ + bit;
  }
  void Load() {
    const std::string_view rest = line_.substr(block_, kBlock);
    if (rest.size() == kBlock) return FindMarks(rest.data());
    char padded[kBlock] = {};
    rest.copy(padded, kBlock);
    FindMarks(padded);
  }

#if defined(__SSE2__)
  void FindMarks(const char* block) {
    commas_ = others_ = 0;
    for (std::size_t i = 0; i < kBlock; i += 16) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
      const auto are = [](__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); };
      const auto bits = [i](__m128i marks) {
        return std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(marks))} << i;
      };
      // "(" and ")" differ in their last bit only.
      const __m128i parens = are(_mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(0xFE))), '(');
      const __m128i braces = _mm_or_si128(are(bytes, '{'), are(bytes, '}'));
      others_ |= bits(_mm_or_si128(parens, _mm_or_si128(braces, are(bytes, '"'))));
      commas_ |= bits(are(bytes, ','));
    }
  }
#else
  void FindMarks(const char* block) {
    commas_ = others_ = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
      const char c = block[i];
      const bool isOther = c == '(' || c == ')' || c == '"' || c == '{' || c == '}';
      others_ |= std::uint64_t{isOther} << i;
      commas_ |= std::uint64_t{c == ','} << i;
    }
  }
#endif

  std::string_view line_;
  std::size_t block_ = 0;
  std::uint64_t commas_ = 0, others_ = 0;  // of the block, behind what was passed
};

}  // namespace kvr
