// The road of a trait from a data file onto a character.
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kRules =
    "[ATTRIBUTES]\r\n"
    "Vigour, symbol(VG), basevalue(10), step(1), up(10), down(-10)\r\n"
    "Tech Level, symbol(TL), basevalue(3), step(1)\r\n"
    "[SKILLTYPES]\r\n"
    "VG/E, costs(1/2/4), baseadj(0), adds(0/1/2), defaultstat(ST:VG)\r\n"
    "Tec/A, costs(2/3), baseadj(-1), defaultstat(%default)\r\n"
    "[MODIFIERS]\r\n"
    "<Reach>\r\n"
    "Longer, +20%, tl(2-9), levelnames(a, b)\r\n"
    "Guarded, -10%, initmods({Inner, +5%, group(Deep)} | {Other, -5%}), level(3)\r\n"
    "[ADS]\r\n"
    "<Gifts>\r\n"
    "Keen Nose, 5/10/15, tl(3-5), page(12), x(y), cat(Senses, Gifts)\r\n"
    "Old Blood, 5/10/15/20, init(1+ST:VG/4), initmods({Cold, -20%, group(Heat)}|\"Plain, +10%\")\r\n"
    "Broken, 5, init(AD:Old Blood::page + 1), page(none)\r\n"
    "[SKILLS]\r\n"
    "Rowing, VG/E\r\n"
    "Feint, Tec/A\r\n"
    "Riddles, Odd/A\r\n"
    "[SPELLS]\r\n"
    "Spark, type(VG/E)\r\n"
    "[EQUIPMENT]\r\n"
    "Arrow, basecost(2), baseweight(0.1), baseqty(4*5)\r\n"
    "Rope, basecost(5), baseweight(3)\r\n"
    "[TEMPLATES]\r\n"
    "Wanderer, 0\r\n";

TEST(CreateNewItem, GivesEachTypeItsStartValues) {
  struct {
    const char* name;
    ItemType type;
    const char* tag;
    const char* value;
  } const cases[] = {
      {"Vigour", kStats, "score", "10"},         {"Keen Nose", kAds, "baselevel", "1"},
      {"Old Blood", kAds, "baselevel", "4"},  // 1 + 10/4, half to even
      {"Rowing", kSkills, "basepoints", "1"},    {"Feint", kSkills, "basepoints", "0"},
      {"Riddles", kSkills, "basepoints", "0"},   {"Spark", kSpells, "basepoints", "1"},
      {"Arrow", kEquipment, "count", "20"},      {"Rope", kEquipment, "count", "1"},
      {"Wanderer", kPackages, "baselevel", "1"},
  };
  CharacterWorld world(kRules);
  world.character.InitStartupValues();
  for (const auto& each : cases) {
    clsItem& item = world.Added(each.name, each.type);
    EXPECT_EQ(item.TagItem(each.tag), each.value) << each.name;
    EXPECT_EQ(item.Flag & clsItem::kNewlyAdded, each.type == kStats ? 0 : clsItem::kNewlyAdded) << each.name;
  }
}

TEST(CreateNewItem, TextBehindAParenthesisSwallowsNoOtherTag) {
  CharacterWorld world(
      "[ADS]\r\nTorn Sleeve, 5, page(3) or so, cost(7)\r\n\"Quoted Sleeve\", 5, \"tier(2), page(4)\", "
      "tone(low)\r\n");
  clsItem& torn = world.Added("Torn Sleeve", kAds);
  EXPECT_EQ(torn.FullName(), "Torn Sleeve");
  EXPECT_EQ(torn.TagItem("page"), "3] or s");
  clsItem& quoted = world.Added("Quoted Sleeve", kAds);
  EXPECT_EQ(quoted.FullName(), "Quoted Sleeve");
  EXPECT_EQ(quoted.TagItem("tone"), "low");
}

TEST(CreateNewItem, KeysInItsDataMakeNoFamily) {
  CharacterWorld world(kRules);
  clsItem& first = world.Added("Keen Nose", kAds);
  const std::int32_t id =
      world.character.CreateNewItem(kAds, "name(Odd),parentkey(k1),childkeylist(k1)", "", "", 0, 0, 0);
  EXPECT_EQ(world.Tag(id, "parentkey") + world.Tag(id, "childkeylist"), "");
  EXPECT_EQ(first.ParentKey(), "");
}

