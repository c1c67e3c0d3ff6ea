#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// A piece, with the traits that give it bonuses.
struct GearWorld : RecordWorld {
  clsItem& Gear(std::string_view tags) { return Put(kEquipment, tags); }
  void Bonus(std::string_view gives) {
    clsItem& giver = Put(kAds, "name(Giver),level(1),gives(" + std::string(gives) + ")");
    character.AddBonusesFromOwner(giver);
  }
  static std::string Amounts(const clsItem& item) {
    return std::string(item.FreeTag("cost")) + " " + std::string(item.FreeTag("weight"));
  }
};

TEST(Equipment, PriceAndWeight) {
  struct Case {
    const char *tags, *bonus, *amounts;
  };
  const Case cases[] = {
      {"count(3),basecost(2.5),baseweight(.25)", "", "7.5 0.75"},
      {"count(0),basecost(2.5),baseweight(.25)", "", "0 0"},
      {"count(-4),basecost(2.5),baseweight(.25)", "", "0 0"},
      {"count(9),upto(4),basecost(2.5),baseweight(.25)", "", "10 1"},
      {"count(2.5),basecost(10),baseweight(1)", "", "20 2"},
      {"count(2),basecost(3*%count),baseweight(1/3)", "", "12 0.6666"},
      {"count(1),basecost(-5),baseweight(-1.5)", "", "-5 -1.5"},
      {"count(2),basecost(10),baseweight(4)", "+1 to EQ:Pot::baseweight", "20 10"},
      {"count(2),basecost(10),baseweight(4)", "+1 to EQ:Pot::weight", "20 9"},
      {"count(2),basecost(10),baseweight(4)", "*.5 to EQ:Pot::weight, +3 to EQ:Pot::weight", "20 5.5"},
      {"count(2),basecost(10),baseweight(4)", "*1.5 to EQ:Pot::basecost, +2 to EQ:Pot::cost", "32 8"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " / " + c.bonus);
    GearWorld world;
    clsItem& pot = world.Gear("name(Pot)," + std::string(c.tags));
    if (*c.bonus) world.Bonus(c.bonus);
    for (int pass = 0; pass < 2; ++pass) {
      ASSERT_TRUE(pot.Calculate());
      EXPECT_EQ(GearWorld::Amounts(pot), c.amounts);
    }
  }
}

TEST(Equipment, ModifiersWorkOnThePriceOfOnePiece) {
  GearWorld world;
  clsItem& pot = world.Gear("name(Pot),count(3),basecost(10),baseweight(2)");
  world.PutMod(pot, "name(Fine),group(Quality),cost(+.55 CF),level(1)");
  pot.Calculate();
  EXPECT_EQ(GearWorld::Amounts(pot), "46.5 6");
  EXPECT_EQ(pot.FreeTag("premodscost"), "10");
  EXPECT_EQ(pot.FreeTag("precountcost"), "15.5");
  EXPECT_EQ(pot.FreeTag("precountweight"), "2");
}

TEST(Equipment, ContainersHoldTheirContentsOnce) {
  GearWorld world;
  clsItem& sack = world.Gear("name(Sack),count(2),basecost(1),baseweight(.5),isparent(yes)");
  clsItem& pot = world.Gear("name(Pot),count(3),basecost(10),baseweight(2)");
  pot.Calculate();
  sack.Calculate();
  EXPECT_FALSE(sack.FreeTags().Find("childrencosts"));
  world.character.MakeChildOf(pot.KeyText(), sack.KeyText());
  EXPECT_EQ(GearWorld::Amounts(sack), "32 7");
  EXPECT_EQ(sack.FreeTag("childrencosts"), "30");
  world.Bonus("*.5 to EQ:Sack::childrenweights, +4 to EQ:Sack::childrencosts");
  sack.Calculate();
  EXPECT_EQ(GearWorld::Amounts(sack), "36 4");
  sack.SetTagItem("count", "0");
  sack.Calculate();
  EXPECT_EQ(GearWorld::Amounts(sack), "34 3");
  pot.SetTagItem("baseweight", "3");
  pot.Calculate();
  world.character.TrickleRecalcItems();
  EXPECT_EQ(GearWorld::Amounts(sack), "34 4.5") << "a weight that changes alone reaches the container";
}

