// The offers of a selection, and the picks that the user makes of them.
#include "character/ItemSelection.h"

#include <algorithm>
#include <utility>

#include "calc/Progression.h"
#include "character/FormerState.h"
#include "character/LevelMoves.h"
#include "character/TagChanges.h"
#include "character/WholeTagList.h"
#include "character/modLists.h"
#include "core/Numbers.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {

namespace {

constexpr std::string_view kNewItem = "#newitem(";
constexpr std::string_view kCodes = "#codes(";

// The number behind the word, which may be written "at least" as well; false for another word.
bool ReadLimit(std::string_view part, std::string_view word, Currency& value) {
  std::string bare(part);
  std::erase(bare, ' ');
  if (!StartsWithNoCase(bare, word)) return false;
  value = Currency::FromVal(std::string_view(bare).substr(word.size()));
  return true;
}

// Cuts "#codes(...)" out of an entry; what stood inside.
std::string CutCodes(std::string& entry) {
  const std::size_t at = FindNoCase(entry, kCodes);
  if (at == npos) return "";
  const std::string_view behind = std::string_view(entry).substr(at + kCodes.size());
  const std::size_t close = modTags::FindCloseParen(behind);
  std::string codes(behind.substr(0, close));
  entry.erase(at, close == npos ? npos : kCodes.size() + close + 1);
  while (!entry.empty() && (entry.back() == ' ' || entry.back() == ',')) entry.pop_back();
  return codes;
}

void AppendTag(std::string& list, std::string_view tag, std::string_view value) {
  if (!value.empty()) list.append(",").append(tag).append("(").append(value).append(")");
}

// What the user buys of it: the score of an attribute, the quantity of equipment, else the level.
double LevelOf(const clsItem& item) {
  if (item.ItemType == kStats) return item.Score();
  return item.ItemType == kEquipment ? Val(item.FreeTag("count")) : item.Level();
}

bool IsBoughtInPoints(ItemType type) {
  return type == kSkills || type == kSpells;
}

// To a value it had, and for that of several costs to the one it had.
void SetBack(clsItem& item, double level, Currency points) {
  SetShownLevelTo(item, level);
  if (!IsBoughtInPoints(item.ItemType) || item.BasePoints() == points) return;
  item.SetBasePoints(points);
  item.Calculate();
  item.Owner->ClearTokensForItem(item);
  item.Owner->PushTrickle(item);
}

std::string FullNameIn(std::string_view tagList) {
  clsItem trait;
  trait.NewTagList(tagList);
  return trait.FullName();
}

}  // namespace

SelectLimits SelectLimits::Read(std::string_view text) {
  SelectLimits limits;
  Currency first, last;
  bool hasFirst = false, hasLast = false;
  for (std::string_view part : templateEntries::Split(text)) {
    Currency value;
    limits.given = true;
    if (ReadLimit(part, "atleast", value)) {
      first = value;
      hasFirst = true;
    } else if (ReadLimit(part, "upto", value)) {
      last = value;
      hasLast = true;
    } else {
      if (!ReadLimit(part, "exactly", value)) value = Currency::FromVal(part);
      if (!hasFirst) first = value;
      last = value;
      hasFirst = hasLast = true;
    }
  }
  limits.negative = first < 0 || last < 0;
  if (hasFirst) limits.least = limits.negative ? -first : first;
  limits.hasMost = hasLast;
  if (hasLast) limits.most = limits.negative ? -last : last;
  if ((limits.negative || !limits.most.IsZero()) && limits.least > limits.most && hasFirst && hasLast) {
    std::swap(limits.least, limits.most);
  }
  return limits;
}

SelectText::SelectText(std::string_view selectText) {
  const std::vector<modTags::TagItem> items = modTags::ReturnTagItems(selectText);
  text = templateEntries::StripWhole(modTags::ValueOf(items, "text"));
  tagWith = modTags::ValueOf(items, "tagwith");
  list = modTags::ValueOf(items, "list");
  multiType = IsSet(modTags::ValueOf(items, "multitype"));
  points = SelectLimits::Read(modTags::ValueOf(items, "pointswanted"));
  std::string_view count = modTags::ValueOf(items, "itemswanted");
  if (count.empty()) count = modTags::ValueOf(items, "numberwanted");
  number = SelectLimits::Read(count);
  if (!number.given && !points.given) number = SelectLimits::Read("exactly 1");
  number.hasMost = !number.most.IsZero();  // up to none would be no selection
}

ItemSelection::ItemSelection(KVRCharacter& character, clsItem& bringer, const SelectText& wanted)
    : character_(character), bringer_(bringer), wanted_(wanted) {
  for (std::string_view entry : templateEntries::Split(wanted.list)) {
    LogFailure(character.Env().log, [&] { Offer(entry); });
  }
  std::ranges::stable_sort(offered_, {}, [](const Offered& offered) { return LCase(offered.fullName); });
}

