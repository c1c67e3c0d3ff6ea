#include <gtest/gtest.h>

#include "RecordWorld.h"
#include "character/modLists.h"

namespace kvr {
namespace {

TEST(TagLists, NewTagListTakesFieldsOutAndKeepsTheRest) {
  struct {
    std::string_view text, free;
  } const cases[] = {
      {"", ""},
      {"name(A), Page(12) ,cost( 5 )", ",Page(12),cost( 5 )"},
      {"no tag at all,cost(5", ",cost()"},
      {"page(5)é,x(1)", ",page(5)),x(1)"},
      {"gives(+1 to \"ST, 2),x(a,b(c,d)),y()", ",gives(+1 to \"ST, 2),x(a,b(c,d)),y()"},
      {"display(YES),a(1)", ",a(1)"},
      {"a(1),display(-1)", ",a(1)"},
      {"display(no)", ",display(no)"},
      {"points(12 pts),level(x),score(1.25),bonuslist(a)", ""},
  };
  for (const auto& each : cases) {
    clsItem item;
    item.NewTagList(each.text);
    EXPECT_EQ(item.TagListNoFill(), each.free) << each.text;
  }
}

TEST(TagLists, NewTagListReadsNumbersTolerantlyAndKeepsWhatTheTextDoesNotName) {
  clsItem item;
  item.NewTagList("name(A),points(12 pts),level(x),score(1.25),needscheck(-1)");
  EXPECT_EQ(item.TagItem("points"), "12");
  EXPECT_EQ(item.Level(), 0);
  EXPECT_EQ(item.Score(), 1.25);
  item.NewTagList("level(4),level(5)");
  EXPECT_EQ(item.Points(), Currency(12));
  EXPECT_EQ(item.NeedsCheck(), -1);
  EXPECT_EQ(item.Level(), 5);
  EXPECT_EQ(item.Name(), "A");
}

TEST(TagLists, WholeListsHaveTheirOrderAndForm) {
  clsItem item;
  item.NewTagList(
      "notes(n),description(d),creates(c),adds(a),needscheck(-1),premodspoints(1),baseapppoints(2),apppoints("
      "3),"
      "extrapoints(4),syspoints(5),bonuspoints(6),defpoints(7),multpoints(8),score(9.5),level(10),baselevel("
      "11),"
      "points(2),basepoints(1.5),childkeylist(k3),parentkey(k2),name(N),nameext(E),type(T),page(9)");
  EXPECT_EQ(
      item.TagList(),
      ",page(9),type(T),nameext(E),name(N),parentkey(k2),childkeylist(k3),basepoints(1.5),points(2),"
      "baselevel(11),level(10),score(9.5),multpoints(8),defpoints(7),bonuspoints(6),syspoints(5),"
      "extrapoints(4),apppoints(3),baseapppoints(2),premodspoints(1),needscheck(-1),taboofailed(0),adds(a),"
      "creates(c),description(d),notes(n)");
  EXPECT_EQ(
      item.TagListForSaving(),
      ",page(9),type(T),nameext(E),name(N),basepoints(1.5),points(2.0),baselevel(11),level(10),score(9.5),"
      "multpoints(8.0),defpoints(7.0),bonuspoints(6.0),syspoints(5.0),extrapoints(4.0),apppoints(3.0),"
      "premodspoints(1.0),needscheck(-1),taboofailed(0),adds(a),creates(c),description(d),notes(n)");
  clsItem empty;
  EXPECT_EQ(empty.TagList(), ",name(),needscheck(0),taboofailed(0)");
  clsItem copy;
  copy.NewTagList(item.TagList());
  EXPECT_EQ(copy.TagList(), item.TagList());
}

TEST(TagLists, SegmentsChangeTagsAndReportWhatStoodThere) {
  RecordWorld world;
  clsItem& item = world.Put(kAds, "name(Luck),cost(10),cat(Old),initmods(A),points(3),f#(1+1)");
  clsItem::SegmentChange replaced = item.TagListSegmentReplace("name(X),cost(5),points(4),new(1),f#(2)");
  EXPECT_FALSE(replaced.complete);
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(replaced.oldValues, (Pairs{{"cost", "10"}, {"points", "3"}, {"new", ""}, {"f#", "1+1"}}));
  EXPECT_EQ(item.Name(), "Luck");
  EXPECT_EQ(item.TagItem("cost"), "5");
  EXPECT_EQ(world.Logged("Request to replace Name or NameExt of item 'Luck' refused."), 1);

  clsItem::SegmentChange inserted =
      item.TagListSegmentInsert("NameExt(X), cat(New), initmods(B), fresh(one), cost(), cat(OLD)");
  EXPECT_FALSE(inserted.complete);
  EXPECT_EQ(inserted.oldValues, (Pairs{{"cat", "Old"}, {"initmods", "A"}, {"fresh", ""}}));
  EXPECT_EQ(item.TagItem("cat"), "New, Old");
  EXPECT_EQ(item.TagItem("initmods"), "B|A");
  EXPECT_EQ(item.TagItem("fresh"), "one");
  EXPECT_EQ(world.Logged("Request to insert into Name or NameExt of item 'Luck' refused."), 1);
  EXPECT_TRUE(item.TagListSegmentReplace("cost(1)").complete);
}

TEST(TagLists, AppendedTagsAreShadowedByEarlierOnes) {
  clsItem item;
  item.NewTagList("name(A),cost(1)");
  item.AppendToTagList("cost(2), page(3),empty(),(nameless),points(4)");
  EXPECT_EQ(item.TagListNoFill(), ",cost(1),cost(2),page(3),points(4)");
  EXPECT_EQ(item.TagItem("cost"), "1");
  EXPECT_EQ(item.TagItem("points"), "0");
}

TEST(TagLists, ChildrenAreListedInOrderOfArrival) {
  clsItem item;
  item.AddChild("");
  item.AddChild("k11");
  item.AddChild("k1");
  EXPECT_EQ(item.ChildKeyList(), "k11") << "the search for a child is one of text";
  EXPECT_FALSE(item.HasChild("k1"));
  item.AddChild("k2");
  item.AddChild("k3");
  item.AddChild("k2");
  EXPECT_EQ(item.ChildKeyList(), "k11,k2,k3");
  item.RemoveChild("k1");
  EXPECT_EQ(item.ChildKeyList(), "k11,k2,k3");
  item.RemoveChild("k2");
  EXPECT_EQ(item.ChildKeyList(), "k11,k3");
  EXPECT_TRUE(item.HasChild("k3"));
  item.RemoveChild("k11");
  item.RemoveChild("k3");
  EXPECT_EQ(item.ChildKeyList(), "");
}

TEST(TagLists, ClearLeavesKeyFlagAndSkillType) {
  RecordWorld world;
  clsItem item;
  item.Owner = &world.character;
  item.NewTagList(
      "name(N),nameext(E),type(IQ/H),points(3),score(2),needscheck(-1),notes(n),parentkey(k1),free(x)");
  item.IDKey = 7;
  item.Flag = clsItem::kNewlyAdded;
  world.PutMod(item, "name(M)");
  item.BonusList = {"+1"};
  item.Clear();
  EXPECT_EQ(item.TagList(), ",type(IQ/H),name(),needscheck(0),taboofailed(0)");
  EXPECT_EQ(item.LCaseName() + item.LCaseNameExt() + item.BonusListItems(1), "");
  EXPECT_EQ(item.IDKey, 7);
  EXPECT_EQ(item.Flag, clsItem::kNewlyAdded);
  EXPECT_EQ(item.Owner, nullptr);
  EXPECT_TRUE(item.Mods.Empty());
}

TEST(TagLists, EntriesGoToTheFrontOfACharactersLists) {
  std::string list;
  for (std::string_view entry : {"b", " ", " a ", "B", "c"}) modLists::InsertItemIntoList(entry, list);
  EXPECT_EQ(list, "c, a, b");
  std::string pipes = "x";
  for (std::string_view entry : {"y, z", "X"}) modLists::InsertItemIntoListAlt(entry, pipes, "|");
  EXPECT_EQ(pipes, "y, z|x");
}

}  // namespace
}  // namespace kvr
