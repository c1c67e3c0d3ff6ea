// The options of `Config` in kvr.ini: one table of (section, key, member) in the order of the file, and the
// two walks over it, for reading and for writing.
#include <variant>

#include "core/Numbers.h"
#include "core/modFileIO.h"

namespace kvr::modFileIO {

namespace {

enum class Words { Types, TypesWithStat, Plurals };

// Type code and the word that its keys begin with, in the order of the file.
struct TypeWord {
  std::size_t type;
  const char* word;
  const char* plural;
};
constexpr TypeWord kTypeWords[] = {
    {1, "Stat", ""},        {2, "Ad", "Ads"},       {5, "Perk", "Perks"},
    {3, "Disad", "Disads"}, {4, "Quirk", "Quirks"}, {6, "Skill", "Skills"},
    {7, "Spell", "Spells"}, {8, "Equip", "Equip"},  {9, "Package", "Packages"},
};

// Members of the config, and those of the part of it that a data set may set: of these the user's own value
// is the one in the file.
using Number = std::int32_t Config::*;
using Text = std::string Config::*;
using DataSetNumber = std::int32_t DataSetOptions::*;
using DataSetDecimal = double DataSetOptions::*;
using DataSetText = std::string DataSetOptions::*;
// One key for each type, "<word><key>".
struct Numbers {
  ByType<std::int32_t> Config::*member;
  Words words = Words::Types;
};
struct Texts {
  ByType<std::string> Config::*member;
  bool isLong = false;
};
// Paths have no limit of length.
struct Path {
  std::string Config::*member;
};
// A count under the key, and one path for each under "<entryKey>n".
struct Paths {
  std::vector<std::string> Config::*member;
  const char* entryKey;
};
using Member =
    std::variant<Number, Text, DataSetNumber, DataSetDecimal, DataSetText, Numbers, Texts, Path, Paths>;

struct Option {
  const char* section;
  const char* key;
  Member member;
};

using C = Config;
const Option kOptions[] = {
    {"RunOptions", "AutoAddNeeds", &C::AutoAddNeeds},
    {"RunOptions", "SysSpellsNeedsFilter", &C::SysSpellsNeedsFilter},
    {"RunOptions", "AllowHalfPointSpells", &C::AllowHalfPointSpells},
    {"RunOptions", "ModMaxNegPercentLimit", &C::ModMaxNegPercentLimit},
    {"RunOptions", "ModMultPercents", &C::ModMultPercents},
    {"RunOptions", "ModifierGroupByType", &C::ModifierGroupByType},
    {"RunOptions", "DecrementToZero", &C::DecrementToZero},
    {"RunOptions", "UseDiceAddsConversion", &C::UseDiceAddsConversion},
    {"RunOptions", "AllowGMSTagging", &C::AllowGMSTagging},
    {"RunOptions", "ShowBonusesToMyself", &C::ShowBonusesToMyself},
    {"RunOptions", "NoAutoRecalc", &C::NoAutoRecalc},
    {"RunOptions", "NoCalcSecondaryFeatures", &C::NoCalcSecondaryFeatures},
    {"RunOptions", "UptoAffectsPoints", &C::UptoAffectsPoints},
    {"RunOptions", "AddSkillsAtMinCost", &C::AddSkillsAtMinCost},
    {"RunOptions", "RuleOf", &C::RuleOf},
    {"RunOptions", "GlobalRuleOf", &C::GlobalRuleOf},
    {"RunOptions", "SeparatePackageCosts", &C::SeparatePackageCosts},
    {"RunOptions", "AllowNonIQOptSpecs", &C::AllowNonIQOptSpecs},
    {"RunOptions", "DefaultTL", &C::DefaultTL},
    {"RunOptions", "BasePoints", &C::BasePoints},
    {"RunOptions", "DisadLimit", &C::DisadLimit},
    {"RunOptions", "QuirkLimit", &C::QuirkLimit},
    {"RunOptions", "RefuseDupes", Numbers{&C::RefuseDupes, Words::Plurals}},
    {"RunOptions", "UserFilesCheck", &C::UserFilesCheck},

    {"UIOptions", "ShowWindowTabs", &C::ShowWindowTabs},
    {"UIOptions", "ShowCharacterTabs", &C::ShowCharacterTabs},
    {"UIOptions", "ShowToolbar", &C::ShowToolbar},
    {"UIOptions", "ShowTraitBar", &C::ShowTraitBar},
    {"UIOptions", "LargeToolbarIcons", &C::LargeToolbarIcons},
    {"UIOptions", "BarBand1Width", &C::BarBand1Width},
    {"UIOptions", "BarBand2Width", &C::BarBand2Width},
    {"UIOptions", "BarBand1NewRow", &C::BarBand1NewRow},
    {"UIOptions", "BarBand2NewRow", &C::BarBand2NewRow},
    {"UIOptions", "NeverAskAboutNewModes", &C::NeverAskAboutNewModes},
    {"UIOptions", "NeverAskAboutTemplateDuplicates", &C::NeverAskAboutTemplateDuplicates},
    {"UIOptions", "KeepFastFiles", &C::KeepFastFiles},
    {"UIOptions", "DefaultPlayerName", &C::DefaultPlayerName},
    {"UIOptions", "CampaignOnNewChar", &C::CampaignOnNewChar},
    {"UIOptions", "QuickViewShadeAltLines", &C::QuickViewShadeAltLines},
    {"UIOptions", "MultiLineSysItems", &C::MultiLineSysItems},
    {"UIOptions", "ModsButton", &C::ModsButton},
    {"UIOptions", "BigModsButton", &C::BigModsButton},
    {"UIOptions", "UseSimpleEdit", &C::UseSimpleEdit},
    {"UIOptions", "ShowAllSystemModifiers", &C::ShowAllSystemModifiers},
    {"UIOptions", "ViewDesc", Numbers{&C::ViewDesc, Words::TypesWithStat}},
    {"UIOptions", "ModViewDesc", &C::ModViewDesc},
    {"UIOptions", "ChooseDataSetAtStartup", &C::ChooseDataSetAtStartup},
    {"UIOptions", "CheckFilesAtStartup", &C::CheckFilesAtStartup},
    {"UIOptions", "ChosenPrinter", &C::ChosenPrinter},
    {"UIOptions", "SheetOptionPages", &C::SheetOptionPages},
    {"UIOptions", "UseCharInPlay", &C::UseCharInPlay},
    {"UIOptions", "NewCharOnStart", &C::NewCharOnStart},
    {"UIOptions", "QuickViewAsMain", &C::QuickViewAsMain},
    {"UIOptions", "ViewInfo", &C::ViewInfo},

    {"ParentChild", "ChildrenGroupByType", &C::ChildrenGroupByType},
    {"ParentChild", "ChildrenSortOrder", &C::ChildrenSortOrder},
    {"ParentChild", "ChildrenSortByName", &C::ChildrenSortByName},
    {"ParentChild", "ChildrenSortByPoints", &C::ChildrenSortByPoints},
    {"ParentChild", "ChildrenSortByTag", &C::ChildrenSortByTag},
    {"ParentChild", "ChildrenTagForSorting", &C::ChildrenTagForSorting},

    {"SysLists", "SysWidth", Numbers{&C::SysWidth}},

    {"Folders", "DataSet", Path{&C::DataSet}},
    {"Folders", "DataSetPath", Path{&C::DataSetPath}},
    {"Folders", "CharDir", Path{&C::CharDir}},
    {"Folders", "DefaultKCS", Path{&C::DefaultKCS}},
    {"Folders", "DefaultKCSPath", Path{&C::DefaultKCSPath}},
    {"Folders", "NumAltKCS", Paths{&C::AlternateKCS, "AlternateKCS"}},
    {"Folders", "DefaultQuickView", Path{&C::DefaultQuickView}},
    {"Folders", "DefaultQuickViewPath", Path{&C::DefaultQuickViewPath}},
    {"Folders", "CurCustomDataFile", Path{&C::CurCustomDataFile}},

    {"WindowCats", "Combo", Numbers{&C::Combo}},
    {"WindowFilters", "UseCustomFilter", Numbers{&C::UseCustomFilter}},
    {"WindowFilters", "CustomFilter", Texts{&C::CustomFilter, true}},

    {"NeedsChecking", "NeedsDefaultLevelStats", &C::NeedsDefaultLevelStats},
    {"NeedsChecking", "NeedsDefaultLevelAds", &C::NeedsDefaultLevelAds},
    {"NeedsChecking", "NeedsDefaultLevelSkills", &C::NeedsDefaultLevelSkills},
    {"NeedsChecking", "NeedsDefaultLevelSpells", &C::NeedsDefaultLevelSpells},
    {"NeedsChecking", "NeedsDefaultLevelEquipment", &C::NeedsDefaultLevelEquipment},
    {"NeedsChecking", "NeedsDefaultLevelManeuvers", &C::NeedsDefaultLevelManeuvers},
    {"NeedsChecking", "NeedsDefaultValueStats", &C::NeedsDefaultValueStats},
    {"NeedsChecking", "NeedsDefaultValueAds", &C::NeedsDefaultValueAds},
    {"NeedsChecking", "NeedsDefaultValueSkills", &C::NeedsDefaultValueSkills},
    {"NeedsChecking", "NeedsDefaultValueSpells", &C::NeedsDefaultValueSpells},
    {"NeedsChecking", "NeedsDefaultValueEquipment", &C::NeedsDefaultValueEquipment},
    {"NeedsChecking", "NeedsDefaultValueManeuvers", &C::NeedsDefaultValueManeuvers},

    {"Components", "ShowComponents", Numbers{&C::ShowComponents}},
    {"HiddenItems", "ShowHidden", Numbers{&C::ShowHidden, Words::TypesWithStat}},
    {"OrderBy", "OrderBy", Texts{&C::OrderBy}},
    {"CharFile", "SaveRTFasPlainText", &C::SaveRTFasPlainText},
    {"CharFile", "KeepVersions", &C::KeepVersions},
};

// More sheets than any menu could show; a larger number in the file is a slip.
constexpr std::int32_t kMostSheets = 1000;

// Calls f(key, type) for each key of an option that has one for each type.
template <class F>
void ForEachType(const char* suffix, Words words, F&& f) {
  for (const TypeWord& one : kTypeWords) {
    if (one.type == 1 && words != Words::TypesWithStat) continue;
    f(std::string(words == Words::Plurals ? one.plural : one.word) + suffix, one.type);
  }
}

// Reads one option; the present value is the default.
struct Reader {
  Environment& env;
  const char* key;

