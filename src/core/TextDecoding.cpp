// Bytes of a text file as UTF-8 text.
#include <utf8proc.h>

#include "core/Text.h"
#include "core/clsFileReader.h"

namespace kvr {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf8Line = "Encoding=UTF-8";
constexpr char32_t kReplacement = 0xFFFD;

// The characters of Windows-1252 from 0x80 to 0x9F; the five that it leaves open stay control characters.
constexpr char16_t kWindows1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                       0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

const utf8proc_uint8_t* Bytes(std::string_view text) {
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

void AppendCharacter(std::string& out, char32_t character) {
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes);
  out.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

// Bytes of the character at the start of the text, 0 if that is no UTF-8.
std::size_t CharacterLength(std::string_view text) {
  if (static_cast<unsigned char>(text[0]) < 0x80) return 1;
  utf8proc_int32_t character;
  const auto length = utf8proc_iterate(Bytes(text), static_cast<utf8proc_ssize_t>(text.size()), &character);
  return length > 0 ? static_cast<std::size_t>(length) : 0;
}

// Position of the first byte at or after `from` that is not ASCII; the size if there is none.
std::size_t SkipAscii(std::string_view text, std::size_t from) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  constexpr std::size_t kStride = 4 * sizeof(std::uint64_t);
  while (from + kStride <= text.size()) {
    std::uint64_t words[4];
    std::memcpy(words, text.data() + from, kStride);
    if ((words[0] | words[1] | words[2] | words[3]) & kHighBits) break;
    from += kStride;
  }
  while (from < text.size() && static_cast<unsigned char>(text[from]) < 0x80) ++from;
  return from;
}

// Position of the first byte at or after `from` that is no UTF-8; the size if there is none.
std::size_t SkipUtf8(std::string_view text, std::size_t from) {
  while ((from = SkipAscii(text, from)) < text.size()) {
    const std::size_t length = CharacterLength(text.substr(from));
    if (length == 0) break;
    from += length;
  }
  return from;
}

// Each byte that is no UTF-8 becomes one replacement character.
std::string RepairUtf8(std::string_view text, std::size_t firstBad) {
  std::string repaired;
  repaired.reserve(text.size() + 64);
  std::size_t good = 0;
  for (std::size_t bad = firstBad; bad < text.size(); bad = SkipUtf8(text, good)) {
    repaired.append(text.substr(good, bad - good));
    AppendCharacter(repaired, kReplacement);
    good = bad + 1;
  }
  return repaired.append(text.substr(good));
}

std::string FromWindows1252(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size() + text.size() / 8);
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t other = SkipAscii(text, position);
    decoded.append(text.substr(position, other - position));
    for (position = other; position < text.size(); ++position) {
      const auto byte = static_cast<unsigned char>(text[position]);
      if (byte < 0x80) break;
      AppendCharacter(decoded, byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
    }
  }
  return decoded;
}

// The text behind its mark; a half of a pair without the other, or an odd last byte, becomes the replacement
// character.
std::string FromUtf16(std::string_view bytes, bool bigEndian) {
  const auto unit = [&](std::size_t i) -> char32_t {
    const auto first = static_cast<unsigned char>(bytes[i]),
               second = static_cast<unsigned char>(bytes[i + 1]);
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  std::string decoded;
  decoded.reserve(bytes.size() / 2 + bytes.size() / 8);
  std::size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    char32_t character = unit(i);
    if (character >= 0xD800 && character < 0xE000) {
      const char32_t low = i + 3 < bytes.size() ? unit(i + 2) : 0;
      const bool isPair = character < 0xDC00 && low >= 0xDC00 && low < 0xE000;
      character = isPair ? 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00) : kReplacement;
      if (isPair) i += 2;
    }
    AppendCharacter(decoded, character);
  }
  if (i < bytes.size()) AppendCharacter(decoded, kReplacement);
  return decoded;
}

// Removes the marks that name UTF-8; true if there was one.
bool TakeUtf8Marks(std::string& bytes) {
  const std::string_view text = bytes;
  std::size_t marks = text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  if (StartsWithNoCase(text.substr(marks), kUtf8Line)) marks += kUtf8Line.size();
  bytes.erase(0, marks);
  return marks > 0;
}

}  // namespace

std::string DecodeText(std::string bytes, TextEncoding encoding) {
  const std::string_view start = std::string_view(bytes).substr(0, 2);
  if (start == "\xFF\xFE" || start == "\xFE\xFF")
    return FromUtf16(std::string_view(bytes).substr(2), start[0] == '\xFE');
  const bool marked = TakeUtf8Marks(bytes);
  const std::size_t firstBad = SkipUtf8(bytes, 0);
  if (firstBad == bytes.size()) return bytes;
  if (marked || encoding == TextEncoding::AlwaysUtf8) return RepairUtf8(bytes, firstBad);
  return FromWindows1252(bytes);
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  if (text.size() <= count) return text;
  std::size_t position = 0;
  for (; count > 0 && position < text.size(); --count) {
    ++position;
    while (position < text.size() && (text[position] & 0xC0) == 0x80) ++position;
  }
  return text.substr(0, position);
}

}  // namespace kvr
