// Needs and taboos over one world: what each form of test finds, what is missing, and what is done about it.
#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "character/modNeeds.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

using Lists = std::vector<std::string>;

struct NeedsWorld : RecordWorld {
  NeedsWorld() {
    Put(kStats, "name(Might),symbol(MI),score(12.5),points(20)");
    Put(kAds, "name(Luck),level(1),points(15)");
    Put(kAds, "name(Strong Arm),level(2),points(10),baseapppoints(10),rank(7)");
    Put(kAds, "name(Pact),level(1),needscheck(-1),countasneed(Circle, Coven)");
    Put(kAds, "name(Ward),level(1),mitigated(no)");
    Put(kAds, "name(Veil),level(1),mitigated(gives)");
    Put(kAds, "name(Salt, Bread),level(1)");
    Put(kDisads, "name(Bad Name),level(1),points(-10)");
    Put(kQuirks, "name(Hums),level(1)");
    Put(kQuirks, "name(Counts Steps),level(1)");
    Put(kSkills, "name(Sword),nameext(Broad),level(13),points(4),baseapppoints(3),cat(Blades, Arms)");
    Put(kSkills, "name(Sword),nameext(Thin),level(11),points(2),cat(Blades)");
    Put(kSkills, "name(Axe),level(12),points(1),cat(Arms)");
    Put(kSpells, "name(Kindle),level(15),points(1),cat(Ember)");
    Put(kSpells, "name(Flare),level(14),points(1),cat(Ember, Light)");
    Put(kSpells, "name(Glow),level(14),points(1),cat(Light)");
    Put(kSpells, "name(Mist),level(10),points(1),cat(Water)");
    Put(kEquipment, "name(Rope),count(3),level(0)");
    Put(kAds, "name(Sling),level(1)");
    Put(kEquipment, "name(Sling),count(3)");
    Put(kEquipment, "name(Beacon),count(1)");
    for (const char* name : {"Sword|Broad", "Axe|", "Bow|"}) {
      auto member = std::make_unique<clsRefItem>();
      const std::string_view text = name;
      member->Group = "Weapons";
      member->Name = text.substr(0, text.find('|'));
      member->NameExt = text.substr(text.find('|') + 1);
      member->ItemType = kSkills;
      const std::string key = clsSortedRefCollection::GroupKeyOf(*member);
      character.Groups.Add(std::move(member), key);
    }
    auto cat = std::make_unique<clsCategory>();
    cat->Name = "Ember";
    cat->Code = "EM";
    cat->ItemType = kSpells;
    const std::string key = clsSortedCatCollection::KeyOf(*cat);
    character.Cats.Add(std::move(cat), key);
  }

  // "" when met, else the alternatives with " | " between.
  std::string Missing(std::string_view needs) {
    Lists missing;
    if (modNeeds::NeedsCheckORItems(needer, needs, missing)) return missing.empty() ? "" : "met but missing";
    std::string text;
    for (const std::string& each : missing) text += (text.empty() ? "" : " | ") + each;
    return text;
  }

  clsItem& needer = Put(kSpells, "name(Beacon),level(3),points(1),ident(Coven),cat(Light),needs(x)");
};

struct NeedsCase {
  const char *needs, *missing;
};