  void operator()(Number member) const { env.Config.*member = env.ini.IniGetInt(key, env.Config.*member); }
  void operator()(Text member) const { env.Config.*member = env.ini.IniGetString(key, env.Config.*member); }
  void operator()(DataSetNumber member) const {
    env.Config.*member = env.UserOptions.*member = env.ini.IniGetInt(key, env.UserOptions.*member);
  }
  void operator()(DataSetDecimal member) const {
    const std::string text = env.ini.IniGetString(key, NumberText(env.UserOptions.*member));
    env.Config.*member = env.UserOptions.*member = Val(text);
  }
  void operator()(DataSetText member) const {
    env.Config.*member = env.UserOptions.*member = env.ini.IniGetString(key, env.UserOptions.*member);
  }
  void operator()(Numbers numbers) const {
    ForEachType(key, numbers.words, [&](const std::string& typeKey, std::size_t type) {
      std::int32_t& value = (env.Config.*numbers.member)[type];
      value = env.ini.IniGetInt(typeKey, value);
    });
  }
  void operator()(Texts texts) const {
    ForEachType(key, Words::Types, [&](const std::string& typeKey, std::size_t type) {
      std::string& value = (env.Config.*texts.member)[type];
      value = texts.isLong ? env.ini.IniGetLongString(typeKey, value) : env.ini.IniGetString(typeKey, value);
    });
  }
  void operator()(Path path) const {
    env.Config.*path.member = env.ini.IniGetText(key, env.Config.*path.member);
  }
  void operator()(Paths paths) const {
    std::vector<std::string>& values = env.Config.*paths.member;
    const std::int32_t count = env.ini.IniGetInt(key, static_cast<std::int32_t>(values.size()));
    values.resize(static_cast<std::size_t>(std::clamp(count, 0, kMostSheets)));
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = env.ini.IniGetText(paths.entryKey + std::to_string(i + 1), values[i]);
  }
};

struct Writer {
  Environment& env;
  const char* key;

