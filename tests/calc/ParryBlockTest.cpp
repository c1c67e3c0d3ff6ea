#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

std::string InUse(KVRCharacter& c) {
  c.CalcPointCosts();
  return c.ParryUsing + " " + std::to_string(c.ParryScore) + ", " + c.BlockUsing + " " +
         std::to_string(c.BlockScore);
}

TEST(ParryBlock, TheChoiceStandsAndTheFirstFillsItsPlace) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  EXPECT_EQ(InUse(c), " 0,  0");
  clsItem& shield = world.Put(kSkills, "name(Shield),level(12),blockat(%level/2+3)");
  clsItem& sword = world.Put(kSkills, "name(Sword),level(15),parryat(@int(%level/2)+3),tl(3)");
  clsItem& axe = world.Put(kSkills, "name(Axe),level(10),parryat(@int(%level/2)+3)");
  for (clsItem* skill : {&shield, &sword, &axe}) skill->privCalcWeaponTags();
  EXPECT_EQ(InUse(c), "Axe 8, Shield 9") << "the first in order, not the best";
  c.ParryIDKey = sword.IDKey;
  EXPECT_EQ(InUse(c), "Sword/TL3 10, Shield 9");
  c.RemoveItem(sword.KeyText());
  EXPECT_EQ(InUse(c), "Axe 8, Shield 9");
  world.Put(kStats, "name(DX),score(13),parryat(3),parrylevel(3)");
  EXPECT_EQ(InUse(c), "Axe 8, Shield 9") << "chosen once, it stays";
  c.ParryIDKey = 999;
  EXPECT_EQ(InUse(c), "DX 3, Shield 9");
}

TEST(ParryBlock, LevelsTakeBonuses) {
  RecordWorld world;
  clsItem& sword = world.Put(kSkills, "name(Sword),level(15),parryat(@int(%level/2)+3)");
  clsItem& giver =
      world.Put(kAds, "name(Giver),level(1),gives(+1 to SK:Sword::parryat, x2 to SK:Sword::parryat)");
  world.character.AddBonusesFromOwner(giver);
  sword.privCalcWeaponTags();
  EXPECT_EQ(sword.FreeTag("parrylevel"), "22");
  EXPECT_EQ(sword.DefenceAtLevel("parryat", 10), 18);
  world.character.RemoveBonusesFromOwner(giver);
  sword.privCalcWeaponTags();
  EXPECT_EQ(sword.FreeTag("parrylevel"), "10");
}

// The data's own numbers stay, and count beside what is given: (10 + 2 + 1) * .5 * 2.
TEST(ParryBlock, NumbersOfTheDataCountBesideBonuses) {
  struct Case {
    const char *tags, *gives, *parry, *block;
  };
  const Case cases[] = {
      {"parryatbonus(2),parryatmult(.5)", "", "6", "9"},
      {"parryatbonus(2),parryatmult(.5)", "+1 to SK:Sword::parryat, x2 to SK:Sword::parryat", "13", "9"},
      {"blockatbonus(ST:Poise/2),blockatmult(2)", "+1 to SK:Sword::blockat", "10", "30"},
      {"parryat(10|11|12),parryatbonus(1|2),parryatmult(2)", "", "22|26|24", "9"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    RecordWorld world;
    world.Put(kStats, "name(Poise),score(10)");
    clsItem& sword = world.Put(
        kSkills, "name(Sword),level(15)," + std::string(c.tags) + ",parryat(@int(%level/2)+3),blockat(9)");
    clsItem& giver = world.Put(kAds, "name(Giver),level(1),gives(" + std::string(c.gives) + ")");
    world.character.AddBonusesFromOwner(giver);
    const std::string before(sword.FreeTag("parryatbonus"));
    for (int pass = 0; pass < 2; ++pass) {
      sword.BonusList.clear();
      sword.privCalcWeaponTags();
      EXPECT_EQ(sword.FreeTag("parrylevel"), c.parry);
      EXPECT_EQ(sword.FreeTag("blocklevel"), c.block);
    }
    EXPECT_EQ(sword.FreeTag("parryatbonus"), before);
    EXPECT_EQ(sword.BonusListItemsCount(), world.character.Bonuses.size());
  }
}

TEST(ParryBlock, ProtectionComesFromTheBody) {
  RecordWorld world;
  world.character.Body.Part("Torso")->DR = "5+cr";
  world.character.Body.Part("Feet")->DB = "1";
  world.character.CalcPointCosts();
  EXPECT_EQ(world.character.DR[1], "5+cr");
  EXPECT_EQ(world.character.DB[5], "1");
  EXPECT_EQ(world.character.DR[0], "");
}

TEST(Encumbrance, Levels) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  EXPECT_EQ(c.GetEncLevel(0), 5);
  const std::pair<const char*, const char*> limits[] = {
      {"No", "20"}, {"Light", "40.5"}, {"Medium", "60"}, {"Heavy", "120"}, {"X-Heavy", "200"}};
  for (const auto& [name, score] : limits) {
    world.Put(kStats, "name(" + std::string(name) + " Encumbrance),score(" + score + ")");
  }
  const std::pair<const char*, int> cases[] = {{"0", 0},    {"20", 0},  {"20.0001", 1}, {"40.5", 1},
                                               {"40.6", 2}, {"120", 3}, {"200", 4},     {"200.0001", 5}};
  for (const auto& [weight, level] : cases)
    EXPECT_EQ(c.GetEncLevel(Currency::FromVal(weight)), level) << weight;
  c.RemoveItem(c.FindItem("Light Encumbrance", kStats)->KeyText());
  EXPECT_EQ(c.GetEncLevel(30), 2) << "a missing one is passed over";
}

TEST(RaiseRuleOf, TakesBonusesAndReachesThoseWhoRead) {
  RecordWorld world;
  clsItem& stat = world.Put(kStats, "name(Wit),symbol(WIT),step(1),basevalue(10),raiseruleof(1+1)");
  clsItem& giver = world.Put(kAds, "name(Giver),level(1),gives(+3 to ST:Wit::raiseruleof)");
  EXPECT_TRUE(stat.privCalcRaiseRuleOf());
  EXPECT_EQ(stat.RaiseRuleOf(), 2);
  world.character.AddBonusesFromOwner(giver);
  EXPECT_TRUE(stat.privCalcRaiseRuleOf());
  EXPECT_FALSE(stat.privCalcRaiseRuleOf());
  EXPECT_EQ(stat.RaiseRuleOf(), 5);
  EXPECT_EQ(stat.FreeTag("raiseruleof"), "1+1");
}

}  // namespace
}  // namespace kvr
