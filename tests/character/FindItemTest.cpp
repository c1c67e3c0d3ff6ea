#include <gtest/gtest.h>

#include "RecordWorld.h"

namespace kvr {
namespace {

struct Finding : testing::Test {
  RecordWorld world;
  KVRCharacter& character = world.character;
  clsItem& swordSkill = world.Put(kSkills, "name(Sword),nameext(Broad)");
  clsItem& swordPerk = world.Put(kPerks, "name(Sword),nameext(Broad)");
  clsItem& strength = world.Put(kStats, "name(Strength),symbol(ST)");
  clsItem& older = world.Put(kAds, "name(Ally)");
  clsItem& newer = world.Put(kAds, "name(ALLY)");
  clsItem& nested = world.Put(kAds, "name(Foe),nameext(Big (Bad))");
  clsItem& plain = world.Put(kSkills, "name(Sword)");
};

TEST_F(Finding, OrdersByNameExtensionAndTypeWithTheNewerOfEqualsFirst) {
  std::string keys;
  for (const clsItem& item : character.Items) keys += item.KeyText() + " ";
  EXPECT_EQ(keys, "k5 k4 k6 k3 k7 k2 k1 ");
}

TEST_F(Finding, FindsByFullName) {
  struct {
    std::string_view name;
    ItemType type;
    std::size_t start, position;
  } const cases[] = {
      {"sword (BROAD)", kSkills, 1, 7},
      {"Sword (Broad)", kNoType, 1, 6},
      {"Sword (Broad)", kNoType, 7, 7},
      {"Sword (Broad)", kPerks, 7, 0},
      {"Sword (Broad)", kAds, 1, 0},
      {"Sword", kSkills, 1, 5},
      {"Ally", kAds, 0, 1},
      {"Ally", kAds, 2, 2},
      {"Ally", kAds, 3, 0},
      {"Foe (Big (Bad))", kAds, 1, 3},
      {"Swor", kNoType, 1, 0},
      {"Zeal", kNoType, 1, 0},
      {"", kNoType, 1, 0},
      {"Ally", kNoType, 99, 0},
      {"Sword (Broad", kSkills, 1, 7},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(character.ItemPositionByNameAndExt(each.name, each.type, each.start), each.position)
        << each.name << " " << each.type << " from " << each.start;
    if (each.start > 1) continue;
    clsItem* expected = each.position ? &character.Items.Item(each.position) : nullptr;
    EXPECT_EQ(character.FindItem(each.name, each.type), expected) << each.name;
  }
  EXPECT_EQ(character.FindItem("Ally", 12), nullptr);
  EXPECT_EQ(character.ItemKeysByNameAndExt("ally", kAds), (std::vector<std::string>{"k5", "k4"}));
  EXPECT_EQ(character.ItemKeysByNameAndExt("Sword (Broad)", kNoType).size(), 2u);
}

TEST_F(Finding, FindsByNameAloneBySymbolAndByKey) {
  EXPECT_EQ(character.ItemPositionByNameOnly("SWORD", kNoType), 5u);
  EXPECT_EQ(character.ItemPositionByNameOnly("Sword", kPerks), 6u);
  EXPECT_EQ(character.ItemPositionByNameOnly("Sword", kSkills, 6), 7u);
  EXPECT_EQ(character.ItemPositionByNameOnly("Sword", kSpells), 0u);
  EXPECT_EQ(character.ItemPositionBySymbol("st"), 4u);
  EXPECT_EQ(character.ItemPositionBySymbol("ST", kAds), 0u);
  EXPECT_EQ(character.ItemPositionBySymbol(""), 0u);
  EXPECT_EQ(character.ListItemPosByKey(kStats, "k3"), 4u);
  EXPECT_EQ(character.ListItemPosByKey(kAds, "k3"), 0u);
  EXPECT_EQ(character.ReturnItemIndexes(kSkills), (std::vector<std::size_t>{5, 7}));
  EXPECT_EQ(character.ReturnItemCollectionKeys(kAds), (std::vector<std::string>{"k5", "k4", "k6"}));
  EXPECT_EQ(NumberOfKeyText("k17"), 17);
  EXPECT_EQ(NumberOfKeyText(""), 0);
}

TEST_F(Finding, FindsTraitsAndModifiersByNumber) {
  clsMod& outer = world.PutMod(newer, "name(Outer),group(G)");
  clsMod& inner = world.PutMod(outer, "name(Inner)");
  EXPECT_EQ(character.GetObjectFromIDKey(3), &strength);
  EXPECT_EQ(character.GetObjectFromIDKey(inner.IDKey), &inner);
  EXPECT_EQ(character.GetObjectFromIDKey(outer.IDKey), &outer);
  EXPECT_EQ(character.GetObjectFromIDKey(99), nullptr);
  EXPECT_EQ(inner.RootOwnerItem(), &newer);
  EXPECT_EQ(inner.RootOwnerChar(), &character);
  // Moved to another trait behind the character's back.
  const std::int32_t id = inner.IDKey;
  older.Mods.Add(outer.Mods.Take(KeyTextOf(id)), KeyTextOf(id));
  EXPECT_EQ(character.GetObjectFromIDKey(id), &inner);
  older.Mods.Remove(KeyTextOf(id));
  EXPECT_EQ(character.GetObjectFromIDKey(id), nullptr);
}

}  // namespace
}  // namespace kvr
