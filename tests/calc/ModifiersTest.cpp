#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

struct ModWorld : RecordWorld {
  clsItem& item = Put(kAds, "name(Beam)");

  // Modifiers by their costs, tags behind a comma: "+50%, tier(1)".
  void Bear(const std::vector<std::string>& mods) {
    for (const std::string& mod : mods) PutMod(item, "name(M),level(1),cost(" + WithTags(mod));
  }
  static std::string WithTags(const std::string& mod) {
    const std::size_t comma = mod.find(',');
    return comma == npos ? mod + ")" : mod.substr(0, comma) + ")" + mod.substr(comma);
  }
  std::string PointsFrom(std::string_view points) {
    item.SetPreModsPoints(Currency::FromText(points));
    item.SetPoints(item.PreModsPoints());
    item.CalcModifiers();
    return NumberText(item.Points());
  }
};

struct TierCase {
  const char* before;
  std::vector<std::string> mods;
  const char* after;
  const char* tags = "";
};

TEST(Modifiers, PointsThroughTheTiers) {
  const TierCase cases[] = {
      {"7.5", {}, "7.5"},
      {"20", {"+50%", "-25%"}, "25"},
      {"100", {"-40%", "-50%"}, "20"},
      {"100", {"-90%"}, "20"},
      {"100", {"-90%", "+30%"}, "40"},
      {"15", {"-50%"}, "8"},
      {"15", {"-50%, round(down)"}, "7"},
      {"15", {"-50%, round(D)", "+0%"}, "7"},
      {"15", {"-50%, round(up)"}, "8"},
      {"-15", {"-50%"}, "-7"},
      {"-15", {"-50%, round(down)"}, "-8"},
      {"20", {"+5", "-1", "+10%"}, "27"},
      {"20", {"*2", "+10%", "+5"}, "55"},
      {"20", {"*2", "x1.5", "/3"}, "20"},
      {"54", {"/6"}, "9"},
      {"30", {"/3, round(down)"}, "10"},
      {"27", {"*2/3, round(down)"}, "18"},
      {"10", {"+1 CF", "+50%"}, "25"},
      // A tier works on what the one before has left, rounded.
      {"10", {"-25%", "-10%, tier(1)"}, "8"},
      {"100", {"+50%", "+10%, tier(1)"}, "165"},
      {"100", {"+50%", "+10, tier(-3)"}, "165"},
      {"100", {"+50%", "+10, tier(2)"}, "160"},
      {"100", {"+50%", "+10, tier(99)"}, "160"},
      {"100", {"+50%", "+10, tier(-99)"}, "165"},
      {"100", {"+50%, tier(.9)", "+50%, tier(0)"}, "200"},
      {"100", {"+50%, tier(2 - 1)", "+50%, tier(1)"}, "200"},
      {"7.5", {"-10, tier(2)"}, "-2"},
      {"9", {"-25%", "-25%, tier(1)"}, "6"},
      {"9", {"-25%", "-25%, tier(1)"}, "6", "roundlastonly(yes)"},
      {"10", {"-25%, round(d)", "*2, tier(1)"}, "14"},
      {"10", {"-25%, round(d)", "*2, tier(1)"}, "15", "roundlastonly(yes)"},
      {"10", {"-25%, round(d)"}, "8", "roundlastonly(yes)"},
  };
  for (const TierCase& c : cases) {
    SCOPED_TRACE(std::string(c.before) + " with " + testing::PrintToString(c.mods) + c.tags);
    ModWorld world;
    world.item.NewTagList("name(Beam)," + std::string(c.tags));
    world.Bear(c.mods);
    EXPECT_EQ(world.PointsFrom(c.before), c.after);
    EXPECT_EQ(world.PointsFrom(c.before), c.after) << "again";
  }
}

TEST(Modifiers, PercentagesThatMultiply) {
  const TierCase cases[] = {
      {"100", {"+50%", "+50%"}, "225"},  {"100", {"-40%", "-50%"}, "30"},
      {"100", {"-90%", "-50%"}, "20"},   {"100", {"-90%", "+100%"}, "20"},
      {"100", {"+1 CF", "-50%"}, "100"}, {"100", {"-90%", "+100%, tier(1)"}, "40"},
  };
  for (const TierCase& c : cases) {
    ModWorld world;
    world.character.ModMultPercents = -1;
    world.Bear(c.mods);
    EXPECT_EQ(world.PointsFrom(c.before), c.after) << testing::PrintToString(c.mods);
  }
  ModWorld world;
  world.env.Config.ModMaxNegPercentLimit = -75;
  world.Bear({"-90%"});
  EXPECT_EQ(world.PointsFrom("100"), "25");
}