// --- What is offered
// ----------------------------------------------------------------------------------------------------

void ItemSelection::Offer(std::string_view text) {
  std::string entry(text);
  const std::string codes = CutCodes(entry);
  const std::string_view bare = templateEntries::StripWhole(entry);
  if (bare.empty()) return;
  if (!StartsWithNoCase(bare, kNewItem)) return OfferEntry(bare, codes);
  const std::string_view behind = bare.substr(kNewItem.size());
  OfferEntry(behind.substr(0, modTags::FindCloseParen(behind)), codes);
}

// "SK:Sword, tags": the first piece names the trait, or else its tags do.
void ItemSelection::OfferEntry(std::string_view entry, std::string_view codes) {
  ActivityLog& log = character_.Env().log;
  const modNewParser::Tokens pieces = modNewParser::ParseChars(entry, ",", modNewParser::kNames);
  const std::string_view head = pieces.Token(1);
  const templateEntries::TraitReference wanted = templateEntries::ReadReference(head);
  log.LogLine("Prefix = " + wanted.prefix);
  log.LogLine("Rest = " + wanted.name);
  log.LogLine("ListNum = " + std::to_string(wanted.type));
  log.LogLine("curItem = " + std::string(entry));
  Offered offered = BaseOf(wanted, entry);
  for (const modTags::TagItem& tag : modTags::ReturnTagItemsNoTrim(entry.substr(head.size()))) {
    if (tag.name == "existing") {
      offered.mayExist = IsSet(Trim(tag.value));
    } else if (!tag.name.empty()) {
      AppendTag(offered.tagList, tag.name, tag.value);
    }
  }
  offered.fullName = FullNameIn(offered.tagList);
  if (wanted.type == kNoType || offered.fullName.empty()) {
    return log.LogRed(wanted.prefix + ":" + wanted.name + ": Didn't find item: " + std::string(entry));
  }
  log.LogLine("newItem = " + offered.tagList);
  AddOffered(std::move(offered), codes);
}

// The library's record, if there is one.
ItemSelection::Offered ItemSelection::BaseOf(const templateEntries::TraitReference& wanted,
                                             std::string_view entry) const {
  ActivityLog& log = character_.Env().log;
  Offered offered;
  offered.type = wanted.type;
  if (wanted.type == kNoType || wanted.name.empty()) return offered;
  if (const clsSystemItem* record = character_.System().FindItem(wanted.name, wanted.type)) {
    log.LogLine("Found at " + std::to_string(record->IDKey));
    offered.sysKey = record->CollectionKey();
    offered.tagList = WholeTagList(*record, log);
  } else {
    log.LogLine(wanted.prefix + ":" + wanted.name + ": Didn't find item: " + std::string(entry));
    const auto [name, ext] = modPrefixes::SplitNameAndExt(wanted.name);
    AppendTag(offered.tagList, "name", name);
    AppendTag(offered.tagList, "nameext", ext);
  }
  return offered;
}

void ItemSelection::AddOffered(Offered offered, std::string_view codes) {
  ActivityLog& log = character_.Env().log;
  const bool doubled = std::ranges::any_of(offered_, [&](const Offered& other) {
    return other.type == offered.type && EqualNoCase(other.fullName, offered.fullName);
  });
  if (doubled) {
    return log.LogRed("'" + bringer_.FullName() + "' offers '" + offered.fullName +
                      "' twice; the second is left out.");
  }
  for (std::string_view code : templateEntries::Split(codes)) {
    for (std::string_view word : {"upto", "downto"}) {
      if (!StartsWithNoCase(code, word)) continue;
      // The level is what a limit is on unless it says points.
      std::string limit(Trim(code.substr(word.size())));
      modTools::ReplaceAll(limit, "%level", "");
      AppendTag(offered.tagList, "control_" + std::string(word), Trim(limit));
    }
  }
  log.LogLine("Validate: " + offered.fullName + " " + offered.tagList);
  offered_.push_back(std::move(offered));
}

bool ItemSelection::CanBeMet() const {
  if (!wanted_.number.given) return !offered_.empty() || wanted_.points.least <= 0;
  return wanted_.number.least <= Currency(1) * static_cast<long>(offered_.size());
}

// A window shows it before the trait is made; what is made counts with its own points.
Currency ItemSelection::EstimatedCost(const Offered& offered) const {
  clsItem trait;
  trait.NewTagList(offered.tagList);
  if (IsBoughtInPoints(offered.type)) {
    const clsSkillCosts* costs = character_.SkillType(trait.SkillType());
    return costs ? costs->MinCost() : Currency();
  }
  if (offered.type == kEquipment || offered.type == kStats) return 0;
  return Progression(trait.FreeTag("cost")).Cost(1);
}

