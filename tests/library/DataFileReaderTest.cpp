// Whole roads from a data file's text to the library's records.
#include "library/DataFileReader.h"

#include <gtest/gtest.h>

#include <random>

#include "support/TestWorld.h"

namespace kvr {
namespace {

class DataFiles : public testing::Test {
 protected:
  // A file of format version 3.
  void Load(std::string_view text) { LoadBytes("Version=3\r\n" + std::string(text)); }
  void LoadBytes(std::string_view bytes) {
    world.Write("rules.kdf", bytes);
    ASSERT_TRUE(system.LoadDataFile("rules.kdf", program));
  }
  std::string Tags(std::string_view name, ItemType type) {
    const clsSystemItem* item = system.FindItem(name, type);
    return item ? item->TagList() : "none";
  }
  bool Logged(std::string_view text) { return world.Log().find(text) != std::string::npos; }

  TestWorld world;
  KVRSystem system{world.env};
  std::string program;
};

TEST_F(DataFiles, JoinLinesAndDropComments) {
  const struct {
    std::string_view text, name, tags;
  } cases[] = {
      {"Foo, 5 // comment", "Foo", ",cost(5),cat(),name(Foo)"},
      {"Foo, page(a// b)", "Foo", ",page(a// b),cat(),name(Foo)"},
      {"Foo, link(http://x.example), y(1 // 2)", "Foo", ",link(http://x.example),y(1 // 2),cat(),name(Foo)"},
      {"Foo,\r\n  5,\n\tpage(2)", "Foo", ",cost(5),page(2),cat(),name(Foo)"},
      {"Foo, list(a|\r\nb_\r\nc), x(1)", "Foo", ",list(a|bc),x(1),cat(),name(Foo)"},
      {"Foo,\r\n* comment\r\nBar, 3", "Bar", ",cost(3),cat(),name(Bar)"},
      {"Foo, 5, cat( A )", "Foo", ",cost(5),cat(A),name(Foo)"},
      {"Foo, notes(bar)\xC3\xA9", "Foo", ",notes(bar)),cat(),name(Foo)"},
      {"Foo, 5,", "Foo", ",cost(5),cat(),name(Foo)"},
      {"Foo, 5|", "Foo", ",cost(5|),cat(),name(Foo)"},
      {"Foo, 5_", "Foo", ",cost(5),cat(),name(Foo)"},
      {std::string_view("Foo,\0 5", 7), "Foo", ",cost(5),cat(),name(Foo)"},
  };
  for (const auto& c : cases) {
    system.ClearLibrary();
    Load("[ADS]\r\n" + std::string(c.text));
    EXPECT_EQ(Tags(c.name, kAds), c.tags) << c.text;
    EXPECT_EQ(system.Items.Count(), 1u) << c.text;
  }
  EXPECT_TRUE(Logged("A comment line threw away the lines joined before it: Foo, (rules.kdf, line 3)"));
}

TEST_F(DataFiles, ReadItemLinesForEachKindOfTrait) {
  const struct {
    std::string_view section, line, name;
    ItemType type;
    std::string_view tags;
  } cases[] = {
      {"[ads]", "Foo (Ext, b) x, 5, Page(1)", "Foo (Ext, b)", kAds,
       ",cost(5),page(1),cat(),nameext(Ext, b),name(Foo)"},
      {"[DISADS]", "{Foo, the \"bar\"}, 5", "Foo, the \"bar\"", kDisads,
       ",cost(5),cat(),name(Foo, the \"bar\")"},
      {"[QUIRKS]", "\"Foo, bar\", page(2), x(\"a, b\")", "Foo, bar", kQuirks,
       ",page(2),x(\"a, b\"),cat(),name(Foo, bar)"},
      {"[POWERS]", "Foo,,page(1)", "Foo", kPerks, ",cost(),page(1),cat(),name(Foo)"},
      {"[SKILLS]", "Foo, IQ/H, a(b(c),d)", "Foo", kSkills, ",type(IQ/H),a(b(c),d),cat(),name(Foo)"},
      {"[SPELLS]", "Foo, IQ/H, a(1)", "Foo", kSpells, ",a(1),type(M/H),cat(),name(Foo)"},
      {"[SPELLS]", "Bar, type(IQ/H)", "Bar", kSpells, ",type(IQ/H),cat(),name(Bar)"},
      {"[ATTR]", "Foo, 10, up(5)", "Foo", kStats, ",up(5),cat(),name(Foo)"},
      {"[META-TRAITS]", "Foo, 5, #ChildList(a,(b)), c(1)", "Foo", kPackages, ",cost(5),c(1),cat(),name(Foo)"},
      {"[EQUIP]", "Foo, name(Baz), name(Bar)", "Bar", kEquipment, ",cat(),name(Bar)"},
      {"[EQUIP]",
       "Axe, mode(own), newmode(Swing (two hands), damage(sw+1), reach(1,2)),x(1), newmode(Throw, acc(2), "
       "damage(thr))",
       "Axe", kEquipment,
       ",mode(own),x(1),mode(Swing (two hands)|Throw),damage(sw+1|thr),reach(1,2|),acc(|2),cat(),name(Axe)"},
      {"[SPELLS]", "Ray, newmode(a, b(1))", "Ray", kSpells, ",newmode(a, b(1)),type(M/H),cat(),name(Ray)"},
      {"[ADS]", "Foo, 1, {a(1), b(2)}, c(3)", "Foo", kAds, ",cost(1),{a(1),b(2)),c(3),cat(),name(Foo)"},
  };
  for (const auto& c : cases) {
    system.ClearLibrary();
    Load(std::string(c.section) + "\r\n" + std::string(c.line));
    EXPECT_EQ(Tags(c.name, c.type), c.tags) << c.line;
  }
  EXPECT_TRUE(Logged("A value without a tag: IQ/H (rules.kdf, line 3)"));
  EXPECT_TRUE(Logged("A value without a tag: 10 (rules.kdf, line 3)"));
}

// Reading a line straight into a record must give what its tag string gives, whatever the line holds.
TEST(ItemLines, ReadTheSameWithAndWithoutATagString) {
  constexpr std::string_view kPieces[] = {
      "a", "Cat", "name", "(", ")",        "()",           ",",
      " ", "\"",  "{",    "}", "x(1)",     ", ",           ",y(",
      ")", ")",   "(",    "é", "newmode(", "display(yes)", "words, enough of them to fill much of a block"};
  std::mt19937 random(11);
  TestWorld world;
  const KVRSystem system(world.env);
  int plain = 0;
  for (int round = 0; round < 60'000; ++round) {
    std::string line;
    for (std::size_t n = random() % 14; n > 0; --n) line += kPieces[random() % std::size(kPieces)];
    const auto kind = static_cast<ItemLines::Kind>(random() % 7);
    ItemLines::Notes notes, otherNotes;
    clsSystemItem read, parsed;
    if (!ItemLines::ReadPlainLine(system, read, line, kind, notes)) continue;
    ++plain;
    ItemLines::ReadByTagString(parsed, line, kind, otherNotes);
    ASSERT_EQ(read.TagList(), parsed.TagList()) << line;
    ASSERT_EQ(notes.valueWithoutTag, otherNotes.valueWithoutTag) << line;
  }
  EXPECT_GT(plain, 5'000);
}

TEST_F(DataFiles, ConvertCostsOfOlderVersions) {
  const std::string_view body =
      "[ADS]\r\nFoo, cost(1/1/2)\r\nBar, 1.5/1.5\r\nBaz, *2/3\r\nversion=9\r\n[ATTR]\r\nFoo, "
      "up(1/2),down(3/3)\r\n"
      "[SKILLS]\r\nFoo, cost(1/1)\r\n[MODS]\r\n<G>\r\nM, +10%/+5%/-20%\r\nN, x2/3\r\nO, 5\r\n";
  for (const std::string_view head : {"", "Version=2.5\r\n"}) {
    system.ClearLibrary();
    LoadBytes(std::string(head) + std::string(body));
    EXPECT_EQ(system.FindItem("Foo", kAds)->TagItem("cost"), "1/2/4");
    EXPECT_EQ(system.FindItem("Bar", kAds)->TagItem("cost"), "1.5/3");
    EXPECT_EQ(system.FindItem("Baz", kAds)->TagItem("cost"), "*2/3");
    EXPECT_EQ(system.FindItem("Foo", kSkills)->TagItem("cost"), "1/1");
    EXPECT_EQ(system.FindItem("version=9", kAds), nullptr);
    if (head.empty()) continue;  // without a version the one in the middle counts from there on
    EXPECT_EQ(system.FindItem("Foo", kStats)->TagItem("up"), "1/3");
    EXPECT_EQ(system.FindItem("Foo", kStats)->TagItem("down"), "3/6");
    EXPECT_EQ(system.FindMod("M", "g")->TagItem("cost"), "+10%/+15%/-5%");
    EXPECT_EQ(system.FindMod("N", "g")->TagItem("cost"), "x2/3");
  }
  EXPECT_EQ(system.FindItem("Foo", kStats)->TagItem("up"), "1/3");
}

TEST_F(DataFiles, MergeCategoriesWhenATraitIsDefinedAgain) {
  Load(
      "[ADS]\r\n<First:F>\r\nFoo, 5, cat(Own), page(1)\r\n<Second>\r\nBar, 1\r\nFOO, 7, cat(first, New)\r\n"
      "<First:G>\r\n[SKILLS]\r\nRun, DX/E\r\n[ATTR]\r\nST, cat(x)\r\n");
  const clsSystemItem* foo = system.FindItem("foo", kAds);
  ASSERT_TRUE(foo);
  EXPECT_EQ(foo->TagList(), ",cost(7),cat(first, New, Own, Second),name(FOO)");
  EXPECT_EQ(foo->IDKey, 3);
  EXPECT_EQ(system.Count(kAds), 2);
  EXPECT_EQ(system.FindItem("Run", kSkills)->Category(), "First") << "a heading holds across sections";
  EXPECT_EQ(system.FindItem("ST", kStats)->Category(), "x");
  ASSERT_TRUE(system.Cats.Item("2FIRST"));
  EXPECT_EQ(system.Cats.Item("2first")->Code, "G");
  EXPECT_TRUE(system.Cats.Item("2Own"));
  EXPECT_TRUE(system.Cats.Item("6First"));
  EXPECT_FALSE(system.Cats.Item("1x"));
  EXPECT_EQ(system.Cats.TypeCount(kAds), 4u);
}

TEST_F(DataFiles, ShareListsOfCategoriesAndKeepThemApart) {
  Load(
      "[ADS]\r\n<First>\r\nFoo, cat(Own)\r\nBar, cat(Own)\r\n#mergetags in AD:Foo with cat(More)\r\n"
      "Baz, cat(Own)\r\n#deletecat ads, Own\r\nQux, cat(Own)\r\n<Second>\r\nQuux, cat(Own)\r\n"
      "[QUIRKS]\r\nFoo, cat(Own)\r\n");
  EXPECT_EQ(system.Count(kAds), 2) << "the others went with their category";
  EXPECT_EQ(system.FindItem("Qux", kAds)->Category(), "Own, First");
  EXPECT_EQ(system.FindItem("Quux", kAds)->Category(), "Own, Second");
  EXPECT_EQ(system.FindItem("Foo", kQuirks)->Category(), "Own, Second");
  EXPECT_TRUE(system.Cats.Item("2Own")) << "a category that went comes back with the next trait of it";
  EXPECT_TRUE(system.Cats.Item("4Own"));
}

TEST_F(DataFiles, CopiesOfRecordsOutliveTheLibrary) {
  Load("[ADS]\r\n<First>\r\nFoo (Bar), 5, cat(Own), page(1)\r\nBaz, cat(Own)\r\n");
  const clsSystemItem copy = *system.FindItem("Foo (Bar)", kAds);
  clsSystemItem changed(copy);
  changed.MergeCategories("First, New");
  changed.SetTagItem("page", "2");
  system.ClearLibrary();
  Load("[ADS]\r\n<Other>\r\nA trait with another text in the place of the first one, 7\r\n");
  EXPECT_EQ(copy.TagList(), ",cost(5),page(1),cat(Own, First),nameext(Bar),name(Foo)");
  EXPECT_EQ(changed.TagList(), ",cost(5),page(2),cat(Own, First, New),nameext(Bar),name(Foo)");
  EXPECT_EQ(changed.LCaseName(), "foo");
}

TEST_F(DataFiles, ReadHeadings) {
  const struct {
    std::string_view heading, name, code;
  } cases[] = {{"<Name>", "Name", ""},
               {"< Name : Co >", "Name", "Co"},
               {"<\"Name: with <marks>\":Code>", "Name: with <marks>", "Code"},
               {"<A:B:C>", "A:B:C", ""},
               {"<>", "", ""},
               {"<a> <b>", "", ""},
               {"<a\"b>", "", ""}};
  for (const auto& c : cases) {
    system.ClearLibrary();
    Load("[ADS]\r\n<Before>\r\n" + std::string(c.heading) + "\r\nFoo, 1");
    EXPECT_EQ(system.FindItem("Foo", kAds)->Category(), c.name) << c.heading;
    const clsCategory* cat = system.Cats.Item("2" + std::string(c.name));
    EXPECT_EQ(cat ? cat->Code : "", c.code) << c.heading;
  }
  EXPECT_TRUE(Logged("Bad header: <a> <b>\n  (rules.kdf, line 4)"));
}

TEST_F(DataFiles, ReadTheOtherSections) {
  Load(
      "[GROUPS]\r\n<Blades>\r\nSK:Sword (Broad)\r\nsk:sword (broad)\r\nKnife\r\n<Tools>\r\nSK:Sword "
      "(Broad)\r\n"
      "[LISTS]\r\n<Metals>\r\nIron\r\nsilver, pure\r\nIRON\r\n"
      "[MODS]\r\n<Limits>\r\nWeak, -10%\r\nWEAK, -20%, group(other)\r\n<Other>\r\nWeak, -5%\r\n"
      "[SKILLTYPES]\r\nDX/E, costs(1/2)\r\nDX/A, baseadj(-1), costs(1/2/4)\r\ndx/e, costs(2/4)\r\n"
      "[BASICDAMAGE]\r\nst(1), thr(1D-5)\r\n[BASICDAMAGE]\r\nst(10), thr(1d-2), sw(2)\r\nst(99999999999)\r\n"
      "[CONVERTDICE]\r\nbreak(4), adddice(1), subtract(4)\r\n"
      "[BODY]\r\nname(Head), display(yes), posx(3)\r\n<Winged>\r\nname(Wing), basehp(st:hp/3), "
      "expanded(false)\r\n"
      "[PACKAGES]\r\n<Old>\r\n{Pack=A comment}\r\nline one\r\nline two\r\n{bad} {\r\n");
  EXPECT_EQ(system.Groups.Count(), 3u);
  EXPECT_EQ(system.Groups.ItemPosition("tools", "SWORD", "broad", kSkills), 3u);
  EXPECT_EQ(system.Groups.ItemPositionNoExt("Blades", "knife", kNoType), 1u);
  EXPECT_EQ(system.Groups.ItemPosition("Blades", "Sword", "", kSkills), 0u);
  EXPECT_EQ(system.Lists.Count(), 2u);
  EXPECT_EQ(system.Lists.Item(std::size_t{2}).Name, "silver, pure");

  EXPECT_EQ(system.Mods.Count(), 2u);
  EXPECT_EQ(system.FindMod("weak", "limits")->TagList(), ",name(WEAK),cost(-20%),group(Limits)");
  ASSERT_EQ(system.SkillTypes.size(), 2u);
  EXPECT_EQ(system.SkillTypes[0].get(), system.SkillType("DX/e"));
  EXPECT_EQ(system.SkillType("dx/e")->LevelCost(1), Currency(2));

  ASSERT_EQ(system.BasicDamageList.size(), 1u) << "a later table replaces the former";
  const clsBasicDamage& row = system.BasicDamageList[0];
  EXPECT_EQ(row.THBase + "," + row.THAdd + "," + row.SWBase + "," + row.SWAdd, "1,-2,2,");
  EXPECT_TRUE(Logged("KVRSystem:AddBasicDamageFromDataFile: Error 6: Overflow"));
  ASSERT_EQ(system.DamageBreaks.size(), 1u);
  EXPECT_EQ(system.DamageBreaks[0].Subtract, 4);

  ASSERT_EQ(system.BodyParts.size(), 2u);
  EXPECT_EQ(system.BodyParts[0].Cat, "Humanoid");
  EXPECT_TRUE(system.BodyParts[0].Display);
  EXPECT_EQ(system.BodyParts[1].Cat + system.BodyParts[1].BaseHP, "Wingedst:hp/3");
  EXPECT_FALSE(system.BodyParts[1].Expanded);
  EXPECT_EQ(system.BodyNames.Count(), 2u);

  ASSERT_EQ(system.Packages.Count(), 2u);
  const clsPackage& package = system.Packages.Item(std::size_t{2});
  EXPECT_EQ(package.Name + "|" + package.Comment + "|" + package.Group, "Pack|A comment|Old");
  EXPECT_EQ(package.Lines, (std::vector<std::string>{"line one", "line two"}));
  EXPECT_TRUE(Logged("Bad Package Name: {bad} {"));
}

TEST_F(DataFiles, ReadTheFileHeader) {
  LoadBytes(
      "\xEF\xBB\xBFVERSION=3\r\nProgram= 4.0.1 \r\nincomplete=Yes\r\nunknown (((\r\n[AUTHOR]\r\n"
      "Program=9, (free\r\n* text,\r\n[ADS]\r\nProgram=x\r\nIncomplete=no\r\n[SKILLS\r\nLost, 1\r\n");
  EXPECT_EQ(program, "4.0.1");
  EXPECT_TRUE(Logged("File is marked as Incomplete."));
  EXPECT_TRUE(Logged("Reading Unknown section"));
  EXPECT_TRUE(system.FindItem("Program=x", kAds));
  EXPECT_TRUE(system.FindItem("Incomplete=no", kAds));
  EXPECT_EQ(system.Items.Count(), 2u);
  EXPECT_TRUE(
      Logged("The following line does not have matched sets of parens:\n  unknown (((\n"
             "There are 3 '(' and 0 ')'.\n  (rules.kdf, line 4)"));
  EXPECT_FALSE(Logged("(free"));

  EXPECT_FALSE(system.LoadDataFile("absent.kdf", program));
  EXPECT_EQ(program, "");
  EXPECT_TRUE(Logged("File 'absent.kdf' was not found in any of the normal folders. Unable to load it."));
  EXPECT_EQ(KVRSystem::GetKDFDescription(world.Write("a.kdf", "* x\r\nDescription= Swords \r\n[ADS]")),
            "Swords");
  EXPECT_EQ(KVRSystem::GetKDFDescription(world.Write("a.kdf", "[ADS]\r\nDescription=x")),
            "<no description found>");
  EXPECT_EQ(KVRSystem::GetKDFDescription("\\no\\such.kdf"), "<file not found>");
}

// What no author means, at sizes where anything but one pass over the text would not come back.
TEST_F(DataFiles, SurviveWhatIsNoDataFile) {
  constexpr std::size_t kBig = 3'000'000;
  std::string noise(kBig, ' ');
  std::mt19937 random(5);
  for (char& c : noise) c = static_cast<char>(random());
  std::string continued = "[ADS]\r\n", modes = "[EQUIP]\r\nBow", types = "[SKILLTYPES]\r\n";
  for (std::size_t i = 0; i < kBig / 10; ++i) continued += "x(12345),\n";
  for (std::size_t i = 0; i < kBig / 20; ++i) modes += ", newmode(a, t" + std::to_string(i) + "(1))";
  for (std::size_t i = 0; i < kBig / 20; ++i) types += "T" + std::to_string(i) + ", costs(1)\n";
  std::string cats = "[ADS]\r\nFoo, 1, cat(a";
  for (std::size_t i = 0; i < kBig / 10; ++i) cats += ",c" + std::to_string(i);
  cats += ")\r\n";
  const std::string deep(100'000, '('), closed(100'000, ')');
  const std::string texts[] = {noise,
                               "[ADS]\n" + noise,
                               std::string("\xFF\xFE[\0A\0D\0S\0]\0\n\0F\0o\0o\0", 20),
                               continued,
                               modes,
                               types,
                               cats + cats.substr(7),
                               "[ADS]\nFoo, 1, x" + deep + closed,
                               "[ADS]\nFoo, 1, x" + closed + deep,
                               "[ADS]\n<" + deep + closed + ">",
                               "[ADS]\nFoo, d(" + std::string(10'000'000, 'y') + ")"};
  for (const std::string& text : texts) {
    system.ClearLibrary();
    LoadBytes("Version=3\n" + text);
  }
  EXPECT_EQ(system.FindItem("Foo", kAds)->GetTagItem("d").size(), 10'000'000u);
  EXPECT_TRUE(Logged("More weapon modes than can be held; the rest of them is left out (rules.kdf, line 3)"));
}

TEST_F(DataFiles, SurviveBeingCutAnywhere) {
  const std::string whole =
      "Version=3\r\n[ADS]\r\n<A:B>\r\nFoo (x), 5, {b, c(1)}, newmode(m, d(1)),\r\n e(2)\r\n#clone Foo (x) as "
      "Bar\r\n"
      "[MODS]\r\n<G>\r\nM, +5%\r\n[BODY]\r\nname(a)\r\n#delete Bar\r\n";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    system.ClearLibrary();
    LoadBytes(std::string_view(whole).substr(0, length));
    EXPECT_LE(system.Items.Count(), 2u);
  }
}

}  // namespace
}  // namespace kvr
