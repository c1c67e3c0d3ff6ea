// Text helpers of the tag grammar: enclosing marks, replacement, counting, sorting.
#include "core/modTools.h"

#include <algorithm>

#include "core/Text.h"

namespace kvr::modTools {
namespace {

bool IsEnclosed(std::string_view text, char first, char last) {
  text = Trim(text);
  return text.size() >= 2 && text.front() == first && text.back() == last;
}

std::string_view StripPair(std::string_view text, char first, char last) {
  text = Trim(text);
  return IsEnclosed(text, first, last) ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

bool IsQuoted(std::string_view text) {
  return IsEnclosed(text, '"', '"');
}
bool IsBraced(std::string_view text) {
  return IsEnclosed(text, '{', '}');
}
bool IsInParens(std::string_view text) {
  return IsEnclosed(text, '(', ')');
}
bool IsBracketed(std::string_view text) {
  return IsEnclosed(text, '[', ']');
}

std::string_view StripQuotes(std::string_view text) {
  return StripPair(text, '"', '"');
}
std::string_view StripBraces(std::string_view text) {
  return StripPair(text, '{', '}');
}
std::string_view StripParens(std::string_view text) {
  return StripPair(text, '(', ')');
}
std::string_view StripBrackets(std::string_view text) {
  return StripPair(text, '[', ']');
}
std::string_view StripQuotesAndBraces(std::string_view text) {
  return Trim(StripBraces(StripQuotes(text)));
}

std::string_view WithoutLastLetter(std::string_view text) {
  while (!text.empty() && (text.back() & 0xC0) == 0x80) text.remove_suffix(1);
  if (!text.empty()) text.remove_suffix(1);
  return text;
}

void ReplaceAll(std::string& text, std::string_view find, std::string_view replacement) {
  std::size_t hit = FindNoCase(text, find);
  if (hit == npos) return;
  std::string replaced;
  replaced.reserve(text.size() + replacement.size());
  std::size_t begin = 0;
  for (; hit != npos; hit = FindNoCase(text, find, begin)) {
    replaced.append(text, begin, hit - begin).append(replacement);
    begin = hit + find.size();
  }
  replaced.append(text, begin);
  text = std::move(replaced);
}

std::string DoubleQuotes(std::string_view text) {
  std::string doubled;
  doubled.reserve(text.size());
  for (char c : text) doubled.append(c == '"' ? 2 : 1, c);
  return doubled;
}

KeyValue SplitKeyValue(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == npos) return {Trim(line), {}};
  return {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
}

std::size_t CountOccurrences(std::string_view text, std::string_view sub) {
  if (sub.empty()) return 0;
  std::size_t count = 0;
  for (std::size_t i = text.find(sub); i != npos; i = text.find(sub, i + 1)) ++count;
  return count;
}

std::size_t LastPosition(long start, std::string_view text, std::string_view sub) {
  if (sub.empty()) return 0;
  if (start >= 0) text = text.substr(0, static_cast<std::size_t>(start));
  const std::size_t hit = text.rfind(sub);
  return hit == npos ? 0 : hit + 1;
}

void ParagraphMarksToLineBreaks(std::string& text) {
  // The break is as long as the mark.
  for (std::size_t i = text.find("~P"); i != npos; i = text.find("~P", i + 2)) {
    text[i] = '\r';
    text[i + 1] = '\n';
  }
}

// A comb sort, since equal names keep the order that it gives them. Its passes with gap 1 are a bubble sort;
// any stable sort brings about the same order, without taking the square of the count.
void SortStringArray(std::vector<std::string>& texts, bool ignoreCase) {
  struct Entry {
    std::string key, text;
  };
  std::vector<Entry> entries;
  entries.reserve(texts.size());
  for (const std::string& text : texts) entries.push_back({ignoreCase ? LCase(text) : text, text});
  const auto less = [](const Entry& a, const Entry& b) { return a.key < b.key; };
  for (std::size_t gap = texts.size() * 10 / 13; gap > 1; gap = gap * 10 / 13) {
    for (std::size_t i = 0; i + gap < entries.size(); ++i)
      if (less(entries[i + gap], entries[i])) std::swap(entries[i], entries[i + gap]);
  }
  std::stable_sort(entries.begin(), entries.end(), less);
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = std::move(entries[i].text);
}

}  // namespace kvr::modTools
