// Laws of the arithmetic over the rules that ship, and totals that stay defined whatever a file holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <set>

#include "calc/SkillWorld.h"
#include "core/Numbers.h"
#include "core/modTools.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr ItemType kTypes[] = {kAds, kDisads, kQuirks, kPerks, kSkills, kSpells, kEquipment};

struct ShippedWorld : CharacterWorld {
  ShippedWorld() : CharacterWorld("") {
    for (const char* name : {"brask core.kdf", "brask skills.kdf", "brask spells.kdf", "brask gear.kdf"}) {
      Write(name, ShippedDataFile(name));
      std::string version;
      EXPECT_TRUE(system.LoadDataFile(name, version)) << name;
    }
    character.InitStartupValues();
  }
  // Collection keys of the library's traits of a type.
  std::vector<std::string> Keys(ItemType type) const {
    std::vector<std::string> keys;
    for (const clsSystemItem& item : system.Items) {
      if (item.ItemType == type) keys.push_back(item.CollectionKey());
    }
    return keys;
  }
  // Every `step`th trait of each type, from `first` on.
  std::vector<std::string> Choice(std::size_t first, std::size_t step) const {
    std::vector<std::string> chosen;
    for (ItemType type : kTypes) {
      const std::vector<std::string> keys = Keys(type);
      for (std::size_t i = first; i < keys.size(); i += step) chosen.push_back(keys[i]);
    }
    return chosen;
  }
  std::int32_t AddKey(const std::string& key) { return character.AddItemFromSystem(key, "", 0, -1, 0); }
  // What a player sees of the traits and of the character; traits by name, whatever their keys.
  std::string Totals() {
    std::vector<std::string> lines;
    for (clsItem& item : character.Items) {
      std::string line = item.FullName();
      for (const char* tag : {"itemtype", "level", "score", "points", "cost", "weight", "chardamage",
                              "charskillused", "charskillscore", "charparryscore", "parrylevel"}) {
        line += "\t" + item.TagItem(tag);
      }
      lines.push_back(line);
    }
    std::ranges::sort(lines);
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    for (const char* tag : {"totalcost", "dollarcost", "totalweight", "currentload", "enclevel", "basesw"}) {
      text += character.TagItem(tag) + "\n";
    }
    return text;
  }
  void Furnish() {
    for (const std::string& key : Choice(0, 7)) AddKey(key);
    unsigned n = 0;
    for (clsItem& item : character.Items) {
      if (++n % 3 == 0) item.SetScoreTo((item.ItemType == kStats ? item.Score() : item.Level()) + n % 4);
    }
    character.RecalculateAll();
  }
};

// The traits that came with it go as well.
void RemoveSince(KVRCharacter& character, std::int32_t lastKey) {
  for (std::int32_t key = character.LastKey; key > lastKey; --key) {
    if (character.ItemByKey(key) != nullptr) character.RemoveItem(KeyTextOf(key));
  }
}

TEST(Laws, AddingAndRemovingATraitLeavesEveryOtherTotal) {
  ShippedWorld world;
  world.Furnish();
  const std::string before = world.Totals();
  std::size_t added = 0, seen = 0;
  for (const std::string& key : world.Choice(3, 5)) {
    const std::int32_t lastKey = world.character.LastKey;
    const std::int32_t made = world.AddKey(key);
    if (made <= lastKey) continue;
    ++added;
    if (clsItem* item = world.character.ItemByKey(made)) item->Increment();
    seen += world.Totals() != before;
    RemoveSince(world.character, lastKey);
    ASSERT_EQ(world.Totals(), before) << key;
  }
  EXPECT_GE(added, 60u);
  EXPECT_EQ(seen, added);
}

TEST(Laws, RecalculatingTwiceChangesNothing) {
  ShippedWorld world;
  world.Furnish();
  ASSERT_GE(world.character.Items.Count(), 70u);
  const std::string everything = world.Everything();
  for (bool pushAll : {false, true}) {
    world.character.CreateAllAffectsLinks();
    world.character.RecalculateAll(pushAll);
    EXPECT_EQ(world.Everything(), everything);
  }
}

TEST(Laws, TheOrderOfAddingDoesNotMatter) {
  std::mt19937 random(11);
  std::string first;
  for (int round = 0; round < 4; ++round) {
    ShippedWorld world;
    std::vector<std::string> keys = world.Choice(1, 9);
    if (round > 0) std::ranges::shuffle(keys, random);
    for (const std::string& key : keys) world.AddKey(key);
    world.character.RecalculateAll();
    if (round == 0) first = world.Totals();
    ASSERT_EQ(world.Totals(), first) << round;
  }
}

// Points for a level buy that level on each skill and spell, whatever its defaults and bonuses.
TEST(Laws, WhatALevelCostsBuysIt) {
  ShippedWorld world;
  world.Furnish();
  std::size_t moved = 0;
  for (clsItem& item : world.character.Items) {
    if (item.ItemType != kSkills && item.ItemType != kSpells) continue;
    const std::int32_t from = item.Level();
    for (std::int32_t level = from + 1; level < from + 12; ++level) {
      if (!item.SetScoreTo(level) || item.Level() != level) break;
      ++moved;
      const Currency points = item.BasePoints();
      item.Calculate();
      ASSERT_EQ(item.Level(), level) << item.FullName();
      ASSERT_EQ(item.BasePoints(), points) << item.FullName();
      if (points <= Currency(1)) continue;
      item.SetBasePoints(points - Currency::FromUnits(1));
      item.Calculate();
      ASSERT_LT(item.Level(), level) << item.FullName();
      item.SetBasePoints(points);
      item.Calculate();
    }
  }
  EXPECT_GE(moved, 200u);
}