TEST(Needs, EachFormOfTestFindsWhatIsThere) {
  static constexpr NeedsCase kCases[] = {
      // Names, values, tags, operators.
      {"", ""},
      {"AD:Luck", ""},
      {"ad:{luck}", ""},
      {"\"AD:Luck\"", ""},
      {"AD:Luck >= 2", "AD:Luck >= 2"},
      {"AD:Luck > 1", "AD:Luck > 1"},
      {"AD:Luck < 2, AD:Luck <= 1, AD:Luck <> 2, AD:Luck = 1, AD:Luck == 1", ""},
      {"AD:Luck == 2", "AD:Luck = 2"},
      {"AD:Luck <> 1", "AD:Luck <> 1"},
      {"AD:Luck >= 99999999999999999999", "AD:Luck >= 900000000000000"},
      {"DI:Luck", "DI:Luck >= 1"},
      {"AD:Strong Arm >= 7::rank", ""},
      {"AD:Strong Arm::Rank >= 8", "AD:Strong Arm >= 8::rank"},
      {"AD:Strong Arm >= 11pts", "AD:Strong Arm >= 11::baseapppoints"},
      {"AD:Strong Arm >= AD:Luck::points", ""},  // ten points against Luck's level
      {"{AD:Salt, Bread}", ""},
      {"{AD:Salt, Bread} >= 2", "AD:{Salt, Bread} >= 2"},
      {"ST:MI >= 12.5", ""},
      {"ST:Might > 12.5", "ST:Might > 12.5"},
      {"EQ:Rope >= 3", ""},
      {"EQ:Rope >= 4", "EQ:Rope >= 4"},
      // Any specialization will do, or the one named.
      {"SK:Sword", ""},
      {"SK:Sword >= 13", ""},
      {"SK:Sword >= 14", "SK:Sword >= 14"},
      {"SK:Sword (Thin) >= 12", "SK:Sword (Thin) >= 12"},
      {"SK:Sword (Broad) >= 4pts", "SK:Sword (Broad) >= 4::baseapppoints"},
      {"SK:Sword (Broad) >= 4::points", ""},
      {"SK:Bow", "SK:Bow >= 1::points"},
      // Without a prefix: an attribute, a spell, anything.
      {"MI >= 12", ""},
      {"Might >= 13", "Might >= 13"},
      {"Kindle", ""},
      {"Bad Name", ""},
      {"9mm Pistol", ""},
      {"Sling >= 3", ""},  // of two types, each read in its own way
      {"Sling >= 4", "Sling >= 4"},
      {"Beacon", ""},          // the other one
      {"Luck (Odd) = 0", ""},  // no such trait, so a formula
      {"Nobody Knows", "Nobody Knows >= 1::points"},
      // Formulas.
      {"@max(ST:MI, 3) >= 12", ""},
      {"me::level >= 4", "me::level >= 4"},
      {"ST:MI * 0 + 1", "ST:MI * 0 + 1 >= 1"},
      {"AD:Luck >= 3 - 2", ""},
      // The needer itself never counts.
      {"SP:Beacon", "SP:Beacon >= 1::points"},
      // Lists.
      {"AD:Luck, AD:Nix", "AD:Nix >= 1"},
      {"AD:Nix | AD:Luck", ""},
      {"AD:Luck, (SK:Bow | SP:Kindle)", ""},
      {"AD:Nix, SK:Axe | SK:Bow", "AD:Nix >= 1 | SK:Bow >= 1::points"},
      {"AD:Nix, (SK:Bow | SK:Oar, (AD:A | AD:B))",
       "AD:Nix >= 1, SK:Bow >= 1::points | AD:Nix >= 1, SK:Oar >= 1::points, AD:A >= 1 | "
       "AD:Nix >= 1, SK:Oar >= 1::points, AD:B >= 1"},
      {"(AD:Luck", ""},
      {"(AD:Nix) and what stands behind", "AD:Nix >= 1"},
      {"AD:Nix), AD:Luck", "AD:{Nix), AD:Luck} >= 1"},
  };
  NeedsWorld world;
  for (const NeedsCase& each : kCases) EXPECT_EQ(world.Missing(each.needs), each.missing) << each.needs;
}

