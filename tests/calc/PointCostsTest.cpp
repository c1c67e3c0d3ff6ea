#include <gtest/gtest.h>

#include "calc/modSolver.h"
#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

TEST(PointCosts, TotalsByType) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  c.Campaign.BasePoints = 100;
  c.Campaign.TotalPoints = 12;
  world.Put(kStats, "name(Vigour),points(20)");
  world.Put(kStats, "name(Looks),points(-15)");
  world.Put(kStats, "name(Tech Level),score(7)");
  world.Put(kDisads, "name(Fear),points(-30)");
  world.Put(kAds, "name(Shape),points(25)");
  world.Put(kAds, "name(Claws),points(5),parentkey(k5)");
  world.Put(kAds, "name(Fangs),points(4),owned(yes)");
  world.Put(kAds, "name(Horns),points(3),owned(no)");
  c.CalcPointCosts();
  EXPECT_EQ(c.Cost[kStats], Currency(5));
  EXPECT_EQ(c.Cost[kAds], Currency(28));
  EXPECT_EQ(c.TotalCost, Currency(3));
  EXPECT_EQ(c.TotalPoints, Currency(112));
  EXPECT_EQ(c.UnspentPoints, Currency(109));
  EXPECT_EQ(c.AgainstDisadLimit, Currency(-45));
  EXPECT_EQ(c.TL, 7);
  c.CalcPointCosts();
  EXPECT_EQ(c.TotalCost, Currency(3));
}

TEST(PointCosts, MoneyAndWeightOfEquipment) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& pack = world.Put(kEquipment, "name(Pack),cost(60.5),weight(3.25),owns(yes)");
  world.Put(kEquipment, "name(Rope),cost(5),weight(2),parentkey(k1)");
  world.Put(kEquipment, "name(Strap),cost(1),weight(1),owned(yes),keep(1)");
  world.Put(kEquipment, "name(Stray),cost(2),weight(0.5),owned(yes),keep(99)");
  world.Put(kEquipment, "name(House),cost(5000),weight(90000),ndl(yes)");
  world.Put(kEquipment, "name(Tent),cost(80),weight(12),load(Camp, March)");
  world.Put(kEquipment, "name(Odd),cost(many),weight(heavy)");
  struct Case {
    const char *loadout, *load;
  };
  for (const Case& load : {Case{"", "3.75"}, Case{"march", "12"}, Case{"Siege", "0"}}) {
    c.CurrentLoadout = load.loadout;
    c.CalcPointCosts();
    EXPECT_EQ(NumberText(c.DollarCost), "5142.5");
    EXPECT_EQ(NumberText(c.TotalWeight), "15.75");
    EXPECT_EQ(NumberText(c.CurrentLoad), load.load) << load.loadout;
  }
  pack.DeleteTag("owns");
  c.CalcPointCosts();
  EXPECT_EQ(NumberText(c.DollarCost), "5143.5") << "the strap is counted by nobody else";
}

TEST(PointCosts, ReadersOfTotalsHearOfASumThatAFormulaMadeBefore) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  clsItem& reader = world.Put(kStats, "name(Renown),basevalue(char::adcost)");
  clsItem& trait = world.Put(kAds, "name(Feat),points(5)");
  c.CreateAllAffectsLinks();
  c.RecalculateAll();
  trait.SetTagItem("cost", "20");
  trait.SetBaseLevel(1);
  trait.Calculate();
  EXPECT_EQ(modSolver::Solver("char::adcost", c), 20);
  c.CalcPointCosts();
  EXPECT_EQ(reader.Score(), 20);
}

}  // namespace
}  // namespace kvr