SelectItemsRequest ItemSelection::Goal() const {
  SelectItemsRequest goal;
  goal.LimitNumber = wanted_.number.given;
  goal.MinNumber = static_cast<long>(wanted_.number.least.ToDouble());
  goal.MaxNumber = static_cast<long>(wanted_.number.most.ToDouble());
  goal.LimitCost = wanted_.points.given;
  goal.MinCost = wanted_.points.least;
  goal.MaxCost = wanted_.points.most;
  goal.HasMaxCost = wanted_.points.hasMost;
  return goal;
}

SelectItemsRequest ItemSelection::Request(int index, int count) {
  SelectItemsRequest request = Goal();
  request.Title = "Dialog " + std::to_string(index) + " of " + std::to_string(count);
  request.Description = wanted_.text;
  request.MultiTrait = wanted_.multiType;
  request.Picks = this;
  for (const Offered& offered : offered_) {
    Choice choice;
    choice.Caption = offered.fullName;
    choice.Alias = offered.sysKey;
    const clsItem* standing =
        offered.mayExist ? character_.FindItem(offered.fullName, offered.type) : nullptr;
    if (standing) choice.Alts[0] = standing->KeyText();
    choice.Cost = EstimatedCost(offered);
    request.Items.push_back(std::move(choice));
  }
  return request;
}

// --- Picking
// ------------------------------------------------------------------------------------------------------------

clsItem* ItemSelection::ItemOf(const Offered& offered) const {
  return offered.id ? character_.ItemByKey(offered.id) : nullptr;
}

bool ItemSelection::Pick(std::size_t position) {
  if (position >= offered_.size()) return false;
  Offered& offered = offered_[position];
  if (ItemOf(offered)) return Step(offered, 1);
  if (offered.mayExist && TakeExisting(offered)) return true;
  return TakeNew(offered);
}

bool ItemSelection::TakeExisting(Offered& offered) {
  clsItem* item = character_.FindItem(offered.fullName, offered.type);
  if (!item) return false;
  character_.NoteFormerState(*item);
  offered.id = item->IDKey;
  offered.existed = true;
  NoteStart(offered, *item);
  item->SetTagItem("waslevel", NumberText(offered.floor));
  item->SetTagItem("waspoints", NumberText(item->Points()));
  for (std::string_view tag : {"control_upto", "control_downto"}) {
    const std::string_view control = modTags::GetTagValue(tag, offered.tagList);
    if (!control.empty()) item->SetTagItem(tag, control);
  }
  return true;
}

void ItemSelection::NoteStart(Offered& offered, const clsItem& item) {
  offered.floor = LevelOf(item);
  offered.points = item.BasePoints();
}

bool ItemSelection::TakeNew(Offered& offered) {
  ActivityLog& log = character_.Env().log;
  const auto refuse = [&](const std::string& name) {
    log.LogLine("Can't add " + name + " because we already have it loaded.");
    offered.id = 0;
    return false;
  };
  if (character_.FindItem(offered.fullName, offered.type)) return refuse(offered.fullName);
  const std::int32_t lastKey = character_.LastKey;
  offered.id = character_.CreateNewItem(offered.type, "," + offered.tagList, offered.sysKey, "", 0, 0, 0);
  const clsItem* item = ItemOf(offered);
  if (!item) {
    offered.id = 0;
    return false;
  }
  // An answer may have given it the name of one that stands already, which is not ours to take away.
  if (offered.id <= lastKey) return refuse(item->FullName());
  log.LogLine("just added " + item->KeyText());
  FormerState::MakeLinks(character_);
  character_.TrickleRecalcItems();
  offered.existed = false;
  NoteStart(offered, *item);
  return true;
}

ItemSelection::Control ItemSelection::ControlOf(const clsItem& item, std::string_view tag) {
  std::string text(item.FreeTag(tag));
  if (text.empty()) return {};
  Control control{true, ContainsNoCase(text, "%points"), 0};
  const std::size_t digits = text.find_first_of("+-.0123456789");
  control.value = digits == npos ? 0 : Val(std::string_view(text).substr(digits));
  return control;
}

