#include <gtest/gtest.h>

#include "calc/clsBonus.h"
#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// A world with the traits that the sentences name.
struct SentenceWorld : RecordWorld {
  SentenceWorld() {
    Put(kStats, "name(DX),symbol(DX),score(12)");
    Put(kStats, "name(Lifting ST),score(10)");
  }
  clsItem& giver = Put(kAds, "name(Giver),level(5)");

  bool Read(clsBonus& record, std::string_view text, CalcItem* owner = nullptr) {
    record.Owner = owner ? owner : &giver;
    return record.CreateBonusFromText(text);
  }
};

std::string Shown(const clsBonus& b) {
  std::string text = std::to_string(b.BonusType) + " " + b.Bonus + " > ";
  if (!b.TargetPrefix.empty()) text += b.TargetPrefix + ":";
  text += b.TargetName;
  if (!b.TargetExt.empty()) text += " [" + b.TargetExt + "]";
  if (!b.TargetTag.empty()) text += "::" + b.TargetTag;
  text += " = " + std::to_string(b.TargetType) + " " + b.Affects;
  if (!b.Upto.empty()) text += " ; upto " + b.Upto;
  if (!b.Notes.empty()) text += " ; when " + b.Notes;
  if (!b.ListAs.empty()) text += " ; listas " + b.ListAs;
  if (!b.StringValue.empty()) text += " ; text " + b.StringValue;
  return text;
}

TEST(BonusText, Sentences) {
  struct Case {
    const char *text, *read;
  };
  const Case cases[] = {
      {"+1 to ST:DX", "1 +1 > ST:dx = 1 level"},
      {"+1 ST:DX", "1 +1 > ST:dx = 1 level"},
      {"  -2   TO  at:DX ", "1 -2 > AT:dx = 1 level"},
      {"+2 to SK:Guns (Rifle)", "1 +2 > SK:guns [rifle] = 6 level"},
      {"+1 to SK:Guns", "1 +1 > SK:guns = 6 level"},
      {"+1 to {SK:Guns (Rifle)}::parry", "1 +1 > SK:guns [rifle]::parry = 6 other"},
      {"+1 to \"SK:Guns (Rifle)::Parry\"", "1 +1 > SK:guns [rifle]::parry = 6 other"},
      {"+1 to ST:DX upto 3", "1 +1 > ST:dx = 1 level ; upto 3"},
      {"+1 to ST:DX when in the dark", "1 +1 > ST:dx = 1 level ; when in the dark"},
      {"+1 to ST:DX when in the dark listas \"+%value% at night\"",
       "1 +1 > ST:dx = 1 level ; when in the dark ; listas +%value% at night"},
      {"+1 to ST:DX upto 2 WHEN \"at sea\" listas X",
       "1 +1 > ST:dx = 1 level ; upto 2 ; when at sea ; listas X"},
      {"+1 to ST:DX when dark upto 3", "1 +1 > ST:dx = 1 level ; when dark upto 3"},
      {"x2 to skills::points", "2 2 > skills::points = 0 points"},
      {"X2 to skillpoints pts", "2 2 > skillpoints = 0 points"},
      {"+3 to SK:Guns (Rifle) pts", "1 +3 > SK:guns [rifle] = 6 points"},
      {"*1.5 to SK:Guns", "2 1.5 > SK:guns = 6 level"},
      {"/2 to SK:Guns", "2 2 > SK:guns = 6 level"},
      {"=5 to owner::weight", "3 5 > owner::weight = -1 other"},
      {"=x3 to me::cost", "4 3 > me::cost = -2 other"},
      {"=/3 to me", "4 3 > me = -2 level"},
      {"5 to ST:DX", "3  > ST:dx = 1 level"},
      {"+2pts to SK:Guns", "1 +2 > SK:guns = 6 points"},
      {"+2 Points to SK:Guns", "1 +2 > SK:guns = 6 points"},
      {"+me::points to SK:Guns", "1 +me::points > SK:guns = 6 level"},
      {"+spts to SK:Guns", "1 +spts > SK:guns = 6 level"},
      {"+1 to DX", "1 +1 > dx = 1 level"},
      {"+1 to lifting st", "1 +1 > lifting st = 1 level"},
      {"+1 to Nobody", "1 +1 > nobody = 0 level"},
      {"+1 to iqskills::parry", "1 +1 > iqskills::parry = 0 level"},
      {"+1 to iqskillpoints", "1 +1 > iqskillpoints = 0 points"},
      {"+1 to skills::parry", "1 +1 > skills::parry = 0 other"},
      {"+1 to CL:Lore (Old)", "1 +1 > CL:lore [old] = 0 level"},
      {"+1 to SK:(Unnamed)", "1 +1 > SK:(unnamed) = 6 level"},
      {"+1 to {SK:Guns (Rifle), SK:Bow}", "1 +1 > {sk:guns (rifle), sk:bow} = 0 level"},
      {"+1 to \"SK:Guns, SK:Bow\"::parry", "1 +1 > \"sk:guns, sk:bow\"::parry = 0 other"},
      {"+1 to \"SK:Guns, SK:Bow::parry\"", "1 +1 > \"sk:guns, sk:bow\"::parry = 0 other"},
      {"+2 to me pts", "1 +2 > me = -2 points"},
      {"+2 to owner pts", "1 +2 > owner = -1 points"},
      {"+1 to {SK:Guns} pts", "1 +1 > SK:guns = 6 points"},
      {"+1 to BYTAG:Skills where cat is Lore (Old)::parry",
       "1 +1 > bytag:skills where cat is lore (old)::parry = 0 other"},
      {"+\" (loud)\" to SK:Guns::notes$", "1 +\" (loud)\" > SK:guns::notes = 6 otherstring ; text + (loud)"},
      {"=\"back to back\" to me::damtype$",
       "3 \"back to back\" > me::damtype = -2 otherstring ; text =\"back to back\""},
      {"+@max(1,2) to ST:DX", "1 +@max(1,2) > ST:dx = 1 level"},
      {"to Nobody", "3 o > nobody = 0 level"},
  };
  SentenceWorld world;
  for (const Case& c : cases) {
    clsBonus record;
    ASSERT_TRUE(world.Read(record, c.text)) << c.text;
    EXPECT_EQ(Shown(record), c.read) << c.text;
    EXPECT_EQ(record.FullBonusText, Trim(c.text));
  }
  clsBonus first, second;
  world.Read(first, "+1 to ST:DX");
  world.Read(second, "+1 to ST:DX");
  EXPECT_EQ(second.IDKey, first.IDKey + 1);
}

