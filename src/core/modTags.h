// Tag strings and lists: `name(value), name(value)` taken apart and put together. No routine reports
// malformed text; see docs/formats/tag-text.md for the grammar.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/modNewParser.h"

namespace kvr::modTags {

// One item of a tag string. The name is lower-cased; the value is a view into the text. An item without "("
// has both empty.
struct TagItem {
  std::string name;
  std::string_view value;
};

// Splits at commas outside parentheses and braces. The value is what follows the first "(" without the item's
// last character (which is not looked at), trimmed.
std::vector<TagItem> ReturnTagItems(std::string_view tagString);
// The same, but the blanks just inside the parentheses stay.
std::vector<TagItem> ReturnTagItemsNoTrim(std::string_view tagString);
// The value of the first item of that name in a list made by the two above; "" when there is none.
std::string_view ValueOf(const std::vector<TagItem>& items, std::string_view lowerName);

// Position (0-based) of the comma of the first "," + tagName + "(" in any case; npos when there is none. The
// value begins tagName.size() + 2 further on.
std::size_t FindTag(std::string_view tagName, std::string_view tagString);
// Text search for "," + tagName + "(" in any case: finds a tag only where a comma stands directly before its
// name. The value is trimmed; "" when the tag or its closing parenthesis is missing.
std::string_view GetTagValue(std::string_view tagName, std::string_view tagString);
// Returns the value untrimmed and removes the item with its leading comma.
std::string ReturnTagValueExtractingTag(std::string& tagString, std::string_view tagName);
void DeleteTagFromTagString(std::string& tagString, std::string_view tagName);
inline void DeleteTagFromTagList(std::string& tagList, std::string_view tagName) {
  DeleteTagFromTagString(tagList, tagName);
}

// First position at or after `from` of a parenthesis; the end of the text when there is none.
std::size_t NextParen(std::string_view text, std::size_t from);
// 0-based position of the ")" that closes a "(" standing just before `text`; npos when the text ends first.
// Quotes, brackets and braces have no effect.
std::size_t FindCloseParen(std::string_view text);
// The first character is taken to be the opening parenthesis.
std::size_t FindMatchingParen(std::string_view text);
// Depth never below 0 and 0 at the end.
bool ParensBalance(std::string_view text);
// Turns each unmatched "(" or ")" into "[" or "]"; true if anything changed. The last guard before writing a
// file.
bool RepairParens(std::string& text);

// Lists. Case-blind; written with ", " between items.
bool IsItemInList(std::string_view item, std::string_view list);
bool IsItemInListAlt(std::string_view item, std::string_view list, std::string_view delimiters);
// Appends an item that the list lacks. (The list operation of characters puts it first:
// character/modLists.h.)
void InsertItemIntoList(std::string_view item, std::string& list);
void InsertItemIntoListAlt(std::string_view item, std::string& list, std::string_view delimiter);
void RemoveItemFromList(std::string_view item, std::string& list);
std::string CreateListFromStringArray(std::span<const std::string> items);

// "1|0|true": true is "true" in any case or exactly "1".
std::vector<bool> ReturnTrueFalseArrayFromString(std::string_view text);
std::string ReturnStringFromTrueFalseArray(const std::vector<bool>& values);
// Rewrites each element to "1" or "0" ("", "False" and "0" are false), then joins.
std::string ReturnStringFromTrueFalseStringArray(std::span<std::string> values);

}  // namespace kvr::modTags
