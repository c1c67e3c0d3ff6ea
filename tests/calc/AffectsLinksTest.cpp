#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "calc/TextAutomaton.h"
#include "calc/TraitNames.h"
#include "character/RecordWorld.h"

namespace kvr {
namespace {

TEST(TextAutomaton, FindsEveryMatchThatAPlainSearchFinds) {
  std::mt19937 random(7);
  auto word = [&](std::size_t longest) {
    std::string text(1 + random() % longest, 'a');
    for (char& c : text) c = static_cast<char>('a' + random() % 3);
    return text;
  };
  for (int round = 0; round < 200; ++round) {
    std::set<std::string> words;
    for (int i = 0; i < 12; ++i) words.insert(word(5));
    std::vector<std::string_view> patterns(words.begin(), words.end());
    std::string text = word(60);
    std::set<std::pair<std::uint32_t, std::size_t>> found, expected;
    TextAutomaton(patterns).Search(text, [&](std::uint32_t p, std::size_t end) { found.emplace(p, end); });
    for (std::uint32_t p = 0; p < patterns.size(); ++p) {
      for (std::size_t at = text.find(patterns[p]); at != npos; at = text.find(patterns[p], at + 1)) {
        expected.emplace(p, at + patterns[p].size());
      }
    }
    ASSERT_EQ(found, expected) << text;
  }
  TextAutomaton({}).Search("abc", [](std::uint32_t, std::size_t) { FAIL(); });
}

TEST(AffectsLinks, WhichTextsReferToATrait) {
  struct Case {
    const char* trait;
    ItemType type;
    const char* text;
    bool linked;
  };
  const Case cases[] = {
      {"name(Strength),symbol(ST)", kStats, "formula(ST:ST * 2)", true},
      {"name(Strength),symbol(ST)", kStats, "formula(@max(st,3))", true},
      {"name(Strength),symbol(ST)", kStats, "formula(st::level)", true},
      {"name(Strength),symbol(ST)", kStats, "notes2(strength)", true},
      {"name(ST)", kStats, "cat(Fighting ST)", false},
      {"name(ST)", kStats, "cat(Arm ST, TK ST, Striking ST)", false},
      {"name(ST)", kStats, "cat(Striking ST),minst(ST+1)", true},
      {"name(ST)", kStats, "cost(5),formula(ST:DX)", false},
      {"name(Health),symbol(HT)", kStats, "weight(5),formula(10)", false},
      {"name(Health),symbol(HT)", kStats, "needs(ST:HT 12)", true},
      {"name(ST),nameext(Left)", kStats, "formula(ST:Striking ST (Left))", true},
      {"name(Agility),symbol(AG)", kStats, "formula(AG/4)", true},
      {"name(Agility),symbol(AG)", kAds, "formula(AG/4)", true},
      {"name(Damage Base)", kStats, "damage(2d)", true},
      {"name(Damage Base)", kAds, "damage(2d)", false},
      {"name(Sword),nameext(Broad)", kSkills, "default(SK:Sword (Thin) - 2)", true},
      {"name(Luck)", kAds, "cat(Plucky)", true},
      {"name(Luck)", kAds, "cat(Fate)", false},
      {"nameext(only)", kAds, "cat(Fate)", false},
  };
  for (const Case& c : cases) {
    RecordWorld world;
    clsItem& item = world.Put(c.type, c.trait);
    clsItem& that = world.Put(kAds, "name(Zed)," + std::string(c.text));
    bool expected = c.linked && !(c.type == kAds && std::string_view(c.trait).find("symbol") != npos);
    EXPECT_EQ(world.character.ThisItemAffectsThatItem(item, that), expected) << c.trait << " in " << c.text;
  }
}

TEST(AffectsLinks, SkillsAreReachedByTheirType) {
  RecordWorld world;
  for (auto [name, stat] : {std::pair("M/H", "ST:IQ"), std::pair("P/E", "ST:Agility")}) {
    world.character.SkillTypes.push_back(std::make_unique<clsSkillCosts>());
    world.character.SkillTypes.back()->Name = name;
    world.character.SkillTypes.back()->DefaultStat = stat;
  }
  clsItem& wit = world.Put(kStats, "name(Wit),symbol(IQ)");
  clsItem& agility = world.Put(kStats, "name(Agility),symbol(AG)");
  clsItem& riddles = world.Put(kSkills, "name(Riddles)");
  clsItem& juggling = world.Put(kSkills, "name(Juggling),type(p/e)");
  world.character.CreateAllAffectsLinks();
  EXPECT_EQ(wit.AffectedItems, std::vector{riddles.IDKey});
  EXPECT_EQ(agility.AffectedItems, std::vector{juggling.IDKey});
}

// A character whose names share beginnings, stand inside each other and come twice.
void FillWithLinkedTraits(RecordWorld& world, unsigned seed, int count) {
  const char* names[] = {"Gift", "Gifted", "Gift of Sight", "Aim", "Aim High", "ST", "HT", "Arm ST", "Keen"};
  const char* marks[] = {"ST:", "{AD:", " ", "@max(", "::level ", "char::", "damage(", "}", "st"};
  std::mt19937 random(seed);
  for (int i = 0; i < count; ++i) {
    std::string tags = "name(" + std::string(names[random() % 9]) + ")";
    if (random() % 3 == 0) tags += ",nameext(" + std::to_string(random() % 3) + ")";
    if (random() % 3 == 0) tags += ",symbol(" + std::string(random() % 2 ? "st" : "Ai") + ")";
    auto words = [&] {
      std::string text;
      for (auto n = random() % 5; n > 0; --n) text += std::string(marks[random() % 9]) + names[random() % 9];
      std::replace(text.begin(), text.end(), '(', '[');
      return text;
    };
    clsItem& item =
        world.Put(static_cast<ItemType>(1 + random() % 8), tags + ",formula(" + words() + "),cost(1)");
    if (random() % 4 == 0) {
      clsMod& mod = world.PutMod(item, "name(Mod),cost(" + words() + ")");
      world.PutMod(mod, "name(Inner),formula(" + words() + ")");
    }
  }
}

TEST(AffectsLinks, AllAtOnceOneByOneAndPairByPairAgree) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    RecordWorld world;
    FillWithLinkedTraits(world, seed, 40);
    KVRCharacter& c = world.character;
    c.CreateAllAffectsLinks();
    std::vector<std::vector<std::int32_t>> allAtOnce;
    std::size_t links = 0;
    for (clsItem& item : c.Items) {
      std::vector<std::int32_t> pairByPair;
      for (clsItem& that : c.Items) {
        if (&that != &item && c.ThisItemAffectsThatItem(item, that)) pairByPair.push_back(that.IDKey);
      }
      ASSERT_EQ(item.AffectedItems, pairByPair) << "seed " << seed << ", " << item.FullName();
      allAtOnce.push_back(item.AffectedItems);
      links += pairByPair.size();
    }
    ASSERT_GT(links, 20u);
    for (clsItem& item : c.Items) c.CreateAffectsLinks(item);
    std::size_t i = 0;
    for (clsItem& item : c.Items) {
      ASSERT_TRUE(std::ranges::is_permutation(item.AffectedItems, allAtOnce[i++])) << "seed " << seed;
    }
    for (clsItem& item : c.Items) c.ClearAffectsLinks(item);
    for (clsItem& item : c.Items) ASSERT_TRUE(item.AffectedItems.empty());
  }
}

}  // namespace
}  // namespace kvr
