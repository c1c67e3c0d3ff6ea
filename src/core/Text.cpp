// Letters and positions. Lower-casing comes first: everything that compares or searches names rests on it.
// Text is nearly always ASCII, so each operation has a road of whole words and whole blocks for ASCII and a
// road of letters for the rest, which gives the same answer.
#include "core/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>

namespace kvr {
namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080u;

constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}
constexpr bool IsAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

std::uint64_t LoadWord(const char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

std::uint64_t LoadHalf(const char* p) {
  std::uint32_t half;
  std::memcpy(&half, p, sizeof half);
  return half;
}

// The last one to seven bytes of a text as a word that is the same only for the same bytes; some may stand in
// it twice.
std::uint64_t LoadTail(const char* p, std::size_t length) {
  if (length >= 4) return LoadHalf(p) | LoadHalf(p + length - 4) << 32;
  const auto byte = [p](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(p[i])}; };
  return byte(0) | byte(length / 2) << 8 | byte(length - 1) << 16;
}

// Lower case of eight ASCII bytes at once: the sums raise the high bit from 'A' on and from behind 'Z' on.
std::uint64_t LowerAsciiWord(std::uint64_t word) {
  const std::uint64_t fromA = word + 0x3F3F3F3F3F3F3F3Fu;
  const std::uint64_t behindZ = word + 0x2525252525252525u;
  return word | ((fromA & ~behindZ & kHighBits) >> 2);
}

struct LoweredLetter {
  char bytes[4];
  std::size_t length;
};

// The lower case of the letter at the front of the text; of the same length.
LoweredLetter LowerFrontLetter(std::string_view text) {
  LoweredLetter letter{{LowerAscii(text[0])}, 1};
  if (IsAscii(text[0])) return letter;
  utf8proc_int32_t code;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const auto available = static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4));
  const utf8proc_ssize_t length = utf8proc_iterate(bytes, available, &code);
  if (length <= 1) return letter;
  letter.length = static_cast<std::size_t>(length);
  utf8proc_uint8_t lowered[4];
  if (utf8proc_encode_char(utf8proc_tolower(code), lowered) == length)
    std::memcpy(letter.bytes, lowered, letter.length);
  else
    std::memcpy(letter.bytes, text.data(), letter.length);
  return letter;
}

// Lowers the letters from the first byte on that is not ASCII; the ASCII ones are lowered already.
void LowerLetters(char* data, std::size_t size) {
  std::size_t i = 0;
  while (i < size) {
    if (size - i >= 8 && (LoadWord(data + i) & kHighBits) == 0) {
      i += 8;
    } else if (IsAscii(data[i])) {
      ++i;
    } else {
      const LoweredLetter letter = LowerFrontLetter({data + i, size - i});
      std::memcpy(data + i, letter.bytes, letter.length);
      i += letter.length;
    }
  }
}

bool EqualLetters(std::string_view a, std::string_view b) {
  while (!a.empty()) {
    const LoweredLetter x = LowerFrontLetter(a);
    const LoweredLetter y = LowerFrontLetter(b);
    if (x.length != y.length || std::memcmp(x.bytes, y.bytes, x.length) != 0) return false;
    a.remove_prefix(x.length);
    b.remove_prefix(y.length);
  }
  return true;
}

// First position in [from, end) of a letter in either case, or of another ASCII character; npos if none.
std::size_t FindFirstByte(std::string_view text, char c, std::size_t from, std::size_t end) {
  const char lower = LowerAscii(c);
  const std::string_view part = text.substr(0, end);
  if (lower < 'a' || lower > 'z') return part.find(lower, from);
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  const std::uint64_t wanted = kOnes * static_cast<unsigned char>(lower);
  std::size_t i = from;
  for (; i + 8 <= end; i += 8) {
    // A byte of `apart` is zero where the letter stands; the usual test for a zero byte stops there.
    const std::uint64_t apart = (LoadWord(text.data() + i) | kOnes * 0x20) ^ wanted;
    if ((apart - kOnes) & ~apart & kHighBits) break;
  }
  while (i < end && (text[i] | 0x20) != lower) ++i;
  return i < end ? i : npos;
}