  void operator()(Number member) const { env.ini.IniPutInt(key, env.Config.*member); }
  void operator()(Text member) const { env.ini.IniPutString(key, env.Config.*member); }
  void operator()(DataSetNumber member) const { env.ini.IniPutInt(key, env.UserOptions.*member); }
  void operator()(DataSetDecimal member) const {
    env.ini.IniPutString(key, NumberText(env.UserOptions.*member));
  }
  void operator()(DataSetText member) const { env.ini.IniPutString(key, env.UserOptions.*member); }
  void operator()(Numbers numbers) const {
    ForEachType(key, numbers.words, [&](const std::string& typeKey, std::size_t type) {
      env.ini.IniPutInt(typeKey, (env.Config.*numbers.member)[type]);
    });
  }
  void operator()(Texts texts) const {
    ForEachType(key, Words::Types, [&](const std::string& typeKey, std::size_t type) {
      const std::string& value = (env.Config.*texts.member)[type];
      texts.isLong ? env.ini.IniPutLongString(typeKey, value) : env.ini.IniPutString(typeKey, value);
    });
  }
  void operator()(Path path) const { env.ini.IniPutString(key, env.Config.*path.member); }
  void operator()(Paths paths) const {
    const std::vector<std::string>& values = env.Config.*paths.member;
    env.ini.IniPutInt(key, static_cast<std::int32_t>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i)
      env.ini.IniPutString(paths.entryKey + std::to_string(i + 1), values[i]);
  }
};

// The defaults that depend on the folders; what was read before the options stays.
Config Defaults(const Environment& env) {
  Config config;
  config.DataSetPath = env.Folders.FolderDataSets;
  config.CharDir = env.Folders.FolderCharacters;
  config.DefaultKCSPath = env.Folders.FolderSheets;
  config.AlternateKCS = {env.Folders.FolderSheets + "text layout.kcs"};
  config.Debug = env.Config.Debug;
  config.DebugEchoToRun = env.Config.DebugEchoToRun;
  config.Logging = env.Config.Logging;
  config.MRUFiles = env.Config.MRUFiles;
  return config;
}

}  // namespace

void UseSettings(Environment& env, std::string_view section) {
  env.ini.IniSetContext(section, env.Folders.BaseAppDataFolder + "kvr.ini");
}

void InitConfigDefaults(Environment& env) {
  env.Config = Defaults(env);
  env.UserOptions = env.Config;
  IniReadUIOptions(env);
}

void IniReadUIOptions(Environment& env) {
  for (const Option& option : kOptions) {
    UseSettings(env, option.section);
    std::visit(Reader{env, option.key}, option.member);
  }
}

void IniWriteUIOptions(Environment& env) {
  for (const Option& option : kOptions) {
    UseSettings(env, option.section);
    std::visit(Writer{env, option.key}, option.member);
  }
}

}  // namespace kvr::modFileIO
