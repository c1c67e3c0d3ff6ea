// Data file commands and settings, run as lines of a data file; and the look-ups of what they leave.
#include <gtest/gtest.h>

#include "library/KVRSystem.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

class Commands : public testing::Test {
 protected:
  void SetUp() override { Reload(); }
  void Reload() {
    system.ClearLibrary();
    Run("[ADS]\r\n<Senses>\r\nEye, 5, page(1)\r\nEye (Night), 10, cat(Dark)\r\nEar, 3, tl(2)\r\n"
        "[SKILLS]\r\n<Arms>\r\nSword (Broad), DX/A, tl(2)\r\nSword (Long), DX/A, tl(10)\r\nEye, IQ/E, "
        "x(Odd)\r\n"
        "[ATTRIBUTES]\r\nIQ, basevalue(10)\r\n"
        "[GROUPS]\r\n<Blades>\r\nSK:Sword (Broad)\r\nSK:Sword (Long)\r\nAD:Eye\r\n");
    world.env.log.Clear();
  }
  void Run(std::string_view lines) {
    std::string program;
    world.Write("run.kdf", "Version=3\r\n" + std::string(lines));
    ASSERT_TRUE(system.LoadDataFile("run.kdf", program));
  }
  // Every trait as "type name(tags)", one after the other.
  std::string Names() {
    std::string names;
    for (const clsSystemItem& item : system.Items) names += item.CollectionKey() + ";";
    return names;
  }
  std::string Tag(std::string_view name, ItemType type, std::string_view tag) {
    const clsSystemItem* item = system.FindItem(name, type);
    return item ? item->TagItem(tag) : "none";
  }
  bool Logged(std::string_view text) { return world.Log().find(text) != std::string::npos; }

  TestWorld world;
  KVRSystem system{world.env};
};

constexpr std::string_view kAll = "2Ear;2Eye;6Eye;2Eye (Night);1IQ;6Sword (Broad);6Sword (Long);";

TEST_F(Commands, DeleteTraits) {
  const struct {
    std::string_view line, left;
  } cases[] = {
      {"#delete SK:Eye", "2Ear;2Eye;2Eye (Night);1IQ;6Sword (Broad);6Sword (Long);"},
      {"#DELETE \"eye (night)\"", "2Ear;2Eye;6Eye;1IQ;6Sword (Broad);6Sword (Long);"},
      {"#delete Eye", "2Ear;6Eye;2Eye (Night);1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletecat skills, ARMS", "2Ear;2Eye;2Eye (Night);1IQ;"},
      {"#deletecat all, senses", "6Eye;1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletecat ads, Arms", kAll},
      {"#deleteallcats ad:", "6Eye;1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletebytag ads, tl isempty", "2Ear;6Eye;1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletebytag skills, tl > 3", "2Ear;2Eye;6Eye;2Eye (Night);1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletebytag skills, tl > 3, num", "2Ear;2Eye;6Eye;2Eye (Night);1IQ;6Sword (Broad);"},
      {"#deletebytag all, tl <= 3, ignore empty num", "2Eye;6Eye;2Eye (Night);1IQ;6Sword (Long);"},
      {"#deletebytag skills, type = dx/a unless nameext contains LON",
       "2Ear;2Eye;6Eye;2Eye (Night);1IQ;6Sword (Long);"},
      {"#deletebytag all, cat hasinlist = Dark", "2Ear;2Eye;6Eye;1IQ;6Sword (Broad);6Sword (Long);"},
      {"#deletebytag all, cat hasinlist", kAll},
      {"#deletebytag sk, tl isnumeric unless # tl < 5", "2Ear;2Eye;6Eye;2Eye (Night);1IQ;6Sword (Broad);"},
      {"#deletebytag sk, x isnotempty, $", "2Ear;2Eye;2Eye (Night);1IQ;6Sword (Broad);6Sword (Long);"},
  };
  for (const auto& c : cases) {
    Reload();
    Run(c.line);
    EXPECT_EQ(Names(), c.left) << c.line;
    EXPECT_EQ(system.Count(kAds), static_cast<std::int32_t>(system.ReturnItemIndexes(kAds).size())) << c.line;
    EXPECT_EQ(world.RedLog(), "") << c.line;
  }
  // A name is found as the reader stored it.
  Reload();
  Run("[SKILLS]\r\n\"Joe \"\"Big\"\" Smith\", DX/E\r\n#delete \"Joe \"\"Big\"\" Smith\"");
  EXPECT_EQ(Names(), kAll);
  Reload();
  Run("#deletecat skills, ARMS");
  EXPECT_FALSE(system.Cats.Item("6Arms"));
  EXPECT_TRUE(system.Cats.Item("2Senses"));
}

