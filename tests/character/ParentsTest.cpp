// Parents and children by the user's choice.
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

class Parents : public testing::Test {
 protected:
  clsItem& Add(const char* name) { return world.Added(name, kEquipment, -1); }
  std::vector<std::string> Selection(std::initializer_list<clsItem*> items) {
    std::vector<std::string> keys;
    for (clsItem* item : items) keys.push_back(item->KeyText());
    return keys;
  }

  CharacterWorld world{
      "[EQUIPMENT]\r\n"
      "Chest, basecost(10), isparent(yes), tl(3)\r\n"
      "Sack, basecost(2), isparent(yes)\r\n"
      "Lamp, basecost(7)\r\n"};
  KVRCharacter& character = world.character;
};

TEST_F(Parents, ATraitMovesFromOneParentToAnother) {
  clsItem &chest = Add("Chest"), &sack = Add("Sack"), &lamp = Add("Lamp");
  EXPECT_TRUE(character.MakeChildOf(lamp.KeyText(), chest.KeyText()));
  EXPECT_TRUE(character.MakeChildOf(lamp.KeyText(), sack.KeyText()));
  EXPECT_EQ(chest.ChildKeyList(), "");
  EXPECT_EQ(sack.ChildKeyList(), lamp.KeyText());
  EXPECT_EQ(lamp.ParentKey(), sack.KeyText());
  character.UnmakeChildOf(lamp.KeyText());
  EXPECT_EQ(sack.ChildKeyList(), "");
  EXPECT_EQ(lamp.ParentKey(), "");
}

TEST_F(Parents, NoTraitBecomesItsOwnAncestor) {
  clsItem &chest = Add("Chest"), &sack = Add("Sack"), &lamp = Add("Lamp"), &other = Add("Lamp");
  EXPECT_TRUE(character.MakeChildOf(sack.KeyText(), chest.KeyText()));
  const std::string before = world.Everything();
  EXPECT_FALSE(character.MakeChildOf(chest.KeyText(), sack.KeyText()));
  EXPECT_FALSE(character.MakeChildOf(chest.KeyText(), chest.KeyText()));
  EXPECT_FALSE(character.MakeChildOf(other.KeyText(), lamp.KeyText()));  // no parent
  EXPECT_FALSE(character.MakeChildOf("k999", chest.KeyText()));
  lamp.SetTagItem("owned", "yes");
  EXPECT_FALSE(character.MakeChildOf(lamp.KeyText(), chest.KeyText()));
  lamp.DeleteTag("owned");
  EXPECT_EQ(world.Everything(), before);
  // A circle from a damaged file takes no child, and the walk along it ends.
  chest.SetParentKey(sack.KeyText());
  EXPECT_TRUE(character.DisallowParent(chest.KeyText(), lamp.KeyText()));
}

TEST_F(Parents, AFamilyIsAsDeepAsAFileCanBringBack) {
  std::vector<clsItem*> upper, lower;
  for (int i = 0; i < 60; ++i) {
    for (std::vector<clsItem*>* chain : {&upper, &lower}) {
      chain->push_back(&Add("Sack"));
      if (i > 0) {
        ASSERT_TRUE(character.MakeChildOf(chain->back()->KeyText(), (*chain)[chain->size() - 2]->KeyText()));
      }
    }
  }
  EXPECT_FALSE(character.MakeChildOf(lower[0]->KeyText(), upper[40]->KeyText()));
  EXPECT_TRUE(character.MakeChildOf(lower[0]->KeyText(), upper[39]->KeyText()));
  KVRCharacter again(world.env, world.system);
  EXPECT_TRUE(again.FileRead(world.Write("deep.kvr4", character.FileText())));
  EXPECT_EQ(world.RedLog(), "");
  EXPECT_EQ(again.ItemByKey(lower.back()->IDKey)->ParentKey(), lower.back()->ParentKey());
}

TEST_F(Parents, TheUserPicksAParentForTheSelection) {
  clsItem &chest = Add("Chest"), &sack = Add("Sack"), &lamp = Add("Lamp"), &owned = Add("Lamp");
  owned.SetTagItem("owned", "yes");
  world.Answer("Chest/TL3");
  character.MakeChild(Selection({&lamp, &owned, &sack}), kEquipment);
  EXPECT_EQ(chest.ChildKeyList(), lamp.KeyText() + "," + sack.KeyText());
  EXPECT_EQ(owned.ParentKey(), "");
  EXPECT_NE(world.Log().find("Parent 'Sack' was disallowed."), npos);
  character.UnmakeChild(Selection({&lamp, &owned, &sack}));
  EXPECT_EQ(chest.ChildKeyList(), "");
}

TEST_F(Parents, TheUserIsToldWhyThereIsNone) {
  const auto told = [&](const std::vector<std::string>& selected) {
    world.env.log.Clear();
    character.MakeChild(selected, kEquipment);
    const auto& lines = world.env.log.Lines();
    return lines.empty() ? std::string() : lines.back().text;
  };
  clsItem& lamp = Add("Lamp");
  EXPECT_EQ(told({}), "No traits selected.");
  EXPECT_EQ(told(Selection({&lamp})),
            "No parent candidates found. You must create a parent before you can add children.");
  clsItem& sack = Add("Sack");
  EXPECT_EQ(told(Selection({&sack})),
            "No parent candidates found. Some parents were disallowed because they were either the items "
            "selected as children, or were themselves children of those items.");
  lamp.SetTagItem("owned", "yes");
  EXPECT_EQ(told(Selection({&lamp})), "No usable traits were selected. None were made children");
  EXPECT_EQ(world.env.log.Lines().front().text,
            "'Lamp' is owned by another item, and can't be made a child.");
  // Cancelled: nothing moves.
  const std::string before = world.Everything();
  told(Selection({&Add("Lamp")}));
  EXPECT_EQ(character.FindItem("Lamp", kEquipment)->ParentKey(), "");
  EXPECT_NE(world.Everything(), before);  // only the lamp just added
}

}  // namespace
}  // namespace kvr