TEST(Modifiers, PriceOfEquipment) {
  const TierCase cases[] = {
      {"10.125", {"+0%"}, "10.12"},
      {"10.135", {"+0%"}, "10.14"},
      {"1.005", {"+0%"}, "1"},
      {"100", {"+1.5 CF"}, "250"},
      {"100", {"-.6 CF"}, "40"},
      {"9.99", {"/3"}, "3.33"},
      {"0.05", {"+50%", "*.5, tier(1)"}, ".04"},
      {"0.05", {"+50%", "*.5, tier(1)"}, ".04", "roundlastonly(1)"},
      {"0.3", {"/8", "*10, tier(1)"}, ".4"},
      {"0.3", {"/8", "*10, tier(1)"}, ".38", "roundlastonly(1)"},
  };
  for (const TierCase& c : cases) {
    ModWorld world;
    world.item.ItemType = kEquipment;
    world.item.NewTagList("name(Beam),premodscost(" + std::string(c.before) + ")," + c.tags);
    world.Bear(c.mods);
    world.item.CalcModifiers();
    EXPECT_EQ(world.item.TagItem("cost"), c.after) << c.before << testing::PrintToString(c.mods) << c.tags;
    EXPECT_TRUE(world.item.Points().IsZero());
  }
}

TEST(Modifiers, ModifiersOnAModifier) {
  struct Case {
    const char *outer, *inner, *value, *number, *tags = "";
  };
  const Case cases[] = {
      {"+20%", "-50%", "+10%", "10"},
      {"-25%", "-50%", "-12%", "-12"},
      {"-25%", "-50%, round(down)", "-13%", "-13"},
      {"-25%", "-50%", "-12.5%", "-12.5", "roundmods(no)"},
      {"-25%", "-50%, round(down)", "-12.5%", "-12.5", "roundmods(NO)"},
      {"+20%", "-95%", "+4%", "4"},
      {"+20%", "*2", "+40%", "40"},
      {"+20%", "-30", "-10%", "-10"},
      {"+5", "+50%", "+8", "8"},
      {"+1 CF", "+100%", "+2 CF", "2"},
      {"+.5 CF", "-50%", "+.25 CF", ".25"},
      {"*2", "+50%", "*3", "3"},
      {"/2", "+100%", "/4", "4"},
      {"*2/3", "+50%", "*1", "1", "roundmods(no)"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.outer) + " bearing " + c.inner);
    ModWorld world;
    world.item.NewTagList("name(Beam)," + std::string(c.tags));
    clsMod& outer = world.PutMod(world.item, "name(M),level(1),cost(" + ModWorld::WithTags(c.outer));
    world.PutMod(outer, "name(N),level(1),cost(" + ModWorld::WithTags(c.inner));
    world.PointsFrom("100");
    outer.Calculate();
    EXPECT_EQ(outer.TagItem("premodsvalue"), c.outer);
    EXPECT_EQ(outer.TagItem("value"), c.value);
    EXPECT_EQ(outer.TagItem("valuenum"), c.number);
  }
}

// Level 3 of the chain changes level 2, and that level 1.
TEST(Modifiers, AChainIsWorkedOutFromItsEnd) {
  ModWorld world;
  clsMod& first = world.PutMod(world.item, "name(A),level(9),upto(2),cost(10%/20%)");
  clsMod& second =
      world.PutMod(first, "name(B),level(1),cost(+25%),formula(25*owner::level),forceformula(1)");
  world.PutMod(second, "name(C),level(1),cost(+100%)");
  EXPECT_EQ(world.PointsFrom("100"), "140");
  EXPECT_EQ(second.TagItem("value"), "+100%") << "of the holder's level as limited just now";
}

TEST(Modifiers, StepsOfALevelStayWithinTheLimits) {
  ModWorld world;
  clsMod& mod =
      world.PutMod(world.item, "name(A),level(1),upto(2),cost(10%/20%),levelnames([none], low, high)");
  const auto now = [&] { return mod.LevelName() + mod.TagItem("value"); };
  mod.Increment();
  EXPECT_EQ(now(), "high+20%");
  mod.Increment();
  EXPECT_EQ(now(), "high+20%");
  for (int i = 0; i < 3; ++i) mod.Decrement();
  EXPECT_EQ(now(), "none+0%");
  clsMod loose;
  loose.NewTagList("name(A),cost(10%),upto(RC),level(1)");
  loose.Calculate();
  EXPECT_EQ(loose.TagItem("value"), "") << "without a character nothing can be solved";
}

