// A character in a world of its own, filled trait by trait; what several benchmarks stand on.
#pragma once

#include <memory>
#include <string>

#include "character/KVRCharacter.h"
#include "core/ScriptedPrompts.h"

namespace kvr {

// Five figures, so that no name stands inside another.
inline std::string Numbered(const char* word, int i) {
  std::string digits = std::to_string(i);
  return word + std::string(5 - digits.size(), '0') + digits;
}

// Each calculation of a trait holds the front end's refresh back once.
struct CountingEvents : FrontEndEvents {
  long suspended = 0;
  void SuspendRefresh() override { ++suspended; }
};

class BenchCharacter {
 public:
  ScriptedPrompts prompts;
  CountingEvents events;
  Environment env{prompts, events};
  KVRSystem system{env};
  KVRCharacter character{env, system};

  clsItem& Put(ItemType type, const std::string& tags) {
    auto item = std::make_unique<clsItem>();
    clsItem& added = *item;
    item->Owner = &character;
    item->NewTagList(tags);
    item->ItemType = type;
    item->IDKey = character.NewKey();
    character.Items.Add(std::move(item), added.KeyText());
    character.ItemsByType[static_cast<std::size_t>(type)].Add(&added, added.KeyText());
    return added;
  }
};

}  // namespace kvr
