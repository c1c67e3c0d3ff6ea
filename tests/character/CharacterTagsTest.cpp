#include <gtest/gtest.h>

#include "RecordWorld.h"

namespace kvr {
namespace {

TEST(CharacterTags, PropertiesAreReadAndWrittenByName) {
  struct {
    std::string_view tag, written, read;
  } const cases[] = {
      {"Name", " Ada ", "Ada"},       {"charactersheet", "a.kcs", "a.kcs"},
      {"flexfile", "b.kcs", "b.kcs"}, {"loadout", "Travel", "Travel"},
      {"basethdice", "3", "3"},       {"baseswadds", "x", "0"},
      {"inplay", "-1", "-1"},         {"refreshads", "-1", "-1"},
      {"refreshads", "0", "0"},       {"lastkey", "40", "40"},
      {"lastkey", "3", "40"},         {"totalcost", "77", "0"},
      {"adcount", "77", "1"},         {"currentload", "77", "0"},
      {"enclevel", "3", "5"},         {"dollarcost", "77", "0"},
      {"my tag", "(own)", "(own)"},   {"sum#", "2*3", "6"},
  };
  RecordWorld world;
  world.Put(kAds, "name(Luck)");
  for (const auto& each : cases) {
    world.character.SetTagItem(each.tag, each.written);
    EXPECT_EQ(world.character.TagItem(each.tag), each.read) << each.tag << " = " << each.written;
  }
  EXPECT_EQ(world.character.FlexFile, "b.kcs");
  EXPECT_EQ(world.character.CurrentLoadout, world.character.TagItem("currentloadout"));
  EXPECT_EQ(world.character.CharTagList, ",basethdice(3),my tag((own)),sum#(2*3)");
  EXPECT_EQ(world.Logged("KVRCharacter:TagItem: Error 13"), 1);
  EXPECT_EQ(world.character.TagItem("unknown"), "");
}

TEST(CharacterTags, WritingMarksTheCharacterAsChanged) {
  RecordWorld world;
  world.character.SetTagItem("totalcost", "5");
  EXPECT_FALSE(world.character.Dirty);
  world.character.SetTagItem("player", "Bo");
  EXPECT_TRUE(world.character.Dirty);
}

TEST(CharacterTags, FormulasReadWhatWasWritten) {
  RecordWorld world;
  clsItem& mood = world.Put(kStats, "name(Mood),basevalue(char::mood+1)");
  world.character.CreateAffectsLinks(mood);
  for (int value : {4, 7}) {
    world.character.SetTagItem("mood", std::to_string(value));
    world.character.CalcPointCosts();
    EXPECT_EQ(mood.Score(), value + 1);
  }
}

TEST(CharacterTags, StacksGiveTheLastFirst) {
  RecordWorld world;
  KVRCharacter& character = world.character;
  character.PushResponse("a");
  character.PushResponse("b");
  EXPECT_EQ(character.PopResponse(), "b");
  EXPECT_EQ(character.PopResponse(), "a");
  EXPECT_EQ(character.PopResponse(), "");
  character.ChangedItemAdd("First", 1);
  character.ChangedItemAdd("SECOND", 2);
  EXPECT_EQ(character.ChangedItemGet(), "second2");
  character.ChangedItemRemove();
  EXPECT_EQ(character.ChangedItemGet(), "first1");
  character.ChangedItemRemove();
  character.ChangedItemRemove();
  EXPECT_EQ(world.Logged("can't remove changed item, count is zero"), 1);
}

}  // namespace
}  // namespace kvr
