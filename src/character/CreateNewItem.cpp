// Puts a new trait on a character. Every trait but those read back from a file comes this way, whoever adds
// it: the user, a template, or the character's own beginning.
#include <algorithm>

#include "calc/modSolver.h"
#include "character/FormerState.h"
#include "character/ModTree.h"
#include "character/SavedText.h"
#include "character/TechLevel.h"
#include "character/WholeTagList.h"
#include "character/modDirectives.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {

namespace {

// A trait can bring others, and those others again; data that goes round in circles is stopped here.
constexpr std::size_t kDeepestCreation = 100;
constexpr std::size_t kMostTraitsAtOnce = 2000;
constexpr int kLastSelect = 99;

std::vector<std::int32_t> NumbersIn(std::string_view list) {
  std::vector<std::int32_t> numbers;
  modNewParser::ForEachToken(list, ',', modNewParser::kPlain, [&](std::string_view entry) {
    if (const std::int32_t number = CLngClamped(Val(entry))) numbers.push_back(number);
  });
  return numbers;
}

bool IsSelectTag(std::string_view tag) {
  constexpr std::string_view kSelect = "select";
  const std::string_view name = Trim(tag.substr(0, tag.find('(')));
  return StartsWithNoCase(name, kSelect) && name.size() > kSelect.size() &&
         name.find_first_not_of("0123456789", kSelect.size()) == npos;
}

}  // namespace

// One trait on its way onto the character. Its steps are run in order; a failure in one is logged, and the
// next one runs. A step can end the creation.
class ItemCreation {
 public:
  ItemCreation(KVRCharacter& character, ItemType type, std::string_view tagList, std::string_view sysKey,
               std::string_view parentKey)
      : character_(character), type_(type), tagList_(tagList), sysKey_(sysKey), parentKey_(parentKey) {
    if (character_.creations_.empty()) character_.traitsMade_ = 0;
    character_.creations_.push_back({sysKey_, 0});
    character_.formerStates_.push_back(std::make_unique<FormerState>(character_));
  }
  ~ItemCreation() {
    character_.creations_.pop_back();
    const std::unique_ptr<FormerState> former = std::move(character_.formerStates_.back());
    character_.formerStates_.pop_back();
    // Answers that nobody asked for must not wait for the next trait.
    if (character_.creations_.empty()) character_.ClearResponses();
    if (!undone_ && !character_.formerStates_.empty()) former->HandOverTo(*character_.formerStates_.back());
  }
  ItemCreation(const ItemCreation&) = delete;
  ItemCreation& operator=(const ItemCreation&) = delete;

  // The trait's number, that of the one that stands already, or 0 when it was cancelled.
  std::int32_t Run();

  bool noInitMods = false, noNeedsCheck = false, allowDuplicate = false;

 private:
  using Step = void (ItemCreation::*)();
  static const Step kSteps[];

  // --- The steps ---
  void RunSpecialDirectives();
  void MakeItem();
  void RefuseDuplicate();
  void GiveKey();
  void MarkAsNew();
  void PutOnCharacter();
  void LinkToParent();
  void MakeInitialMods();
  void RunFirstDirectives() { RunDirectives({{"%AddedItemsList%", ""}}); }
  template <void (KVRCharacter::*Operation)(clsItem&)>
  void Do() {
    (character_.*Operation)(*item_);
  }
  void CountSelections();
  void RunSelections();
  void ShowAdded();
  void PutInAddedItemsList();
  void RunLaterDirectives() { RunDirectives({}); }
  void ReduceTechLevel();
  void SetStartValues();
  void MakeRecords();
  void NoteBasedOn();
  void RunBuildCombo();
  void RunBuildIt();
  void RunEdit();
  void MakeWaitingLinks();
  void Calculate() { item_->Calculate(); }
  void Trickle() { character_.TrickleRecalcItems(); }
  void CheckNeedsOfComponents();
  void CheckNeeds();
  void AddCategories();
  void DropCreationTags();
  void SpreadWhatCameLast();
  void Finish();

  // --- What they use ---
  void RunDirectives(const std::vector<modDirectives::Substitution>& protectedVars);
  bool RunSelectDirectives(std::string& text);
  void StoreTagList(const std::string& text);
  void UndoSelections();
  void SetStartLevel();
  void SetStartPoints(bool wanted, Currency points);
  void SetStartCount();
  bool IsOnCharacter() const { return character_.ItemByKey(id_) == item_; }
  void End(std::int32_t result);
  // Nothing was made: the character goes back to what it was.
  void Cancel();
  void Undo();

