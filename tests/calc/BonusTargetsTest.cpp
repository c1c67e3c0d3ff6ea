#include "calc/BonusTargets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "character/RecordWorld.h"

namespace kvr {
namespace {

TEST(BonusTargets, WhichTraitsATargetNames) {
  struct Case {
    const char* target;
    ItemType type;
    const char* tags;
    bool named;
  };
  const Case cases[] = {
      {"SK:Guns", kSkills, "name(Guns),nameext(Rifle)", true},
      {"SK:Guns", kSkills, "name(Guns)", true},
      {"SK:Guns", kSpells, "name(Guns)", false},
      {"SK:Guns (Rifle)", kSkills, "name(Guns),nameext(RIFLE)", true},
      {"SK:Guns (Rifle)", kSkills, "name(Guns),nameext(Pistol)", false},
      {"SK:Guns (Rifle)", kSkills, "name(Guns)", false},
      {"SK:{Guns (Rifle)}", kSkills, "name(Guns),nameext(Rifle)", true},
      {"SK:{Guns (Rifle)}", kSkills, "name(Guns),nameext(Pistol)", false},
      {"SK:(Odd)", kSkills, "name((Odd))", true},
      {"Strength", kStats, "name(Strength)", true},
      {"str", kStats, "name(Strength),symbol(STR)", true},
      {"ST:str", kStats, "name(Strength),symbol(STR)", true},
      {"ST:str (Left)", kStats, "name(Strength),symbol(STR)", false},
      {"Luck", kAds, "name(Luck)", false},
      {"AD:lu", kAds, "name(Luck),symbol(LU)", false},
      {"owner", kStats, "name(owner)", false},
      {"{AD:Luck, PE:Charm (Lucky)}", kAds, "name(Luck)", true},
      {"{AD:Luck, PE:Charm (Lucky)}", kPerks, "name(Charm),nameext(Lucky)", true},
      {"{AD:Luck, PE:Charm (Lucky)}", kPerks, "name(Charm),nameext(Sad)", false},
      {"\"AD:Luck, {AD:Fate, or Doom}\"", kAds, "name(Fate, or Doom)", true},
      {"SK:{Bow, Sling}", kSkills, "name(Sling)", true},
      {"{ , }", kStats, "name()", false},
      {"ADCAT:Mind", kAds, "name(A),cat(Body, mind)", true},
      {"CA:Mind", kAds, "name(A),cat(Mindful)", false},
      {"CA:Mind (Deep)", kAds, "name(A),cat(Mind (Deep))", true},
      {"CA:", kAds, "name(A)", false},
      {"CA:Mind", kDisads, "name(A),cat(Mind)", false},
      {"DISADCAT:Mind", kDisads, "name(A),cat(Mind)", true},
      {"PoCat:Mind", kPerks, "name(A),cat(Mind)", true},
      {"EQUIPCAT:Mind", kEquipment, "name(A),cat(Mind)", true},
      {"CL:Mind", kSkills, "name(A),cat(Mind)", true},
      {"CO:Mind", kSpells, "name(A),cat(Mind)", true},
      {"CO:Mind", kSpells, "name(A),cat()", false},
      {"GR:", kAds, "name(A)", false},
      {"GR:Order", kSpells, "name(A),group(order)", true},
      {"GR:Order", kAds, "name(Sworn),nameext(Long)", true},
      {"GR:Order", kDisads, "name(Sworn)", false},
      {"GR:Order", kAds, "name(Oath),nameext(Grey)", true},
      {"GR:Order", kAds, "name(Oath),nameext(Green)", false},
      {"skills", kSkills, "name(A),type(IQ/H)", true},
      {"skills", kSpells, "name(A),type(IQ/H)", false},
      {"spellpoints", kSpells, "name(A)", true},
      {"mentalskillpoints", kSkills, "name(A),type(M/H)", true},
      {"mentalskillpoints", kSkills, "name(A),type(IQ/H)", false},
      {"physicalspellpoints", kSpells, "name(A),type(p/a)", true},
      {"dxskills", kSkills, "name(A),type(DX/E)", true},
      {"dxskills", kSkills, "name(A),type(DXX/E)", false},
      {"stspellpoints", kSpells, "name(A),type(ST/E)", true},
      {"htskillpoints", kSkills, "name(A),type(HT/E)", true},
      {"iqspells", kSpells, "name(A),type(IQ/E)", true},
      {"BYTAG:Skills where cat is Lore", kSkills, "name(A),cat(LORE)", true},
      {"BYTAG:Skills where cat is Lore", kSkills, "name(A),cat(Lore, Art)", false},
      {"BYTAG:sk: where cat isnot Lore", kSkills, "name(A),cat(Lore, Art)", true},
      {"BYTAG:skills where cat isnot Lore", kSpells, "name(A),cat(Art)", false},
      {"BYTAG: where cat includes or", kPerks, "name(A),cat(Lore)", true},
      {"BYTAG:all where cat excludes or", kPerks, "name(A),cat(Lore)", false},
      {"BYTAG:templates where cat listincludes Old Art", kPackages, "name(A),cat(Lore, Old Art)", true},
      {"BYTAG:equip where cat listexcludes Art", kEquipment, "name(A),cat(Lore, Old Art)", true},
      {"BYTAG:attributes where name Strength", kStats, "name(Strength)", true},
      {"BYTAG:quirks where cat is", kQuirks, "name(A)", true},
  };
  RecordWorld world;
  auto group = [&](const char* name, const char* ext, ItemType type) {
    auto member = std::make_unique<clsRefItem>();
    member->Group = "Order";
    member->Name = name;
    member->NameExt = ext;
    member->ItemType = type;
    const std::string key = clsSortedRefCollection::GroupKeyOf(*member);
    world.character.Groups.Add(std::move(member), key);
  };
  group("Sworn", "", kAds);
  group("Oath", "Grey", kNoType);
  clsItem& giver = world.Put(kAds, "name(Giver),level(1)");
  for (const Case& c : cases) {
    clsItem& item = world.Put(c.type, c.tags);
    clsBonus record;
    record.Owner = &giver;
    ASSERT_TRUE(record.CreateBonusFromText("+1 to " + std::string(c.target)));
    EXPECT_EQ(item.UnmarkedBonusAppliesByRef(record), c.named) << c.target << " for " << c.tags;
    EXPECT_EQ(item.ConditionalAppliesByRef(record), c.named) << c.target << " for " << c.tags;
    world.character.ItemsByType[static_cast<std::size_t>(c.type)].Remove(item.KeyText());
    world.character.Items.Remove(item.KeyText());
  }
}

TEST(BonusTargets, AnImproperQuestionReachesNobodyAndIsLogged) {
  for (const char* text : {"bytag:skills", "bytag:skills where", "bytag:skills where cat",
                           "bytag:heroes where cat is a", "bytag:skills where cat includes"}) {
    RecordWorld world;
    clsItem& giver = world.Put(kAds, "name(Giver),gives(+1 to " + std::string(text) + ")");
    world.Put(kSkills, "name(A),cat(a)");
    world.character.AddBonusesFromOwner(giver);
    ASSERT_EQ(world.character.Bonuses.size(), 1u);
    EXPECT_TRUE(world.character.Bonuses[0]->Targets.empty()) << text;
    EXPECT_EQ(world.Logged("Giver: This bonus was improperly defined, and could not be used: +1 to "), 1)
        << text;
    EXPECT_EQ(world.Logged("<Bonus> to BYTAG:<Type> where <tag>"), 1) << text;
  }
}

TEST(BonusTargets, ATraitsOwnBonusReachesItOnlyAsMe) {
  RecordWorld world;
  clsItem& parent = world.Put(kAds, "name(Parent)");
  clsItem& item = world.Put(kAds, "name(Wings)");
  item.SetParentKey(parent.KeyText());
  clsMod& mod = world.PutMod(item, "name(Mod)");
  clsMod& inner = world.PutMod(mod, "name(Inner)");
  struct Case {
    const char* target;
    CalcItem* owner;
    bool item, parent;
  };
  const Case cases[] = {{"AD:Wings", &item, false, false},           {"AD:Wings", &mod, false, false},
                        {"AD:Wings", &parent, true, false},          {"me", &item, true, false},
                        {"me::cost", &inner, true, false},           {"owner", &item, false, true},
                        {"owner::cost", &mod, true, false},          {"owner", &inner, false, false},
                        {"{AD:Wings, AD:Parent}", &mod, false, true}};
  for (const Case& c : cases) {
    clsBonus record;
    record.Owner = c.owner;
    ASSERT_TRUE(record.CreateBonusFromText("+1 to " + std::string(c.target)));
    EXPECT_EQ(item.BonusAppliesByRef(record), c.item) << c.target << " by " << c.owner->NameForMessages();
    EXPECT_EQ(parent.BonusAppliesByRef(record), c.parent) << c.target << " by " << c.owner->NameForMessages();
  }
}

// Whatever a target says, the finder must pass nothing over.
TEST(BonusTargets, LinksOfAllOfOneRecordAndOfOneTraitAgreeWithTheTest) {
  const char* targets[] = {"AD:Luck",
                           "SK:Luck (b)",
                           "lk",
                           "ST:LK",
                           "ST:Fate",
                           "skills",
                           "{AD:Luck, skills, ST:lk}",
                           "CA:x",
                           "GR:x",
                           "BYTAG:all where cat is x",
                           "me",
                           "owner",
                           "SK:{Fate, Luck (a)}",
                           "Fate::parry",
                           "dxskills"};
  const char* names[] = {"Luck", "Fate", "lk", "Skills"};
  const char* tails[] = {"",        ",nameext(a)", ",nameext(b)", ",symbol(LK)",
                         ",cat(x)", ",group(x)",   ",type(DX/E)"};
  for (unsigned seed = 1; seed <= 10; ++seed) {
    RecordWorld world;
    KVRCharacter& c = world.character;
    std::mt19937 random(seed);
    for (int i = 0; i < 40; ++i) {
      clsItem& item =
          world.Put(static_cast<ItemType>(1 + random() % 9),
                    "name(" + std::string(names[random() % 4]) + ")" + tails[random() % 7] + ",gives(+1 to " +
                        targets[random() % 15] + "),conditional(+1 to " + targets[random() % 15] + ")");
      if (random() % 4 == 0)
        world.PutMod(item, "name(m),gives(+1 to " + std::string(targets[random() % 15]) + ")");
      if (i > 5 && random() % 3 == 0) item.SetParentKey(c.Items.Item(1 + random() % 5).KeyText());
    }
    for (clsItem& item : c.Items) c.EnableItemBonuses(item);
    std::size_t links = 0;
    auto check = [&](const char* how) {
      for (clsItem& item : c.Items) {
        std::vector<clsBonus*> bonuses, conditionals;
        for (auto& record : c.Bonuses)
          if (item.BonusAppliesByRef(*record)) bonuses.push_back(record.get());
        for (auto& record : c.Conditionals)
          if (item.BonusAppliesByRef(*record)) conditionals.push_back(record.get());
        ASSERT_EQ(item.AppliedBonuses, bonuses) << how << ", seed " << seed;
        ASSERT_EQ(item.AppliedConditionals, conditionals) << how << ", seed " << seed;
        ASSERT_EQ(item.GetBonusAffectsFlag("parry"),
                  std::ranges::any_of(bonuses, [](clsBonus* b) { return b->TargetTag == "parry"; }) ||
                      std::ranges::any_of(conditionals, [](clsBonus* b) { return b->TargetTag == "parry"; }));
        for (clsBonus* bonus : bonuses) ASSERT_EQ(std::ranges::count(bonus->Targets, item.IDKey), 1);
        links += bonuses.size();
      }
    };
    check("record by record");
    ASSERT_GT(links, 30u);
    c.CreateAllAffectsLinks();
    check("all at once");
    for (clsItem& item : c.Items) c.CreateAffectsLinks(item);
    check("trait by trait");
    for (auto& record : c.Bonuses) c.CreateBonusAffectsLinks(*record);
    check("again record by record");
    for (clsItem& item : c.Items)
      if (item.IDKey % 2 == 0) c.DisableItemBonuses(item);
    check("after half were dropped");
  }
}

}  // namespace
}  // namespace kvr
