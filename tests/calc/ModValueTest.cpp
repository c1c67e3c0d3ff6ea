#include <gtest/gtest.h>

#include "character/RecordWorld.h"

namespace kvr {
namespace {

// "value valuenum level" of a modifier with these tags, calculated.
std::string Worth(const std::string& tags) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Beam),cost(100),baselevel(1)");
  world.Put(kStats, "name(Reach),symbol(RC)").SetScore(4);
  clsMod& mod = world.PutMod(item, "name(Far)," + tags);
  item.Calculate();
  EXPECT_EQ(mod.TagItem("premodsvalue"), mod.TagItem("value"));
  return mod.TagItem("value") + " " + mod.TagItem("valuenum") + " " + mod.TagItem("level");
}

TEST(ModValue, OfACostAtALevel) {
  struct Case {
    const char *tags, *worth;
  };
  const Case cases[] = {
      // Lists of additive values, their suffix, and past their end.
      {"cost(10%/20%),level(3)", "+30% 30 3"},
      {"cost(+5/+10/+15),level(0)", "+0 0 0"},
      {"cost(+5/+10/+15),level(2)", "+10 10 2"},
      {"cost(-10%/-20%),level(1)", "-10% -10 1"},
      {"cost(-10%/-25%),level(4)", "-55% -55 4"},
      {"cost(+10.50%),level(1)", "+10.5% 10.5 1"},
      {"cost(5/20%),level(1)", "+5% 5 1"},
      {"cost(5/20/30%),level(3)", "+30 30 3"},
      {"cost(+.5cf/+2 CF),level(2)", "+2 CF 2 2"},
      {"cost(1 CF),level(3)", "+3 CF 3 3"},
      {"cost(/x3),level(1)", "*1 1 1"},
      {"cost(/x3),level(3)", "*6 6 3"},
      {"cost(),level(5)", "+0 0 5"},
      {"level(5)", "+0 0 5"},
      {"cost(7)", "+0 0 "},
      // Multipliers and divisors.
      {"cost(*2),level(1)", "*2 2 1"},
      {"cost(*2),level(2)", "*4 4 2"},
      {"cost(*2),level(0)", "*1 1 0"},
      {"cost(x1.5/x2/*4),level(1)", "x1.5 1.5 1"},
      {"cost(x1.5/X2/*4),level(2)", "X2 2 2"},
      {"cost(x1.5/x2/*4),level(5)", "*8 8 5"},
      {"cost(/2),level(1)", "/2 2 1"},
      {"cost(/2/3),level(1)", "/2 2 1"},
      {"cost(*2/3),level(1)", "*2/3 2 1"},
      {"cost(/2/*3),level(2)", "*3 3 2"},
      {"cost(*.5/*.25),level(3)", "*0 0 3"},
      // Levels and their limits.
      {"cost(10%/20%),level(2.6),upto(9)", "+30% 30 2.6"},
      {"cost(10%/20%),level(9),upto(2)", "+20% 20 2"},
      {"cost(10%/20%),level(9),upto(RC - 1)", "+30% 30 3"},
      {"cost(10%/20%),level(2),upto(-1)", "+20% 20 2"},
      {"cost(10%/20%),level(-3)", "+0% 0 0"},
      // Formulas.
      {"cost(10%/20%),level(2),formula(%level*100)", "+20% 20 2"},
      {"cost(10%/20%),level(3),formula(%LEVEL*100 - RC)", "+296% 296 3"},
      {"cost(10%/20%),level(2),formula(%level*-100),forceformula(yes)", "-200% -200 2"},
      {"cost(10%/20%),level(0),formula(7),forceformula(1)", "+7% 7 0"},
      {"cost(*2),level(2),formula(%level+.5)", "*2.5 2.5 2"},
      {"cost(1/3),level(1),forceformula(1)", "+1 1 1"},
  };
  for (const Case& c : cases) EXPECT_EQ(Worth(c.tags), c.worth) << c.tags;
}

TEST(ModValue, DamagedTextsCountAndAreToldOnce) {
  struct Case {
    const char *tags, *worth;
    long told;
  };
  const Case cases[] = {
      {"cost(many),level(1)", "+0 0 1", 1},
      {"cost(10%//20%),level(2)", "+0% 0 2", 1},
      {"cost(+5/x2),level(2)", "+0 0 2", 1},
      {"cost(12 apples),level(1)", "+12 12 1", 0},
      {"cost(/0),level(1)", "/0 0 1", 1},
      {"cost(*),level(1)", "* 0 1", 1},
      {"cost(*RC),level(1)", "*RC 0 1", 0},
      {"cost(*nothing),level(1)", "*nothing 0 1", 1},
      {"cost(/),level(1)", "/ 0 1", 1},
      {"cost(1e300%),level(2000000000)", "+0% 0 2000000000", 1},
      {"cost(1%),level(9e99)", "+2147483647% 2147483647 9e99", 0},
      {"cost(1%),level(soon)", "+0% 0 soon", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    RecordWorld world;
    clsItem& item = world.Put(kAds, "name(Beam),cost(100),baselevel(1)");
    world.Put(kStats, "name(Reach),symbol(RC)").SetScore(4);
    clsMod& mod = world.PutMod(item, "name(Far)," + std::string(c.tags));
    item.Calculate();
    item.Calculate();
    EXPECT_EQ(mod.TagItem("value") + " " + mod.TagItem("valuenum") + " " + mod.TagItem("level"), c.worth);
    EXPECT_EQ(world.Logged("Modifier 'Far' of 'Beam', cost: "), c.told);
  }
}

}  // namespace
}  // namespace kvr
