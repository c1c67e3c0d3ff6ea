// Letters and positions: the few text operations that all others rest on.
//
// Text is UTF-8. Every mark of the grammar is ASCII, so positions are byte positions, 0-based as in the
// standard library (npos when there is none). Only lower-casing knows Unicode.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/CaseFold.h"

namespace kvr {

inline constexpr std::size_t npos = std::string_view::npos;

// Lower case, letter by letter. A letter whose lower case has another length in UTF-8 stays as it is, so a
// position in the result is the same position in the text. Bytes that are no UTF-8 stay as they are.
std::string LCase(std::string_view text);
void LCaseInPlace(char* data, std::size_t size);
inline void LCaseInPlace(std::string& text) {
  LCaseInPlace(text.data(), text.size());
}

// Upper case of the ASCII letters; for words of the grammar (prefixes, section names).
std::string UCase(std::string_view text);

// Removes blanks (0x20, nothing else) from both ends.
inline std::string_view Trim(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}
void TrimInPlace(std::string& text);

// Comparison of lower-cased copies, without making them.
bool EqualLongNoCase(std::string_view a, std::string_view b);  // of equal length
inline bool EqualNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() > fold::kShortName) return EqualLongNoCase(a, b);
  const fold::NameWords x = fold::LoadName(a), y = fold::LoadName(b);
  if (!x.IsAscii() || !y.IsAscii()) return EqualLongNoCase(a, b);
  return x == y || fold::Lowered(x) == fold::Lowered(y);
}
bool StartsWithNoCase(std::string_view text, std::string_view head);
bool EndsWithNoCase(std::string_view text, std::string_view tail);

// Position of the first match at or after `from`, ignoring case; npos when there is none or `pattern` is
// empty.
std::size_t FindNoCase(std::string_view text, std::string_view pattern, std::size_t from = 0);
inline bool ContainsNoCase(std::string_view text, std::string_view pattern) {
  return FindNoCase(text, pattern) != npos;
}

// "yes/no" values in tags: set when not empty, not "0" and not "no" in any case.
bool IsSet(std::string_view value);

// A 64-bit hash of the lower-cased text; equal for texts that differ only in case.
std::uint64_t HashLongNoCase(std::string_view text);
inline std::uint64_t HashNoCase(std::string_view text) {
  if (text.size() > fold::kShortName) return HashLongNoCase(text);
  const fold::NameWords words = fold::LoadName(text);
  return words.IsAscii() ? fold::HashName(words, text.size()) : HashLongNoCase(text);
}

}  // namespace kvr