TEST_F(Commands, CloneTraits) {
  Run("[ADS]\r\n<House>\r\n#clone SK:Sword (Broad) as {Blade, short (Bone)}\r\n#clone Eye as AD:Nose\r\n"
      "#clone Ear as Eye\r\n");
  EXPECT_EQ(Tag("Blade, short (Bone)", kSkills, "type"), "DX/A");
  EXPECT_EQ(Tag("Blade, short (Bone)", kSkills, "cat"), "Arms, House");
  EXPECT_EQ(Tag("Nose", kAds, "page"), "1");
  EXPECT_EQ(Tag("Nose", kAds, "nameext"), "");
  EXPECT_EQ(Tag("Eye", kAds, "cost"), "3") << "a clone replaces what has its name";
  EXPECT_EQ(system.Count(kAds), 4);
  EXPECT_EQ(system.Count(kSkills), 4);
}

TEST_F(Commands, EditTags) {
  Run("#replacetags in AD:Eye with cost(7), Name(Nose), new(x, y)\r\n"
      "#mergetags IN all eye with {cat(House, senses), list(a)}\r\n"
      "#replacetags in all SK:Sword with \"note(say \"\"with \"\" it)\"\r\n");
  EXPECT_EQ(Tag("Eye", kAds, "cost"), "7");
  EXPECT_EQ(Tag("Eye", kAds, "new"), "x, y");
  EXPECT_EQ(Tag("Eye", kAds, "cat"), "Senses, House");
  EXPECT_EQ(Tag("Eye (Night)", kAds, "cat"), "Dark, Senses, House");
  EXPECT_EQ(Tag("Eye", kSkills, "cat"), "Arms, House, senses");
  EXPECT_EQ(Tag("Eye", kSkills, "list"), "a");
  EXPECT_EQ(Tag("Sword (Long)", kSkills, "note"), "say \"with \" it");
  EXPECT_TRUE(system.Cats.Item("2House"));
  EXPECT_TRUE(Logged("Request to replace Name or NameExt of item 'Eye' refused."));
}

TEST_F(Commands, DeleteFromGroups) {
  const struct {
    std::string_view line;
    std::size_t left;
  } cases[] = {{"#deletefromgroup blades, SK:Sword (Long), Eye", 1},
               {"#deletefromgroup Blades SK:Sword (Broad)", 2},
               {"#deletefromgroup ALL blades", 0},
               {"#deletefromgroup Blades, all", 0},
               {"#deletefromgroup Blades, SK:Eye", 3}};
  for (const auto& [line, left] : cases) {
    Reload();
    Run(line);
    EXPECT_EQ(system.Groups.Count(), left) << line;
  }
  EXPECT_TRUE(Logged("Target not found: #deletefromgroup Blades, SK:Eye\n  (run.kdf, line 2)"));
}

TEST_F(Commands, TellWhatCannotBeDone) {
  const struct {
    std::string_view line, message;
  } cases[] = {
      {"#delete", "Bad Command: #delete"},
      {"#frobnicate it", "Bad Command: #frobnicate it"},
      {"#delete SK:Ear", "Target not found: #delete SK:Ear"},
      {"#clone Eye", "Bad Command: #clone Eye"},
      {"#clone Toe as Foot", "Source not found: #clone Toe as Foot"},
      {"#clone AD:Eye as SK:Foot", "Bad Command: #clone AD:Eye as SK:Foot"},
      {"#replacetags Eye with cost(1)", "Bad Command: #replacetags Eye with cost(1)"},
      {"#mergetags in all Toe with x(1)", "Target not found: #mergetags in all Toe with x(1)"},
      {"#deletecat skills", "Invalid #DeleteCat command: #deletecat skills"},
      {"#deletecat toes, x", "Invalid #DeleteCat item type: toes"},
      {"#deleteallcats toes", "Invalid #DeleteAllCats item type: toes"},
      {"#deletefromgroup Blades", "Bad Command: #deletefromgroup Blades"},
      {"#deletebytag ads", "Invalid #DeleteByTag command: #deletebytag ads"},
      {"#deletebytag toes, a = 1", "Invalid #DeleteByTag command: #deletebytag toes, a = 1"},
      {"#deletebytag ads, a", "Invalid #DeleteByTag command: #deletebytag ads, a"},
      {"#deletebytag ads, a = 1, odd", "Invalid #DeleteByTag command: #deletebytag ads, a = 1, odd"}};
  for (const auto& [line, message] : cases) {
    Reload();
    Run(line);
    EXPECT_EQ(world.RedLog(), std::string(message) + "\n  (run.kdf, line 2)\n");
    EXPECT_EQ(Names(), kAll) << line;
  }
}