// Laws: within a tier the order makes no difference, and what is taken off leaves nothing behind.
TEST(Modifiers, OrderMakesNoDifferenceAndTakingOffRestores) {
  std::vector<std::string> mods = {"+12.5%",
                                   "-7%",
                                   "*3",
                                   "/7",
                                   "+4",
                                   "-1.3",
                                   "+.35 CF",
                                   "*2/3",
                                   "+9%, tier(1)",
                                   "-2, tier(2)",
                                   "/3, tier(1), round(d)"};
  std::string expected;
  unsigned seed = 7;
  for (int round = 0; round < 50; ++round) {
    for (std::size_t i = mods.size(); i > 1; --i) {
      seed = seed * 1103515245u + 12345u;
      std::swap(mods[i - 1], mods[(seed >> 16) % i]);
    }
    RecordWorld world;
    clsItem& item = world.Put(kAds, "name(Beam),cost(83),baselevel(1)");
    item.Calculate();
    ASSERT_EQ(item.Points(), Currency(83));
    for (const std::string& mod : mods)
      world.PutMod(item, "name(M),level(1),cost(" + ModWorld::WithTags(mod));
    item.Calculate();
    if (round == 0) expected = NumberText(item.Points());
    ASSERT_EQ(NumberText(item.Points()), expected) << testing::PrintToString(mods);
    ASSERT_NE(expected, "83");
    while (!item.Mods.Empty()) world.character.RemoveMod(item, item.Mods.KeyAt(1));
    EXPECT_EQ(item.Points(), Currency(83));
  }
}

TEST(Modifiers, TotalsStayDefined) {
  {
    ModWorld world;
    world.Bear({"*1e300", "*1e300"});
    EXPECT_EQ(world.PointsFrom("15"), "15");
    EXPECT_EQ(world.Logged("The modifiers of 'Beam' make its points too large"), 1);
  }
  {
    ModWorld world;
    world.Bear({"/0", "+5"});
    EXPECT_EQ(world.PointsFrom("15"), "0");
  }
  {
    ModWorld world;
    clsMod& outer = world.PutMod(world.item, "name(M),level(1),cost(+10%)");
    world.PutMod(outer, "name(N),level(1),cost(*1e300)");
    EXPECT_EQ(world.PointsFrom("100"), "110");
    EXPECT_EQ(world.Logged("Modifier 'M' of 'Beam', value: "), 1);
  }
}

// Each formula that fails is logged, and leaves its modifier as it was: here at +30% of 100.
TEST(Modifiers, AFormulaThatFailsLeavesTheOldValue) {
  const std::pair<const char*, const char*> cases[] = {
      {"cost(10%),formula(@sqr(0-4)),forceformula(1)", "130"},
      {"cost(10%/20%),formula(@log(0)),level(5)", "130"},
      {"cost(10%),upto(@fac(999))", "130"},
      {"cost(*@sqr(0-4))", "130"},
      {"cost(30%),tier(@sqr(0-4))", "130"},
  };
  for (const auto& [tags, after] : cases) {
    SCOPED_TRACE(tags);
    ModWorld world;
    clsMod& mod = world.PutMod(world.item, "name(M),value(+30%)," + std::string(tags) + ",level(1)");
    world.PutMod(mod, "name(N),level(1),cost(+0%)");
    EXPECT_EQ(world.PointsFrom("100"), after);
    EXPECT_EQ(mod.TagItem("value"), "+30%");
    EXPECT_GE(world.Logged("of 'M'"), 1);
  }
  ModWorld world;
  world.PutMod(world.item, "name(M),level(1),cost(*@sqr(0-4)),value(*@sqr(0-4))");
  EXPECT_EQ(world.PointsFrom("100"), "100") << "a value that was never worked out";
}

TEST(Modifiers, ThousandsAndDeepNestsEnd) {
  ModWorld world;
  for (int i = 0; i < 20000; ++i) world.PutMod(world.item, "name(M),level(1),cost(+1%),upto(9)");
  EXPECT_EQ(world.PointsFrom("1"), "201");
  clsItem& deep = world.Put(kAds, "name(Deep),cost(100),baselevel(1)");
  clsMod* last = &world.PutMod(deep, "name(M),level(1),cost(+10%)");
  for (int i = 1; i < 50000; ++i) last = &world.PutMod(*last, "name(M),level(1),cost(+0%)");
  deep.Calculate();
  EXPECT_EQ(deep.Points(), Currency(110));
  EXPECT_EQ(last->TagItem("value"), "");
  EXPECT_EQ(world.Logged("go too deep"), 1);
}

TEST(Modifiers, APutOnModifierCountsAtOnce) {
  ModWorld world;
  world.item.NewTagList("name(Beam),cost(10/20),baselevel(2)");
  clsItem& reader = world.Put(kAds, "name(Shade),cost(1),formula(AD:Beam pts),baselevel(1)");
  world.character.CreateAllAffectsLinks();
  world.character.RecalculateAll(true);
  EXPECT_EQ(reader.Points(), Currency(20));
  const std::int32_t key =
      world.character.CreateNewMod(world.item, R"(name(Far),cost(-40%),initmods("Half, -50%"))", "Limits");
  ASSERT_NE(key, 0);
  EXPECT_EQ(world.item.ExpandedModCaptions(true), "Far (1), -20% (-40%; Half (1), -50%)");
  EXPECT_EQ(world.item.Points(), Currency(16));
  EXPECT_EQ(reader.Points(), Currency(16));
  world.character.RemoveMod(world.item, KeyTextOf(key));
  EXPECT_EQ(reader.Points(), Currency(20));
}

}  // namespace
}  // namespace kvr
