// Data sets from the file to the library: load order, repair, what is missing, and the notices about flagged
// files.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "library/KVRSystem.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kHead = "Version=3\r\n";

std::string Noise(std::size_t size) {
  std::string noise(size, ' ');
  std::mt19937 random(7);
  for (char& c : noise) c = static_cast<char>(random());
  return noise;
}

class DataSets : public testing::Test {
 protected:
  void File(std::string_view name, std::string_view body) {
    world.Write(name, std::string(kHead) + std::string(body));
  }
  void Set(std::string_view name, std::string_view line) { world.Write(name, line, kDataSets); }
  bool Load(std::string_view name) { return system.LoadDataSet(name); }
  std::string Cost(std::string_view trait) {
    const clsSystemItem* item = system.FindItem(trait, kAds);
    return item ? item->TagItem("cost") : "none";
  }

  TestWorld world;
  KVRSystem system{world.env};
};

TEST_F(DataSets, LoadFilesInTheirOrder) {
  File("base.kdf", "[ADS]\r\n<Sharp>\r\nKeen Eye, 5\r\nQuick Hand, 10\r\n");
  File("house.kdf", "[ADS]\r\n<House>\r\nkeen eye, 7\r\n");
  Set("both.kds", "files(\"base.kdf\", house.kdf)");
  ASSERT_TRUE(Load("both.kds"));
  EXPECT_EQ(Cost("Keen Eye"), "7");
  EXPECT_EQ(Cost("Quick Hand"), "10");
  EXPECT_EQ(system.FindItem("Keen Eye", kAds)->DisplayString, "keen eye\t7");

  Set("turned.kds", "files(house.kdf, base.kdf)");
  ASSERT_TRUE(Load("turned.kds"));
  EXPECT_EQ(Cost("Keen Eye"), "5");
  EXPECT_EQ(system.Count(kAds), 2);
}

TEST_F(DataSets, AnEmptySetIsNoError) {
  Set("empty.kds", "files()");
  EXPECT_TRUE(Load("empty.kds"));
  EXPECT_EQ(system.Items.Count(), 0u);
  EXPECT_TRUE(world.notices.empty());
}

TEST_F(DataSets, OneThatCannotBeReadLeavesTheLibraryAsItStands) {
  File("base.kdf", "[ADS]\r\nKeen Eye, 5\r\n");
  Set("good.kds", "files(base.kdf)");
  ASSERT_TRUE(Load("good.kds"));
  Set("huge.kds", "files()");
  std::filesystem::resize_file(Files::Native(world.Path("huge.kds", kDataSets)), 3ull << 30);  // with a hole
  EXPECT_FALSE(Load("huge.kds"));
  EXPECT_EQ(Cost("Keen Eye"), "5");
  EXPECT_EQ(system.DataSet, "good.kds");
  EXPECT_NE(world.RedLog().find("huge.kds' could not be read"), npos);
}

TEST_F(DataSets, AreLookedForWithTheUserThenAsShippedThenBesideTheProgram) {
  File("a.kdf", "[ADS]\r\nMine, 1\r\n");
  const std::string beside = world.env.Folders.BaseProgramFolder + "data sets\\where.kds";
  world.Write(beside, "files(a.kdf)");
  EXPECT_EQ(system.FindDataSet("where.kds"), beside);
  const std::string shipped =
      world.Write(world.env.Folders.BaseAppDataFolder + "data sets\\where.kds", "files(a.kdf)");
  EXPECT_EQ(system.FindDataSet("where.kds"), shipped);
  const std::string own = world.Write("where.kds", "files(a.kdf)", kDataSets);
  EXPECT_EQ(system.FindDataSet("where.kds"), own);
}

TEST_F(DataSets, AMovedFileIsRepairedAndSavedOnce) {
  world.Write(world.env.Folders.BaseProgramFolder + "kvraliaslist.ini",
              "[Data]\r\nold name.kdf=new name.kdf\r\ngone.kdf=DELETED\r\n");
  File("new name.kdf", "[ADS]\r\nMoved, 3\r\n");
  Set("repair.kds", "files(old name.kdf, gone.kdf)");
  ASSERT_TRUE(Load("repair.kds"));
  EXPECT_EQ(Cost("Moved"), "3");
  EXPECT_EQ(world.RedLog(),
            "File has been moved from:\nold name.kdf\nAnd is now found here:\nnew name.kdf\n"
            "File is no longer used by KVR, and is no longer available:\ngone.kdf\n"
            "More than likely, data from this file is now included in the Basic Set data file.\n");
  EXPECT_EQ(world.Read("repair.kds", kDataSets), "files(\"new name.kdf\")\r\n");
  world.env.log.Clear();
  ASSERT_TRUE(Load("repair.kds"));
  EXPECT_EQ(world.RedLog(), "");
}

