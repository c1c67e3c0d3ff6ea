#include "core/modFileIO.h"

#include <random>

#include "core/Numbers.h"
#include "core/clsFileReader.h"
#include "core/modTools.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

using namespace std::string_literals;

// A second run of the program in the same folders.
class Rerun {
 public:
  explicit Rerun(const TestWorld& world) : env(prompts_, events_) {
    env.Folders = world.env.Folders;
    modFileIO::IniReadDebugOptions(env);
    modFileIO::InitConfigDefaults(env);
    modFileIO::IniReadMRUList(env);
  }

 private:
  ScriptedPrompts prompts_;
  FrontEndEvents events_;

 public:
  Environment env;
};

std::string SettingsPath(const TestWorld& world) {
  return world.env.Folders.BaseAppDataFolder + "kvr.ini";
}

// The whole file of a first run: every key in its place, with its default. D stands for the documents folder.
const char kDefaults[] =
    "[RunOptions] AutoAddNeeds=-1 SysSpellsNeedsFilter=0 AllowHalfPointSpells=0 ModMaxNegPercentLimit=-80 "
    "ModMultPercents=0 ModifierGroupByType=0 DecrementToZero=0 UseDiceAddsConversion=0 AllowGMSTagging=0 "
    "ShowBonusesToMyself=0 NoAutoRecalc=0 NoCalcSecondaryFeatures=0 UptoAffectsPoints=-1 "
    "AddSkillsAtMinCost=-1 "
    "RuleOf=20 GlobalRuleOf=0 SeparatePackageCosts=0 AllowNonIQOptSpecs=0 DefaultTL=3 BasePoints=150 "
    "DisadLimit=-75 QuirkLimit=-5 AdsRefuseDupes=-1 PerksRefuseDupes=-1 DisadsRefuseDupes=-1 "
    "QuirksRefuseDupes=-1 SkillsRefuseDupes=-1 SpellsRefuseDupes=-1 EquipRefuseDupes=-1 "
    "PackagesRefuseDupes=-1 "
    "UserFilesCheck=0 "
    "[UIOptions] ShowWindowTabs=2 ShowCharacterTabs=2 ShowToolbar=1 ShowTraitBar=1 LargeToolbarIcons=-1 "
    "BarBand1Width=0 BarBand2Width=0 BarBand1NewRow=0 BarBand2NewRow=-1 NeverAskAboutNewModes=0 "
    "NeverAskAboutTemplateDuplicates=0 KeepFastFiles=-1 DefaultPlayerName= CampaignOnNewChar=0 "
    "QuickViewShadeAltLines=0 MultiLineSysItems=0 ModsButton=-1 BigModsButton=0 UseSimpleEdit=-1 "
    "ShowAllSystemModifiers=0 StatViewDesc=0 AdViewDesc=0 PerkViewDesc=0 DisadViewDesc=0 QuirkViewDesc=0 "
    "SkillViewDesc=0 SpellViewDesc=0 EquipViewDesc=0 PackageViewDesc=0 ModViewDesc=0 "
    "ChooseDataSetAtStartup=0 "
    "CheckFilesAtStartup=-1 ChosenPrinter= SheetOptionPages=0 UseCharInPlay=0 NewCharOnStart=0 "
    "QuickViewAsMain=0 ViewInfo=0 "
    "[ParentChild] ChildrenGroupByType=0 ChildrenSortOrder=0 ChildrenSortByName=-1 ChildrenSortByPoints=0 "
    "ChildrenSortByTag=0 ChildrenTagForSorting= "
    "[SysLists] AdSysWidth=45 PerkSysWidth=45 DisadSysWidth=45 QuirkSysWidth=45 SkillSysWidth=45 "
    "SpellSysWidth=45 EquipSysWidth=45 PackageSysWidth=45 "
    "[Folders] DataSet=default.kds DataSetPath=D\\data_sets\\ CharDir=D\\characters\\ "
    "DefaultKCS=charactersheet.kcs DefaultKCSPath=D\\sheets\\ NumAltKCS=1 "
    "AlternateKCS1=D\\sheets\\text_layout.kcs DefaultQuickView= DefaultQuickViewPath= CurCustomDataFile= "
    "[WindowCats] AdCombo=-1 PerkCombo=-1 DisadCombo=-1 QuirkCombo=-1 SkillCombo=-1 SpellCombo=-1 "
    "EquipCombo=-1 PackageCombo=-1 "
    "[WindowFilters] AdUseCustomFilter=0 PerkUseCustomFilter=0 DisadUseCustomFilter=0 QuirkUseCustomFilter=0 "
    "SkillUseCustomFilter=0 SpellUseCustomFilter=0 EquipUseCustomFilter=0 PackageUseCustomFilter=0 "
    "AdCustomFilter={{null}} PerkCustomFilter={{null}} DisadCustomFilter={{null}} QuirkCustomFilter={{null}} "
    "SkillCustomFilter={{null}} SpellCustomFilter={{null}} EquipCustomFilter={{null}} "
    "PackageCustomFilter={{null}} "
    "[NeedsChecking] NeedsDefaultLevelStats=1 NeedsDefaultLevelAds=1 NeedsDefaultLevelSkills=1 "
    "NeedsDefaultLevelSpells=1 NeedsDefaultLevelEquipment=1 NeedsDefaultLevelManeuvers=1 "
    "NeedsDefaultValueStats=score NeedsDefaultValueAds=level NeedsDefaultValueSkills=points "
    "NeedsDefaultValueSpells=points NeedsDefaultValueEquipment=count NeedsDefaultValueManeuvers=level "
    "[Components] AdShowComponents=0 PerkShowComponents=0 DisadShowComponents=0 QuirkShowComponents=0 "
    "SkillShowComponents=0 SpellShowComponents=0 EquipShowComponents=0 PackageShowComponents=0 "
    "[HiddenItems] StatShowHidden=0 AdShowHidden=0 PerkShowHidden=0 DisadShowHidden=0 QuirkShowHidden=0 "
    "SkillShowHidden=0 SpellShowHidden=0 EquipShowHidden=0 PackageShowHidden=0 "
    "[OrderBy] AdOrderBy= PerkOrderBy= DisadOrderBy= QuirkOrderBy= SkillOrderBy= SpellOrderBy= EquipOrderBy= "
    "PackageOrderBy= "
    "[CharFile] SaveRTFasPlainText=0 KeepVersions=0 "
    "[MRUFileList] MRUFile1= MRUFile2= MRUFile3= MRUFile4= "
    "[Debug] Debug=-1 DebugEchoToRun=-1 Logging=-1 "
    "[UserFolders] BaseMyDocsFolder=D\\ FolderDataFilesUSER=D\\data_files\\ FolderDataSets=D\\data_sets\\ "
    "FolderCharacters=D\\characters\\ FolderSheets=D\\sheets\\ ";

