#include <gtest/gtest.h>

#include "calc/DamageText.h"
#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

struct DamageWorld : RecordWorld {
  DamageWorld() {
    character.BasicDamageList = {{9, "1", "-2", "1", "-1"},
                                 {12, "1", "-1", "1", "+2"},
                                 {20, "2", "-1", "3", "+2"},
                                 {40, "@int(st:/10)", "", "@int(st:/10)+2", "st:-40"}};
    character.DamageBreaks = {{4, 1, 4}, {7, 2, 7}};
    Put(kStats, "name(Damage Base),score(12)");
    Put(kStats, "name(ST),symbol(ST),score(12)");
  }
  std::string Both(double score) {
    return character.ReturnThrFromScore(score).Text() + " " + character.ReturnSwFromScore(score).Text();
  }
};

TEST(Damage, RowsOfTheTable) {
  DamageWorld world;
  const std::pair<double, const char*> cases[] = {
      {-5, "1d-2 1d-1"}, {9, "1d-2 1d-1"},  {9.5, "1d-1 1d+2"},
      {12, "1d-1 1d+2"}, {20, "2d-1 3d+2"}, {21, "2d 4d-19"},
      {40, "4d 6d"},     {55, "5d 7d+15"},  {1e12, "200000000d 200000002d+1999999960"}};
  for (const auto& [score, damage] : cases) EXPECT_EQ(world.Both(score), damage) << score;
  world.character.BasicDamageList.resize(1);
  EXPECT_EQ(world.Both(99), "1d-2 1d-1");
  world.character.BasicDamageList.clear();
  EXPECT_EQ(world.Both(10), "0d 0d");
}

TEST(Damage, AddsBecomeDiceAtTheHighestBreakFirst) {
  const std::vector<clsDamageBreak> breaks = {{4, 1, 4}, {7, 2, 7}};
  const std::pair<DamageDice, const char*> cases[] = {{{1, 3}, "1d+3"}, {{1, 4}, "2d"},  {{1, 6}, "2d+2"},
                                                      {{1, 7}, "3d"},   {{1, 25}, "8d"}, {{1, -3}, "1d-3"}};
  for (const auto& [damage, text] : cases) EXPECT_EQ(basicDamage::ConvertAdds(damage, breaks).Text(), text);
  EXPECT_EQ(basicDamage::ConvertAdds({1, 9}, {{4, 1, 0}}).Text(), "2d+9") << "taking nothing off, once";
  EXPECT_EQ(basicDamage::ConvertAdds({1, 2147483647}, {{1, 2147483647, 1}}).Text(), "2147483647d");
}

TEST(Damage, OfTheCharacter) {
  DamageWorld world;
  KVRCharacter& c = world.character;
  c.CalcPointCosts();
  EXPECT_EQ(c.BaseTH + " " + c.BaseSW, "1d-1 1d+2");
  EXPECT_EQ(c.BaseSwAdds, 2);
  c.UseDiceAddsConversion = -1;
  world.Put(kStats, "name(Odd)");
  c.FindItem("Damage Base", kStats)->SetScore(55);
  c.CalcPointCosts();
  EXPECT_EQ(c.BaseSW, "11d+1");
  c.SetTagItem("basethdice", "2+1");
  c.SetTagItem("BaseSW", "as the storm");
  EXPECT_EQ(c.TagItem("baseth") + " " + c.TagItem("basesw"), "3d as the storm");
  EXPECT_EQ(c.BaseTH + " " + c.BaseSW, "3d as the storm");
  EXPECT_EQ(c.BaseTHDice, 3);
  EXPECT_EQ(c.BaseSwDice, 11);
  c.SetTagItem("basethdice", "");
  c.SetTagItem("basesw", "");
  EXPECT_EQ(c.TagItem("baseth") + " " + c.TagItem("basesw"), "5d 11d+1");
}