// A line of a data file, and what the log has to say of the trait and the tag.
struct Damaged {
  ItemType type;
  const char *tags, *logged;
  bool unsettled = false;
};

TEST(Laws, DamagedInputLeavesTotalsDefined) {
  const Damaged cases[] = {
      {kEquipment, "basecost(cheap)", "'Thing', basecost"},
      {kEquipment, "baseweight(1e300)", "'Thing', baseweight"},
      {kEquipment, "basecost(2),count(99999999999999)", "'Thing', count"},
      {kEquipment, "basecost(2),count(-3)", nullptr},
      {kEquipment, "basecost(2),count(2.5)", nullptr},
      {kEquipment, "gives(+1 to me::basecost, xme::cost to me::cost)", nullptr},
      {kAds, "cost(5/10),baselevel(-7)", nullptr},
      {kAds, "cost(5/10),level(2.7),baselevel(2.7)", nullptr},
      {kAds, "cost(5/10),baselevel(99999999999)", nullptr},
      {kAds, "cost(1/2),baselevel(1),gives(+me::level to me)", "'Thing'", true},
      {kSkills, "type(IQ/E),basepoints(-4)", "'Thing' has -4 in its tag 'basepoints'"},
      {kSkills, "type(IQ/E),basepoints(1e300)", nullptr},
      {kSkills, "type(No/E),basepoints(4)", "'Thing' has no level: no skill type is named as its tag 'type'"},
      {kSkills, "type(IQ/E),basepoints(1),default(SK:Thing+5, SK:Thing::level+5)", nullptr},
      {kSkills,
       "type(IQ/E),default(,,-,{SK:,\"SK:Thing,prereqprereq,%default,?"
       "?,17?"
       "?)",
       nullptr},
      {kSkills, "type(IQ/E),default(SK:Thing+@sqr(0-1)),upto(pts),downto(points)", nullptr},
  };
  for (const Damaged& c : cases) {
    SCOPED_TRACE(c.tags);
    SkillWorld world;
    clsItem& thing = world.Put(c.type, "name(Thing)," + std::string(c.tags));
    clsItem& other = world.PutSkill("name(Calm),type(IQ/E),basepoints(2),default(SK:Thing-2)");
    world.character.AddBonusesFromOwner(thing);
    world.CalculateAll();
    const std::string once = thing.TagList();
    world.CalculateAll();
    if (!c.unsettled) {
      EXPECT_EQ(thing.TagList(), once);
    }
    for (clsItem* item : {&thing, &other}) {
      EXPECT_TRUE(std::isfinite(item->Score()));
      EXPECT_LE(std::abs(item->Points().ToDouble()), 1e15);
      EXPECT_TRUE(IsNumeric(item->ItemType == kEquipment ? item->TagItem("cost") : "0"));
    }
    EXPECT_GE(world.character.TotalCost, world.character.Cost[kStats] - Currency(100));
    if (c.logged != nullptr) {
      EXPECT_GE(world.Logged(c.logged), 1) << world.Log();
    }
  }
}

TEST(Laws, AWeaponWithAThousandModesAndADamagedListOfModifiers) {
  SkillWorld world;
  std::string modes, damage, parry;
  for (int i = 0; i < 1000; ++i) {
    modes += (i == 0 ? "m" : "|m") + std::to_string(i);
    damage += (i == 0 ? "2d+" : "|2d+") + std::to_string(i);
    parry += i == 0 ? "0" : i % 2 == 0 ? "|me::parry" : "|me::reach+me::parry";
  }
  const auto begin = std::chrono::steady_clock::now();
  clsItem& weapon =
      world.Put(kEquipment, "name(Flail),basecost(9),count(1),mode(" + modes + "),damage(" + damage +
                                "),parry(" + parry + "),skillused(SK:Flail),reach(" + parry + ")");
  for (const char* mod : {"", ",,,", "cost(+)", "cost(//)", "cost(*x/),level(2)", "cost(%),level(1)",
                          "cost(+1e400%),level(1)", "cost(+5),level(-2.5)", "value(,tier("}) {
    world.PutMod(weapon, "name(M)," + std::string(mod));
  }
  world.CalculateAll();
  const std::string once = weapon.TagList();
  world.CalculateAll();
  EXPECT_EQ(weapon.TagList(), once);
  EXPECT_EQ(weapon.DamageModesCount(), 1000u);
  EXPECT_EQ(weapon.DamageModeDamage(1000), "2d+999");
  EXPECT_TRUE(IsNumeric(weapon.TagItem("cost"))) << weapon.TagItem("cost");
  EXPECT_GE(world.Logged("Modifier 'M' of 'Flail', cost: "), 1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace kvr
