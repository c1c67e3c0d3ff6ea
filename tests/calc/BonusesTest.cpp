// Bonuses on the whole road: traits added from a library, calculated, changed and removed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "core/Numbers.h"
#include "core/modTools.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

// What the player sees of every trait, in order.
std::string Totals(const KVRCharacter& character) {
  std::string text;
  for (const clsItem& item : character.Items) {
    text += item.FullName() + " " + std::to_string(item.Level()) + " " + NumberText(item.Score()) + " " +
            NumberText(item.Points());
    for (const std::string& line : item.BonusList) text += " | " + line;
    for (const std::string& line : item.ConditionalList) text += " ? " + line;
    text += "\n";
  }
  return text;
}

std::string ListOf(CharacterWorld& world, std::string_view name, ItemType type = kStats) {
  return world.character.FindItem(name, type)->TagItem("bonuslist");
}

std::size_t Logged(const CharacterWorld& world, std::string_view text) {
  return modTools::CountOccurrences(world.Log(), text);
}

void SetLevel(clsItem& item, double level) {
  EXPECT_TRUE(item.SetScoreTo(level)) << item.FullName();
}

// What an edit of the tag does.
void SetGives(clsItem& item, std::string_view gives) {
  KVRCharacter& character = *item.Owner;
  item.SetTagItem("gives", gives);
  character.RemoveBonusesFromOwner(item);
  character.AddBonusesFromOwner(item);
  character.CreateAffectsLinks(item);
  item.Calculate();
  character.PushTrickle(item);
}

constexpr std::string_view kRules =
    "[ATTRIBUTES]\r\nHearing, symbol(HG), basevalue(10), step(1), up(2)\r\n"
    "Standing, basevalue(0), step(1), up(5)\r\n"
    "[ADVANTAGES]\r\nKeen Hearing, 2/4, gives(+1 to ST:Hearing)\r\n"
    "Rank, 5/10, gives(+1 to ST:Standing upto 3)\r\n"
    "Owl, 5/10, gives(-1 to ST:Hearing when by day), conditional(+2 to ST:Hearing when \"by night\" listas "
    "\"%name%: "
    "%value% to %targetname%\")\r\n"
    "Choir, 10, isparent(yes)\r\n"
    "Voice, 2/4, gives(+1 to owner, =2 to me::childpoints)\r\n";

TEST(Bonuses, FollowTheLevelOfTheirOwner) {
  CharacterWorld world(kRules);
  world.character.InitStats();
  clsItem& keen = world.Added("Keen Hearing", kAds);
  clsItem& hearing = *world.character.FindItem("Hearing", kStats);
  EXPECT_EQ(hearing.Score(), 11);
  SetLevel(keen, 3);
  EXPECT_EQ(hearing.Score(), 13);
  EXPECT_EQ(ListOf(world, "Hearing"), "+3 from 'Keen Hearing'");
  EXPECT_EQ(hearing.TagItem("syslevels"), "3");
  SetLevel(world.Added("Rank", kAds), 5);
  EXPECT_EQ(ListOf(world, "Standing"), "+3 from 'Rank'");
  world.character.RemoveItem(keen.KeyText());
  EXPECT_EQ(hearing.Score(), 10);
  EXPECT_EQ(ListOf(world, "Hearing"), "");
}

TEST(Bonuses, ConditionalOnesAreShownAndDoNotCount) {
  CharacterWorld world(kRules);
  world.character.InitStats();
  world.Added("Owl", kAds);
  clsItem& hearing = *world.character.FindItem("Hearing", kStats);
  EXPECT_EQ(hearing.Score(), 9);
  EXPECT_EQ(ListOf(world, "Hearing"), "-1 from 'Owl' when by day");
  EXPECT_EQ(hearing.TagItem("conditionallist"), "Owl: 2 to hearing when by night");
}