// Folds the whole product, so that every bit of the word reaches both ends of the hash.
std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(hash ^ word) * 0x9E3779B97F4A7C15u;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

}  // namespace

std::string LCase(std::string_view text) {
  std::string lowered(text);
  LCaseInPlace(lowered);
  return lowered;
}

void LCaseInPlace(std::string& text) {
  unsigned char seen = 0;
  for (char& c : text) {
    seen = static_cast<unsigned char>(seen | static_cast<unsigned char>(c));
    const bool upper = static_cast<unsigned char>(c - 'A') < 26;
    c = static_cast<char>(c | (upper ? 0x20 : 0));
  }
  if (seen & 0x80) LowerLetters(text.data(), text.size());
}

std::string UCase(std::string_view text) {
  std::string raised(text);
  for (char& c : raised)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c & ~0x20);
  return raised;
}

std::string_view Trim(std::string_view text) {
  std::size_t begin = 0, end = text.size();
  while (begin < end && text[begin] == ' ') ++begin;
  while (end > begin && text[end - 1] == ' ') --end;
  return text.substr(begin, end - begin);
}

void TrimInPlace(std::string& text) {
  const std::string_view trimmed = Trim(text);
  if (trimmed.size() == text.size()) return;
  const auto begin = static_cast<std::size_t>(trimmed.data() - text.data());
  text.erase(begin + trimmed.size());
  text.erase(0, begin);
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  std::size_t i = 0;
  for (; i + 8 <= a.size(); i += 8) {
    const std::uint64_t x = LoadWord(a.data() + i), y = LoadWord(b.data() + i);
    if ((x | y) & kHighBits) return EqualLetters(a.substr(i), b.substr(i));
    if (LowerAsciiWord(x) != LowerAsciiWord(y)) return false;
  }
  const std::size_t rest = a.size() - i;
  if (rest == 0) return true;
  const std::uint64_t x = LoadTail(a.data() + i, rest), y = LoadTail(b.data() + i, rest);
  if ((x | y) & kHighBits) return EqualLetters(a.substr(i), b.substr(i));
  return LowerAsciiWord(x) == LowerAsciiWord(y);
}

bool StartsWithNoCase(std::string_view text, std::string_view head) {
  return text.size() >= head.size() && EqualNoCase(text.substr(0, head.size()), head);
}

bool EndsWithNoCase(std::string_view text, std::string_view tail) {
  return text.size() >= tail.size() && EqualNoCase(text.substr(text.size() - tail.size()), tail);
}

std::size_t FindNoCase(std::string_view text, std::string_view pattern, std::size_t from) {
  if (pattern.empty() || text.size() < pattern.size() || from > text.size() - pattern.size()) return npos;
  const std::size_t last = text.size() - pattern.size();
  if (!IsAscii(pattern[0])) {
    for (std::size_t i = from; i <= last; ++i)
      if (!IsAscii(text[i]) && EqualNoCase(text.substr(i, pattern.size()), pattern)) return i;
    return npos;
  }
  std::size_t i = FindFirstByte(text, pattern[0], from, last + 1);
  while (i != npos && !EqualNoCase(text.substr(i, pattern.size()), pattern))
    i = FindFirstByte(text, pattern[0], i + 1, last + 1);
  return i;
}

bool IsSet(std::string_view value) {
  return !value.empty() && value != "0" && !EqualNoCase(value, "no");
}

std::uint64_t HashNoCase(std::string_view text) {
  std::uint64_t hash = (text.size() + 1) * 0xBF58476D1CE4E5B9u;
  std::uint64_t seen = 0;
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    const std::uint64_t word = LoadWord(text.data() + i);
    seen |= word;
    hash = Mix(hash, LowerAsciiWord(word));
  }
  if (i < text.size()) {
    const std::uint64_t word = LoadTail(text.data() + i, text.size() - i);
    seen |= word;
    hash = Mix(hash, LowerAsciiWord(word));
  }
  if (seen & kHighBits) {
    const std::string lowered = LCase(text);
    hash = std::hash<std::string_view>()(lowered);
  }
  return Mix(hash, 0xBF58476D1CE4E5B9u);
}

}  // namespace kvr
