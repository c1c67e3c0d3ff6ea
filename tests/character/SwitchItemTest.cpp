// Disabling and enabling components, new names, and traits that are put out of action.
#include "core/Numbers.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

class SwitchItem : public testing::Test {
 protected:
  SwitchItem() {
    component.SetTagItem("keep", std::to_string(bringer.IDKey));
    bringer.SetTagItem("pkids", std::to_string(component.IDKey));
  }

  CharacterWorld world{
      "[ADS]\r\n"
      "Fortune, 15, needs(AD:Grace), taboo(DI:Doom)\r\n"
      "Grace, 5\r\n"
      "[DISADS]\r\n"
      "{Doom, Slow (Cold)}, -15\r\n"
      "[TEMPLATES]\r\n"
      "Chosen One, 0\r\n"};
  KVRCharacter& character = world.character;
  clsItem& bringer = world.Added("Chosen One", kPackages);
  clsItem& component = world.Added("Fortune", kAds);
};

TEST_F(SwitchItem, DisablingPutsTheOppositeBesideTheTrait) {
  character.DisableItem(component.KeyText());
  EXPECT_EQ(component.FullName(), "Fortune*DISABLED*");
  EXPECT_EQ(component.TagItem("disabled"), "yes");
  EXPECT_EQ(component.TagItem("needs"), "");
  EXPECT_EQ(component.TagItem("needs*disabled*"), "AD:Grace");
  EXPECT_EQ(component.TagItem("taboo"), "");
  EXPECT_EQ(component.TagItem("taboo*disabled*"), "DI:Doom");
  EXPECT_EQ(character.FindItem("Fortune", kAds), nullptr);
  EXPECT_EQ(character.FindItem("Fortune*DISABLED*", kAds), &component);

  clsItem* negative = character.FindItem("NO Fortune", kAds);
  ASSERT_TRUE(negative);
  EXPECT_EQ(negative->TagItem("cost"), "-15");
  EXPECT_EQ(NumberText(negative->Points()), "-15");
  EXPECT_EQ(negative->TagItem("locked"), "yes");
  EXPECT_EQ(negative->TagItem("disabled"), "yes");
  EXPECT_EQ(negative->TagItem("disabledfrom"), std::to_string(component.IDKey));
  EXPECT_EQ(negative->TagItem("keep"), std::to_string(bringer.IDKey));
  EXPECT_EQ(component.TagItem("disabledwith"), std::to_string(negative->IDKey));
  EXPECT_EQ(bringer.TagItem("pkids"),
            std::to_string(negative->IDKey) + ", " + std::to_string(component.IDKey));
}

TEST_F(SwitchItem, EnablingEitherOfThePairUndoesIt) {
  const std::string before = world.Everything();
  for (bool byNegative : {false, true}) {
    const std::int32_t lastKey = character.LastKey;
    character.DisableItem(component.KeyText());
    character.EnableItem(byNegative ? character.FindItem("NO Fortune", kAds)->KeyText()
                                    : component.KeyText());
    character.LastKey = lastKey;
    EXPECT_EQ(world.Everything(), before);
  }
  EXPECT_NE(world.Log().find("Re-enabling Fortune*DISABLED*"), npos);
}

TEST_F(SwitchItem, AnyNameCanBeDisabled) {
  clsItem& doom = world.Added("Doom, Slow (Cold)", kDisads);
  doom.SetTagItem("keep", std::to_string(bringer.IDKey));
  character.DisableItem(doom.KeyText());
  clsItem* negative = character.FindItem("NO Doom, Slow (Cold)", kAds);
  ASSERT_TRUE(negative);
  EXPECT_EQ(NumberText(negative->Points()), "15");
}

TEST_F(SwitchItem, ADisabledTraitIsReachedByNothing) {
  component.SetTagItem("cost", "10/20/30");
  character.CreateNewItem(kAds, "name(Omen),cost(0),gives(+1 to AD:Fortune)", "", "", 0, 0, 0);
  ASSERT_EQ(component.Level(), 2);
  character.DisableItem(component.KeyText());
  EXPECT_EQ(component.Level(), 1);
  character.EnableItem(component.KeyText());
  EXPECT_EQ(component.Level(), 2);
}

// As files come that were edited: a mark that leads to the trait itself, to a stranger, or to a pair that is
// one family.
TEST_F(SwitchItem, ADamagedPairTakesNoOtherTraitAlong) {
  clsItem& grace = world.Added("Grace", kAds);
  component.SetTagItem("disabled", "yes");
  for (std::int32_t marked : {component.IDKey, grace.IDKey, 99}) {
    component.SetTagItem("disabled", "yes");
    component.SetTagItem("disabledwith", std::to_string(marked));
    character.EnableItem(component.KeyText());
    EXPECT_EQ(component.TagItem("disabled"), "");
    EXPECT_EQ(character.Items.Count(), 3u);
  }
  character.DisableItem(component.KeyText());
  clsItem& negative = *character.FindItem("NO Fortune", kAds);
  negative.SetTagItem("isparent", "yes");
  ASSERT_TRUE(character.MakeChildOf(component.KeyText(), negative.KeyText()));
  character.EnableItem(component.KeyText());
  EXPECT_EQ(world.Names(), (std::vector<std::string>{"Chosen One", "Grace"}));
}