TEST_F(DataSets, AMissingFileIsSkippedAndTheRestLoads) {
  File("here.kdf", "[ADS]\r\nHere, 2\r\n");
  Set("part.kds", "files(not here.kdf, here.kdf)");
  ASSERT_TRUE(Load("part.kds"));
  EXPECT_EQ(Cost("Here"), "2");
  ASSERT_EQ(world.notices.size(), 1u);
  EXPECT_EQ(
      world.notices[0],
      "prompt: Data File Not Found: The Data File that I'm supposed to load now (not here.kdf) doesn't seem "
      "to "
      "exist. Please select the folder where it can be found from the next dialog box. (Press Cancel to skip "
      "loading this file.)");
  EXPECT_NE(world.Log().find("Skipping file (not here.kdf)"), std::string::npos);
}

TEST_F(DataSets, TheUserFindsAMissingFile) {
  world.Write(world.Root() + "elsewhere\\lost.kdf", "Version=3\r\n[ADS]\r\nLost, 4\r\n");
  Set("lost.kds", "files(lost.kdf)");
  world.Answer("ok");
  world.Answer(world.Root() + "elsewhere");
  ASSERT_TRUE(Load("lost.kds"));
  EXPECT_EQ(Cost("Lost"), "4");
  EXPECT_NE(world.Read("lost.kds", kDataSets).find("elsewhere\\lost.kdf"), std::string::npos);
}

TEST_F(DataSets, CancelAtAMissingSetKeepsWhatIsLoaded) {
  File("a.kdf", "[ADS]\r\nKept, 1\r\n");
  Set("a.kds", "files(a.kdf)");
  ASSERT_TRUE(Load("a.kds"));
  EXPECT_FALSE(Load("nowhere.kds"));
  EXPECT_EQ(Cost("Kept"), "1");
  EXPECT_EQ(system.DataSet, "a.kds");
}

TEST_F(DataSets, SettingsOfASetLastAsLongAsItIsLoaded) {
  world.env.UserOptions.RuleOf = 20;
  File("deadly.kdf", "[SETTINGS]\r\nRuleOf=14\r\n");
  File("plain.kdf", "[ADS]\r\nPlain, 1\r\n");
  Set("deadly.kds", "files(deadly.kdf)");
  Set("plain.kds", "files(plain.kdf)");
  ASSERT_TRUE(Load("deadly.kds"));
  EXPECT_EQ(world.env.Config.RuleOf, 14);
  ASSERT_TRUE(Load("plain.kds"));
  EXPECT_EQ(world.env.Config.RuleOf, 20);
}

TEST_F(DataSets, CategoriesWithoutATraitGo) {
  File("cats.kdf", "[ADS]\r\n<Empty>\r\n<Used>\r\nOne, 1\r\n");
  Set("cats.kds", "files(cats.kdf)");
  ASSERT_TRUE(Load("cats.kds"));
  EXPECT_EQ(system.Cats.Count(), 1u);
  EXPECT_EQ(system.Cats.Item(std::size_t{1}).Name, "Used");
  EXPECT_NE(world.Log().find("Deleting category: Empty"), std::string::npos);
}

TEST_F(DataSets, AFileForANewerProgramIsTold) {
  File("new.kdf", "Program=9.1\r\n[ADS]\r\nNew, 1\r\n");
  File("old.kdf", "Program=4.0\r\n[ADS]\r\nOld, 1\r\n");
  Set("new.kds", "files(new.kdf, old.kdf)");
  ASSERT_TRUE(Load("new.kds"));
  ASSERT_EQ(world.notices.size(), 1u);
  EXPECT_NE(world.notices[0].find("new.kdf (specifies v.9.1)"), std::string::npos);
  EXPECT_EQ(world.notices[0].find("old.kdf"), std::string::npos);
}

TEST_F(DataSets, AreWrittenInOneLine) {
  const std::string path = world.Path("w.kds", kDataSets);
  ASSERT_TRUE(KVRSystem::WriteDataSetFile(path, {"%SYS%\\base.kdf", "%user%\\own, odd.kdf"}));
  EXPECT_EQ(world.Read("w.kds", kDataSets), "files(\"base.kdf\", \"%user%\\own, odd.kdf\")\r\n");
  ASSERT_TRUE(KVRSystem::WriteDataSetFile(path, {"b\xC3\xA4r.kdf"}));
  EXPECT_EQ(system.ReadDataSetFiles("w.kds"), std::vector<std::string>{"b\xC3\xA4r.kdf"});
}

