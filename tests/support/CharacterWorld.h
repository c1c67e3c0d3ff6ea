// A test world with a library, filled from data file text, and one character on it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"
#include "library/KVRSystem.h"
#include "support/TestWorld.h"

namespace kvr {

class CharacterWorld : public TestWorld {
 public:
  // The text of a data file without its "Version=" line.
  explicit CharacterWorld(std::string_view data) { Load(data); }

  void Load(std::string_view data) {
    Write("rules.kdf", "Version=3\r\n" + std::string(data));
    std::string programVersion;
    ASSERT_TRUE(system.LoadDataFile("rules.kdf", programVersion));
  }

  // Adds from the library; 0 as CreateNewItem gives it.
  std::int32_t Add(std::string_view fullName, ItemType type, int allowDuplicate = 0) {
    const clsSystemItem* record = system.FindItem(fullName, type);
    EXPECT_TRUE(record) << fullName;
    return record ? character.AddItemFromSystem(record->CollectionKey(), "", 0, 0, allowDuplicate) : 0;
  }
  // The same where it must succeed.
  clsItem& Added(std::string_view fullName, ItemType type, int allowDuplicate = 0) {
    clsItem* item = character.ItemByKey(Add(fullName, type, allowDuplicate));
    if (!item) throw std::runtime_error("not added: " + std::string(fullName));
    return *item;
  }
  std::string Tag(std::int32_t id, std::string_view tag) {
    clsItem* item = character.ItemByKey(id);
    return item ? item->TagItem(tag) : "<gone>";
  }
  // The full names of all traits, in their order.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const clsItem& item : character.Items) names.push_back(item.FullName());
    return names;
  }
  // Every trait's whole text: equal texts are equal characters.
  std::string Everything() const {
    std::string text;
    for (const clsItem& item : character.Items) {
      text += item.KeyText() + item.TagList() + "\n";
      for (const clsMod& mod : item.Mods) text += "  " + mod.TagList() + "\n";
    }
    return text + "lastkey " + std::to_string(character.LastKey) + ", cats " +
           std::to_string(character.Cats.Count());
  }

  KVRSystem system{env};
  KVRCharacter character{env, system};
};

}  // namespace kvr
