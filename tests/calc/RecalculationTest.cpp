#include <gtest/gtest.h>

#include "calc/modSolver.h"
#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

std::string Totals(const KVRCharacter& c) {
  std::string text;
  for (const clsItem& item : c.Items) {
    text += item.FullName() + " " + std::to_string(item.Level()) + " " + NumberText(item.Score()) + " " +
            NumberText(item.Points()) + "\n";
  }
  return text + NumberText(c.TotalCost);
}

TEST(Recalculation, AChangeReachesWhatDependsOnItAndNothingElse) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& agility = world.Put(kStats, "name(Agility),symbol(AG),up(10),step(1),basevalue(10)");
  clsItem& pace = world.Put(kStats, "name(Pace),basevalue(ST:AG / 4)");
  clsItem& dodge = world.Put(kStats, "name(Dodge),basevalue({ST:Pace} + 3),round(-1)");
  clsItem& nerve = world.Put(kAds, "name(Nerve),cost(5/10),formula(ST:Dodge * %level),baselevel(2)");
  clsItem& luck = world.Put(kAds, "name(Luck),cost(5)");
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  EXPECT_EQ(nerve.Points(), Currency(10));
  luck.SetPoints(99);
  agility.SetScoreTo(14);
  EXPECT_EQ(pace.Score(), 3.5);
  EXPECT_EQ(dodge.Score(), 6);
  EXPECT_EQ(nerve.Points(), Currency(12));
  EXPECT_EQ(luck.Points(), Currency(99)) << "not linked, not calculated";
  c.RecalculateAll();
  EXPECT_EQ(luck.Points(), Currency(0));
}

TEST(Recalculation, TwiceChangesNothing) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  world.Put(kStats, "name(Zeal),symbol(ZE),up(10),step(1),basevalue(10),level(3)");
  world.Put(kAds, "name(Aura),formula(AD:Mood + ST:ZE),baselevel(1)");
  world.Put(kAds, "name(Mood),formula(@min(AD:Aura::points, 7)),baselevel(2)");
  world.Put(kAds, "name(Debt),formula(char::unspentpoints / 10),baselevel(1)");
  c.CreateAllAffectsLinks();
  for (bool pushAll : {false, true}) {
    c.RecalculateAll(pushAll);
    std::string first = Totals(c);
    c.Dirty = false;
    c.RecalculateAll(pushAll);
    EXPECT_EQ(Totals(c), first);
    EXPECT_FALSE(c.Dirty);
  }
  EXPECT_EQ(world.Logged("Recalc took "), 2);
}

TEST(Recalculation, ParentsAndOwnersHearOfTheirParts) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& parent = world.Put(kAds, "name(Shape),cost(10),baselevel(1)");
  clsItem& child = world.Put(kAds, "name(Claws),cost(5/10),baselevel(1)");
  clsItem& owner = world.Put(kAds, "name(Pact),cost(1),baselevel(1),owns(yes)");
  clsItem& part = world.Put(kAds, "name(Sign),cost(2/4),baselevel(1),owned(yes)");
  parent.AddChild(child.KeyText());
  child.SetParentKey(parent.KeyText());
  owner.SetTagItem("pkids", std::to_string(part.IDKey));
  part.SetTagItem("keep", std::to_string(owner.IDKey));
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  child.Increment();
  part.Increment();
  EXPECT_EQ(parent.Points(), Currency(20));
  EXPECT_EQ(owner.Points(), Currency(5));
  c.CalcPointCosts();
  EXPECT_EQ(c.Cost[kAds], Currency(25)) << "neither the child nor the part counts by itself";
}

TEST(Recalculation, CirclesThatSettleSettleAndOthersEndWithALine) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& left = world.Put(kAds, "name(Left),formula(@min(AD:Right::points + 1, 40)),baselevel(1)");
  clsItem& right = world.Put(kAds, "name(Right),formula(@min(AD:Left::points + 1, 40)),baselevel(1)");
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  EXPECT_EQ(left.Points(), Currency(40));
  EXPECT_EQ(right.Points(), Currency(40));
  EXPECT_EQ(world.Logged("do not settle"), 0);
  left.SetTagItem("formula", "AD:Right::points + 1");
  right.SetTagItem("formula", "AD:Left::points + 1");
  c.RecalculateAll();
  EXPECT_EQ(world.Logged("'Left' do not settle") + world.Logged("'Right' do not settle"), 1);
  c.RecalculateAll();
  EXPECT_EQ(world.Logged("do not settle"), 2) << "each run counts anew";
}