TEST_F(DataSets, SurviveWhatIsNoDataSet) {
  File("a.kdf", "[ADS]\r\nHere, 1\r\n");
  const std::string itself = "%userbase%\\data sets\\odd.kds";
  const std::string noise = Noise(300'000);
  const struct {
    std::string bytes;
    std::size_t files, traits;
  } cases[] = {
      {"files(" + itself + ", a.kdf)", 2, 1},
      {"files(a.kdf, nowhere.kdf, %user%\\, \"\", , a.kdf", 4, 1},
      {std::string("\xFF\xFE"
                   "f\0i\0l\0e\0s\0(\0a\0.\0k\0d\0f\0)\0",
                   26),
       1, 1},
      {std::string("\0\x01\x02"
                   "files(a.kdf)\0",
                   16) +
           "\nfiles(a.kdf)",
       1, 1},
      {noise, npos, 0},
      {"files(" + std::string(100'000, '(') + ", a.kdf", npos, 0},
      {"x(" + std::string(10'000'000, 'y') + "), files(a.kdf)", 1, 1},
      {"files(a.kdf)\nfiles()", 0, 0},
  };
  for (const auto& c : cases) {
    Set("odd.kds", c.bytes);
    EXPECT_TRUE(Load("odd.kds"));
    EXPECT_EQ(system.Items.Count(), c.traits) << c.bytes.substr(0, 80);
    EXPECT_TRUE(c.files == npos || c.files == system.DataSetFileCount()) << c.bytes.substr(0, 80);
    EXPECT_EQ(world.Read("odd.kds", kDataSets), c.bytes) << "a set that needed no repair is not written";
  }
}

struct FlagCase {
  std::string_view name;
  std::string_view a, b;  // heads of a.kdf and b.kdf, loaded in this order
  std::string_view title, entry;
};

class DataFileFlags : public DataSets, public testing::WithParamInterface<FlagCase> {};

TEST_P(DataFileFlags, AreNoticed) {
  const FlagCase& flag = GetParam();
  world.Write("a.kdf", std::string(flag.a) + "\r\n[ADS]\r\ntaboo=b.kdf\r\n");
  world.Write("b.kdf", std::string(flag.b) + "\r\n");
  std::string notices;
  const bool accepted = system.CheckDataFileFlags({"a.kdf", "b.kdf"}, notices);
  if (flag.title.empty()) {
    EXPECT_EQ(notices, "");
    EXPECT_TRUE(accepted);
    return;
  }
  EXPECT_FALSE(accepted);
  const std::string rule(30, '-');
  EXPECT_NE(notices.find(rule + "\r\n" + std::string(flag.title) + "\r\n" + rule + "\r\n"), std::string::npos)
      << notices;
  EXPECT_NE(notices.find("\r\n" + std::string(flag.entry) + "\r\n"), std::string::npos) << notices;
}

INSTANTIATE_TEST_SUITE_P(
    Heads, DataFileFlags,
    testing::Values(
        FlagCase{"Taboo", "taboo=x.kdf, \"B.kdf\"", "", "TABOO", "a.kdf <-> b.kdf"},
        FlagCase{"RequiresLater", "requires=b.kdf", "", "REQUIRES", "a.kdf -> requires -> b.kdf"},
        FlagCase{"RequiresMet", "", "Requires = a.kdf", "", ""},
        FlagCase{"LoadAfter", "loadafter=b.kdf", "", "LOADAFTER", "a.kdf -> after -> b.kdf"},
        FlagCase{"LoadAfterAll", "loadafter=all", "", "LOADAFTER",
                 "a.kdf -> after -> ALL regular data files"},
        FlagCase{"TwoThatLoadAfterAll", "loadafter=all", "loadafter=all", "", ""},
        FlagCase{"TwoWorlds", "worldbook=Moors", "worldbook=Isles", "WORLD BOOKS", "a.kdf [Setting: Moors]"},
        FlagCase{"OneWorld", "worldbook=Moors", "worldbook=moors", "", ""},
        FlagCase{"AWorldWithoutATag", "worldbook=", "worldbook=Isles", "WORLD BOOKS", "a.kdf [Setting: ]"},
        FlagCase{"NoWorld", "worldbook=no", "worldbook=Isles", "", ""},
        FlagCase{"Incomplete", "", "Incomplete=yes", "INCOMPLETE", "b.kdf"},
        FlagCase{"Complete", "incomplete=no", "", "", ""},
        FlagCase{"InAComment", "* incomplete=yes", "// taboo=a.kdf", "", ""}),
    [](const auto& flagCase) { return std::string(flagCase.param.name); });

TEST_F(DataSets, MissingFilesAreNoticedAndOkAcceptsAll) {
  std::string notices;
  world.Answer("ok");
  EXPECT_TRUE(system.CheckDataFileFlags({"nowhere.kdf"}, notices));
  EXPECT_NE(notices.find("MISSING FILES"), std::string::npos);
}

}  // namespace
}  // namespace kvr
