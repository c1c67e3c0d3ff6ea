// Letters and positions. Lower-casing comes first: everything that compares or searches names rests on it.
// Text is nearly always ASCII, so each operation has a road of whole words and whole blocks for ASCII and a
// road of letters for the rest, which gives the same answer.
#include "core/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>
#include <functional>

namespace kvr {
namespace {

using fold::kHighBits;
using fold::LoadWord;
using fold::LowerWord;

constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}
constexpr bool IsAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
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

// Lowers ASCII text of 8 bytes at least, the last word of which may overlap the one before. False at the
// first word that is not ASCII.
bool LowerWords(char* data, std::size_t size) {
  const auto lowerWord = [](char* place) {
    const std::uint64_t word = LoadWord(place), lowered = LowerWord(word);
    if (word & kHighBits) return false;
    std::memcpy(place, &lowered, sizeof lowered);
    return true;
  };
  for (std::size_t i = 0; i + 8 < size; i += 8)
    if (!lowerWord(data + i)) return false;
  return lowerWord(data + size - 8);
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
  std::size_t i = from;
  while (i + 8 <= end && !fold::HasByte(LoadWord(text.data() + i) | fold::kOnes * 0x20, lower)) i += 8;
  while (i < end && (text[i] | 0x20) != lower) ++i;
  return i < end ? i : npos;
}

}  // namespace

std::string LCase(std::string_view text) {
  std::string lowered(text);
  LCaseInPlace(lowered);
  return lowered;
}

void LCaseInPlace(char* data, std::size_t size) {
  constexpr std::size_t kUsualName = 48;
  if (size >= 8 && size <= kUsualName && LowerWords(data, size)) return;
  unsigned char seen = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const char c = data[i];
    seen = static_cast<unsigned char>(seen | static_cast<unsigned char>(c));
    const bool upper = static_cast<unsigned char>(c - 'A') < 26;
    data[i] = static_cast<char>(c | (upper ? 0x20 : 0));
  }
  if (seen & 0x80) LowerLetters(data, size);
}

std::string UCase(std::string_view text) {
  std::string raised(text);
  for (char& c : raised)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c & ~0x20);
  return raised;
}

void TrimInPlace(std::string& text) {
  const std::string_view trimmed = Trim(text);
  if (trimmed.size() == text.size()) return;
  const auto begin = static_cast<std::size_t>(trimmed.data() - text.data());
  text.erase(begin + trimmed.size());
  text.erase(0, begin);
}

bool EqualLongNoCase(std::string_view a, std::string_view b) {
  std::size_t i = 0;
  while (a.size() - i >= 8) {
    const std::uint64_t x = LoadWord(a.data() + i), y = LoadWord(b.data() + i);
    if ((x | y) & kHighBits) return EqualLetters(a.substr(i), b.substr(i));
    if (LowerWord(x) != LowerWord(y)) return false;
    i += 8;
    // The last word may overlap the one before.
    if (i < a.size() && a.size() - i < 8 && (LoadWord(a.data() + a.size() - 8) & kHighBits) == 0)
      i = a.size() - 8;
  }
  return EqualLetters(a.substr(i), b.substr(i));
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

std::uint64_t HashLongNoCase(std::string_view text) {
  if (text.size() >= 8) {
    fold::LongHash hash(text.size());
    for (std::size_t i = 0; i + 8 < text.size(); i += 8) hash.Mix(LoadWord(text.data() + i));
    hash.Mix(LoadWord(text.data() + text.size() - 8));
    if (hash.IsAscii()) return hash.Hash();
  }
  return std::hash<std::string>()(LCase(text));
}

}  // namespace kvr
