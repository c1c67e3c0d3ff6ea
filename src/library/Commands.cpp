// Data file commands, by which a later file edits what earlier ones loaded, and the settings of a data set.
#include <optional>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/DeleteByTag.h"
#include "library/KVRSystem.h"

namespace kvr {
namespace {

// A name as the reader of traits stores it: without enclosing quotes or braces, else as it is written.
std::string Bare(std::string_view text) {
  return std::string(modTools::IsQuoted(text) ? modTools::StripQuotes(text) : modTools::StripBraces(text));
}

// A value: inside quotes a doubled quote mark is one.
std::string Unwrapped(std::string_view text) {
  if (!modTools::IsQuoted(text)) return std::string(modTools::StripBraces(text));
  std::string inner(modTools::StripQuotes(text));
  modTools::ReplaceAll(inner, "\"\"", "\"");
  return inner;
}

struct Target {
  bool hasPrefix = false;
  ItemType type = kNoType;
  std::string name, ext;

  explicit Target(std::string_view text) {
    const std::string bare = Bare(text);
    const modPrefixes::Reference reference = modPrefixes::ExtractPrefix(Trim(bare));
    const std::string rest = Bare(reference.rest);
    const auto split = modPrefixes::SplitNameAndExt(rest);
    hasPrefix = !reference.prefix.empty();
    type = modPrefixes::TypeFromPrefix(reference.prefix);
    name = split.name;
    ext = split.ext;
  }
  std::string FullName() const { return modPrefixes::JoinNameAndExt(name, ext); }
};

struct Halves {
  std::string_view left, right;
};
// The trimmed texts before and behind the first such word outside quotes, parentheses and braces.
std::optional<Halves> SplitAtWord(std::string_view text, std::string_view word) {
  const std::size_t found = modNewParser::FindWordTopLevel(text, word, modNewParser::kNames);
  if (found == npos) return std::nullopt;
  return Halves{Trim(text.substr(0, found)), Trim(text.substr(found + word.size()))};
}

// One command line. Each command gives false when the line makes no sense as a whole; what it could not do
// otherwise, it logs itself.
class CommandRun {
 public:
  CommandRun(KVRSystem& system, std::string_view line, std::string_view currentCategory)
      : system_(system), line_(line), currentCategory_(currentCategory) {}

  bool Run();

 private:
  bool DoCommandClone(std::string_view argument);
  bool DoCommandDelete(std::string_view argument);
  bool DoCommandReplaceTags(std::string_view argument);
  bool DoCommandMergeTags(std::string_view argument);
  bool DoCommandDeleteByTag(std::string_view argument);
  bool DoCommandDeleteCat(std::string_view argument);
  bool DoCommandDeleteAllCats(std::string_view argument);
  bool DoCommandDeleteFromGroup(std::string_view argument);

  using SegmentEdit = std::string (clsSystemItem::*)(std::string_view, std::vector<std::string>&);
  bool EditTags(std::string_view argument, SegmentEdit edit);
  std::vector<clsSystemItem*> FindTargets(std::string_view text) const;
  template <class Test>
  void DeleteItemsWhere(ItemType type, Test&& test);
  void DeleteGroup(std::string_view group);
  void DeleteGroupMember(std::string_view group, std::string_view member);
  void Complain(std::string_view text) {
    system_.Env().log.LogRed(std::string(text) + std::string(line_));
    complained_ = true;
  }

  struct Command {
    std::string_view word;
    bool (CommandRun::*run)(std::string_view);
  };
  static const Command kCommands[8];

