#include <gtest/gtest.h>

#include "RecordWorld.h"

namespace kvr {
namespace {

struct Case {
  std::string_view tag, written, read;
};

TEST(TagItem, ReadsBackWhatIsWritten) {
  const Case cases[] = {
      {"Points", " 12.5 ", "12.5"},
      {"points", "", "0"},
      {"basepoints", "-0.25", "-0.25"},
      {"baselevel", "7", "7"},
      {"LEVEL", "-3", "-3"},
      {"score", "12.34567", "12.3457"},
      {"needscheck", "-1", "-1"},
      {"taboofailed", "5", "-1"},
      {"type", "IQ/H", "IQ/H"},
      {"notes", "two (2) words", "two (2) words"},
      {"ParentKey", "k4", "k4"},
      {"gives", "+1 to ST(max)", "+1 to ST(max)"},
      {"made up", "anything", "anything"},
      {"CasedTag", "Value", "Value"},
      {"bonuslist", "ignored", ""},
      {"conditionallist", "ignored", ""},
      {"itemtype", "Spells", "Skills"},
      {"fullname", "ignored", "Stealth"},
  };
  RecordWorld world;
  clsItem& item = world.Put(kSkills, "name(Stealth)");
  for (const Case& each : cases) {
    item.SetTagItem(each.tag, each.written);
    EXPECT_EQ(item.TagItem(each.tag), each.read) << each.tag;
    EXPECT_EQ(item.TagItem(LCase(each.tag)), each.read) << each.tag;
  }
  EXPECT_NE(item.TagListNoFill().find(",CasedTag(Value)"), std::string::npos);
  EXPECT_EQ(item.TagItem("missing"), "");
  EXPECT_EQ(item.TagItem(""), "");
}

TEST(TagItem, ReplacesOneValueAndLeavesTheOthers) {
  clsItem item;
  item.NewTagList("name(A),gives(+1 to ST(max), +2 to DX),cost(5)");
  item.SetTagItem("GIVES", "+3 to HT");
  EXPECT_EQ(item.TagListNoFill(), ",gives(+3 to HT),cost(5)");
}

TEST(TagItem, ANumberThatIsNoneLeavesTheFieldAndIsLoggedOnce) {
  const Case cases[] = {{"points", "abc", "9"},
                        {"points", "1e30", "9"},
                        {"level", "99999999999", "9"},
                        {"score", "12x", "9"},
                        {"needscheck", "yes", "0"}};
  for (const Case& each : cases) {
    RecordWorld world;
    clsItem& item = world.Put(kAds, "name(Luck),points(9),level(9),score(9)");
    item.SetTagItem(each.tag, each.written);
    EXPECT_EQ(item.TagItem(each.tag), each.read) << each.tag;
    EXPECT_EQ(world.Logged("clsItem:TagItem: Error "), 1) << each.tag;
    EXPECT_EQ(world.Logged("'Luck'"), 1) << each.tag;
  }
}

TEST(TagItem, DeletesFieldsAndFreeTagsButNotTheIdentity) {
  const std::string_view all =
      "name(N),nameext(E),parentkey(k1),childkeylist(k2),multpoints(1),defpoints(2),bonuspoints(3),syspoints("
      "4),"
      "extrapoints(5),apppoints(6),type(T),basepoints(7),points(8),baselevel(9),level(10),score(11),"
      "baseapppoints(12),premodspoints(13),needscheck(-1),taboofailed(-1),adds(A),creates(C),description(D),"
      "notes(O),free(x)";
  const Case cases[] = {{"name", "", "N"},
                        {"nameext", "", "E"},
                        {"parentkey", "", "k1"},
                        {"childkeylist", "", "k2"},
                        {"multpoints", "", "1"},
                        {"defpoints", "", "2"},
                        {"bonuspoints", "", "3"},
                        {"syspoints", "", "4"},
                        {"extrapoints", "", "5"},
                        {"apppoints", "", "6"},
                        {"type", "", ""},
                        {"basepoints", "", "0"},
                        {"points", "", "0"},
                        {"baselevel", "", "0"},
                        {"level", "", "0"},
                        {"score", "", "0"},
                        {"baseapppoints", "", "0"},
                        {"premodspoints", "", "0"},
                        {"needscheck", "", "0"},
                        {"taboofailed", "", "0"},
                        {"adds", "", ""},
                        {"creates", "", ""},
                        {"description", "", ""},
                        {"notes", "", ""},
                        {"FREE", "", ""}};
  clsItem item;
  item.NewTagList(all);
  for (const Case& each : cases) {
    EXPECT_NE(item.TagItem(each.tag), "") << each.tag;
    item.DeleteTag(each.tag);
    EXPECT_EQ(item.TagItem(each.tag), each.read) << each.tag;
  }
  EXPECT_EQ(item.TagListNoFill(), "");
}

TEST(TagItem, LooksPastTheGroupInsideInitmods) {
  clsItem item;
  item.NewTagList("name(A),group(Mine),initmods({Far, group(Theirs), x(1),group(Tight)})");
  EXPECT_EQ(item.TagItem("group"), "Mine");
  // Standing behind, the value is taken at the place that it would have without initmods.
  clsItem behind;
  behind.NewTagList("name(A),initmods(q,group(T)),group(Mine)");
  EXPECT_EQ(behind.TagItem("group"), "");
  behind.DeleteTag("initmods");
  EXPECT_EQ(behind.TagItem("group"), "Mine");
}

TEST(TagItem, SolvesFormulaTags) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Runner),speed#(2+3),half#(1/8+1),plain(2+3)");
  EXPECT_EQ(item.TagItem("speed#"), "5");
  EXPECT_EQ(item.TagItem("Half#"), "1.125");
  EXPECT_EQ(item.TagItem("plain"), "2+3");
  EXPECT_EQ(item.TagItem("none#"), "");
}

TEST(TagItem, ANewNameKeepsTheCollectionsInOrder) {
  RecordWorld world;
  clsItem& first = world.Put(kAds, "name(Alpha)");
  world.Put(kAds, "name(Beta)");
  first.SetTagItem("name", "Gamma");
  EXPECT_EQ(world.character.FindItem("gamma", kAds), &first);
  EXPECT_EQ(world.character.Items.Item(std::size_t{2}).Name(), "Gamma");
  first.NewTagList("name(Aleph)");
  EXPECT_EQ(world.character.ItemPositionByNameAndExt("Aleph", kAds), 1u);
  EXPECT_EQ(world.character.ItemsByType[kAds].Item(std::size_t{1}).Name(), "Aleph");
}

}  // namespace
}  // namespace kvr