TEST(Equipment, OwnedPiecesCountInEachOfTheirOwners) {
  GearWorld world;
  clsItem& strap = world.Gear("name(Strap),count(1),basecost(2),baseweight(.1),owned(yes),keep(2)");
  clsItem& harness = world.Gear("name(Harness),count(2),basecost(20),baseweight(3),owns(yes),pkids(1, 77)");
  strap.Calculate();
  harness.Calculate();
  EXPECT_EQ(GearWorld::Amounts(harness), "44 6.2");
  harness.SetTagItem("owns", "no");
  harness.Calculate();
  EXPECT_EQ(GearWorld::Amounts(harness), "40 6");
}

TEST(Equipment, OddInputIsToldOnceWithTraitAndTag) {
  struct Case {
    const char *tags, *amounts, *told;
  };
  const Case cases[] = {
      {"count(99999999999),basecost(1),baseweight(0)", "2147483647 0", "'Pot', count: \"99999999999\""},
      {"count(many),basecost(1),baseweight(1)", "0 0", "'Pot', count: \"many\""},
      {"count(1),basecost(dear),baseweight(1)", "0 1", "'Pot', basecost: \"dear\""},
      {"count(1),basecost(1),baseweight(ca. 5)", "1 0", "'Pot', baseweight: \"ca. 5\""},
      {"count(1),basecost(1e300),baseweight(1)", "100000000000000 1", "'Pot', basecost: \"1e300\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    GearWorld world;
    clsItem& pot = world.Gear("name(Pot)," + std::string(c.tags));
    for (int pass = 0; pass < 3; ++pass) ASSERT_TRUE(pot.Calculate());
    EXPECT_EQ(GearWorld::Amounts(pot), c.amounts);
    EXPECT_EQ(world.Logged(c.told), 1) << world.Log();
    EXPECT_EQ(world.character.TotalWeight, Currency());
  }
}

TEST(Equipment, ContainersInACircleAddNothing) {
  GearWorld world;
  clsItem& bag = world.Gear("name(Bag),count(1),basecost(1),baseweight(1),childkeylist(k2,k3)");
  world.Gear("name(Box),count(1),basecost(10),baseweight(10),childkeylist(k1)");
  world.Gear("name(Rope),count(1),basecost(5),baseweight(5)");
  for (int pass = 0; pass < 5; ++pass) world.character.RecalculateAll();
  EXPECT_EQ(GearWorld::Amounts(bag), "6 6");
  EXPECT_EQ(world.Logged("'Bag', childkeylist: "), 1);
  EXPECT_EQ(world.Logged("'Box', childkeylist: "), 1);
  EXPECT_EQ(world.Logged("do not settle"), 0);
}

TEST(Equipment, TemplatesTakeTheAdjustedSumOfTheirChildren) {
  GearWorld world;
  clsItem& guard = world.Put(kPackages, "name(Guard),cost(10/15),baselevel(2),upto(3),childkeylist(k2)");
  clsItem& luck = world.Put(kAds, "name(Luck),cost(7),baselevel(1)");
  clsItem& owned = world.Put(kAds, "name(Owned),cost(4),baselevel(1),owned(yes)");
  luck.Calculate();
  owned.Calculate();
  world.Bonus("*2 to TE:Guard::childpoints, +3 to TE:Guard::childpoints");
  guard.Calculate();
  EXPECT_EQ(guard.Level(), 2);
  EXPECT_EQ(guard.FreeTag("childpoints"), "20");
  EXPECT_EQ(NumberText(guard.Points()), "35");
  guard.SetTagItem("owns", "yes");
  guard.SetTagItem("pkids", "3");
  guard.SetBaseLevel(9);
  guard.Calculate();
  EXPECT_EQ(guard.Level(), 3);
  EXPECT_EQ(NumberText(guard.Points()), "44");
}

}  // namespace
}  // namespace kvr