TEST(BonusText, WhatIsNoSentenceIsLogged) {
  SentenceWorld world;
  clsMod& mod = world.PutMod(world.giver, "name(Mod),level(2)");
  clsBonus record;
  EXPECT_FALSE(world.Read(record, "+1"));
  EXPECT_FALSE(world.Read(record, " \"+1 to ST:DX\" ", &mod));
  EXPECT_EQ(world.RedLog(), "Giver: Bad gives() item: +1\nGiver: Mod: Bad gives() item: \"+1 to ST:DX\"\n");
}

TEST(BonusText, Values) {
  struct Case {
    ItemType type;
    const char *tags, *text;
    double value;
  };
  const Case cases[] = {
      {kAds, "level(3)", "+1 to X", 3},
      {kAds, "level(3)", "-2 to X", -6},
      {kAds, "level(3)", "x2 to X", 8},
      {kAds, "level(3)", "=2 to X", 2},
      {kAds, "level(3)", "=x2 to X", 2},
      {kAds, "level(5)", "+1 to X upto 3", 3},
      {kAds, "level(5)", "+1 to X upto ST:DX/4", 3},
      {kAds, "level(5)", "-1 to X upto 3", -5},
      {kAds, "level(0)", "+4 to X", 4},
      {kAds, "level(2)", "+me::level to X", 4},
      {kStats, "score(2.5),level(9)", "+2 to X", 5},
      {kEquipment, "count(4),level(9)", "+2 to X", 8},
      {kSkills, "level(12),score(3)", "+1 to X", 12},
      {kAds, "level(3)", "+ST:DX pts to X", 36},
      {kAds, "level(3)", "+\" loud\" to X::notes$", 1},
  };
  for (const Case& c : cases) {
    SentenceWorld world;
    clsBonus record;
    ASSERT_TRUE(world.Read(record, c.text, &world.Put(c.type, "name(Own)," + std::string(c.tags))));
    EXPECT_EQ(record.Value, c.value) << c.text << " from " << c.tags;
  }
  SentenceWorld world;
  clsBonus record;
  world.Read(record, "+2 to X", &world.PutMod(world.giver, "name(Mod),level(7)"));
  EXPECT_EQ(record.Value, 14);
  clsBonus text;
  world.Read(text, "+\"costs%level $/ a day\" to X::notes$");
  EXPECT_EQ(text.StringValueText, "+costs 5 $ a day");
}

TEST(BonusText, AValueThatFailsIsZeroAndTellsTraitAndTag) {
  for (const char* text :
       {"+ST:DX::words to ST:Lifting ST", "x1e300 to ST:Lifting ST", "x(0-2) to ST:Lifting ST"}) {
    SentenceWorld world;
    world.Put(kStats, "name(Words)");
    world.character.FindItem("DX", kStats)->SetTagItem("words", "many");
    world.giver.SetTagItem("gives", text);
    if (std::string_view(text).starts_with("x("))
      world.giver.SetTagItem("itemtype", ""), world.giver.SetLevel(5);
    clsMod& half = world.PutMod(world.giver, "name(Half),level(.5),gives(" + std::string(text) + ")");
    clsBonus record;
    ASSERT_TRUE(
        world.Read(record, text,
                   std::string_view(text).starts_with("x(") ? static_cast<CalcItem*>(&half) : &world.giver));
    EXPECT_EQ(record.Value, 0) << text;
    EXPECT_NE(world.RedLog().find("' the sentence \"" + std::string(text)), 1u);
    EXPECT_NE(world.RedLog().find("\" of its tag gives counts as 0"), npos) << world.RedLog();
    EXPECT_NE(world.RedLog().find("'Giver"), npos);
  }
}

}  // namespace
}  // namespace kvr