TEST(modFileIOTest, WritesEveryKeyInFileOrder) {
  TestWorld world;
  EXPECT_TRUE(modFileIO::WriteAllSettings(world.env));
  std::string written = world.Read(SettingsPath(world));
  modTools::ReplaceAll(written, world.Root() + "documents", "D");
  modTools::ReplaceAll(written, " ", "_");
  modTools::ReplaceAll(written, "\r\n\r\n", " ");
  modTools::ReplaceAll(written, "\r\n", " ");
  EXPECT_EQ(written, kDefaults);
}

// Gives every key of the file a value of its own; a further run must write back exactly these. So each key is
// read into and written from one field, and no field belongs to two keys.
TEST(modFileIOTest, EveryKeySurvivesARestart) {
  TestWorld world;
  modFileIO::WriteAllSettings(world.env);
  std::string changed;
  int number = 1000;
  clsFileReader reader;
  reader.FileOpen(SettingsPath(world));
  for (std::string line; !reader.FileEOF();) {
    line = reader.FileNextLine();
    const std::string before = line;
    const auto [key, value] = modTools::SplitKeyValue(before);
    if (line == "[UserFolders]") break;
    if (key == "NumAltKCS") {
      line = "NumAltKCS=2";
    } else if (line.find('=') != npos) {
      line = std::string(key) + "=" + (IsNumeric(value) ? "" : "text \"") + std::to_string(++number);
    }
    changed += line + "\r\n";
    if (key == "AlternateKCS1") changed += "AlternateKCS2=second\r\n";
  }
  world.Write(SettingsPath(world), changed);

  Rerun run(world);
  EXPECT_EQ(run.env.Config.RuleOf, run.env.UserOptions.RuleOf);
  EXPECT_GT(run.env.Config.NeedsDefaultLevelAds, 1000);
  // Writing an equal value changes nothing, so a key that is not read shows by its default.
  EXPECT_TRUE(modFileIO::WriteAllSettings(run.env));
  std::string written = world.Read(SettingsPath(world));
  written.resize(std::min(written.size(), written.find("[UserFolders]")));
  EXPECT_EQ(written, changed);
}