TEST(Needs, CountingTests) {
  static constexpr struct {
    const char* needs;
    bool met;
  } kCases[] = {
      {"2 quirks", true},
      {"3 quirks", false},
      {"4 spells", true},
      {"5 spells", false},  // the needer is a spell too
      {"3 spells >= 14", true},
      {"4 spells >= 14", false},
      {"2 skills >= 3pts", false},
      {"1 skills >= 3pts", true},
      {"2 skills >= 2::points", true},
      {"2 CO:Ember", true},
      {"3 CO:Ember", false},
      {"1 ADCAT:", false},
      {"2 SPCAT:em", true},
      {"2 CO:Ember >= 15", false},
      {"2 SKCAT:Blades", true},
      {"1 SAMECAT: >= 14", true},
      {"3 SAMECAT:", false},
      {"2 GR:Weapons >= 12", true},
      {"2 GR:Weapons >= 13", false},
      {"3 GR:Weapons", false},
      {"GR:Weapons >= 13", true},
      {"GR:Nowhere", false},
      // Flare serves Ember, so Light has Glow.
      {"3 colleges", true},
      {"4 colleges", false},
      {"2 other colleges", true},
      {"3 other spell categories", false},
      {"2 spells from 1 colleges", true},
      {"2 spells from 2 colleges", false},
      {"1 spells from 2 other cats", true},
      {"2 skills from 1 other skill classes", true},
      {"2 skills from 2 other classes", false},
      {"2 classes", true},
  };
  NeedsWorld world;
  for (const auto& each : kCases) EXPECT_EQ(world.Missing(each.needs).empty(), each.met) << each.needs;
  EXPECT_EQ(world.Missing("9 spells"), "9 spells");
}

TEST(Needs, ATraitWithoutItsOwnNeedsCountsForWhomItNames) {
  NeedsWorld world;
  EXPECT_EQ(world.Missing("AD:Pact"), "");
  world.needer.SetTagItem("ident", "Guild");
  EXPECT_EQ(world.Missing("AD:Pact"), "AD:Pact >= 1");
  world.needer.SetTagItem("ident", "no");
  world.character.FindItem("Pact", kAds)->SetTagItem("countasneed", "no");
  EXPECT_EQ(world.Missing("AD:Pact"), "AD:Pact >= 1");
}

TEST(Needs, TaboosFindWhatIsThereUnlessItIsMitigated) {
  NeedsWorld world;
  const auto found = [&](std::string_view taboo) {
    std::string text;
    const bool kept = modNeeds::TabooCheckItems(world.needer, taboo, text);
    EXPECT_EQ(kept, text.empty());
    return text;
  };
  EXPECT_EQ(found("AD:Luck, AD:Nix,, SK:Axe >= 12"), "AD:Luck, SK:Axe >= 12");
  EXPECT_EQ(found("AD:Ward, SP:Beacon"), "");
  EXPECT_EQ(found("AD:Veil"), "AD:Veil");
  EXPECT_EQ(world.Missing("AD:Ward"), "");

  world.needer.SetTagItem("taboo", "AD:Luck, AD:Nix");
  EXPECT_TRUE(world.character.ItemTabooCheck(world.needer, false));
  EXPECT_EQ(world.needer.TabooFailed(), -1);
  EXPECT_EQ(world.needer.TagItem("tabootext"), "AD:Luck");
  EXPECT_FALSE(world.character.ItemTabooCheck(world.needer, false));
  world.needer.SetTagItem("mitigated", "yes");
  EXPECT_TRUE(world.character.ItemTabooCheck(world.needer, false));
  EXPECT_EQ(world.needer.TabooFailed(), 0);
  EXPECT_EQ(world.needer.TagItem("tabootext"), "");

  world.character.AddTaboosFromOwner(world.needer);
  ASSERT_EQ(world.character.Taboos.size(), 2u);
  EXPECT_EQ(world.character.Taboos[1]->TabooItem, "AD:Nix");
  world.character.EnableItemTaboos(world.needer);
  EXPECT_EQ(world.character.Taboos.size(), 2u);
  world.character.DisableItemTaboos(world.needer);
  EXPECT_TRUE(world.character.Taboos.empty());
}

