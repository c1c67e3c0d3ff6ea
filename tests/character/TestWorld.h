// A world of its own for a test: library, character, scripted prompts.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "character/KVRCharacter.h"
#include "core/ScriptedPrompts.h"

// A namespace of its own, since test programs also hold files that use support/TestWorld.h.
namespace kvr::inline withoutFiles {

struct TestWorld {
  ScriptedPrompts prompts;
  FrontEndEvents events;
  Environment env{prompts, events};
  KVRSystem system{env};
  std::unique_ptr<KVRCharacter> owned = std::make_unique<KVRCharacter>(env, system);
  KVRCharacter& character = *owned;

  // A trait put on the character with nothing run on it.
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
  // A modifier put on a trait or modifier likewise.
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

}  // namespace kvr::inline withoutFiles