TEST(CreateNewItem, SkillsBeginWithoutPointsWhereTheUserSaysSo) {
  CharacterWorld world(kRules);
  world.character.InitStartupValues();
  world.env.Config.AddSkillsAtMinCost = 0;
  EXPECT_EQ(world.Added("Rowing", kSkills).TagItem("basepoints"), "0");
  EXPECT_EQ(world.Added("Spark", kSpells).TagItem("basepoints"), "1");
}

TEST(CreateNewItem, RefusesASecondOneUnlessToldOtherwise) {
  CharacterWorld world(kRules);
  const std::int32_t first = world.Add("Keen Nose", kAds);
  EXPECT_EQ(world.Add("Keen Nose", kAds), first);
  EXPECT_EQ(world.character.Count(kAds), 1);
  const std::int32_t second = world.Add("Keen Nose", kAds, -1);
  EXPECT_GT(second, first);
  EXPECT_EQ(world.character.Count(kAds), 2);
  world.env.Config.RefuseDupes[kAds] = 0;
  EXPECT_GT(world.Add("Keen Nose", kAds), second);
  // Of several, the search finds the one in the lowest place.
  const std::size_t position = world.character.ItemPositionByNameAndExt("keen nose", kAds);
  EXPECT_EQ(position, 1u);
}

TEST(CreateNewItem, BringsATechLevelDownToOne) {
  CharacterWorld world(kRules);
  struct {
    const char* range;
    std::int16_t tl;
    const char* result;
  } const cases[] = {{"3-5", 4, "4"}, {"3-5", 2, "3"}, {"3-5", 9, "5"},    {"5-", 9, "5"},
                     {"3+", 9, "3+"}, {"7", 2, "7"},   {" 3 - 5 ", 5, "5"}};
  for (const auto& each : cases) {
    world.character.TL = each.tl;
    const std::int32_t id = world.character.CreateNewItem(
        kAds, std::string("name(Lens),tl(") + each.range + ")", "", "", 0, 0, -1);
    EXPECT_EQ(world.Tag(id, "tl"), each.result) << each.range << " at " << each.tl;
  }
  world.character.TL = 4;
  clsItem& item = world.Added("Keen Nose", kAds);
  ASSERT_TRUE(
      world.character.AddModFromSystem(world.system.FindMod("Longer", "Reach")->SysCollectionKey(), item));
  EXPECT_EQ(item.Mods.Item(1).TagItem("tl"), "4");
}

TEST(CreateNewItem, MakesInitialModifiersAndForgetsTheTagsOfCreation) {
  CharacterWorld world(kRules);
  world.character.InitStartupValues();
  clsItem& item = world.Added("Old Blood", kAds);
  ASSERT_EQ(item.Mods.Count(), 2u);
  EXPECT_EQ(item.Mods.Item(1).FullName(), "Cold");
  EXPECT_EQ(item.Mods.Item(1).Group(), "Heat");
  EXPECT_EQ(item.Mods.Item(2).FullName(), "Plain");
  EXPECT_EQ(item.Mods.Item(2).Group(), "Initial");
  EXPECT_EQ(item.Mods.Item(2).TagItem("cost"), "+10%");
  for (const char* tag : {"x", "init", "initmods"}) {
    EXPECT_EQ(item.TagItem(tag), "") << tag;
    EXPECT_EQ(world.Added("Keen Nose", kAds, -1).TagItem(tag), "") << tag;
  }
  const std::int32_t bare = world.character.AddItemFromSystem("2Old Blood", "", -1, 0, -1);
  EXPECT_EQ(world.character.ItemByKey(bare)->Mods.Count(), 0u);
}

TEST(CreateNewItem, PutsModifiersOnModifiers) {
  CharacterWorld world(kRules);
  clsItem& item = world.Added("Keen Nose", kAds);
  const std::string key = world.system.FindMod("Guarded", "Reach")->SysCollectionKey();
  const std::int32_t id = world.character.AddModFromSystem(key, item);
  auto* mod = dynamic_cast<clsMod*>(world.character.GetObjectFromIDKey(id));
  ASSERT_TRUE(mod);
  EXPECT_EQ(mod->Group(), "Reach");
  EXPECT_EQ(mod->TagItem("level"), "3");
  EXPECT_EQ(mod->TagItem("initmods"), "");
  ASSERT_EQ(mod->Mods.Count(), 2u);
  EXPECT_EQ(mod->Mods.Item(1).Group(), "Deep");
  EXPECT_EQ(mod->Mods.Item(2).Group(), "Initial");
  EXPECT_EQ(mod->Mods.Item(2).TagItem("level"), "1");
  EXPECT_EQ(mod->Mods.Item(2).RootOwnerItem(), &item);

  // However deep they are written, they end somewhere.
  std::string deep = "End, +1%";
  for (int i = 0; i < 300; ++i) deep = "M, +1%, initmods({" + deep + "})";
  EXPECT_TRUE(world.character.CreateNewMod(item, KVRSystem::ReturnModItem(deep), "Deep"));
  EXPECT_NE(world.RedLog().find("too deep"), npos);
}