TEST(Recalculation, ReadersOfTotalsAreCalculatedWhenTotalsChange) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& tithe = world.Put(kAds, "name(Tithe),formula(char::statcost / 10),baselevel(1)");
  clsItem& vigour = world.Put(kStats, "name(Vigour),up(10),step(1),basevalue(10)");
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  vigour.SetScoreTo(15);
  c.CalcPointCosts();
  EXPECT_EQ(tithe.Points(), Currency(5));
  EXPECT_EQ(c.TotalCost, Currency(55));
  // A cost that grows with the total it is part of.
  clsItem& spiral =
      world.Put(kAds, "name(Spiral),formula(char::totalcost + 1 + me::premodspoints),baselevel(1)");
  c.CreateAffectsLinks(spiral);
  c.RecalculateAll();
  EXPECT_EQ(world.Logged("'Spiral' do not settle"), 2) << "totals are summed before and behind the traits";
}

// Counts how deep the refresh is suspended.
struct Suspensions : FrontEndEvents {
  int depth = 0;
  void SuspendRefresh() override { ++depth; }
  void ResumeRefresh() override { --depth; }
};

TEST(Recalculation, AFailedTraitKeepsItsValuesAndTheOthersGoOn) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& vigour = world.Put(kStats, "name(Vigour),up(10),step(1),basevalue(10)");
  clsItem& broken = world.Put(kAds, "name(Broken),cost(5/10),upto(ST:Vigour * 1),baselevel(2)");
  clsItem& after = world.Put(kAds, "name(Core),formula(ST:Vigour),baselevel(1)");
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  broken.SetTagItem("upto", "ST:Vigour * 99999");  // more than 16 bits
  vigour.SetScoreTo(12);
  EXPECT_EQ(world.Logged("Error 6"), 1);
  EXPECT_EQ(world.Logged("'Broken' could not be calculated"), 1);
  EXPECT_EQ(broken.Points(), Currency(10));
  EXPECT_EQ(broken.Level(), 2);
  EXPECT_EQ(after.Points(), Currency(12));
  broken.Increment();
  EXPECT_EQ(broken.BaseLevel(), 2);
}

TEST(Recalculation, AFormulasFailureLeavesNothingHalfDone) {
  ScriptedPrompts prompts;
  Suspensions events;
  Environment env(prompts, events);
  KVRSystem system(env);
  KVRCharacter c(env, system);
  auto put = [&c](ItemType type, const char* tags) -> clsItem& {
    auto item = std::make_unique<clsItem>();
    clsItem& added = *item;
    item->Owner = &c;
    item->NewTagList(tags);
    item->ItemType = type;
    item->IDKey = c.NewKey();
    c.Items.Add(std::move(item), added.KeyText());
    c.ItemsByType[static_cast<std::size_t>(type)].Add(&added, added.KeyText());
    return added;
  };
  clsItem& vigour = put(kStats, "name(Vigour),up(10),step(1),basevalue(10)");
  clsItem& wound = put(kAds, "name(Ache),formula(ST:Vigour * AD:Ache::cat),cat(none),baselevel(1),points(4)");
  clsItem& other = put(kAds, "name(Brag),formula(ST:Vigour),baselevel(1)");
  c.CreateAllAffectsLinks();
  env.Config.NoCalcSecondaryFeatures = -1;
  EXPECT_THROW(c.RecalculateAll(), SolverFailure);
  EXPECT_EQ(env.Config.NoCalcSecondaryFeatures, -1);
  EXPECT_EQ(events.depth, 0);
  EXPECT_EQ(wound.Points(), Currency(4));
  wound.SetTagItem("cat", "2");
  c.ClearTokensForItem(wound);
  vigour.SetScoreTo(13);
  EXPECT_EQ(wound.Points(), Currency(26));
  EXPECT_EQ(other.Points(), Currency(13));
  EXPECT_EQ(events.depth, 0);
}

