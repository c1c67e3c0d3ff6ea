// What goes with a trait that is taken off the character, and what is asked about duplicates.
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kRules =
    "[ADS]\r\n"
    "Ancestry, 0, isparent(yes), owns(yes)\r\n"
    "Claws, 8\r\n"
    "Tail, 3\r\n"
    "Whiskers, 1\r\n";

class RemoveItem : public testing::Test {
 protected:
  clsItem& Add(const char* name) { return world.Added(name, kAds, -1); }
  // Makes the second a component of the first.
  void Bring(clsItem& bringer, clsItem& component) {
    component.SetTagItem("keep", std::to_string(bringer.IDKey));
    component.SetTagItem("owned", "yes");
    const std::string list = bringer.TagItem("pkids");
    bringer.SetTagItem("pkids", std::to_string(component.IDKey) + (list.empty() ? "" : ", " + list));
  }

  CharacterWorld world{kRules};
  KVRCharacter& character = world.character;
};

TEST_F(RemoveItem, TakesChildrenAlongLastOneFirst) {
  clsItem& parent = Add("Ancestry");
  character.MakeChildOf(Add("Claws").KeyText(), parent.KeyText());
  clsItem& inner = Add("Ancestry");
  character.MakeChildOf(inner.KeyText(), parent.KeyText());
  character.MakeChildOf(Add("Tail").KeyText(), inner.KeyText());
  const std::int32_t alone = Add("Whiskers").IDKey;
  character.Dirty = false;
  character.RemoveItem(parent.KeyText());
  EXPECT_EQ(world.Names(), std::vector<std::string>{"Whiskers"});
  EXPECT_EQ(character.Count(kAds), 1);
  EXPECT_TRUE(character.Dirty);
  character.RemoveItem("k999");
  character.RemoveItem("");
  EXPECT_TRUE(character.ItemByKey(alone));
}

TEST_F(RemoveItem, LeavesItsParentAndItsBringer) {
  clsItem& parent = Add("Ancestry");
  clsItem& child = Add("Claws");
  character.MakeChildOf(child.KeyText(), parent.KeyText());
  character.RemoveItem(child.KeyText());
  EXPECT_EQ(parent.ChildKeyList(), "");

  clsItem& first = Add("Claws");
  clsItem& second = Add("Tail");
  Bring(parent, first);
  Bring(parent, second);
  character.RemoveItem(first.KeyText());
  EXPECT_EQ(parent.TagItem("pkids"), std::to_string(second.IDKey));
}

TEST_F(RemoveItem, TakesComponentsAlong) {
  clsItem& bringer = Add("Ancestry");
  clsItem& inner = Add("Ancestry");
  Bring(bringer, inner);
  Bring(inner, Add("Claws"));
  Bring(bringer, Add("Tail"));
  Add("Whiskers");
  character.RemoveItem(bringer.KeyText());
  EXPECT_EQ(world.Names(), std::vector<std::string>{"Whiskers"});
  EXPECT_NE(world.Log().find("Ancestry: I should also be deleting: Tail"), npos);
}

TEST_F(RemoveItem, EndsOnTraitsThatGoRoundInCircles) {
  clsItem& one = Add("Claws");
  clsItem& two = Add("Tail");
  Bring(one, two);
  Bring(two, one);
  clsItem& self = Add("Whiskers");
  Bring(self, self);
  self.SetChildKeyList(self.KeyText() + "," + one.KeyText());
  one.SetChildKeyList(self.KeyText());
  self.SetParentKey(one.KeyText());
  character.RemoveItem(self.KeyText());
  EXPECT_TRUE(character.Items.Empty());
  EXPECT_TRUE(character.ItemsByType[kAds].Empty());
}

TEST_F(RemoveItem, FollowsALongChainOfComponents) {
  clsItem* bringer = &Add("Claws");
  const std::string first = bringer->KeyText();
  for (int i = 0; i < 400; ++i) {
    clsItem& next = Add("Claws");
    Bring(*bringer, next);
    bringer = &next;
  }
  character.RemoveItem(first);
  EXPECT_TRUE(character.Items.Empty());
}

TEST_F(RemoveItem, TakesModifiersOffOneByOne) {
  clsItem& item = Add("Claws");
  const std::int32_t one =
      character.CreateNewMod(item, "name(Sharp),cost(+10%),initmods({Very, +5%})", "Edge");
  character.CreateNewMod(item, "name(Blunt),cost(-10%)", "Edge");
  auto& sharp = *dynamic_cast<clsMod*>(character.GetObjectFromIDKey(one));
  const std::string inner(sharp.Mods.KeyAt(1));
  character.RemoveMod(item, inner);
  EXPECT_EQ(sharp.Mods.Count(), 1u);
  character.RemoveMod(sharp, inner);
  EXPECT_EQ(sharp.Mods.Count(), 0u);
  character.RemoveMod(item, KeyTextOf(one));
  ASSERT_EQ(item.Mods.Count(), 1u);
  EXPECT_EQ(item.Mods.Item(1).FullName(), "Blunt");
}

TEST_F(RemoveItem, AsksWhetherADuplicateStays) {
  const std::int32_t old = Add("Claws").IDKey;
  character.CheckDupe(old);
  ASSERT_TRUE(character.ItemByKey(old));
  ASSERT_EQ(world.notices.size(), 1u);
  EXPECT_EQ(world.notices[0],
            "prompt: Remove existing duplicate item?: Item 'Claws' already exists on the character. Should I "
            "delete the existing copy in favor of the item from this template? (If No, you should do so "
            "manually later.)");
  world.Answer("yes");
  character.CheckDupe(old);
  EXPECT_FALSE(character.ItemByKey(old));
}

TEST_F(RemoveItem, TellsOfADuplicateComponent) {
  clsItem& bringer = Add("Ancestry");
  clsItem& component = Add("Claws");
  Bring(bringer, component);
  character.CheckDupe(component.IDKey);
  ASSERT_EQ(world.notices.size(), 1u);
  EXPECT_EQ(
      world.notices[0],
      "prompt: Duplicate Item: Duplicate item.~P~PThere is already an item 'Claws' on the character. The "
      "existing item is a component of item 'Ancestry', so you'll have duplicate items. Work with your "
      "GM to resolve such stacking issues (p. B261).");
  world.Answer("ok, checked");
  character.CheckDupe(component.IDKey);
  character.CheckDupe(component.IDKey);  // without a question
  EXPECT_EQ(world.notices.size(), 1u);
}

}  // namespace
}  // namespace kvr