TEST_F(SwitchItem, SaysWhyItCantSwitch) {
  const std::int32_t grace = world.Add("Grace", kAds);
  character.DisableItem(KeyTextOf(grace));
  EXPECT_NE(world.Log().find("CollectionKey = " + KeyTextOf(grace)), npos);
  EXPECT_NE(world.Log().find("'Grace' can't be disabled, because it's not a component."), npos);
  character.EnableItem(KeyTextOf(grace));
  EXPECT_NE(world.Log().find("'Grace' can't be enabled, because it's not disabled."), npos);
  character.DisableItem(component.KeyText());
  const std::string before = world.Everything();
  character.DisableItem(component.KeyText());
  character.DisableItem(character.FindItem("NO Fortune", kAds)->KeyText());
  for (const char* name : {"Fortune*DISABLED*", "NO Fortune"}) {
    EXPECT_NE(world.Log().find("'" + std::string(name) +
                               "' can't be disabled, because it's a disabled component, or represents one."),
              npos);
  }
  character.DisableItem("k999");
  character.EnableItem("k999");
  EXPECT_EQ(world.Everything(), before);
}

TEST_F(SwitchItem, ARenamedTraitIsFoundByItsNewNameOnly) {
  const std::int32_t grace = world.Add("Grace", kAds);
  character.Dirty = false;
  EXPECT_TRUE(character.RenameItem(KeyTextOf(grace), "Zeal", "of Old", false));
  EXPECT_TRUE(character.Dirty);
  EXPECT_EQ(character.FindItem("Grace", kAds), nullptr);
  EXPECT_EQ(character.FindItem("zeal (of old)", kAds), character.ItemByKey(grace));
  EXPECT_EQ(world.Tag(grace, "basedon"), "Grace");
  EXPECT_EQ(world.Names().back(), "Zeal (of Old)");
  for (const char* line : {"Start FullName = Grace", "NewName = Zeal", "NewExt = of Old",
                           "Start BasedOn = Grace", "p = 0", "End FullName = Zeal (of Old)"}) {
    EXPECT_NE(world.Log().find(line), npos) << line;
  }
  // Its first name stays noted; its own name in other letters is no duplicate.
  EXPECT_TRUE(character.RenameItem(KeyTextOf(grace), "ZEAL", "of Old", false));
  EXPECT_EQ(world.Tag(grace, "basedon"), "Grace");
  EXPECT_FALSE(character.RenameItem(KeyTextOf(grace), "fortune", "", false));
  EXPECT_NE(world.Log().find("'fortune' was already in use. A duplicate might now exist."), npos);
  EXPECT_EQ(character.ItemByKey(grace)->FullName(), "fortune");
}

TEST_F(SwitchItem, AFormulaFollowsTheNameAndNotTheKey) {
  const std::int32_t reader =
      character.CreateNewItem(kAds, "name(Echo),cost(0),formula(AD:Grace::level * 7)", "", "", 0, 0, 0);
  const auto points = [&] {
    character.PushTrickle(*character.ItemByKey(reader));
    return world.Tag(reader, "points");
  };
  const std::int32_t grace = world.Add("Grace", kAds);
  const std::string withGrace = points();
  character.RenameItem(KeyTextOf(grace), "Other", "", true);
  EXPECT_NE(points(), withGrace);
  character.RenameItem(KeyTextOf(grace), "Grace", "", true);
  EXPECT_EQ(points(), withGrace);
  character.RemoveItem(KeyTextOf(grace));
  EXPECT_NE(points(), withGrace);
}

TEST_F(SwitchItem, ATraitGoesOutOfActionAndBack) {
  const std::string before = world.Everything();
  character.DeActivateItem(component.KeyText());
  EXPECT_EQ(component.TagItem("inactive"), "yes");
  character.ReActivateItem(component.KeyText());
  EXPECT_EQ(world.Everything(), before);
  character.ReActivateItem(component.KeyText());
  character.DeActivateItem("k999");
  EXPECT_EQ(world.Everything(), before);
}

TEST_F(SwitchItem, ATraitIsNotLostWhenItsChangeFails) {
  EXPECT_THROW(character.ResortItem(component, [] { throw KVRError(ErrorNumber::TypeMismatch); }), KVRError);
  EXPECT_EQ(character.FindItem("Fortune", kAds), &component);
}

}  // namespace
}  // namespace kvr
