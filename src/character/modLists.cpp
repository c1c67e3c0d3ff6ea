// The list operations of characters.
#include "character/modLists.h"

#include "core/Text.h"
#include "core/modTags.h"

namespace kvr::modLists {

void InsertItemIntoList(std::string_view item, std::string& list) {
  item = Trim(item);
  if (item.empty() || modTags::IsItemInList(item, list)) return;
  list.insert(0, list.empty() ? std::string(item) : std::string(item) + ", ");
}

void InsertItemIntoListAlt(std::string_view item, std::string& list, std::string_view separator) {
  item = Trim(item);
  if (item.empty() || modTags::IsItemInListAlt(item, list, Trim(separator))) return;
  list.insert(0, list.empty() ? std::string(item) : std::string(item).append(separator));
}

}  // namespace kvr::modLists
