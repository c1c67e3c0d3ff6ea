#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

TEST(Advantages, LevelAndPoints) {
  struct Case {
    const char* tags;
    std::int32_t bought;
    std::int32_t baseLevel, level;
    const char* points;
  };
  const Case cases[] = {
      {"cost(5)", 3, 1, 1, "5"},
      {"cost(5/10)", 4, 4, 4, "20"},
      {"cost(5/10),upto(3)", 5, 3, 3, "15"},
      {"cost(5/10),upto(0)", 5, 5, 5, "25"},
      {"cost(5/10),upto(5 limitingtotal),bonuslevels(2)", 5, 3, 5, "15"},
      {"cost(5/10),upto(5 limitingtotal),bonuslevels(2)", 2, 2, 4, "10"},
      {"cost(5/10),upto(5),bonuslevels(2)", 5, 5, 7, "25"},
      {"cost(5/10),control_upto(2)", 5, 2, 2, "10"},
      {"cost(5/10),upto(4),control_upto(2)", 5, 2, 2, "10"},
      {"cost(5/10),upto(2),control_upto(4)", 5, 2, 2, "10"},
      {"cost(5/10),upto(2),control_upto(-1)", 5, 2, 2, "10"},
      {"cost(5/10),upto(2),control_upto(100000)", 5, 2, 2, "10"},
      {"cost(5/10),downto(2)", 1, 2, 2, "10"},
      {"cost(5/10),downto(2),control_downto(3)", 1, 3, 3, "15"},
      {"cost(5/10),downto(3),control_downto(2)", 1, 3, 3, "15"},
      {"cost(5/10)", -4, 0, 0, "0"},
      {"cost(5/10),bonuspoints(7)", 1, 1, 1, "5"},
      {"", 4, 4, 4, "0"},
      {"cost(1/2),formula(%level * 3 + 1)", 3, 3, 3, "10"},
      {"cost(1/2),formula(%LEVEL + me::level)", 3, 3, 3, "4"},
      {"cost(-5/-10)", 3, 3, 3, "-15"},
      {"cost(5/10),upto(2 * 1.25)", 9, 2, 2, "10"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " bought to " + std::to_string(c.bought));
    RecordWorld world;
    clsItem& item = world.Put(kAds, "name(Nerve)," + std::string(c.tags));
    item.SetBaseLevel(c.bought);
    for (int pass = 0; pass < 2; ++pass) {
      ASSERT_TRUE(item.Calculate());
      EXPECT_EQ(item.BaseLevel(), c.baseLevel);
      EXPECT_EQ(item.Level(), c.level);
      EXPECT_EQ(NumberText(item.Points()), c.points);
      EXPECT_EQ(item.PreModsPoints(), item.Points());
      EXPECT_EQ(item.BaseAppPoints(), item.Points());
    }
  }
}

TEST(Advantages, UsersBonusesAreListedOnce) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Nerve),cost(5/10),baselevel(1),bonuslevels(2),bonuspoints(-3)");
  item.Calculate();
  item.Calculate();
  EXPECT_EQ(item.BonusList, (std::vector<std::string>{"+2 from User", "-3 pts from User"}));
  EXPECT_EQ(item.ExtraPoints(), Currency(-3));
}

TEST(Advantages, KeptTraitFollowsInLockstep) {
  RecordWorld world;
  clsItem& keeper = world.Put(kAds, "name(Wings),cost(5/10),baselevel(3),lockstep(yes)");
  clsItem& kept =
      world.Put(kAds, "name(Feathers),cost(1/2),baselevel(1),keep(" + std::to_string(keeper.IDKey) + ")");
  keeper.Calculate();
  kept.Calculate();
  EXPECT_EQ(kept.Level(), 3);
  keeper.SetTagItem("lockstep", "no");
  kept.SetBaseLevel(2);
  kept.Calculate();
  EXPECT_EQ(kept.Level(), 2);
}

// Children of the given costs below a parent of 10 points.
std::string TotalWithChildren(std::string_view parentTags, ItemType parentType,
                              std::vector<std::string> costs) {
  RecordWorld world;
  clsItem& parent = world.Put(parentType, "name(Parent),cost(10),baselevel(1)," + std::string(parentTags));
  for (const std::string& cost : costs) {
    clsItem& child = world.Put(kAds, "name(Child),cost(" + cost + "),baselevel(1)");
    child.Calculate();
    parent.AddChild(child.KeyText());
  }
  parent.AddChild("k999");
  parent.Calculate();
  return NumberText(parent.Points()) + " " + parent.TagItem("childpoints");
}

TEST(Advantages, Children) {
  EXPECT_EQ(TotalWithChildren("", kAds, {"20", "21"}), "51 41");
  EXPECT_EQ(TotalWithChildren("childprofile(1)", kAds, {"20", "21"}), "35 25");
  EXPECT_EQ(TotalWithChildren("childprofile(1)", kAds, {"21", "20", "21"}), "40 30")
      << "the earliest of equals is full";
  EXPECT_EQ(TotalWithChildren("childprofile(1)", kAds, {"30", "20.5", "-7"}), "42 32");
  EXPECT_EQ(TotalWithChildren("childprofile(2)", kAds, {"20", "21"}), "10 0");
  EXPECT_EQ(TotalWithChildren("childprofile(1)", kDisads, {"20", "21"}), "51 41");
  EXPECT_EQ(TotalWithChildren("childprofile(1)", kAds, {}), "10 0");
}

TEST(Advantages, OwnedComponents) {
  for (const char* owns : {"yes", "1", "no", "0", ""}) {
    RecordWorld world;
    clsItem& owned = world.Put(kAds, "name(Owned),cost(7),baselevel(1),owned(yes)");
    clsItem& loose = world.Put(kAds, "name(Loose),cost(9),baselevel(1)");
    owned.Calculate();
    loose.Calculate();
    clsItem& owner =
        world.Put(kAds, "name(Owner),cost(10),baselevel(1),owns(" + std::string(owns) + "),pkids(" +
                            std::to_string(owned.IDKey) + ", " + std::to_string(loose.IDKey) + ", 99)");
    owner.Calculate();
    EXPECT_EQ(owner.Points(), Currency(IsSet(owns) ? 17 : 10)) << owns;
  }
}

}  // namespace
}  // namespace kvr