TEST(CreateNewItem, AsksBeforeAModifierAddsAnAttackMode) {
  CharacterWorld world(kRules);
  clsItem& item = world.Added("Rope", kEquipment);
  const std::string before = world.Everything();
  const auto add = [&] {
    return world.character.CreateNewMod(item, "name(Hook),cost(+1),addmode(grab)", "Gear");
  };
  EXPECT_EQ(add(), 0);
  EXPECT_EQ(world.Everything(), before);
  ASSERT_EQ(world.notices.size(), 1u);
  EXPECT_EQ(world.notices[0],
            "prompt: Are you sure?: Are you sure you want to add this modifier?~PAdding this modifier to the "
            "target will add a new attack mode to it, or possibly change an existing mode. Such a change can "
            "NOT be undone.");
  world.Answer("ok");
  EXPECT_NE(add(), 0);
  EXPECT_EQ(world.env.Config.NeverAskAboutNewModes, 0);
  world.Answer("ok, checked");
  EXPECT_NE(add(), 0);
  EXPECT_NE(add(), 0);  // without a question
  EXPECT_EQ(world.notices.size(), 1u);
}

TEST(CreateNewItem, LinksToItsParentByTheExactKey) {
  CharacterWorld world("[EQUIPMENT]\r\nChest, basecost(1), isparent(yes)\r\nCoin, basecost(1)\r\n");
  clsItem& chest = world.Added("Chest", kEquipment);
  std::int32_t coin = 0;
  for (int i = 0; i < 120; ++i) coin = world.character.AddItemFromSystem("8Coin", chest.KeyText(), 0, 0, -1);
  const std::int32_t last = coin;
  EXPECT_TRUE(chest.HasChild(KeyTextOf(last)));
  EXPECT_EQ(world.Tag(last, "parentkey"), chest.KeyText());
  // A key that another one begins with is no proof that it is listed.
  chest.SetChildKeyList("k110");
  chest.RemoveChild("k110");
  chest.SetChildKeyList(KeyTextOf(last + 1) + "9");
  const std::int32_t next = world.character.AddItemFromSystem("8Coin", chest.KeyText(), 0, 0, -1);
  ASSERT_EQ(next, last + 1);
  EXPECT_TRUE(chest.HasChild(KeyTextOf(next)));
  // A parent that isn't there leaves no trace.
  const std::int32_t orphan = world.character.AddItemFromSystem("8Coin", "k9999", 0, 0, -1);
  EXPECT_EQ(world.Tag(orphan, "parentkey"), "");
}

TEST(CreateNewItem, NotesTheCategoriesThatATraitBrings) {
  CharacterWorld world(kRules);
  world.character.InitStartupValues();
  const std::size_t before = world.character.Cats.Count();
  world.Added("Keen Nose", kAds);
  EXPECT_EQ(world.character.Cats.Count(), before);
  EXPECT_NE(world.Log().find("cat 'Senses' already existed."), npos);
  world.character.CreateNewItem(kAds, "name(Sixth Sense),cat(Senses, , Omens)", "", "", 0, 0, 0);
  EXPECT_EQ(world.character.Cats.Count(), before + 1);
  EXPECT_NE(world.Log().find("cat 'Omens' ADDED."), npos);
}

TEST(CreateNewItem, RemembersTheLibraryNameOfARenamedTrait) {
  CharacterWorld world(kRules);
  const std::int32_t id = world.character.CreateNewItem(kAds, "name(Keen Ear)", "2Keen Nose", "", 0, 0, 0);
  EXPECT_EQ(world.Tag(id, "basedon"), "Keen Nose");
  EXPECT_EQ(world.Added("Keen Nose", kAds).TagItem("basedon"), "");
}