TEST(Needs, BadTextEndsWithAMessage) {
  NeedsWorld world;
  std::string groups = "(AD:A | AD:B)";
  for (int i = 0; i < 30; ++i) groups += ", (AD:A" + std::to_string(i) + " | AD:B)";
  Lists missing;
  EXPECT_FALSE(modNeeds::NeedsCheckORItems(world.needer, groups, missing));
  EXPECT_EQ(missing.size(), 1000u);
  EXPECT_EQ(world.Logged("can be met in too many ways"), 1);
  const std::string deep = std::string(100000, '(') + "AD:Luck";
  EXPECT_FALSE(modNeeds::NeedsCheckORItems(world.needer, deep, missing));
  EXPECT_EQ(world.Logged("nests its groups too deep"), 1);
  EXPECT_EQ(world.Missing(std::string(90, '(') + "AD:Luck" + std::string(90, ')')), "");
  // A formula that fails counts as 0, and the check goes on.
  world.needer.SetTagItem("notes", "words");
  EXPECT_EQ(world.Missing("AD:Luck >= {me::notes}, me::notes"), "me::notes >= 1::points");
}

TEST(Needs, TheCheckOfAllSettlesAndReports) {
  NeedsWorld world;
  world.needer.SetTagItem("needs", "AD:Second");
  clsItem& first = world.Put(kAds, "name(First),level(1),needs(AD:Second | SK:Axe >= 20pts)");
  clsItem& second = world.Put(kAds, "name(Second),level(1),needs(AD:Third),taboo(AD:Luck)");
  clsItem& swings = world.Put(kPerks, "name(Swings),level(1),needs(me::needscheck)");
  swings.SetNeedsCheck(-1);
  world.character.FindItem("Pact", kAds)->SetNeedsCheck(0);
  world.character.Dirty = false;
  const Lists lines = world.character.NeedsCheckAll(true);
  EXPECT_EQ(world.Logged("The needs check did not settle; it was ended."), 1);  // Swings never does
  EXPECT_EQ(first.NeedsCheck(), -1);
  EXPECT_EQ(second.NeedsCheck(), -1);
  const auto holds = [&](std::string_view line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  };
  EXPECT_TRUE(holds("AD:First "));
  EXPECT_TRUE(holds("still needs:AD:Second >= 1"));
  EXPECT_TRUE(holds("\tSK:Axe >= 20pts"));
  EXPECT_TRUE(holds("Second taboo exists: AD:Luck"));
  EXPECT_EQ(world.Logged("Needs Check: \tSK:Axe >= 20pts"), 1);
  // A third trait clears the chain.
  world.Put(kAds, "name(Third),level(1)");
  world.character.NeedsCheckSelected({second.KeyText(), first.KeyText(), world.needer.KeyText(), "k999"},
                                     true);
  EXPECT_EQ(first.NeedsCheck(), 0);
  EXPECT_EQ(second.NeedsCheck(), 0);
  EXPECT_EQ(world.Logged("First: needs check is 0"), 1);
  EXPECT_EQ(world.Logged("did not settle"), 1);
  EXPECT_EQ(world.Logged("0 items failed to meet needs"), 1);
  // A change of taboos alone is a change of the character.
  second.SetTagItem("taboo", "AD:Luck, AD:Third");
  for (const bool changes : {true, false}) {
    world.character.Dirty = false;
    world.character.NeedsCheckSelected({second.KeyText()}, true);
    EXPECT_EQ(world.character.Dirty, changes);
  }
}

// --- What is missing is added

constexpr std::string_view kLibrary =
    "[ADS]\r\nHeir, 10, needs(AD:Estate)\r\nEstate, 5, needs(AD:Seal | AD:Ring)\r\nSeal, 1\r\nRing, 2\r\n"
    "Guild, 3, needs(AD:Banner)\r\nBanner (Red), 1\r\nBanner (Blue), 1\r\n"
    "Egg, 1, needs(AD:Hen)\r\nHen, 1, needs(AD:Egg)\r\nLost, 1, needs(AD:Nowhere)\r\n"
    "Oath, 1, taboo(AD:Ring)\r\nStrong Arm, 5/10/15\r\n"
    "Giant Grip, 5, needs(AD:Strong Arm >= 2)\r\n"
    "Champion, 5, needs(AD:Strong Arm >= 3, (AD:Seal | AD:Ring), 2 quirks)\r\n"
    "Blade (Long), 1, needs(AD:Blade)\r\nBlade (Short), 1\r\n"
    "Ward #2, 1\r\n50% Off %, 1\r\nNumbered, 1, needs(AD:Ward #2, AD:50% Off %)\r\n"
    "Listed, 1, needs(AD:#choice(x), AD:%a% Ward #2)\r\n"
    "Own, 5, needs(AD:%choice1%)\r\nText, 1, needs($if(1 = 1 THEN \"\" ELSE \"AD:Nowhere\"))\r\n";

