// Lower-casing eight ASCII bytes at once, and what is built on it for short names: they are compared and
// hashed as two words that overlap where the name is no 8 or 16 bytes long.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace kvr::fold {

inline constexpr std::uint64_t kOnes = 0x0101010101010101u;
inline constexpr std::uint64_t kHighBits = kOnes << 7;
inline constexpr std::size_t kShortName = 16;

inline std::uint64_t LoadWord(const char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

// Lower case of ASCII bytes: the sums raise the high bit from 'A' on and from behind 'Z' on. A word with any
// other byte keeps its high bits and is of no further use.
inline std::uint64_t LowerWord(std::uint64_t word) {
  const std::uint64_t fromA = word + kOnes * (128 - 'A');
  const std::uint64_t behindZ = word + kOnes * (127 - 'Z');
  return word | ((fromA & ~behindZ & kHighBits) >> 2);
}

// Not 0 when one of the bytes is 0.
inline std::uint64_t ZeroBytes(std::uint64_t word) {
  return (word - kOnes) & ~word & kHighBits;
}
inline std::uint64_t HasByte(std::uint64_t word, char c) {
  return ZeroBytes(word ^ kOnes * static_cast<unsigned char>(c));
}

// The bytes of a short name; names of one length have the same words only when they are the same.
struct NameWords {
  std::uint64_t first = 0, last = 0;
  bool IsAscii() const { return ((first | last) & kHighBits) == 0; }
  friend bool operator==(const NameWords&, const NameWords&) = default;
};

inline NameWords LoadName(std::string_view name) {
  const char* p = name.data();
  const std::size_t size = name.size();
  if (size >= 8) return {LoadWord(p), LoadWord(p + size - 8)};
  if (size >= 4) {
    std::uint32_t first, last;
    std::memcpy(&first, p, sizeof first);
    std::memcpy(&last, p + size - 4, sizeof last);
    return {first, last};
  }
  if (size == 0) return {};
  const auto byte = [p](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(p[i])}; };
  return {byte(0) | byte(size / 2) << 8, byte(size - 1)};
}

// Folds the whole product, so that every bit of both factors reaches both ends of the result.
inline std::uint64_t FoldedProduct(std::uint64_t a, std::uint64_t b) {
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

inline NameWords Lowered(const NameWords& words) {
  return {LowerWord(words.first), LowerWord(words.last)};
}

// A hash of the words of a short ASCII name; the same in either case, since it looks past the bit of the
// case.
inline std::uint64_t HashName(const NameWords& words, std::size_t size) {
  constexpr std::uint64_t kCaseBits = kOnes * 0x20;
  return FoldedProduct((words.first | kCaseBits) ^ 0x9E3779B97F4A7C15u,
                       (words.last | kCaseBits) ^ (size + 1) * 0xBF58476D1CE4E5B9u);
}

// A hash of the words of a longer ASCII text, the last of which may overlap the one before.
class LongHash {
 public:
  explicit LongHash(std::size_t size) : hash_(size * 0xBF58476D1CE4E5B9u) {}
  void Mix(std::uint64_t word) {
    seen_ |= word;
    hash_ = FoldedProduct(hash_ ^ LowerWord(word), 0x9E3779B97F4A7C15u);
  }
  bool IsAscii() const { return (seen_ & kHighBits) == 0; }
  std::uint64_t Hash() const { return hash_; }

 private:
  std::uint64_t hash_;
  std::uint64_t seen_ = 0;
};

}  // namespace kvr::fold