  KVRCharacter& character_;
  const ItemType type_;
  std::string tagList_;
  const std::string sysKey_, parentKey_;
  std::unique_ptr<clsItem> unplaced_;  // until it is on the character
  clsItem* item_ = nullptr;
  std::int32_t id_ = 0;
  bool placed_ = false;
  bool ended_ = false;
  bool undone_ = false;
  std::int32_t result_ = 0;
  int selections_ = 0;
  std::vector<std::int32_t> added_, existing_;  // by all selections
};

const ItemCreation::Step ItemCreation::kSteps[] = {
    &ItemCreation::RunSpecialDirectives,
    &ItemCreation::MakeItem,
    &ItemCreation::RefuseDuplicate,
    &ItemCreation::GiveKey,
    &ItemCreation::MarkAsNew,
    &ItemCreation::PutOnCharacter,
    &ItemCreation::LinkToParent,
    &ItemCreation::MakeInitialMods,
    &ItemCreation::RunFirstDirectives,
    // What the trait does to others; a template makes its components here.
    &ItemCreation::Do<&KVRCharacter::HandleSets>,
    &ItemCreation::Do<&KVRCharacter::HandleCreates>,
    &ItemCreation::Do<&KVRCharacter::HandleAdds>,
    &ItemCreation::Do<&KVRCharacter::HandleAddMods>,
    &ItemCreation::Do<&KVRCharacter::HandleRemoveMods>,
    &ItemCreation::CountSelections,
    &ItemCreation::RunSelections,
    &ItemCreation::ShowAdded,
    &ItemCreation::PutInAddedItemsList,
    &ItemCreation::RunLaterDirectives,
    &ItemCreation::Do<&KVRCharacter::HandleParentOf>,
    &ItemCreation::Do<&KVRCharacter::HandleChildOf>,
    &ItemCreation::Do<&KVRCharacter::HandleMergeTags>,
    &ItemCreation::Do<&KVRCharacter::HandleReplaceTags>,
    &ItemCreation::Do<&KVRCharacter::HandleRace>,
    &ItemCreation::Do<&KVRCharacter::HandleBodyType>,
    &ItemCreation::Do<&KVRCharacter::HandleCharWeight>,
    &ItemCreation::Do<&KVRCharacter::HandleCharHeight>,
    &ItemCreation::Do<&KVRCharacter::HandleAge>,
    &ItemCreation::Do<&KVRCharacter::HandleAppearance>,
    // From here on the text stands as it will stay.
    &ItemCreation::ReduceTechLevel,
    &ItemCreation::SetStartValues,
    &ItemCreation::MakeRecords,
    &ItemCreation::NoteBasedOn,
    &ItemCreation::RunBuildCombo,
    &ItemCreation::RunBuildIt,
    &ItemCreation::RunEdit,
    &ItemCreation::Do<&KVRCharacter::CreateAffectsLinks>,
    &ItemCreation::MakeWaitingLinks,
    &ItemCreation::Do<&KVRCharacter::PushRecalcItems>,
    &ItemCreation::Calculate,
    &ItemCreation::Trickle,
    &ItemCreation::CheckNeedsOfComponents,
    &ItemCreation::CheckNeeds,
    &ItemCreation::AddCategories,
    &ItemCreation::DropCreationTags,
    &ItemCreation::SpreadWhatCameLast,
    &ItemCreation::Finish,
};

std::int32_t ItemCreation::Run() {
  try {
    for (const Step step : kSteps) {
      LogFailure(character_.Env().log, [&] { (this->*step)(); });
      if (ended_) break;
      // What the trait brought may have taken it away again.
      if (placed_ && !IsOnCharacter()) {
        Cancel();
        break;
      }
    }
  } catch (const SolverFailure&) {
    Undo();
    throw;
  }
  return result_;
}

void ItemCreation::End(std::int32_t result) {
  ended_ = true;
  result_ = result;
}

void ItemCreation::Cancel() {
  Undo();
  End(0);
}

void ItemCreation::Undo() {
  if (placed_) character_.formerStates_.back()->Restore();
  undone_ = true;
}

void ItemCreation::RunSpecialDirectives() {
  if (modDirectives::HandleSpecialDirectives(tagList_, character_, {{"%AddedItemsList%", ""}})) Cancel();
}

