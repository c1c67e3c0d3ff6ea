// A test world with an empty library and one character, on which records are put with nothing run on them.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "character/KVRCharacter.h"
#include "support/TestWorld.h"

namespace kvr {

struct RecordWorld : TestWorld {
  KVRSystem system{env};
  KVRCharacter character{env, system};

  clsItem& Put(ItemType type, std::string_view tagList) {
    auto item = std::make_unique<clsItem>();
    clsItem& added = *item;
    item->Owner = &character;
    item->NewTagList(tagList);
    item->ItemType = type;
    item->IDKey = character.NewKey();
    const std::string key = item->KeyText();
    character.Items.Add(std::move(item), key);
    character.ItemsByType[static_cast<std::size_t>(type)].Add(&added, key);
    return added;
  }
  // On a trait or modifier.
  template <class Holder>
  clsMod& PutMod(Holder& holder, std::string_view tagList) {
    auto mod = std::make_unique<clsMod>();
    clsMod& added = *mod;
    mod->NewTagList(tagList);
    mod->IDKey = character.NewKey();
    mod->Owner = &holder;
    holder.Mods.Add(std::move(mod), KeyTextOf(added.IDKey));
    return added;
  }
  // The log's lines that hold the text.
  long Logged(std::string_view text) const {
    return std::count_if(env.log.Lines().begin(), env.log.Lines().end(),
                         [&](const LogEntry& line) { return line.text.find(text) != std::string::npos; });
  }
};

}  // namespace kvr