TEST(Damage, TextOfAWeapon) {
  const std::pair<const char*, const char*> cases[] = {
      {"sw", "1d+2"},
      {"thr+1", "1d"},
      {" TH - 1 ", "1d-2"},
      {"sw+2", "1d+4"},
      {"2d+1", "2d+1"},
      {"2d6+1-3", "2d6-2"},
      {"thr+-2", "1d-3"},
      {"thr--2", "1d+1"},
      {"(sw+1)", "1d+3"},
      {"thr+1d", "2d-1"},
      {"sw+2(2)", "1d+4(2)"},
      {"2d(.5)", "2d(.5)"},
      {"@thr(20)+1", "2d"},
      {"@SW(ST:ST+8)", "3d+2"},
      {"@thrx(2)", "2d"},
      {"@swx(ST:ST/12)", "1d+2"},
      {"@th(9)", "1d-2"},
      {"@int(ST:ST/5)d+ST:ST/4", "2d+3"},
      {"$if(ST:ST > 11 then \"sw+1\" else \"thr\")", "1d+3"},
      {"ST:ST/2+1", "7"},
      {"sw*2", "1d+2*2"},
      {"2d*2", "2d*2"},
      {"2d+4/2", "2d+4/2"},
      {"thr cut", "thr cut"},
      {"spec.", "spec."},
      {"HT-4", "HT-4"},
      {"2d+1d6", "2d+1d6"},
      {"5+2", "7"},
      {"0d", "0d"},
      {"@thr(", "@thr("},
      {"", ""},
  };
  for (const auto& [text, damage] : cases) {
    DamageWorld world;
    clsItem& weapon = world.Put(kEquipment, "name(Weapon),damage(x)");
    EXPECT_EQ(modMain::CalcDamage(weapon, text), damage) << text;
  }
}

TEST(Damage, BasisAndBonuses) {
  struct Case {
    const char *tags, *gives, *damage;
  };
  const Case cases[] = {
      {"damage(sw)", "", "1d+2"},
      {"damage(sw),damagebasedon(Grip)", "", "3d+2"},
      {"damage(sw),damagebasedon(ST:Grip)", "", "3d+2"},
      {"damage(sw),effectivest(ST:ST-3)", "", "1d-1"},
      {"damage(sw|thr),effectivest(|20)", "", "1d+2|2d-1"},
      {"damage(sw)", "+8 to ST:Striking ST", "3d+2"},
      {"damage(sw)", "+1 to EQ:Club::damage", "1d+3"},
      {"damage(sw+1(2)|2d)", "-2 to EQ:Club::damage", "1d+1(2)|2d-2"},
      {"damage(2d|)", "+1 to EQ:Club::damage, x2 to EQ:Club::damage", "((2d)*2+1)|"},
      {"damage(sw)", "+\"1d\" to EQ:Club::damage$", "2d+2"},
      {"damage(sw+me::minst/4),minst(8)", "", "1d+4"},
      {"damage(sw|2d+me::characc),acc(|1+me::minst),minst(|3)", "", "1d+2|2d+4"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " / " + c.gives);
    DamageWorld world;
    world.Put(kStats, "name(Grip),score(20)");
    clsItem& striking = world.Put(kStats, "name(Striking ST),step(1),basevalue(0)");
    clsItem& club = world.Put(kEquipment, "name(Club),count(1)," + std::string(c.tags));
    clsItem& giver = world.Put(kAds, "name(Giver),level(1),gives(" + std::string(c.gives) + ")");
    world.character.CreateAllAffectsLinks();
    world.character.AddBonusesFromOwner(giver);
    club.Calculate();
    striking.Calculate();
    world.character.TrickleRecalcItems();
    EXPECT_EQ(club.FreeTag("chardamage"), c.damage) << world.Log();
  }
}

TEST(Damage, SumsBecomeDiceByTheCharactersRule) {
  DamageWorld world;
  world.character.UseDiceAddsConversion = -1;
  clsItem& club = world.Put(kEquipment, "name(Club),count(1),damage(sw+2|sw+9|4)");
  club.Calculate();
  EXPECT_EQ(club.FreeTag("chardamage"), "2d|4d|4");
}

TEST(Damage, DeepAndLongTextsEnd) {
  DamageWorld world;
  clsItem& weapon = world.Put(kEquipment, "name(Weapon),damage(x)");
  const std::string deep = std::string(100000, '(') + "2d" + std::string(100000, ')');
  EXPECT_EQ(modMain::CalcDamage(weapon, deep), deep);
  std::string many = "2d";
  for (int i = 0; i < 20000; ++i) many += "+thr-1d";
  EXPECT_EQ(modMain::CalcDamage(weapon, many).size(), 2 + 20000 * std::string("+1d-1-1d").size());
}

}  // namespace
}  // namespace kvr
