// The records behind a library: references and names, trait and modifier tag lists, skill types.
#include "library/Records.h"

#include <gtest/gtest.h>

#include "library/ModRecord.h"
#include "library/TypedKey.h"
#include "library/clsSkillCosts.h"
#include "library/clsSystemItem.h"

namespace kvr {
namespace {

TEST(Prefixes, TakeReferencesApart) {
  const struct {
    std::string_view text, prefix, rest;
    ItemType type;
  } cases[] = {
      {"SK: Sword (Broad)", "SK", "Sword (Broad)", 6},
      {"st:IQ", "st", "IQ", 1},
      {"Meta-Traits:X", "Meta-Traits", "X", 9},
      {"SK_RL:Run", "SK_RL", "Run", 6},
      {"equipmentcat:Tools", "equipmentcat", "Tools", 0},
      {"PECAT:Odd", "PECAT", "Odd", 0},
      {"gr:Blades", "gr", "Blades", 0},
      {"bytag:cat", "", "bytag:cat", 0},
      {"ST::level", "", "ST::level", 0},
      {"Plain name", "", "Plain name", 0},
      {" SK:Run", "", " SK:Run", 0},
      {"", "", "", 0},
  };
  for (const auto& c : cases) {
    const auto [prefix, rest] = modPrefixes::ExtractPrefix(c.text);
    EXPECT_EQ(prefix, c.prefix) << c.text;
    EXPECT_EQ(rest, c.rest) << c.text;
    EXPECT_EQ(modPrefixes::TypeFromPrefix(prefix), c.type) << c.text;
  }
  EXPECT_EQ(modPrefixes::FindPrefix("sp_rl:")->defaultTag, "level");
  EXPECT_EQ(modPrefixes::FindPrefix("at")->defaultTag, "score");
  EXPECT_EQ(modPrefixes::TypeFromTypeWord("Meta-Traits"), 9);
  EXPECT_EQ(modPrefixes::TypeFromTypeWord("EQ:"), 8);
  EXPECT_EQ(modPrefixes::TypeFromTypeWord("skills:"), 0);
  EXPECT_EQ(modPrefixes::TypeFromCollectionName("powers"), 5);
  EXPECT_EQ(modPrefixes::ItemTypeName(10), "");
}

TEST(Prefixes, SplitNames) {
  const struct {
    std::string_view text, name, ext, nameAtLast, extAtLast;
  } cases[] = {
      {"Sword (Broad)", "Sword", "Broad", "Sword", "Broad"},
      {"Aid (First (basic)) x", "Aid", "First (basic)", "Aid (First", "basic)) x"},
      {"Sword(Broad)", "Sword", "Broad", "Sword(Broad)", ""},
      {"Plain ", "Plain", "", "Plain", ""},
      {"Open (end", "Open", "end", "Open", "end"},
  };
  for (const auto& c : cases) {
    const auto first = modPrefixes::SplitNameAndExt(c.text);
    EXPECT_EQ(first.name, c.name) << c.text;
    EXPECT_EQ(first.ext, c.ext) << c.text;
    const auto last = modPrefixes::SplitNameAndExtAtLast(c.text);
    EXPECT_EQ(last.name, c.nameAtLast) << c.text;
    EXPECT_EQ(last.ext, c.extAtLast) << c.text;
  }
}

TEST(TypedKey, IsAsTheTextThatItMakes) {
  const std::string letters = "Sword of the Old King, (two-handed) ÄÖ and more";
  for (std::size_t length = 0; length <= letters.size(); ++length) {
    const std::string name = letters.substr(0, length), lower = LCase(name), text = "6" + name;
    ASSERT_EQ(HashNoCase(TypedKey{kSkills, name}), HashNoCase(text)) << name;
    ASSERT_EQ(HashNoCase(TypedKey{kSkills, lower}), HashNoCase(text)) << name;
    ASSERT_TRUE(EqualNoCase(text, TypedKey{kSkills, lower})) << name;
    ASSERT_FALSE(EqualNoCase(text, TypedKey{kSpells, name})) << name;
    ASSERT_FALSE(EqualNoCase(text, TypedKey{kSkills, text})) << name;
  }
}

TEST(SystemItem, ReadsTagLists) {
  clsSystemItem item;
  item.ItemType = kSkills;
  item.NewTagList("name(Fo), Cost( 5 ),junk, display(Yes),display(-1),cat(A, B),Upcost(f(1,2)), nameext(x)");
  EXPECT_EQ(item.TagListNoFill(), ",cost( 5 ),upcost(f(1,2))");
  EXPECT_EQ(item.TagList(), ",cost( 5 ),upcost(f(1,2)),cat(A, B),nameext(x),name(Fo)");
  EXPECT_EQ(item.FullName(), "Fo (x)");
  EXPECT_EQ(item.CollectionKey(), "6Fo (x)");
  EXPECT_EQ(item.TagItem("COST"), "5");
  EXPECT_EQ(item.TagItem("cat"), "A, B");
  EXPECT_EQ(item.TagItem("itemtype"), "SK");
  EXPECT_EQ(item.TagItem("fullname"), "Fo (x)");
  EXPECT_EQ(item.TagItem("none"), "");
  item.SetTagItem("COST", " 6 ");
  item.SetTagItem("TL", "3");
  EXPECT_EQ(item.TagListNoFill(), ",cost(6),upcost(f(1,2)),TL(3)");
  EXPECT_EQ(item.FullNameTL(), "Fo/TL3 (x)");
  item.DeleteTag("upcost");
  item.DeleteTag("name");
  EXPECT_EQ(item.TagListNoFill(), ",cost(6),TL(3)");
  EXPECT_EQ(item.Name(), "Fo");
  item.NewTagList("name(No),display(no)");
  EXPECT_EQ(item.TagItem("display"), "no");
}

TEST(SystemItem, EditsSegments) {
  clsSystemItem item;
  item.NewTagList("name(Foo),cost(5),cat(B),initmods(a)");
  std::vector<std::string> refused;
  EXPECT_EQ(item.TagListSegmentReplace("cost(7), name(Bar), page(3)", refused), "cost(5),name(),page()");
  EXPECT_EQ(item.TagItem("cost"), "7");
  EXPECT_EQ(item.TagItem("page"), "3");
  ASSERT_EQ(refused.size(), 1u);
  EXPECT_EQ(refused[0], "Request to replace Name or NameExt of item 'Foo' refused.");
  EXPECT_EQ(item.TagListSegmentInsert("cat(A, b), initmods(c), page(9)", refused),
            "cat(B),initmods(a),page(3)");
  EXPECT_EQ(item.Category(), "B, A");
  EXPECT_EQ(item.TagItem("initmods"), "a|c");
  EXPECT_EQ(item.TagItem("page"), "3, 9");

  item.FilePos = 12;  // a record of the cache is never written
  item.SetTagItem("cost", "1");
  item.SetTagItem("name", "Other");
  item.DeleteTag("cost");
  item.NewTagList("name(Other)");
  EXPECT_EQ(item.TagListSegmentReplace("cost(1)", refused), "");
  EXPECT_EQ(item.TagItem("cost"), "") << "its tags are in the cache file, not in memory";
  item.FilePos = 0;
  EXPECT_EQ(item.TagItem("name") + item.TagItem("cost"), "Foo7");
}

TEST(ModRecord, KeepsItsFieldsInTheList) {
  ModRecord mod;
  mod.NewTagList("Name( Weak ), nameext(Night),, Cost(-20%), bare, group(Limits)");
  EXPECT_EQ(mod.TagList(), ",name(Weak),nameext(Night),cost(-20%),group(Limits)");
  EXPECT_EQ(mod.TagItem("FullName"), "Weak (Night)");
  ModRecord same, other;
  same.NewTagList("name(WEAK), nameext(night), group(limits)");
  other.NewTagList("name(Weak), nameext(Nightl), group(imits)");
  EXPECT_EQ(mod.SysCollectionKey(), same.SysCollectionKey());
  EXPECT_NE(mod.SysCollectionKey(), other.SysCollectionKey());
  mod.SetTagItem("Group", " Flaws ");
  mod.SetTagItem("nameext", "Day");
  mod.DeleteTag("name");
  mod.DeleteTag("cost");
  EXPECT_EQ(mod.TagList(), ",name(Weak),nameext(Day),group(Flaws)");
  EXPECT_EQ(mod.Group(), "Flaws");
  EXPECT_EQ(mod.LCaseFullName(), "weak (day)");
}

TEST(SkillCosts, TurnPointsIntoStepsAndBack) {
  clsSkillCosts type;
  type.NewTagList(
      "name(IQ/H), baseadj(-2), costs(1/2,4/8/12), adds(0/0.5/1), zeropointsokay(No), subzero(-1)");
  EXPECT_EQ(type.Base(), -2);
  EXPECT_EQ(type.MinCost(), Currency(1));
  EXPECT_EQ(type.CostDiff(), Currency(4));
  EXPECT_FALSE(type.ZeroPointsOkay);
  EXPECT_TRUE(type.SubZero);
  const struct { int step, cost; } costs[] = {{-1, 0}, {0, 0}, {1, 1}, {4, 8}, {5, 12}, {6, 16}, {10, 32}};
  for (const auto& [step, cost] : costs) EXPECT_EQ(type.LevelCost(step), Currency(cost)) << step;
  const struct {
    int points, step;
  } steps[] = {{0, 0}, {1, 1}, {3, 2}, {4, 3}, {12, 5}, {15, 5}, {16, 6}, {60, 17}};
  for (const auto& [points, step] : steps) EXPECT_EQ(type.ReturnStepForCost(points), step) << points;
  EXPECT_EQ(type.LevelAdds(5), 2.0);

  type.Costs = "3";
  type.CalcValues();
  EXPECT_EQ(type.LevelCost(4), Currency(12));
  EXPECT_EQ(type.ReturnStepForCost(13), 4);
  type.Costs = "2/2";
  type.CalcValues();
  EXPECT_EQ(type.ReturnStepForCost(100), 2);
  type.Costs = "";
  type.CalcValues();
  EXPECT_EQ(type.ReturnStepForCost(100), 0);
}

}  // namespace
}  // namespace kvr