TEST(modFileIOTest, OptionsOfADataSetDoNotReachTheFile) {
  TestWorld world;
  world.env.Config.RuleOf = 16;
  world.env.Config.NeedsDefaultLevelSkills = 2.5;
  world.env.Config.NeedsDefaultValueAds = "points";
  world.env.UserOptions.UseCharInPlay = -1;
  modFileIO::WriteAllSettings(world.env);
  Rerun run(world);
  EXPECT_EQ(run.env.Config.RuleOf, 20);
  EXPECT_EQ(run.env.Config.NeedsDefaultLevelSkills, 1);
  EXPECT_EQ(run.env.Config.NeedsDefaultValueAds, "level");
  EXPECT_EQ(run.env.Config.UseCharInPlay, -1);
  run.env.UserOptions.NeedsDefaultLevelSkills = 2.5;
  modFileIO::WriteAllSettings(run.env);
  EXPECT_EQ(Rerun(world).env.Config.NeedsDefaultLevelSkills, 2.5);
}

TEST(modFileIOTest, UserFoldersFollowTheDocumentsFolder) {
  TestWorld world;
  world.Write(SettingsPath(world),
              "[UserFolders]\nBaseMyDocsFolder=\\srv\\mine\nFolderSheets=\\srv\\s\\\nFolderDataSets=\n");
  Rerun run(world);
  modFileIO::IniReadUserFolders(run.env);
  const Folders& folders = run.env.Folders;
  EXPECT_EQ(folders.BaseMyDocsFolder, "\\srv\\mine\\");
  EXPECT_EQ(folders.FolderCharacters, "\\srv\\mine\\characters\\");
  EXPECT_EQ(folders.FolderDataSets, "\\srv\\mine\\data sets\\");
  EXPECT_EQ(folders.FolderSheets, "\\srv\\s\\");
  EXPECT_EQ(folders.BaseProgramFolder, world.Root() + "program\\");
}

TEST(modFileIOTest, KeepsFourRecentFiles) {
  TestWorld world;
  const auto insert = [&](const char* file) {
    modFileIO::InsertMRUItem(world.env, file);
    std::string list;
    for (const std::string& entry : world.env.Config.MRUFiles) list += entry + "|";
    return list;
  };
  EXPECT_EQ(insert("a"), "a||||");
  EXPECT_EQ(insert("b"), "b|a|||");
  EXPECT_EQ(insert("a"), "a|b|||");
  EXPECT_EQ(insert("a"), "a|b|||");
  EXPECT_EQ(insert("A"), "A|a|b||");
  EXPECT_EQ(insert("c"), "c|A|a|b|");
  EXPECT_EQ(insert("d"), "d|c|A|a|");
  EXPECT_EQ(insert("A"), "A|d|c|a|");
  world.env.Config.MRUFiles[1].clear();
  modFileIO::WriteAllSettings(world.env);
  EXPECT_EQ(Rerun(world).env.Config.MRUFiles, (std::array<std::string, 4>{"A", "", "c", "a"}));
}

