#include <gtest/gtest.h>

#include "RecordWorld.h"

namespace kvr {
namespace {

TEST(Mods, CaptionsSpellOutWhatIsOnThem) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Beam),nameext(Heat),tl(9)");
  EXPECT_EQ(item.FullNameTLExpanded(true), "Beam/TL9 (Heat)");
  clsMod& far = world.PutMod(item, "name(Far),shortname(F),value(+10%),premodsvalue(+20%),cost(10%)");
  world.PutMod(far, "name(Slow),nameext(Very),value(-50%),cost(1)");
  world.PutMod(item, "name(Near),value(-5%),cost(1)");
  EXPECT_EQ(far.FullNameExpanded(false), "Far (Slow (Very))");
  EXPECT_EQ(far.FullNameExpanded(true), "Far (+20%; Slow (Very), -50%)");
  EXPECT_EQ(item.ExpandedModCaptions(true), "F, +10% (+20%; Slow (Very), -50%); Near, -5%");
  EXPECT_EQ(item.FullNameExpanded(false), "Beam (Heat) (F (Slow (Very)); Near)");
  EXPECT_EQ(item.ModByLCaseFullName("near")->Name(), "Near");
  EXPECT_EQ(far.ModByLCaseFullName("slow (very)")->LevelForFormula(), 0);
  EXPECT_EQ(item.ModByLCaseFullName("slow (very)"), nullptr);
}

// Files may hold anything; a chain of modifiers on modifiers must go without a call for each.
TEST(Mods, AChainOfAnyDepthIsWalkedAndDropped) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Beam)");
  clsMod* last = &world.PutMod(item, "name(M)");
  for (int i = 0; i < 200000; ++i) last = &world.PutMod(*last, "name(M)");
  EXPECT_EQ(last->RootOwnerItem(), &item);
  EXPECT_EQ(world.character.GetObjectFromIDKey(last->IDKey), last);
  EXPECT_LT(item.ExpandedModCaptions(false).size(), 200u);
  item.TerminateMods();
  EXPECT_TRUE(item.Mods.Empty());
}

}  // namespace
}  // namespace kvr