TEST_F(Commands, EchoDeletingByTag) {
  Run("#deletebytag ads, cost > 1 unless page isnotempty, num, echolog\r\n");
  for (const std::string_view text : {"Executing #DeleteByTag: #deletebytag ads", "TraitType$ = ads",
                                      "TagName$ = 'cost'", "TagValue$ = '1'", "UnlessTagName$ = 'page'",
                                      "cost::Ear(3) <--> > '1'", "Will be Deleted Unless page isnotempty",
                                      "page::Eye(1) <--> IsNotEmpty", "Saved From Deleting", "Deleting Ear"})
    EXPECT_TRUE(Logged(text)) << text;
  Reload();
  Run("#deletebytag echologshort ads, cost > 1\r\n");
  EXPECT_TRUE(Logged("Deleting Ear"));
  EXPECT_FALSE(Logged("TagName$"));
}

TEST_F(Commands, SettingsHoldForTheDataSetOnly) {
  Run("[SETTINGS]\r\nRuleOf = 16.5\r\nneedsdefaultstattag=level\r\nNeedsDefaultAdValue=1.5\r\nunknown=3\r\n");
  EXPECT_EQ(world.env.Config.RuleOf, 16);
  EXPECT_EQ(world.env.Config.NeedsDefaultValueStats, "level");
  EXPECT_EQ(world.env.Config.NeedsDefaultLevelAds, 1.5);
  EXPECT_EQ(world.env.UserOptions.RuleOf, 20);
}

TEST_F(Commands, LeaveTraitsThatAreFound) {
  EXPECT_EQ(system.ItemPositionByNameAndExt("eye", kNoType), 2u);
  EXPECT_EQ(system.ItemPositionByNameAndExt("EYE(night)", kAds), 4u);
  EXPECT_EQ(system.ItemPositionByNameAndExt("Eye", kSkills, 3), 3u);
  EXPECT_EQ(system.ItemPositionByNameAndExt("Eye", kSkills, 4), 0u);
  EXPECT_EQ(system.ItemPositionByNameAndExt("Eye (Day)", kNoType), 0u);
  EXPECT_EQ(system.ItemPositionByNameOnly("Sword (Any)", kSkills), 6u);
  EXPECT_EQ(system.ItemPositionByNameOnly("Sword", kAds), 0u);
  EXPECT_EQ(system.GetAllItems("Eye", kAds), (std::vector<std::size_t>{2, 4}));
  EXPECT_EQ(system.FindItem("Sword(Long)", kNoType), &system.Items.Item(std::size_t{7}));
  EXPECT_EQ(system.ReturnItemCollectionKeys(kAds),
            (std::vector<std::string>{"2Ear", "2Eye", "2Eye (Night)"}));
  EXPECT_EQ(system.FullTagList.size(), 37u);

  system.Items.OrderBy = {{"tl", false, true}, {"fullname", true, false}};
  system.Items.OrderItems();
  std::string order;
  for (std::size_t i = 1; i <= system.Items.Count(); ++i)
    order += system.Items.OrderedItem(i).FullName() + ";";
  EXPECT_EQ(order, "Sword (Long);Ear;Sword (Broad);Eye;Eye;Eye (Night);IQ;");
  for (const std::string_view text : {"+$12", "-$12", "$12", "#12", "-12 ", "12"})
    EXPECT_EQ(NumberBehindMark(text), 12) << text;
}

}  // namespace
}  // namespace kvr