TEST(modFileIOTest, RecordsTemporaryBackupsAtOnce) {
  TestWorld world;
  using Files = std::vector<modFileIO::TempFile>;
  modFileIO::IniWriteTempFiles(
      world.env,
      {{"Mara", "\\t\\~1.tmp"}, {"Mara", "\\t\\~2.tmp"}, {"[x]=;y", "\\t\\~3.tmp"}, {"", "\\t\\~4.tmp"}});
  Rerun crashed(world);
  EXPECT_EQ(modFileIO::IniReadTempFiles(crashed.env), (Files{{"Mara", "\\t\\~1.tmp"},
                                                             {"Mara", "\\t\\~2.tmp"},
                                                             {"_x___y", "\\t\\~3.tmp"},
                                                             {"<no name given>", "\\t\\~4.tmp"}}));
  modFileIO::IniClearTempFiles(crashed.env);
  Rerun afterwards(world);
  EXPECT_EQ(modFileIO::IniReadTempFiles(afterwards.env), Files());
}

TEST(modFileIOTest, ReadsDataFileListLinksAndAliases) {
  TestWorld world;
  const std::vector<std::string> files(400, "a data file with quite a long name = odd.kdf");
  modFileIO::IniWriteDataFiles(world.env, files);
  modFileIO::WriteAllSettings(world.env);
  Rerun run(world);
  EXPECT_EQ(modFileIO::IniReadDataFiles(run.env), files) << "no limit of length";
  modFileIO::IniWriteDataFiles(world.env, {"one.kdf"});
  EXPECT_EQ(modFileIO::IniReadDataFiles(world.env), (std::vector<std::string>{"one.kdf"}));

  world.Write("%app%\\kvrlinks.ini", "[Links]\nZeta=https://zeta.example/?a=b\nAlpha=file.txt\n");
  const auto links = modFileIO::IniReadKVRLinks(world.env);
  ASSERT_EQ(links.size(), 2u);
  EXPECT_EQ(links[0].first, "Zeta");
  EXPECT_EQ(links[0].second, "https://zeta.example/?a=b");

  world.Write("%app%\\kvraliaslist.ini", "[Data]\n%sys%\\old.kdf=%sys%\\new.kdf\ngone.kdf=deleted\n");
  EXPECT_EQ(modFileIO::IniGetAlias(world.env, "OLD.kdf"), "%sys%\\new.kdf");
  EXPECT_EQ(modFileIO::IniGetAlias(world.env, "%SYS%\\Old.kdf"), "%sys%\\new.kdf");
  EXPECT_EQ(modFileIO::IniGetAlias(world.env, "Gone.kdf"), "deleted");
  EXPECT_EQ(modFileIO::IniGetAlias(world.env, "%user%\\old.kdf"), "");
}

// Whatever the settings file holds, the program starts and can write its settings again.
TEST(modFileIOTest, AnySettingsFileLoads) {
  TestWorld world;
  std::minstd_rand random(5);
  std::vector<std::string> files = {std::string(1'000'000, '\0'),
                                    std::string(1'000'000, '['),
                                    "[RunOptions]\n" + std::string(1'000'000, '='),
                                    "[Folders]\nNumAltKCS=2000000000\nDataSet=" + std::string(1'000'000, 'x'),
                                    "[Folders]\nNumAltKCS=-3\n",
                                    "\xFF\xFE[\0R\0",
                                    "[RunOptions]\r[runoptions]\rRuleOf=1e99\r"};
  std::string manyKeys = "[RunOptions]\n";
  for (int i = 0; i < 200'000; ++i) manyKeys += "Key" + std::to_string(i) + "=1\n";
  files.push_back(manyKeys);
  for (int i = 0; i < 20; ++i) {
    std::string noise;
    for (int j = 0; j < 3000; ++j) noise += "\r\n[]=;\0RuleOf\xE9\x80"s[random() % 15];
    files.push_back(noise);
  }
  for (const std::string& file : files) {
    SCOPED_TRACE(testing::PrintToString(file.substr(0, 40)));
    world.Write(SettingsPath(world), file);
    Rerun run(world);
    EXPECT_LE(run.env.Config.AlternateKCS.size(), 1000u);
    run.env.UserOptions.RuleOf = 17;
    EXPECT_TRUE(modFileIO::WriteAllSettings(run.env));
    EXPECT_EQ(Rerun(world).env.Config.RuleOf, 17);
  }
}

}  // namespace
}  // namespace kvr