  KVRSystem& system_;
  std::string_view line_, currentCategory_;
  bool complained_ = false;
};

const CommandRun::Command CommandRun::kCommands[8] = {
    {"#clone", &CommandRun::DoCommandClone},
    {"#delete", &CommandRun::DoCommandDelete},
    {"#replacetags", &CommandRun::DoCommandReplaceTags},
    {"#mergetags", &CommandRun::DoCommandMergeTags},
    {"#deletebytag", &CommandRun::DoCommandDeleteByTag},
    {"#deletecat", &CommandRun::DoCommandDeleteCat},
    {"#deleteallcats", &CommandRun::DoCommandDeleteAllCats},
    {"#deletefromgroup", &CommandRun::DoCommandDeleteFromGroup}};

bool CommandRun::Run() {
  const std::size_t blank = line_.find(' ');
  bool done = false;
  if (blank != npos)
    for (const Command& command : kCommands)
      if (EqualNoCase(line_.substr(0, blank), command.word))
        done = (this->*command.run)(Trim(line_.substr(blank)));
  if (!done) Complain("Bad Command: ");
  return !complained_;
}

bool CommandRun::DoCommandDelete(std::string_view argument) {
  const Target target(argument);
  const clsSystemItem* item = system_.FindItem(target.FullName(), target.type);
  if (argument.empty()) {
    Complain("No target specified: ");
  } else if (!item) {
    Complain("Target not found: ");
  } else {
    system_.DeleteItem(*item);
  }
  return true;
}

// The costs of the source were converted when it was loaded, so they are taken over as they are.
bool CommandRun::DoCommandClone(std::string_view argument) {
  const std::optional<Halves> parts = SplitAtWord(argument, " as ");
  if (!parts) return false;
  if (parts->left.empty() || parts->right.empty()) {
    Complain(parts->left.empty() ? "No source specified: " : "No target specified: ");
    return true;
  }
  const Target sourceName(parts->left), target(parts->right);
  const clsSystemItem* source = system_.FindItem(sourceName.FullName(), sourceName.type);
  if (!source) {
    Complain("Source not found: ");
    return true;
  }
  if (target.hasPrefix && target.type != source->ItemType) return false;
  clsSystemItem& item = system_.NewItem();
  item.ItemType = source->ItemType;
  item.IDKey = system_.NewKey();
  item.NewTagList(source->TagList());
  item.SetName(target.name);
  item.SetNameExt(target.ext);
  system_.AddOrReplaceItem(item, currentCategory_);
  return true;
}

bool CommandRun::DoCommandReplaceTags(std::string_view argument) {
  return EditTags(argument, &clsSystemItem::TagListSegmentReplace);
}

bool CommandRun::DoCommandMergeTags(std::string_view argument) {
  return EditTags(argument, &clsSystemItem::TagListSegmentInsert);
}

bool CommandRun::EditTags(std::string_view argument, SegmentEdit edit) {
  constexpr std::string_view kIn = "in ";
  if (!StartsWithNoCase(argument, kIn)) return false;
  const std::optional<Halves> parts = SplitAtWord(argument.substr(kIn.size()), " with ");
  if (!parts) return false;
  if (line_.ends_with(',')) Complain("Possible error with line: ");
  const std::vector<clsSystemItem*> targets = FindTargets(parts->left);
  if (targets.empty()) Complain("Target not found: ");
  const std::string tags = Unwrapped(parts->right);
  const bool filesAnew = ContainsNoCase(tags, "cat(");
  for (clsSystemItem* item : targets) {
    std::vector<std::string> refused;
    (item->*edit)(tags, refused);
    for (const std::string& text : refused) system_.Env().log.LogRed(text);
    if (!refused.empty()) complained_ = true;
    if (filesAnew && item->ItemType != kStats) system_.CheckForNewCats(item->Category(), item->ItemType);
  }
  return true;
}

// "all Foo" means every Foo, whatever its extension.
std::vector<clsSystemItem*> CommandRun::FindTargets(std::string_view text) const {
  constexpr std::string_view kAll = "all ";
  const std::string bare = Bare(text);
  std::vector<clsSystemItem*> targets;
  if (StartsWithNoCase(bare, kAll)) {
    const Target target(std::string_view(bare).substr(kAll.size()));
    for (std::size_t position : system_.GetAllItems(target.name, target.type))
      targets.push_back(&system_.Items.Item(position));
  } else {
    const Target target(bare);
    if (clsSystemItem* item = system_.FindItem(target.FullName(), target.type)) targets.push_back(item);
  }
  return targets;
}

bool CommandRun::DoCommandDeleteByTag(std::string_view argument) {
  DeleteByTag command(system_, line_);
  if (!command.Run(argument)) Complain("Invalid #DeleteByTag command: ");
  return true;
}

// From the end, so that the positions still to come stand. A type of 0 means all.
template <class Test>
void CommandRun::DeleteItemsWhere(ItemType type, Test&& test) {
  for (std::size_t i = system_.Items.Count(); i >= 1; --i) {
    const clsSystemItem& item = system_.Items.Item(i);
    if ((type == kNoType || item.ItemType == type) && test(item)) system_.DeleteItem(item);
  }
}

bool CommandRun::DoCommandDeleteCat(std::string_view argument) {
  const std::vector<std::string_view> fields =
      modNewParser::ParseSplitChars(argument, ",", modNewParser::kNames);
  if (fields.size() < 2) {
    Complain("Invalid #DeleteCat command: ");
    return true;
  }
  const ItemType type = modPrefixes::TypeFromTypeWord(fields[0]);
  if (type == kNoType && !EqualNoCase(fields[0], "all")) {
    system_.Env().log.LogRed("Invalid #DeleteCat item type: " + std::string(fields[0]));
    complained_ = true;
    return true;
  }
  for (std::size_t i = 1; i < fields.size(); ++i) {
    const std::string category = Bare(fields[i]);
    DeleteItemsWhere(type, [&](const clsSystemItem& item) {
      return ContainsNoCase(item.Category(), category) && modTags::IsItemInList(category, item.Category());
    });
    for (ItemType t = kFirstType; t <= kLastType; ++t)
      if (type == kNoType || type == t)
        system_.Cats.Remove(clsSortedCatCollection::KeyOf(clsCategory{category, {}, t}));
  }
  return true;
}

// One pass over the traits does for all categories what #deletecat does for one.
bool CommandRun::DoCommandDeleteAllCats(std::string_view argument) {
  const ItemType type = modPrefixes::TypeFromTypeWord(argument);
  if (type == kNoType && !EqualNoCase(argument, "all")) {
    system_.Env().log.LogRed("Invalid #DeleteAllCats item type: " + std::string(argument));
    complained_ = true;
    return true;
  }
  DeleteItemsWhere(type, [&](const clsSystemItem& item) {
    bool filed = false;
    modNewParser::ForEachToken(item.Category(), ',', modNewParser::kPlain, [&](std::string_view token) {
      const clsCategory cat{std::string(Trim(token)), {}, item.ItemType};
      filed = filed || system_.Cats.Item(clsSortedCatCollection::KeyOf(cat)) != nullptr;
    });
    return filed;
  });
  for (std::size_t i = system_.Cats.Count(); i >= 1; --i) {
    const clsCategory& cat = system_.Cats.Item(i);
    if (type != kNoType && cat.ItemType != type) continue;
    system_.Env().log.LogLine(std::string(line_) + ": ItemType = " + std::to_string(cat.ItemType) +
                              ": Removing category " + cat.Name);
    system_.Cats.RemoveAt(i);
  }
  return true;
}

// "ALL Group", "Group, ALL", "Group, member, member"; without a comma the group ends at the first blank.
bool CommandRun::DoCommandDeleteFromGroup(std::string_view argument) {
  constexpr std::string_view kAll = "all";
  if (StartsWithNoCase(argument, "all ") && !Trim(argument.substr(4)).empty()) {
    DeleteGroup(Bare(argument.substr(4)));
    return true;
  }
  std::optional<Halves> parts = SplitAtWord(argument, ",");
  if (!parts) parts = SplitAtWord(argument, " ");
  if (!parts || parts->left.empty() || parts->right.empty()) return false;
  const std::string group = Bare(parts->left);
  if (EqualNoCase(parts->right, kAll)) {
    DeleteGroup(group);
    return true;
  }
  modNewParser::ForEachToken(parts->right, ',', modNewParser::kNames, [&](std::string_view member) {
    if (!Trim(member).empty()) DeleteGroupMember(group, member);
  });
  return true;
}

void CommandRun::DeleteGroup(std::string_view group) {
  bool found = false;
  for (std::size_t i = system_.Groups.Count(); i >= 1; --i) {
    if (!EqualNoCase(system_.Groups.Item(i).Group, group)) continue;
    system_.Groups.RemoveAt(i);
    found = true;
  }
  if (!found) Complain("Target not found: ");
}

// A member named without a prefix is meant whatever its type.
void CommandRun::DeleteGroupMember(std::string_view group, std::string_view member) {
  const Target target(member);
  bool found = false;
  for (ItemType type = kNoType; type <= kLastType; ++type) {
    if (target.hasPrefix && target.type != type) continue;
    const clsRefItem wanted{std::string(group), target.name, target.ext, type};
    found |= system_.Groups.Remove(clsSortedRefCollection::GroupKeyOf(wanted));
  }
  if (!found) Complain("Target not found: ");
}

struct Setting {
  std::string_view key, otherKey;
  double DataSetOptions::*number = nullptr;
  std::int32_t DataSetOptions::*whole = nullptr;
  std::string DataSetOptions::*text = nullptr;
};

using Options = DataSetOptions;
constexpr Setting Number(std::string_view key, std::string_view otherKey, double Options::*field) {
  return {key, otherKey, field, nullptr, nullptr};
}
constexpr Setting Text(std::string_view key, std::string_view otherKey, std::string Options::*field) {
  return {key, otherKey, nullptr, nullptr, field};
}
constexpr Setting Whole(std::string_view key, std::int32_t Options::*field) {
  return {key, key, nullptr, field, nullptr};
}

constexpr Setting kSettings[] = {
    Number("needsdefaultlevelstats", "needsdefaultstatvalue", &Options::NeedsDefaultLevelStats),
    Number("needsdefaultlevelads", "needsdefaultadvalue", &Options::NeedsDefaultLevelAds),
    Number("needsdefaultlevelskills", "needsdefaultskillvalue", &Options::NeedsDefaultLevelSkills),
    Number("needsdefaultlevelspells", "needsdefaultspellvalue", &Options::NeedsDefaultLevelSpells),
    Number("needsdefaultlevelequipment", "needsdefaultequipmentvalue", &Options::NeedsDefaultLevelEquipment),
    Number("needsdefaultlevelmaneuvers", "needsdefaultmaneuvervalue", &Options::NeedsDefaultLevelManeuvers),
    Text("needsdefaultvaluestats", "needsdefaultstattag", &Options::NeedsDefaultValueStats),
    Text("needsdefaultvalueads", "needsdefaultadtag", &Options::NeedsDefaultValueAds),
    Text("needsdefaultvalueskills", "needsdefaultskilltag", &Options::NeedsDefaultValueSkills),
    Text("needsdefaultvaluespells", "needsdefaultspelltag", &Options::NeedsDefaultValueSpells),
    Text("needsdefaultvalueequipment", "needsdefaultequipmenttag", &Options::NeedsDefaultValueEquipment),
    Text("needsdefaultvaluemaneuvers", "needsdefaultmaneuvertag", &Options::NeedsDefaultValueManeuvers),
    Whole("allowhalfpointspells", &Options::AllowHalfPointSpells),
    Whole("modmaxnegpercentlimit", &Options::ModMaxNegPercentLimit),
    Whole("modmultpercents", &Options::ModMultPercents),
    Whole("ruleof", &Options::RuleOf),
    Whole("usecharinplay", &Options::UseCharInPlay)};

}  // namespace

bool KVRSystem::DoCommand(std::string_view line, std::string_view currentCategory) {
  TraceScope trace("KVRSystem:DoCommand");
  filedLists_.Clear();
  return CommandRun(*this, line, currentCategory).Run();
}

void KVRSystem::HandleSettingChange(std::string_view line) {
  const auto [key, value] = modTools::SplitKeyValue(line);
  DataSetOptions& options = env_.Config;
  for (const Setting& setting : kSettings) {
    if (!EqualNoCase(key, setting.key) && !EqualNoCase(key, setting.otherKey)) continue;
    if (setting.number) options.*setting.number = Val(value);
    if (setting.whole) options.*setting.whole = CLngClamped(Val(value));
    if (setting.text) options.*setting.text = value;
  }
}

}  // namespace kvr