TEST(Needs, AddsWhatIsMissing) {
  CharacterWorld world(kLibrary);
  world.Answer("2");
  world.Add("Heir", kAds);
  EXPECT_EQ(world.Names(), (Lists{"Estate", "Heir", "Ring"}));
  EXPECT_EQ(world.character.FindItem("Heir", kAds)->NeedsCheck(), 0);
  world.Answer("Banner (Red)");
  world.Add("Guild", kAds);
  EXPECT_TRUE(world.character.FindItem("Banner (Red)", kAds));
  // The needer is not what it needs itself.
  world.Answer("Blade (Short)");
  world.Add("Blade (Long)", kAds);
  EXPECT_TRUE(world.character.FindItem("Blade (Short)", kAds));
  EXPECT_EQ(world.character.FindItem("Blade (Long)", kAds)->NeedsCheck(), 0);
  world.Add("Lost", kAds);
  EXPECT_NE(world.Log().find("Lost: I couldn't find: Nowhere. You'll have to add it manually."), npos);
  EXPECT_EQ(world.character.FindItem("Lost", kAds)->NeedsCheck(), -1);
  // Two that need each other come together, and both wait for the other.
  world.Add("Egg", kAds);
  EXPECT_EQ(world.character.FindItem("Egg", kAds)->NeedsCheck(), -1);
  EXPECT_EQ(world.character.FindItem("Hen", kAds)->NeedsCheck(), -1);
  world.Add("Text", kAds);
  EXPECT_EQ(world.character.FindItem("Text", kAds)->NeedsCheck(), 0);
}

TEST(Needs, RaisesWhatStandsTooLow) {
  CharacterWorld world(kLibrary);
  clsItem& arm = world.Added("Strong Arm", kAds);
  static constexpr struct {
    const char* text;
    int level;
  } kSteps[] = {{"AD:Strong Arm > 1", 2},           {"AD:Strong Arm >= 3::level", 3},
                {"AD:Strong Arm >= 1", 3},          {"AD:Strong Arm = 2", 2},
                {"Strong Arm <= 1, Strong Arm", 2}, {"AD:{Strong Arm} >= 15::points", 3}};
  for (const auto& step : kSteps) {
    world.character.AddSpecifiedItems("Grip", step.text);
    EXPECT_EQ(arm.Level(), step.level) << step.text;
  }
  arm.SetTagItem("locked", "yes");
  arm.SetTagItem("keep", std::to_string(world.Added("Ring", kAds).IDKey));
  world.character.AddSpecifiedItems("Grip", "AD:Strong Arm = 1, GR:Arms");
  EXPECT_EQ(arm.Level(), 3);
  EXPECT_NE(world.Log().find(
                "Item 'Strong Arm' is a component of item 'Ring', and can't be auto-adjusted by Needs."),
            npos);
  EXPECT_NE(world.Log().find("Grip: I couldn't find: GR:Arms."), npos);
}

TEST(Needs, ACancelledChoiceAddsNothing) {
  CharacterWorld world(kLibrary);
  world.Answer("cancel");
  world.Add("Estate", kAds);
  EXPECT_EQ(world.Names(), (Lists{"Estate"}));
  EXPECT_EQ(world.character.FindItem("Estate", kAds)->NeedsCheck(), -1);
  world.env.Config.AutoAddNeeds = 0;
  world.Add("Heir", kAds);
  EXPECT_NE(world.Log().find("Heir still needs: AD:Estate >= 1"), npos);
  // Adding it calculates the one that needs it.
  world.Add("Ring", kAds);
  EXPECT_EQ(world.character.FindItem("Estate", kAds)->NeedsCheck(), 0);
}