void ItemCreation::MakeItem() {
  unplaced_ = std::make_unique<clsItem>();
  item_ = unplaced_.get();
  item_->Owner = &character_;
  item_->SetTagList(tagList_);
  item_->ItemType = type_;
}

void ItemCreation::RefuseDuplicate() {
  const bool refuses =
      type_ == kStats || character_.Env().Config.RefuseDupes[static_cast<std::size_t>(type_)] != 0;
  if (allowDuplicate || !refuses) return;
  if (const clsItem* standing = character_.FindItem(item_->FullName(), type_)) End(standing->IDKey);
}

void ItemCreation::GiveKey() {
  item_->IDKey = id_ = character_.NewKey();
  // Keys that stand in its data are those of another character.
  item_->SetParentKey(parentKey_);
  item_->SetChildKeyList("");
  character_.creations_.back().id = id_;
  ++character_.traitsMade_;
}

void ItemCreation::MarkAsNew() {
  if (type_ != kStats) item_->Flag |= clsItem::kNewlyAdded;
}

void ItemCreation::PutOnCharacter() {
  const std::string key = item_->KeyText();
  character_.Items.Add(std::move(unplaced_), key);
  placed_ = true;
  character_.ItemsByType[static_cast<std::size_t>(type_)].Add(item_, key);
  character_.SetRefreshList(type_);
  // Formulas that asked for it in vain find it now.
  character_.ClearTokensForItem(*item_);
}

void ItemCreation::LinkToParent() {
  if (parentKey_.empty()) return;
  clsItem* parent = character_.ItemByKey(NumberOfKeyText(parentKey_));
  if (parent) return character_.AttachChild(*item_, *parent);
  item_->SetParentKey("");
  throw KVRError(ErrorNumber::MissingKey);
}

void ItemCreation::MakeInitialMods() {
  if (!noInitMods) character_.MakeInitialMods(*item_, item_->TagItem("initmods"));
}

// The modifiers are made, and ran their own directives; those in the text that they came from are not run
// again.
void ItemCreation::RunDirectives(const std::vector<modDirectives::Substitution>& protectedVars) {
  std::string text = item_->TagList();
  if (text.find('#') == npos) return;
  const std::string initMods = ExtractOwnInitMods(text);
  // The last run also takes the questions that waited for the added traits or came out of a list.
  const bool last = protectedVars.empty();
  if (last && modDirectives::HandleSpecialDirectives(text, character_, protectedVars)) return Cancel();
  if (modDirectives::HandleDirectives(text, character_, protectedVars)) return Cancel();
  if (last && RunSelectDirectives(text)) return Cancel();
  if (!initMods.empty()) text.append(",initmods(").append(initMods).append(")");
  StoreTagList(text);
}

// All but those of `select1`, `select2` and so on, which are for the picking of traits; true when cancelled.
bool ItemCreation::RunSelectDirectives(std::string& text) {
  if (!modDirectives::HoldsWord(text, "buildselectlist")) return false;
  std::string result;
  bool cancelled = false;
  modNewParser::ForEachToken(text, ',', modNewParser::kTags, [&](std::string_view each) {
    std::string tag(each);
    if (!cancelled && !IsSelectTag(tag)) {
      cancelled =
          modDirectives::HandleSelectXDirectives(tag, character_, {}, nullptr, {item_->FullName(), ""});
    }
    result.append(tag) += ',';
  });
  result.pop_back();
  text = std::move(result);
  return cancelled;
}

// A directive may have completed the name, by which the trait is sorted and found.
void ItemCreation::StoreTagList(const std::string& text) {
  const std::string before = item_->FullName();
  character_.ResortItem(*item_, [&] { item_->SetTagList(text); });
  if (item_->FullName() != before) character_.ClearTokensForItem(*item_);
}

void ItemCreation::CountSelections() {
  while (selections_ < kLastSelect && !item_->TagItem("select" + std::to_string(selections_ + 1)).empty()) {
    ++selections_;
  }
}

void ItemCreation::RunSelections() {
  for (int index = 1; index <= selections_; ++index) {
    const KVRCharacter::SelectResult result = character_.HandleSelect(*item_, index, selections_);
    added_.insert(added_.end(), result.added.begin(), result.added.end());
    existing_.insert(existing_.end(), result.existing.begin(), result.existing.end());
    if (result.canceled) {
      UndoSelections();
      return Cancel();
    }
    if (!IsOnCharacter()) return;
  }
}