// The failure goes on to whoever began the operation, when the others have their values.
TEST(Recalculation, AFailingFormulaKeepsNobodyElseFromBeingCalculated) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& vigour = world.Put(kStats, "name(Vigour),up(10),step(1),basevalue(10)");
  clsItem& ache = world.Put(kAds, "name(Ache),formula(ST:Vigour * AD:Ache::cat),cat(none),baselevel(1)");
  clsItem& brag = world.Put(kAds, "name(Brag),formula(ST:Vigour),baselevel(1)");
  clsItem& calm = world.Put(kAds, "name(Calm),formula(AD:Brag::points + char::statcost),baselevel(1)");
  c.CreateAllAffectsLinks();
  for (bool pushAll : {false, true}) {
    brag.SetPoints(0);
    EXPECT_THROW(c.RecalculateAll(pushAll), SolverFailure);
    EXPECT_EQ(brag.Points(), Currency(10));
    EXPECT_EQ(calm.Points(), Currency(10));
    EXPECT_EQ(c.TotalCost, Currency(20));
  }
  EXPECT_THROW(vigour.SetScoreTo(12), SolverFailure);
  EXPECT_EQ(brag.Points(), Currency(12));
  c.CalcPointCosts();
  EXPECT_EQ(calm.Points(), Currency(32));
  EXPECT_EQ(c.TotalCost, Currency(12 + 32 + 20));
  ache.SetTagItem("cat", "3");
  c.RecalculateAll();
  EXPECT_EQ(ache.Points(), Currency(36));

  c.BasicDamageList.emplace_back();
  c.BasicDamageList.back().SWBase = "@sqr(0-1)";
  brag.SetPoints(0);
  EXPECT_THROW(c.RecalculateAll(), SolverFailure);
  EXPECT_EQ(brag.Points(), Currency(12)) << "a broken table of damage is no reason either";
}

// Amounts of bonuses are solved while links are walked, where no trait may be calculated.
TEST(Recalculation, AFormulaThatReadsATotalCalculatesNoTrait) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& luck = world.Put(kAds, "name(Luck),cost(5),baselevel(1),points(7)");
  c.QueueItem(luck);
  EXPECT_EQ(modSolver::Solver("char::totalcost", c), 7);
  EXPECT_EQ(luck.Points(), Currency(7));
  c.CalcPointCosts();
  EXPECT_EQ(c.TotalCost, Currency(5));
}

// Without its modifiers a mitigated trait gives its bonuses again, also while it is being removed.
TEST(Recalculation, ARemovedTraitLeavesNoRecords) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  world.Put(kStats, "name(Vigour),basevalue(10)");
  clsItem& pact = world.Put(kAds, "name(Pact),baselevel(1),owns(yes),pkids(3),gives(+1 to ST:Vigour)");
  world.Put(kAds, "name(Sign),baselevel(1),owned(yes),keep(2)");
  world.PutMod(pact, "name(Quiet),mitigator(yes)");
  c.CreateAllAffectsLinks();
  c.AddBonusesFromOwner(pact);
  c.RecalculateAll();
  ASSERT_EQ(c.Conditionals.size(), 1u);
  c.RemoveItem(pact.KeyText());
  EXPECT_EQ(c.Items.Count(), 1u);
  EXPECT_TRUE(c.Bonuses.empty());
  EXPECT_TRUE(c.Conditionals.empty());
}

TEST(Recalculation, ModifiersMitigate) {
  struct Case {
    const char *first, *second, *tag, *mitigated;
  };
  const Case cases[] = {
      {"gives", "", "", "gives"},    {"taboo", "", "", "taboo"}, {"Gives", "TABOO", "", "yes"},
      {"other", "", "", "yes"},      {"", "", "", ""},           {"", "", "no", "no"},
      {"gives", "", "yes", "gives"},
  };
  for (const Case& c : cases) {
    RecordWorld world;
    clsItem& item = world.Put(
        kAds, "name(Oath),cost(5),taboofailed(-1),tabootext(x),mitigated(" + std::string(c.tag) + ")");
    std::vector<std::int32_t> mods;
    for (const char* word : {c.first, c.second}) {
      if (*word) mods.push_back(world.PutMod(item, "name(Mod),mitigator(" + std::string(word) + ")").IDKey);
    }
    item.Calculate();
    item.Calculate();
    EXPECT_EQ(item.TagItem("mitigated"), c.mitigated) << c.first << c.second << c.tag;
    for (std::int32_t key : mods) item.Mods.Remove(KeyTextOf(key));
    item.Calculate();
    EXPECT_EQ(item.TagItem("mitigated"), mods.empty() ? c.tag : "") << c.first << c.second << c.tag;
  }
}

}  // namespace
}  // namespace kvr
