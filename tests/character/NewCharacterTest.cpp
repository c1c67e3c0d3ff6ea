#include <gtest/gtest.h>

#include "RecordWorld.h"

namespace kvr {
namespace {

void AddStat(KVRSystem& system, std::string_view tagList) {
  clsSystemItem& stat = system.NewItem();
  stat.ItemType = kStats;
  stat.NewTagList(tagList);
  system.AddOrReplaceItem(stat, "");
}

TEST(NewCharacter, TakesItsStartValuesFromTheOptions) {
  RecordWorld world;
  world.env.Config.RuleOf = 16;
  world.env.Config.BasePoints = 100;
  world.env.Config.DefaultKCSPath = "c:\\sheets\\";
  world.env.Config.DefaultKCS = "plain.kcs";
  world.env.Config.AlternateKCS = {"wide.kcs"};
  world.system.DataSetPath = "c:\\sets\\";
  world.system.DataSet = "mine.kds";
  world.system.DataFiles = {{"%user%\\a.kdf", "c:\\files\\a.kdf"}, {"gone.kdf", ""}};
  KVRCharacter character(world.env, world.system);
  EXPECT_EQ(character.DataSet, "c:\\sets\\mine.kds");
  EXPECT_EQ(character.DataFiles, std::vector<std::string>{"c:\\files\\a.kdf"});
  EXPECT_EQ(character.FlexFile, "c:\\sheets\\plain.kcs");
  EXPECT_EQ(character.AltFlexFiles, std::vector<std::string>{"wide.kcs"});
  EXPECT_EQ(character.RuleOf, 16);
  EXPECT_EQ(character.Campaign.BasePoints, Currency(100));
  EXPECT_EQ(character.Campaign.DisadLimit, Currency(-75));
  EXPECT_EQ(character.Race + character.BodyType + character.ShieldFacingHexMask, "HumanHumanoid------");
  EXPECT_FALSE(character.DateCreated.empty());
}

TEST(NewCharacter, HasTheDefaultBodyWithoutOneInTheLibrary) {
  RecordWorld world;
  clsBody& body = world.character.Body;
  ASSERT_EQ(body.Parts().size(), 24u);
  EXPECT_EQ(body.Part("skull")->DR, "2");
  EXPECT_EQ(body.Part("LeftArm")->Group, "LeftArm, Arms, Limbs, Full Suit, All");
  EXPECT_FALSE(body.Part("LeftArm")->Expanded);
  EXPECT_TRUE(body.Part("Arms")->Expanded && body.Part("Arms")->Display);
  clsBodyItem wing;
  wing.Name = "Wing";
  wing.Cat = "Winged";
  world.system.BodyParts = {wing, wing};
  world.character.InitBodyParts();
  EXPECT_EQ(body.Parts().size(), 24u);
  world.character.BodyType = "Winged";
  world.character.InitBodyParts();
  EXPECT_EQ(body.Parts().size(), 1u);
  EXPECT_EQ(world.Logged("clsBody: Error 457"), 1);
}

TEST(NewCharacter, CopiesTheTablesAndTakesAllAttributes) {
  RecordWorld world;
  AddStat(world.system, "name(Wits),basevalue(10)");
  AddStat(world.system, "name(Tech Level),basevalue(1)");
  auto type = std::make_unique<clsSkillCosts>();
  type->NewTagList("name(IQ/H),costs(1/2/4),baseadj(-2)");
  world.system.SkillTypes.push_back(std::move(type));
  world.system.BasicDamageList = {{10, "1d", "-2", "1d", ""}};
  world.system.Cats.Add(std::make_unique<clsCategory>(clsCategory{"Mental", "", kAds}), "2Mental");
  world.env.Config.DefaultTL = 5;
  world.character.InitStartupValues();
  world.system.SkillTypes[0]->NewTagList("name(IQ/H),costs(9)");
  EXPECT_EQ(world.character.SkillType("iq/h")->MinCost(), Currency(1));
  EXPECT_EQ(world.character.BasicDamageList.size(), 1u);
  EXPECT_EQ(world.character.Cats.Count(), 1u);
  EXPECT_EQ(world.character.Count(kStats), 2);
  EXPECT_EQ(world.character.FindItem("Tech Level", kStats)->TagItem("basevalue"), "5");
  EXPECT_EQ(world.character.TL, 5);
  EXPECT_EQ(world.character.FindItem("Wits", kStats)->Score(), 10);
  EXPECT_EQ(world.character.ReturnSkillTypeIndexFromName("none"), 0u);
}

TEST(NewCharacter, HasAStatEvenWithoutAny) {
  RecordWorld world;
  world.character.InitStartupValues();
  ASSERT_EQ(world.character.Count(kStats), 1);
  EXPECT_EQ(world.character.Items.Item(std::size_t{1}).Name(), "NO DATA");
  EXPECT_EQ(world.character.NewKey(), 2);
}

TEST(NewCharacter, ClearGoesBackToTheStart) {
  RecordWorld world;
  KVRCharacter& character = world.character;
  clsItem& item = world.Put(kAds, "name(Luck)");
  world.PutMod(item, "name(M)");
  character.Name = "Ada";
  character.CharTagList = ",x(1)";
  character.BodyType = "Winged";
  character.Campaign.OtherPoints = 5;
  character.PushResponse("left over");
  character.SetRefreshList(kAds);
  character.Clear();
  EXPECT_EQ(character.Items.Count() + character.ItemsByType[kAds].Count() + character.ResponseCount(), 0u);
  EXPECT_EQ(character.Name + character.CharTagList, "");
  EXPECT_EQ(character.BodyType, "Humanoid");
  EXPECT_EQ(character.Body.Parts().size(), 24u);
  EXPECT_TRUE(character.Campaign.OtherPoints.IsZero());
  EXPECT_EQ(character.LastKey, 0);
  EXPECT_FALSE(character.Dirty || character.RefreshList(kAds));
}

}  // namespace
}  // namespace kvr
