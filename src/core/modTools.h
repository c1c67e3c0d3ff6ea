// Text helpers of the tag grammar: enclosing marks, replacement, counting, sorting.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvr::modTools {

// True if the trimmed text has at least two characters and is enclosed by the pair.
bool IsQuoted(std::string_view text);
bool IsBraced(std::string_view text);
bool IsInParens(std::string_view text);
bool IsBracketed(std::string_view text);

// The trimmed text without one enclosing pair, if it is there; the inner text is not trimmed again.
std::string_view StripQuotes(std::string_view text);
std::string_view StripBraces(std::string_view text);
std::string_view StripParens(std::string_view text);
std::string_view StripBrackets(std::string_view text);
// One pair of quotes, then one pair of braces, then trimmed.
std::string_view StripQuotesAndBraces(std::string_view text);
// Without its last letter, which may have several bytes.
std::string_view WithoutLastLetter(std::string_view text);

// Replaces every match in any case; an inserted text is not searched again. An empty `find` changes nothing.
void ReplaceAll(std::string& text, std::string_view find, std::string_view replacement);
// Every double quote twice.
std::string DoubleQuotes(std::string_view text);
// Splits at the first "="; both parts trimmed; without "=" the whole line is the key.
struct KeyValue {
  std::string_view key, value;
};
KeyValue SplitKeyValue(std::string_view line);
// Overlapping matches count; an empty `sub` counts 0 times. Case matters.
std::size_t CountOccurrences(std::string_view text, std::string_view sub);
// 1-based position of the last match that ends within the first `start` characters (-1: the whole text); 0 if
// none.
std::size_t LastPosition(long start, std::string_view text, std::string_view sub);
// Each mark "~P" becomes carriage return and line feed.
void ParagraphMarksToLineBreaks(std::string& text);
// Binary order of the (lower-cased) texts.
void SortStringArray(std::vector<std::string>& texts, bool ignoreCase);

}  // namespace kvr::modTools