// One step within the limits of the offer; without any, a trait goes no lower than it was when it was taken.
bool ItemSelection::Step(Offered& offered, int direction) {
  clsItem& item = *ItemOf(offered);
  const Control control = ControlOf(item, direction > 0 ? "control_upto" : "control_downto");
  const double before = LevelOf(item);
  const Currency points = item.BasePoints();
  if (!control.given && direction < 0 && before <= offered.floor) return false;
  direction > 0 ? item.Increment() : item.Decrement();
  const double value = control.byPoints ? item.Points().ToDouble() : LevelOf(item);
  // What disadvantages give back is limited by its amount.
  const double sign = control.byPoints && value < 0 ? -1 : 1;
  const double limit = control.byPoints ? std::abs(control.value) : control.value;
  const bool beyond = control.given && (direction > 0 ? value * sign > limit : value * sign < limit);
  // A limit of the trait itself may have held it and still have changed its points.
  if (beyond || LevelOf(item) == before) {
    SetBack(item, before, points);
  } else if (LevelOf(item) == offered.floor) {
    SetBack(item, offered.floor, offered.points);
  }
  return LevelOf(item) != before;
}

bool ItemSelection::Unpick(std::size_t position) {
  if (position >= offered_.size() || !ItemOf(offered_[position])) return false;
  if (!Step(offered_[position], -1)) GiveBack(offered_[position]);
  return true;
}

void ItemSelection::GiveBack(Offered& offered) {
  if (clsItem* item = ItemOf(offered)) {
    offered.existed ? RestoreExisting(offered, *item) : character_.RemoveItem(item->KeyText());
  }
  offered.id = 0;
}

void ItemSelection::RestoreExisting(const Offered& offered, clsItem& item) {
  ActivityLog& log = character_.Env().log;
  const std::string level = item.TagItem("waslevel");
  log.LogLine("found existing item: " + item.FullName());
  log.LogLine("preventing its deletion");
  log.LogLine("removing control limits");
  DropMarks(item);
  log.LogLine("reseting its value to " + level);
  SetBack(item, Val(level), offered.points);
  log.LogLine("reseting result is " + NumberText(LevelOf(item)));
}

long ItemSelection::CurCount() const {
  return static_cast<long>(
      std::ranges::count_if(offered_, [&](const Offered& offered) { return ItemOf(offered) != nullptr; }));
}

// Of a trait that was there before, what it costs more than it did.
Currency ItemSelection::CurCost() const {
  Currency cost;
  for (const Offered& offered : offered_) {
    const clsItem* item = ItemOf(offered);
    if (!item) continue;
    cost += item->Points();
    if (offered.existed) cost -= Currency::FromVal(item->FreeTag("waspoints"));
  }
  return wanted_.points.negative ? -cost : cost;
}

bool ItemSelection::OkayAllowed() const {
  if (wanted_.number.given && !wanted_.number.Fits(Currency(1) * CurCount())) return false;
  return !wanted_.points.given || wanted_.points.Fits(CurCost());
}

// --- The end
// ------------------------------------------------------------------------------------------------------------

std::vector<std::int32_t> ItemSelection::Taken(bool existed) const {
  std::vector<std::int32_t> ids;
  for (const Offered& offered : offered_) {
    if (offered.existed == existed && ItemOf(offered)) ids.push_back(offered.id);
  }
  return ids;
}

void ItemSelection::DropMarks(clsItem& item) {
  for (std::string_view tag : {"control_upto", "control_downto", "waspoints", "waslevel"}) {
    item.DeleteTag(tag);
  }
}

void ItemSelection::Accept() {
  std::size_t number = 0;
  for (const Offered& offered : offered_) {
    clsItem* item = ItemOf(offered);
    if (!item) continue;
    const bool limited = !item->FreeTagIsEmpty("control_upto") || !item->FreeTagIsEmpty("control_downto");
    DropMarks(*item);
    if (limited) LogFailure(character_.Env().log, [&] { SpreadTagChange(*item, false); });
    if (offered.existed) continue;
    character_.Env().log.LogLine("NewItemsAdded(" + std::to_string(++number) + ") = " + item->FullName());
    LogFailure(character_.Env().log, [&] { AcceptNew(*item); });
  }
}

void ItemSelection::AcceptNew(clsItem& item) {
  if (IsSet(bringer_.TagItem("owns"))) {
    item.SetTagItem("keep", std::to_string(bringer_.IDKey));
    item.SetTagItem("owned", "yes");
    std::string pkids(bringer_.FreeTag("pkids"));
    modLists::InsertItemIntoList(std::to_string(item.IDKey), pkids);
    bringer_.SetTagItem("pkids", pkids);
  }
  if (wanted_.tagWith.empty()) return;
  item.AppendToTagList(wanted_.tagWith);
  SpreadTagChange(item, true);
}

void ItemSelection::Undo() {
  for (Offered& offered : offered_) {
    const clsItem* item = ItemOf(offered);
    if (item && !offered.existed) {
      character_.Env().log.LogLine("removing item: " + item->FullName());
    }
    GiveBack(offered);
  }
}

}  // namespace kvr