TEST(Bonuses, AMitigatorTurnsThemIntoConditionals) {
  CharacterWorld world(kRules);
  KVRCharacter& c = world.character;
  c.InitStats();
  clsItem& keen = world.Added("Keen Hearing", kAds);
  clsItem& hearing = *c.FindItem("Hearing", kStats);
  std::int32_t mod = c.CreateNewMod(keen, "name(Plugs),mitigator(gives)", "Aids");
  EXPECT_EQ(hearing.Score(), 10);
  EXPECT_EQ(hearing.TagItem("conditionallist"), "+1 from 'Keen Hearing'");
  c.RemoveMod(keen, KeyTextOf(mod));
  EXPECT_EQ(hearing.Score(), 11);
  EXPECT_EQ(hearing.TagItem("conditionallist"), "");
}

TEST(Bonuses, OfModifiersAndOfSwitchedOffTraits) {
  CharacterWorld world(kRules);
  KVRCharacter& c = world.character;
  c.InitStats();
  clsItem& keen = world.Added("Keen Hearing", kAds);
  clsItem& hearing = *c.FindItem("Hearing", kStats);
  clsMod& horn =
      *keen.Mods.Item(KeyTextOf(c.CreateNewMod(keen, "name(Horn),gives(+2 to ST:Hearing)", "Aids")));
  EXPECT_EQ(ListOf(world, "Hearing"), "+1 from 'Keen Hearing', +2 from 'Keen Hearing'");
  horn.SetTagItem("level", "2");
  keen.Calculate();
  c.TrickleRecalcItems();
  EXPECT_EQ(hearing.Score(), 15);
  c.DeActivateItem(keen.KeyText());
  EXPECT_EQ(hearing.Score(), 10);
  c.CreateNewMod(keen, "name(Tube),gives(+8 to ST:Hearing)", "Aids");
  EXPECT_EQ(hearing.Score(), 10) << "a modifier of an inactive trait";
  EXPECT_EQ(Logged(world, "Keen Hearing is inactive, not allowing bonuses to be created."), 0u);
  SetGives(keen, "+4 to ST:Hearing");
  EXPECT_EQ(hearing.Score(), 10);
  EXPECT_EQ(Logged(world, ": Keen Hearing is inactive, not allowing bonuses to be created."), 1u);
  c.ReActivateItem(keen.KeyText());
  EXPECT_EQ(hearing.Score(), 26);
  keen.SetTagItem("keep", world.character.FindItem("Standing", kStats)->KeyText().substr(1));
  c.DisableItem(keen.KeyText());
  EXPECT_EQ(hearing.Score(), 10);
  SetGives(keen, "+3 to ST:Hearing");
  EXPECT_EQ(hearing.Score(), 10) << "a disabled trait";
  c.EnableItem(keen.KeyText());
  EXPECT_EQ(hearing.Score(), 25);
}

TEST(Bonuses, NamesAndParentsThatChange) {
  CharacterWorld world(kRules);
  KVRCharacter& c = world.character;
  c.InitStats();
  clsItem& keen = world.Added("Keen Hearing", kAds);
  c.RenameItem(keen.KeyText(), "Bat Ears", "", true);
  EXPECT_EQ(ListOf(world, "Hearing"), "+1 from 'Bat Ears'");
  clsItem& hearing = *c.FindItem("Hearing", kStats);
  c.RenameItem(hearing.KeyText(), "Hark", "", true);
  EXPECT_EQ(hearing.Score(), 10) << "the bonus names it no longer";
}

TEST(Bonuses, AChildGivesToItsParent) {
  CharacterWorld world(kRules);
  KVRCharacter& c = world.character;
  c.InitStats();
  clsItem &choir = world.Added("Choir", kAds), &voice = world.Added("Voice", kAds);
  EXPECT_EQ(choir.Level(), 1);
  c.MakeChildOf(voice.KeyText(), choir.KeyText());
  EXPECT_EQ(choir.Level(), 2);
  EXPECT_EQ(choir.TagItem("bonuslist"), "+1 from 'Voice'");
  EXPECT_EQ(voice.GetApplicableTargetTagBonuses("childpoints"), std::vector<std::string>{"+2 from 'Voice'"});
  c.UnmakeChildOf(voice.KeyText());
  EXPECT_EQ(choir.Level(), 1);
  EXPECT_EQ(choir.TagItem("bonuslist"), "");
}

