// Traits found by name, symbol and key, and the order that the search by name rests on.
#include <algorithm>

#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "library/modPrefixes.h"

namespace kvr {
namespace {

using modPrefixes::NameAndExt;

// A name as it is looked for: lower-cased; type 0 for any.
struct Wanted {
  std::string_view name, ext;
  ItemType type;

  bool Before(const clsItem& item) const {
    if (int order = item.LCaseName().compare(name); order != 0) return order < 0;
    if (int order = item.LCaseNameExt().compare(ext); order != 0) return order < 0;
    return type != kNoType && item.ItemType < type;
  }
  bool Is(const clsItem& item) const {
    return (type == kNoType || item.ItemType == type) && item.LCaseName() == name &&
           item.LCaseNameExt() == ext;
  }
};

// The first position of the run of equals; 0 when there is none.
template <class Collection>
std::size_t FirstPosition(const Collection& items, const Wanted& wanted) {
  std::size_t position = items.LowerBound([&](const clsItem& item) { return wanted.Before(item); });
  return position <= items.Count() && wanted.Is(items.Item(position)) ? position : 0;
}

// Calls find(split) for the ways in which a full name comes apart until one gives a result: at the last " (",
// and, for the names that the library made, at the first "(".
template <class Find>
auto TrySplits(std::string_view fullName, Find&& find) {
  NameAndExt atLast = modPrefixes::SplitNameAndExtAtLast(fullName);
  auto result = find(atLast);
  if (result || fullName.find('(') == npos) return result;
  NameAndExt atFirst = modPrefixes::SplitNameAndExt(fullName);
  return atFirst.name == atLast.name && atFirst.ext == atLast.ext ? result : find(atFirst);
}

// The modifier with that key in a tree of modifiers; nullptr when it is not there.
clsMod* FindModBelow(const clsSortedModCollection& mods, std::string_view keyText) {
  if (mods.Empty()) return nullptr;
  if (clsMod* mod = mods.Item(keyText)) return mod;
  std::vector<const clsSortedModCollection*> pending{&mods};
  while (!pending.empty()) {
    const clsSortedModCollection* level = pending.back();
    pending.pop_back();
    if (clsMod* mod = level->Item(keyText)) return mod;
    for (const clsMod& mod : *level) {
      if (!mod.Mods.Empty()) pending.push_back(&mod.Mods);
    }
  }
  return nullptr;
}

}  // namespace

std::weak_ordering SortOrder(const clsItem& a, const clsItem& b) {
  if (auto order = a.LCaseName() <=> b.LCaseName(); order != 0) return order;
  if (auto order = a.LCaseNameExt() <=> b.LCaseNameExt(); order != 0) return order;
  if (auto order = a.ItemType <=> b.ItemType; order != 0) return order;
  return b.IDKey <=> a.IDKey;
}

std::int32_t NumberOfKeyText(std::string_view keyText) {
  return keyText.empty() ? 0 : CLngClamped(Val(keyText.substr(1)));
}

std::string KeyTextOf(std::int32_t idKey) {
  return "k" + std::to_string(idKey);
}

// One buffer for all look-ups, so that none allocates.
std::string_view KVRCharacter::LookupText(std::string_view text) const {
  lookup_.assign(text);
  LCaseInPlace(lookup_);
  return lookup_;
}

std::size_t KVRCharacter::ItemPositionByNameAndExt(std::string_view fullName, ItemType type,
                                                   std::size_t startAt) const {
  return TrySplits(LookupText(fullName), [&](const NameAndExt& split) -> std::size_t {
    Wanted wanted{split.name, split.ext, type};
    std::size_t first = FirstPosition(Items, wanted);
    if (first == 0 || first >= startAt) return first;
    return startAt <= Items.Count() && wanted.Is(Items.Item(startAt)) ? startAt : 0;
  });
}

std::size_t KVRCharacter::ItemPositionByNameOnly(std::string_view name, ItemType type,
                                                 std::size_t startAt) const {
  return TrySplits(LookupText(name), [&](const NameAndExt& split) -> std::size_t {
    std::size_t first = Items.LowerBound([&](const clsItem& item) { return item.LCaseName() < split.name; });
    for (std::size_t i = std::max(first, startAt); i <= Items.Count(); ++i) {
      const clsItem& item = Items.Item(i);
      if (item.LCaseName() != split.name) return 0;
      if (type == kNoType || item.ItemType == type) return i;
    }
    return 0;
  });
}

// Not sorted by symbol, so this is a walk. Without a type every trait may have one.
std::size_t KVRCharacter::ItemPositionBySymbol(std::string_view symbol, ItemType type) const {
  clsItem* item = FindItemBySymbol(symbol, type);
  return item ? Items.Position(*item) : 0;
}

std::size_t KVRCharacter::ListItemPosByNameAndExt(ItemType type, std::string_view fullName,
                                                  std::size_t startAt) const {
  return ItemPositionByNameAndExt(fullName, type, startAt);
}

std::size_t KVRCharacter::ListItemPosByNameOnly(ItemType type, std::string_view name,
                                                std::size_t startAt) const {
  return ItemPositionByNameOnly(name, type, startAt);
}

std::size_t KVRCharacter::ListItemPosByKey(ItemType type, std::string_view keyText) const {
  const clsItem* item = Items.Item(keyText);
  return item && (type == kNoType || item->ItemType == type) ? Items.Position(*item) : 0;
}

std::vector<std::string> KVRCharacter::ItemKeysByNameAndExt(std::string_view fullName, ItemType type) const {
  std::vector<std::string> keys;
  std::size_t position = ItemPositionByNameAndExt(fullName, type);
  if (position == 0) return keys;
  const clsItem& first = Items.Item(position);
  Wanted wanted{first.LCaseName(), first.LCaseNameExt(), type};
  for (; position <= Items.Count() && wanted.Is(Items.Item(position)); ++position) {
    keys.push_back(Items.Item(position).KeyText());
  }
  return keys;
}

clsItem* KVRCharacter::FindItem(std::string_view fullName, ItemType type) const {
  if (type < kNoType || type > kLastType) return nullptr;
  return TrySplits(LookupText(fullName), [&](const NameAndExt& split) -> clsItem* {
    Wanted wanted{split.name, split.ext, type};
    if (type == kNoType) {
      std::size_t position = FirstPosition(Items, wanted);
      return position ? &Items.Item(position) : nullptr;
    }
    const clsSortedItemList& list = ItemsByType[static_cast<std::size_t>(type)];
    std::size_t position = FirstPosition(list, wanted);
    return position ? &list.Item(position) : nullptr;
  });
}

clsItem* KVRCharacter::FindItemBySymbol(std::string_view symbol, ItemType type) const {
  symbol = Trim(symbol);
  if (symbol.empty() || type < kNoType || type > kLastType) return nullptr;
  auto first = [&](const auto& items) -> clsItem* {
    for (clsItem& item : items) {
      if (EqualNoCase(item.FreeTag("symbol"), symbol)) return &item;
    }
    return nullptr;
  };
  return type == kNoType ? first(Items) : first(ItemsByType[static_cast<std::size_t>(type)]);
}

clsItem* KVRCharacter::ItemByKey(std::int32_t idKey) const {
  return Items.Item(KeyTextOf(idKey));
}

// Traits and modifiers draw on one counter, so the number names one of them at most.
CalcItem* KVRCharacter::GetObjectFromIDKey(std::int32_t id) const {
  std::string keyText = KeyTextOf(id);
  if (clsItem* item = Items.Item(keyText)) return item;
  if (clsMod* mod = FindMod(id, keyText)) return mod;
  IndexMods();
  return FindMod(id, keyText);
}

// What is remembered about a modifier is the number of its trait and no pointer, so it may be out of date.
clsMod* KVRCharacter::FindMod(std::int32_t id, std::string_view keyText) const {
  auto holder = modHolders_.find(id);
  clsItem* item = holder == modHolders_.end() ? nullptr : ItemByKey(holder->second);
  return item ? FindModBelow(item->Mods, keyText) : nullptr;
}

void KVRCharacter::IndexMods() const {
  modHolders_.clear();
  std::vector<const clsSortedModCollection*> pending;
  for (const clsItem& item : Items) {
    pending.push_back(&item.Mods);
    while (!pending.empty()) {
      const clsSortedModCollection& mods = *pending.back();
      pending.pop_back();
      for (const clsMod& mod : mods) {
        modHolders_[mod.IDKey] = item.IDKey;
        if (!mod.Mods.Empty()) pending.push_back(&mod.Mods);
      }
    }
  }
}

std::vector<std::size_t> KVRCharacter::ReturnItemIndexes(ItemType type) const {
  std::vector<std::size_t> positions;
  positions.reserve(static_cast<std::size_t>(Count(type)));
  std::size_t position = 0;
  for (const clsItem& item : Items) {
    ++position;
    if (item.ItemType == type) positions.push_back(position);
  }
  return positions;
}

std::vector<std::string> KVRCharacter::ReturnItemCollectionKeys(ItemType type) const {
  std::vector<std::string> keys;
  keys.reserve(static_cast<std::size_t>(Count(type)));
  for (const clsItem& item : Items) {
    if (item.ItemType == type) keys.push_back(item.KeyText());
  }
  return keys;
}

std::size_t KVRCharacter::ReturnSkillTypeIndexFromName(std::string_view name) const {
  if (name.empty()) return 0;
  auto type = std::find_if(SkillTypes.begin(), SkillTypes.end(),
                           [&](const auto& each) { return EqualNoCase(each->Name, name); });
  return type == SkillTypes.end() ? 0 : static_cast<std::size_t>(type - SkillTypes.begin()) + 1;
}

clsSkillCosts* KVRCharacter::SkillType(std::string_view name) const {
  std::size_t index = ReturnSkillTypeIndexFromName(name);
  return index ? SkillTypes[index - 1].get() : nullptr;
}

}  // namespace kvr