TEST(CreateNewItem, LeavesNothingWhenAFormulaFails) {
  CharacterWorld world(kRules);
  world.character.InitStartupValues();
  world.Added("Old Blood", kAds).SetTagItem("page", "none");
  world.character.Dirty = false;
  const std::string before = world.Everything();
  EXPECT_THROW(world.Add("Broken", kAds), SolverFailure);
  EXPECT_EQ(world.Everything(), before);
  EXPECT_FALSE(world.character.Dirty);
  // The next one comes as if nothing had been.
  EXPECT_TRUE(world.Add("Keen Nose", kAds));
}

TEST(CreateNewItem, RefusesWhatCantBeMade) {
  CharacterWorld world(kRules);
  EXPECT_EQ(world.character.AddItemFromSystem("2No Such Thing"), 0);
  EXPECT_EQ(world.character.CreateNewItem(10, "name(Odd)", "", "", 0, 0, 0), 0);
  world.character.LastKey = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(world.Add("Keen Nose", kAds), 0);
  EXPECT_TRUE(world.character.Items.Empty());
  EXPECT_NE(world.RedLog().find("'Odd' was not added: it is of no known type."), npos);
}

// A prompt in the middle of a creation stands for a template's effects: what happens while one is shown
// happens inside the creation.
class PromptWithEffect : public ScriptedPrompts {
 public:
  ConfirmAnswer Confirm(std::string_view, std::string_view, bool, std::string_view) override {
    if (effect) effect();
    return {};
  }
  std::function<void()> effect;
};

class NestedCreation : public testing::Test {
 protected:
  NestedCreation() { modFileIO::InitConfigDefaults(env); }

  CharacterWorld world{
      "[ADS]\r\n"
      "Bringer, 5, initmods({Question, +0%, addmode(yes)})\r\n"
      "Brought, 5, cat(New Things)\r\n"};
  PromptWithEffect prompts;
  Environment env{prompts, world.events};
  KVRCharacter character{env, world.system};
  int calls = 0;
};

TEST_F(NestedCreation, NeverLeadsBackToATraitThatIsBeingMade) {
  std::int32_t again = -1;
  prompts.effect = [&] { again = character.AddItemFromSystem("2Bringer", "", 0, 0, -1); };
  EXPECT_NE(character.AddItemFromSystem("2Bringer"), 0);
  EXPECT_EQ(again, 0);
  EXPECT_EQ(character.Count(kAds), 1);
}

TEST_F(NestedCreation, EndsWhereTheDataNeverWould) {
  const auto addUnnamed = [&] {
    ++calls;
    character.CreateNewItem(kAds,
                            "name(Round),initmods({Question, +0%, addmode(yes)}|{Two, +0%, addmode(yes)})",
                            "", "", 0, -1, -1);
  };
  prompts.effect = addUnnamed;
  addUnnamed();
  EXPECT_GE(character.Count(kAds), 100);
  EXPECT_LE(character.Count(kAds), 2000);
  EXPECT_LT(calls, 20000);
  const auto logged = [&](std::string_view text) {
    const auto& lines = env.log.Lines();
    return std::any_of(lines.begin(), lines.end(), [&](const LogEntry& line) {
      return line.level == LogLevel::Red && line.text.find(text) != npos;
    });
  };
  EXPECT_TRUE(logged("what traits bring goes too deep."));
  EXPECT_TRUE(logged("too many traits come of one."));
}

TEST_F(NestedCreation, ATraitTakenAwayWhileItIsMadeLeavesNothing) {
  prompts.effect = [&] {
    character.AddItemFromSystem("2Brought");
    character.RemoveItem(character.FindItem("Bringer", kAds)->KeyText());
  };
  EXPECT_EQ(character.AddItemFromSystem("2Bringer"), 0);
  EXPECT_TRUE(character.Items.Empty());
  EXPECT_EQ(character.LastKey, 0);
  EXPECT_EQ(character.Cats.Count(), 0u);
}

TEST_F(NestedCreation, OffersNoTraitThatIsBeingMadeAsADuplicate) {
  int asked = 0;
  prompts.effect = [&] {
    if (++asked > 1) return;
    const std::int32_t bringer = character.FindItem("Bringer", kAds)->IDKey;
    character.ItemByKey(bringer)->SetTagItem("keep", "1");
    character.CheckDupe(bringer);
  };
  EXPECT_NE(character.AddItemFromSystem("2Bringer"), 0);
  EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace kvr
