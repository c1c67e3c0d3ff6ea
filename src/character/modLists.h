// The list operations of characters: a new entry stands first. (In the library it is appended:
// core/modTags.h.)
#pragma once

#include <string>
#include <string_view>

namespace kvr::modLists {

// Trimmed; an empty entry or one that the list has (in any case) changes nothing. Written with ", ".
void InsertItemIntoList(std::string_view item, std::string& list);
void InsertItemIntoListAlt(std::string_view item, std::string& list, std::string_view separator);

}  // namespace kvr::modLists