void ItemCreation::UndoSelections() {
  for (std::int32_t id : added_) {
    if (std::find(existing_.begin(), existing_.end(), id) != existing_.end()) continue;
    const clsItem* added = character_.ItemByKey(id);
    if (!added) continue;
    character_.Env().log.LogLine("Removing item: '" + added->FullName() + "' from Character");
    character_.RemoveItem(added->KeyText());
  }
}

void ItemCreation::ShowAdded() {
  if (!added_.empty()) character_.Env().events.RefreshLists();
}

void ItemCreation::PutInAddedItemsList() {
  std::string text = item_->TagList();
  if (!ContainsNoCase(text, "%addeditemslist%")) return;
  modDirectives::HandleAddedItemsList(text, NumbersIn(item_->TagItem("pkids")), character_);
  StoreTagList(text);
}

void ItemCreation::ReduceTechLevel() {
  const std::string tl = item_->TagItem("tl");
  if (!tl.empty()) item_->SetTagItem("tl", ReducedTL(tl, character_.TL));
}

void ItemCreation::SetStartValues() {
  switch (type_) {
    case kStats:
      return item_->SetScore(0);
    case kSkills: {
      const clsSkillCosts* costs = character_.SkillType(item_->SkillType());
      return SetStartPoints(character_.Env().Config.AddSkillsAtMinCost != 0,
                            costs ? costs->MinCost() : Currency());
    }
    case kSpells:
      return SetStartPoints(true, 1);
    case kEquipment:
      return SetStartCount();
    case kPackages:
      return item_->SetBaseLevel(1);
    default:
      return SetStartLevel();
  }
}

void ItemCreation::SetStartLevel() {
  item_->SetBaseLevel(1);
  const std::string init = item_->TagItem("init");
  FormerState::MakeLinksFor(init, character_);
  if (!init.empty()) item_->SetBaseLevel(CLng(modSolver::Solver(init, *item_)));
}

// A skill or spell of a known type begins with these points, unless it has some already. A technique doesn't:
// its level is that of the skill below it.
void ItemCreation::SetStartPoints(bool wanted, Currency points) {
  const clsSkillCosts* costs = character_.SkillType(item_->SkillType());
  if (!wanted || !costs || EqualNoCase(costs->DefaultStat, "%default")) return;
  if (item_->BasePoints().IsZero()) item_->SetBasePoints(points);
}

void ItemCreation::SetStartCount() {
  item_->SetTagItem("count", "1");
  const std::string quantity = item_->TagItem("baseqty");
  if (quantity.empty()) return;
  FormerState::MakeLinksFor(quantity, character_);
  item_->SetTagItem("count", std::to_string(CLng(modSolver::Solver(quantity, *item_))));
}

// The modifiers' own records are made with the trait's. A modifier that mitigates, or one put on in between,
// may have made some already, so all are made anew.
void ItemCreation::MakeRecords() {
  character_.DisableItemBonuses(*item_);
  character_.EnableItemBonuses(*item_);
  character_.AddTaboosFromOwner(*item_);
}

void ItemCreation::NoteBasedOn() {
  const clsSystemItem* record = sysKey_.empty() ? nullptr : character_.System().Items.Item(sysKey_);
  if (record && record->FullName() != item_->FullName()) item_->SetTagItem("basedon", record->FullName());
}

void ItemCreation::RunBuildCombo() {
  if (!modDirectives::HoldsWord(item_->TagListNoFill(), "buildcombo")) return;
  if (modDirectives::HandleBuildCombo(*item_, noInitMods)) Cancel();
}

void ItemCreation::RunBuildIt() {
  if (modDirectives::HoldsWord(item_->TagListNoFill(), "buildit"))
    modDirectives::HandleBuildIt(*item_, noInitMods);
}

void ItemCreation::RunEdit() {
  if (modDirectives::HoldsWord(item_->TagListNoFill(), "edit")) modDirectives::HandleEdit(*item_);
}

void ItemCreation::CheckNeedsOfComponents() {
  const bool askToAdd = character_.Env().Config.AutoAddNeeds != 0;
  for (std::int32_t id : NumbersIn(item_->TagItem("pkids"))) {
    if (clsItem* component = character_.ItemByKey(id)) {
      character_.NoteFormerState(*component);
      character_.ItemNeedsCheck(*component, askToAdd, true);
    }
    if (!IsOnCharacter()) return;
  }
}

void ItemCreation::CheckNeeds() {
  if (noNeedsCheck) return;
  character_.ItemNeedsCheck(*item_, character_.Env().Config.AutoAddNeeds != 0, true);
}

