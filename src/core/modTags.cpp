// Takes tag strings and lists apart and puts them together. A tag is found by text search, never by splitting
// the string, and no malformed text is an error.
#include "core/modTags.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

#include "core/Text.h"
#include "core/modTools.h"

namespace kvr::modTags {
namespace {

using modNewParser::ForEachToken;

enum class Blanks { Trimmed, Kept };

std::vector<TagItem> ReadItems(std::string_view tagString, Blanks blanks) {
  std::vector<TagItem> items;
  ForEachToken(tagString, ',', modNewParser::kTags, [&](std::string_view token) {
    token = Trim(token);
    TagItem& item = items.emplace_back();
    const std::size_t open = token.find('(');
    if (open == npos) return;
    item.name = LCase(Trim(token.substr(0, open)));
    std::string_view rest = token.substr(open + 1);
    if (blanks == Blanks::Trimmed) rest = Trim(rest);
    rest = modTools::WithoutLastLetter(rest);  // it is taken to be the ")"
    item.value = blanks == Blanks::Trimmed ? Trim(rest) : rest;
  });
  return items;
}

// Where a tag stands in a tag string: its comma, its value, and what follows its ")".
struct TagPlace {
  std::size_t comma, value, close;
};

std::optional<TagPlace> FindClosedTag(std::string_view tagName, std::string_view tagString) {
  const std::size_t comma = FindTag(tagName, tagString);
  if (comma == npos) return std::nullopt;
  const std::size_t value = comma + tagName.size() + 2;
  const std::size_t length = FindCloseParen(tagString.substr(value));
  if (length == npos) return std::nullopt;
  return TagPlace{comma, value, value + length};
}

void AppendToList(std::string& list, std::string_view separator, std::string_view item) {
  if (!list.empty()) list += separator;
  list += item;
}

}  // namespace

std::vector<TagItem> ReturnTagItems(std::string_view tagString) {
  return ReadItems(tagString, Blanks::Trimmed);
}

std::vector<TagItem> ReturnTagItemsNoTrim(std::string_view tagString) {
  return ReadItems(tagString, Blanks::Kept);
}

std::string_view ValueOf(const std::vector<TagItem>& items, std::string_view lowerName) {
  for (const TagItem& item : items)
    if (item.name == lowerName) return item.value;
  return {};
}

std::size_t FindTag(std::string_view tagName, std::string_view tagString) {
  const std::size_t length = tagName.size() + 2;
  for (std::size_t i = tagString.find(','); i != npos; i = tagString.find(',', i + 1)) {
    if (tagString.size() - i < length) return npos;
    if (tagString[i + length - 1] == '(' && EqualNoCase(tagString.substr(i + 1, tagName.size()), tagName))
      return i;
  }
  return npos;
}

std::string_view GetTagValue(std::string_view tagName, std::string_view tagString) {
  const std::optional<TagPlace> place = FindClosedTag(tagName, tagString);
  return place ? Trim(tagString.substr(place->value, place->close - place->value)) : std::string_view();
}

std::string ReturnTagValueExtractingTag(std::string& tagString, std::string_view tagName) {
  const std::optional<TagPlace> place = FindClosedTag(tagName, tagString);
  if (!place) return {};
  std::string value = tagString.substr(place->value, place->close - place->value);
  tagString.erase(place->comma, place->close + 1 - place->comma);
  return value;
}

void DeleteTagFromTagString(std::string& tagString, std::string_view tagName) {
  if (const std::optional<TagPlace> place = FindClosedTag(tagName, tagString))
    tagString.erase(place->comma, place->close + 1 - place->comma);
}

// Eight bytes at a time: "(" and ")" differ in their last bit only, so a byte that is zero after that bit is
// cleared and the rest compared is a parenthesis. The lowest such byte is exact.
std::size_t NextParen(std::string_view text, std::size_t from) {
  if constexpr (std::endian::native == std::endian::little) {
    constexpr std::uint64_t kOnes = 0x0101010101010101u;
    for (; from + 8 <= text.size(); from += 8) {
      std::uint64_t word;
      std::memcpy(&word, text.data() + from, sizeof word);
      const std::uint64_t rest = (word & (kOnes * 0xFE)) ^ (kOnes * '(');
      const std::uint64_t zeros = (rest - kOnes) & ~rest & (kOnes * 0x80);
      if (zeros != 0) return from + static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
    }
  }
  while (from < text.size() && text[from] != '(' && text[from] != ')') ++from;
  return from;
}

std::size_t FindCloseParen(std::string_view text) {
  std::size_t depth = 1;
  for (std::size_t i = NextParen(text, 0); i < text.size(); i = NextParen(text, i + 1)) {
    if (text[i] == '(')
      ++depth;
    else if (--depth == 0)
      return i;
  }
  return npos;
}

std::size_t FindMatchingParen(std::string_view text) {
  if (text.empty()) return npos;
  const std::size_t close = FindCloseParen(text.substr(1));
  return close == npos ? npos : close + 1;
}

bool ParensBalance(std::string_view text) {
  std::size_t depth = 0;
  for (std::size_t i = NextParen(text, 0); i < text.size(); i = NextParen(text, i + 1)) {
    if (text[i] == '(')
      ++depth;
    else if (depth-- == 0)
      return false;
  }
  return depth == 0;
}

bool RepairParens(std::string& text) {
  bool changed = false;
  std::vector<std::size_t> open;
  for (std::size_t i = NextParen(text, 0); i < text.size(); i = NextParen(text, i + 1)) {
    if (text[i] == '(') {
      open.push_back(i);
    } else if (!open.empty()) {
      open.pop_back();
    } else {
      text[i] = ']';
      changed = true;
    }
  }
  for (std::size_t i : open) text[i] = '[';
  return changed || !open.empty();
}

bool IsItemInList(std::string_view item, std::string_view list) {
  bool found = false;
  ForEachToken(list, ',', modNewParser::kPlain,
               [&](std::string_view token) { found = found || EqualNoCase(Trim(token), item); });
  return found;
}

bool IsItemInListAlt(std::string_view item, std::string_view list, std::string_view delimiters) {
  for (std::string_view token : modNewParser::ParseChars(list, delimiters, modNewParser::kNames).tokens)
    if (EqualNoCase(Trim(token), item)) return true;
  return false;
}

void InsertItemIntoList(std::string_view item, std::string& list) {
  item = Trim(item);
  if (!item.empty() && (list.empty() || !IsItemInList(item, list))) AppendToList(list, ", ", item);
}

void InsertItemIntoListAlt(std::string_view item, std::string& list, std::string_view delimiter) {
  item = Trim(item);
  if (!item.empty() && (list.empty() || !IsItemInListAlt(item, list, delimiter)))
    AppendToList(list, delimiter, item);
}

void RemoveItemFromList(std::string_view item, std::string& list) {
  item = Trim(item);
  if (!item.empty() && !ContainsNoCase(list, item)) return;
  std::string rebuilt;
  rebuilt.reserve(list.size());
  ForEachToken(list, ',', modNewParser::kNames, [&](std::string_view token) {
    token = Trim(token);
    if (!EqualNoCase(token, item)) AppendToList(rebuilt, ", ", token);
  });
  list = std::move(rebuilt);
}

std::string CreateListFromStringArray(std::span<const std::string> items) {
  std::string list;
  for (const std::string& item : items) AppendToList(list, ", ", item);
  return list;
}

std::vector<bool> ReturnTrueFalseArrayFromString(std::string_view text) {
  std::vector<bool> values;
  ForEachToken(text, '|', modNewParser::kPlain, [&](std::string_view token) {
    token = Trim(token);
    values.push_back(token == "1" || EqualNoCase(token, "true"));
  });
  return values;
}

std::string ReturnStringFromTrueFalseArray(const std::vector<bool>& values) {
  std::string text;
  for (bool value : values) AppendToList(text, "|", value ? "1" : "0");
  return text;
}

std::string ReturnStringFromTrueFalseStringArray(std::span<std::string> values) {
  std::string text;
  for (std::string& value : values) {
    value.assign(1, value != "" && value != "False" && value != "0" ? '1' : '0');
    AppendToList(text, "|", value);
  }
  return text;
}

}  // namespace kvr::modTags