// Attributes in layers, each of which reads the one before, and advantages that give to each of them.
std::string RandomRules(unsigned seed, int traits) {
  std::mt19937 random(seed);
  std::string text = "[ATTRIBUTES]\r\n";
  for (int i = 0; i < 12; ++i) {
    text += "Vigour " + std::string(1, static_cast<char>('A' + i)) + ", step(1), up(10), basevalue(" +
            (i < 4 ? "10" : "ST:Vigour " + std::string(1, static_cast<char>('A' + i - 4)) + " / 2") + ")\r\n";
  }
  text += "[ADVANTAGES]\r\nStill A, 5/10, cat(Lower)\r\nStill B, 5/10, cat(Lower)\r\n";
  const char* amounts[] = {"+1", "-2", "+.25", "=3", "+me::level", "+2pts", "+ST:Vigour B", "x2", "+1.5"};
  for (int i = 0; i < traits; ++i) {
    auto target = [&] {
      if (random() % 5 == 0) return std::string("CA:Lower");
      return "ST:Vigour " + std::string(1, static_cast<char>('C' + random() % 10));
    };
    std::string gives;
    for (auto n = 1 + random() % 3; n > 0; --n) {
      gives += gives.empty() ? "" : ", ";
      gives += std::string(amounts[random() % 9]) + " to ";
      gives += random() % 4 ? target() : "{" + target() + ", " + target() + "}";
      if (random() % 4 == 0) gives += " upto 4";
    }
    text += "Gift " + std::to_string(100 + i) + ", 5/10, " + (i % 5 ? "gives(" : "conditional(") + gives +
            ")\r\n";
  }
  return text;
}

void AddReceivers(CharacterWorld& world) {
  world.character.InitStats();
  world.Added("Still A", kAds);
  SetLevel(world.Added("Still B", kAds), 2);
}

class RandomBonuses : public testing::TestWithParam<unsigned> {};

TEST_P(RandomBonuses, RemovingATraitLeavesEveryOtherTotalAsItWas) {
  CharacterWorld world(RandomRules(GetParam(), 20));
  KVRCharacter& c = world.character;
  AddReceivers(world);
  for (int i = 0; i < 15; ++i) world.Added("Gift " + std::to_string(100 + i), kAds);
  const std::string before = Totals(c);
  const std::size_t bonuses = c.Bonuses.size(), conditionals = c.Conditionals.size();
  std::string changed = before;
  for (int i = 15; i < 20; ++i) {
    clsItem& item = world.Added("Gift " + std::to_string(100 + i), kAds);
    SetLevel(item, 2 + i % 3);
    if (Totals(c) != before) changed = Totals(c);
    c.RemoveItem(item.KeyText());
    ASSERT_EQ(Totals(c), before);
    ASSERT_EQ(c.Bonuses.size(), bonuses);
    ASSERT_EQ(c.Conditionals.size(), conditionals);
  }
  EXPECT_NE(changed, before);
  EXPECT_EQ(world.RedLog(), "");
}

TEST_P(RandomBonuses, RecalculatingAndReadingBackChangeNothing) {
  CharacterWorld world(RandomRules(GetParam(), 20));
  KVRCharacter& c = world.character;
  AddReceivers(world);
  for (int i = 0; i < 20; ++i) SetLevel(world.Added("Gift " + std::to_string(100 + i), kAds), 1 + i % 4);
  const std::string totals = Totals(c), everything = world.Everything();
  c.RecalculateAll();
  EXPECT_EQ(Totals(c), totals);
  EXPECT_EQ(world.Everything(), everything);
  c.CreateAllAffectsLinks();
  c.RecalculateAll(true);
  EXPECT_EQ(Totals(c), totals);
  ASSERT_TRUE(c.FileWrite(world.Root() + "all.kvr4", true).error.empty());
  KVRCharacter again(world.env, world.system);
  ASSERT_TRUE(again.FileRead(world.Root() + "all.kvr4"));
  EXPECT_EQ(Totals(again), totals);
  EXPECT_EQ(world.RedLog(), "");
}