void ItemCreation::AddCategories() {
  character_.CheckForNewCats(item_->TagItem("cat"), type_);
}

void ItemCreation::DropCreationTags() {
  for (std::string_view tag : {"x", "initmods", "init"}) item_->DeleteTag(tag);
}

// Those of a trait that is part of another creation go on waiting for its end.
void ItemCreation::MakeWaitingLinks() {
  if (character_.creations_.size() == 1) FormerState::MakeLinks(character_);
}

// The checks of needs may have added traits.
void ItemCreation::SpreadWhatCameLast() {
  MakeWaitingLinks();
  if (character_.creations_.size() == 1) character_.TrickleRecalcItems();
}

void ItemCreation::Finish() {
  if (character_.creations_.size() == 1) character_.RecheckCountingNeeds();
  End(id_);
}

// --- The character's side
// ----------------------------------------------------------------------------------------------

std::string WholeTagList(const clsSystemItem& record, ActivityLog& log) {
  std::string list = record.TagList();
  if (modTags::ParensBalance(list)) return list;
  log.LogRed("'" + record.FullName() + "': an unmatched parenthesis in the library was read as a bracket.");
  return savedText::RepairTagText(list);
}

std::int32_t KVRCharacter::AddItemFromSystem(std::string_view sysKey, std::string_view parentKey,
                                             int noInitMods, int noNeedsCheck, int allowDuplicate) {
  TraceScope trace("KVRCharacter:AddItemFromSystem");
  const clsSystemItem* record = system_.Items.Item(sysKey);
  if (!record) {
    env_.log.LogRed("The library has no trait with the key '" + std::string(sysKey) + "'.");
    return 0;
  }
  return CreateNewItem(record->ItemType, WholeTagList(*record, env_.log), sysKey, parentKey, noInitMods,
                       noNeedsCheck, allowDuplicate);
}

std::int32_t KVRCharacter::CreateNewItem(ItemType itemType, std::string_view tagList, std::string_view sysKey,
                                         std::string_view parentKey, int noInitMods, int noNeedsCheck,
                                         int allowDuplicate) {
  TraceScope trace("KVRCharacter:CreateNewItem");
  if (!MayCreate(itemType, sysKey, tagList)) return 0;
  ItemCreation creation(*this, itemType, tagList, sysKey, parentKey);
  creation.noInitMods = noInitMods != 0;
  creation.noNeedsCheck = noNeedsCheck != 0;
  creation.allowDuplicate = allowDuplicate == -1;
  return creation.Run();
}

bool KVRCharacter::KeysAreLeft() {
  if (LastKey < std::numeric_limits<std::int32_t>::max()) return true;
  env_.log.LogRed("Nothing can be added to '" + Name + "': its keys are used up.");
  return false;
}

bool KVRCharacter::MayCreate(ItemType type, std::string_view sysKey, std::string_view tagList) {
  const auto refuse = [&](std::string_view reason) {
    const std::string list = "," + std::string(tagList);
    env_.log.LogRed("'" + std::string(modTags::GetTagValue("name", list)) +
                    "' was not added: " + std::string(reason));
    return false;
  };
  if (type < kFirstType || type > kLastType) return refuse("it is of no known type.");
  if (!KeysAreLeft()) return false;
  const bool onChain = std::any_of(creations_.begin(), creations_.end(), [&](const Creation& creation) {
    return !sysKey.empty() && EqualNoCase(creation.sysKey, sysKey);
  });
  if (onChain) return refuse("it is being added already, and what it brings leads back to it.");
  if (creations_.size() >= kDeepestCreation) return refuse("what traits bring goes too deep.");
  if (!creations_.empty() && traitsMade_ >= kMostTraitsAtOnce) return refuse("too many traits come of one.");
  return true;
}

void KVRCharacter::CheckForNewCats(std::string_view list, ItemType type) {
  modNewParser::ForEachToken(list, ',', modNewParser::kPlain, [&](std::string_view entry) {
    const std::string name(Trim(entry));
    if (name.empty()) return;
    const clsCategory category{name, "", type};
    const std::string key = clsSortedCatCollection::KeyOf(category);
    if (Cats.Add(std::make_unique<clsCategory>(category), key)) {
      if (!formerStates_.empty()) formerStates_.back()->NoteNewCat(key);
      env_.log.LogLine("cat '" + name + "' ADDED.");
    } else {
      env_.log.LogLine("cat '" + name + "' already existed.");
    }
  });
}

}  // namespace kvr