TEST(Needs, SaysWhyALibraryTraitCannotBeTaken) {
  CharacterWorld world(kLibrary);
  world.env.Config.AutoAddNeeds = 0;
  const auto why = [&](std::string_view name) {
    const clsSystemItem& record = *world.system.FindItem(name, kAds);
    const Lists reasons = modNeeds::WhyNot(world.character, record);
    EXPECT_EQ(modNeeds::MayBeTaken(world.character, record), reasons.empty()) << name;
    return reasons;
  };
  EXPECT_EQ(why("Giant Grip"), (Lists{"needs Strong Arm level 2; you don't have it"}));
  world.Add("Strong Arm", kAds);
  EXPECT_EQ(why("Giant Grip"), (Lists{"needs Strong Arm level 2; you have level 1"}));
  EXPECT_EQ(why("Champion"), (Lists{"needs Strong Arm level 3; you have level 1",
                                    "needs Seal (you don't have it) or Ring (you don't have it)",
                                    "needs 2 quirks; you have 0"}));
  EXPECT_EQ(why("Own"), Lists{});
  EXPECT_EQ(why("Listed"), Lists{});
  EXPECT_EQ(why("Numbered"),
            (Lists{"needs Ward #2; you don't have it", "needs 50% Off %; you don't have it"}));
  EXPECT_EQ(why("Oath"), Lists{});
  world.Add("Ring", kAds);
  EXPECT_EQ(why("Oath"), (Lists{"can't go together with Ring"}));
  world.Add("Oath", kAds);
  EXPECT_EQ(world.character.FindItem("Oath", kAds)->TabooFailed(), -1);
  EXPECT_EQ(why("Ring"), (Lists{"can't go together with Oath, which rules it out"}));
}

TEST(Needs, SaysWhichTabooALibraryTraitWouldBreak) {
  CharacterWorld world(
      "[ADS]\r\nVow, 1\r\nRage, 5/10, cat(Heat)\r\nCalm, 5, cat(Cold)\r\nKept, 5, mitigated(yes), "
      "cat(Heat)\r\n"
      "Warm, 5, cat(Heat)\r\nLamp, 3, mitigated(gives)\r\n[SKILLS]\r\nRage, DX/A\r\n");
  auto member = std::make_unique<clsRefItem>();
  *member = {"Moods", "Calm", "", kAds};
  const std::string memberKey = clsSortedRefCollection::GroupKeyOf(*member);
  world.character.Groups.Add(std::move(member), memberKey);
  world.Add("Warm", kAds);
  clsItem& vow = world.Added("Vow", kAds);
  static constexpr struct {
    const char *taboo, *name;
    bool allowed;
  } kCases[] = {
      {"AD:Rage >= 1", "Rage", false},  {"AD:Rage >= 2", "Rage", true},
      {"AD:Rage < 2", "Rage", false},   {"AD:Rage >= 5::points", "Rage", false},
      {"AD:Rage > 5pts", "Rage", true}, {"SK:Rage >= 1", "Rage", true},
      {"AD:Kept", "Kept", true},        {"AD:Lamp", "Lamp", false},
      {"2 ADCAT:Heat", "Rage", false},  {"3 ADCAT:Heat", "Rage", true},
      {"2 ADCAT:Heat", "Calm", true},   {"2 ADCAT:Heat", "Kept", true},
      {"1 ADCAT:Heat", "Calm", true},   {"2 ADCAT:Heat >= 2", "Rage", true},
      {"GR:Moods", "Calm", false},      {"2 GR:Moods", "Calm", true},
      {"GR:Moods", "Lamp", true},       {"1 perks", "Calm", true},
  };
  for (const auto& each : kCases) {
    vow.SetTagItem("taboo", each.taboo);
    world.character.EnableItemTaboos(vow);
    const clsSystemItem& record = *world.system.FindItem(each.name, kAds);
    EXPECT_EQ(modNeeds::MayBeTaken(world.character, record), each.allowed) << each.taboo << ", " << each.name;
  }
}

}  // namespace
}  // namespace kvr