TEST_P(RandomBonuses, TheOrderOfAddingDoesNotMatter) {
  std::vector<int> order(20);
  for (int i = 0; i < 20; ++i) order[static_cast<std::size_t>(i)] = 100 + i;
  std::string first;
  std::mt19937 random(GetParam());
  for (int round = 0; round < 3; ++round) {
    CharacterWorld world(RandomRules(GetParam(), 20));
    AddReceivers(world);
    for (int number : order) SetLevel(world.Added("Gift " + std::to_string(number), kAds), 1 + number % 3);
    for (clsItem& item : world.character.Items) std::ranges::sort(item.BonusList);
    for (clsItem& item : world.character.Items) std::ranges::sort(item.ConditionalList);
    if (round == 0) first = Totals(world.character);
    EXPECT_EQ(Totals(world.character), first);
    std::ranges::shuffle(order, random);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomBonuses, testing::Range(1u, 9u));

TEST(Bonuses, InACircleEndAndAreNamed) {
  const char* rules[] = {
      "Up, 1, gives(+ST:Two to ST:One)\r\nDown, 1, gives(+ST:One to ST:Two)\r\n",
      "Up, 1, gives(+ST:One to ST:One)\r\n",
      "Up, 1/2, gives(+me::level to me)\r\n",
      "Up, 1, gives(xST:One to ST:One, +ST:One*ST:One to ST:One)\r\n",
      "Up, 1/2, gives(+1 to AD:Down)\r\nDown, 1/2, gives(+1 to AD:Up)\r\n",
  };
  for (const char* text : rules) {
    CharacterWorld world(
        "[ATTRIBUTES]\r\nOne, basevalue(10), step(1), up(5)\r\nTwo, basevalue(10), step(1), up(5)\r\n"
        "Three, basevalue(ST:One), step(1), up(5)\r\n[ADVANTAGES]\r\n" +
        std::string(text));
    world.character.InitStats();
    world.Added("Up", kAds);
    if (std::string_view(text).find("Down") != npos) world.Added("Down", kAds);
    world.character.RecalculateAll();
    const std::string log = world.RedLog();
    EXPECT_TRUE(log.find("' do not settle") != npos || log.find("'Up' could not be calculated") != npos)
        << text;
    for (clsItem& item : world.character.Items) EXPECT_TRUE(std::isfinite(item.Score())) << text;
    world.character.RemoveItem(world.character.FindItem("Up", kAds)->KeyText());
    world.character.RecalculateAll();
    EXPECT_EQ(world.character.FindItem("One", kStats)->Score(), 10) << text;
  }
}

TEST(Bonuses, ThousandsOnOneTraitAndDamagedTexts) {
  std::string many;
  for (int i = 0; i < 3000; ++i) many += "+1 to ST:One, ";
  CharacterWorld world(
      "[ATTRIBUTES]\r\nOne, basevalue(10), step(1), up(5)\r\n[ADVANTAGES]\r\nMany, 1, gives(" + many +
      ")\r\nOdd, 1, gives(, +1, ::, +\" to ST:One, x to , = to ::$, {, } to \"\")\r\n");
  world.character.InitStats();
  clsItem& many_ = world.Added("Many", kAds);
  EXPECT_EQ(world.character.FindItem("One", kStats)->Score(), 3010);
  world.Added("Odd", kAds);
  world.character.RecalculateAll();
  EXPECT_EQ(Logged(world, "Odd: Bad gives() item: "), 3u);
  world.character.RemoveItem(many_.KeyText());
  EXPECT_EQ(world.character.FindItem("One", kStats)->Score(), 10);
}

}  // namespace
}  // namespace kvr
