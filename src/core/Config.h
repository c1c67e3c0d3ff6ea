// The user's options, one record. Filled by InitConfigDefaults and from kvr.ini, written back at shutdown;
// see modFileIO.h. Arrays by trait type have the bounds 1 to 9 (0 is unused).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kvr {

template <class T>
using ByType = std::array<T, 10>;

// The seventeen options that a data set may set for as long as it is loaded.
struct DataSetOptions {
  double NeedsDefaultLevelStats = 1;
  double NeedsDefaultLevelAds = 1;
  double NeedsDefaultLevelSkills = 1;
  double NeedsDefaultLevelSpells = 1;
  double NeedsDefaultLevelEquipment = 1;
  double NeedsDefaultLevelManeuvers = 1;
  std::string NeedsDefaultValueStats = "score";
  std::string NeedsDefaultValueAds = "level";
  std::string NeedsDefaultValueSkills = "points";
  std::string NeedsDefaultValueSpells = "points";
  std::string NeedsDefaultValueEquipment = "count";
  std::string NeedsDefaultValueManeuvers = "level";
  std::int32_t AllowHalfPointSpells = 0;
  std::int32_t ModMaxNegPercentLimit = -80;
  std::int32_t ModMultPercents = 0;
  std::int32_t RuleOf = 20;
  std::int32_t UseCharInPlay = 0;
};

// Booleans are 0 and -1, as in the file.
struct Config : DataSetOptions {
  // [RunOptions]
  std::int32_t AutoAddNeeds = -1;
  std::int32_t SysSpellsNeedsFilter = 0;
  std::int32_t ModifierGroupByType = 0;
  std::int32_t DecrementToZero = 0;
  std::int32_t UseDiceAddsConversion = 0;
  std::int32_t AllowGMSTagging = 0;
  std::int32_t ShowBonusesToMyself = 0;
  std::int32_t NoAutoRecalc = 0;
  std::int32_t NoCalcSecondaryFeatures = 0;
  std::int32_t UptoAffectsPoints = -1;
  std::int32_t AddSkillsAtMinCost = -1;
  std::int32_t GlobalRuleOf = 0;
  std::int32_t SeparatePackageCosts = 0;
  std::int32_t AllowNonIQOptSpecs = 0;
  std::int32_t DefaultTL = 3;
  std::int32_t BasePoints = 150;
  std::int32_t DisadLimit = -75;
  std::int32_t QuirkLimit = -5;
  ByType<std::int32_t> RefuseDupes = {0, -1, -1, -1, -1, -1, -1, -1, -1, -1};  // attributes always refuse
  std::int32_t UserFilesCheck = 0;

  // [UIOptions]
  std::int32_t ShowWindowTabs = 2, ShowCharacterTabs = 2, ShowToolbar = 1, ShowTraitBar = 1;
  std::int32_t LargeToolbarIcons = -1;
  std::int32_t BarBand1Width = 0, BarBand2Width = 0, BarBand1NewRow = 0, BarBand2NewRow = -1;
  std::int32_t NeverAskAboutNewModes = 0, NeverAskAboutTemplateDuplicates = 0;
  std::int32_t KeepFastFiles = -1;
  std::string DefaultPlayerName;
  std::int32_t CampaignOnNewChar = 0;
  std::int32_t QuickViewShadeAltLines = 0;
  std::int32_t MultiLineSysItems = 0;
  std::int32_t ModsButton = -1, BigModsButton = 0, UseSimpleEdit = -1, ShowAllSystemModifiers = 0;
  ByType<std::int32_t> ViewDesc{};
  std::int32_t ModViewDesc = 0;
  std::int32_t ChooseDataSetAtStartup = 0, CheckFilesAtStartup = -1;
  std::string ChosenPrinter;
  std::int32_t SheetOptionPages = 0;
  std::int32_t NewCharOnStart = 0, QuickViewAsMain = 0, ViewInfo = 0;

  // [ParentChild]
  std::int32_t ChildrenGroupByType = 0, ChildrenSortOrder = 0, ChildrenSortByName = -1,
               ChildrenSortByPoints = 0, ChildrenSortByTag = 0;
  std::string ChildrenTagForSorting;

  // [SysLists]
  ByType<std::int32_t> SysWidth = {0, 45, 45, 45, 45, 45, 45, 45, 45, 45};

  // [Folders]
  std::string DataSet = "default.kds";
  std::string DataSetPath;
  std::string CharDir;
  std::string DefaultKCS = "charactersheet.kcs";
  std::string DefaultKCSPath;
  std::vector<std::string> AlternateKCS;  // its size is NumAltKCS
  std::string DefaultQuickView;
  std::string DefaultQuickViewPath;
  std::string CurCustomDataFile;

  // [WindowCats], [WindowFilters], [Components], [HiddenItems], [OrderBy]
  ByType<std::int32_t> Combo = {0, -1, -1, -1, -1, -1, -1, -1, -1, -1};
  ByType<std::int32_t> UseCustomFilter{};
  ByType<std::string> CustomFilter;
  ByType<std::int32_t> ShowComponents{};
  ByType<std::int32_t> ShowHidden{};
  ByType<std::string> OrderBy;

  // [CharFile]
  std::int32_t SaveRTFasPlainText = 0;
  // How many former versions of a character file are kept beside it; 0 keeps none.
  std::int32_t KeepVersions = 0;

  // [Debug]; off in any run whose command line holds a switch.
  std::int32_t Debug = -1, DebugEchoToRun = -1, Logging = -1;

  // [MRUFileList]
  std::array<std::string, 4> MRUFiles;
};

}  // namespace kvr
