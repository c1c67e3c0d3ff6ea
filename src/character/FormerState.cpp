// Notes how things stood before a creation changed them, and puts them back when it is cancelled or fails.
#include "character/FormerState.h"

#include <algorithm>
#include <tuple>

#include "calc/RecordLinks.h"
#include "core/Numbers.h"

namespace kvr {

namespace {

std::int32_t NumberOf(const CalcItem* owner) {
  if (const auto* item = dynamic_cast<const clsItem*>(owner)) return item->IDKey;
  const auto* mod = dynamic_cast<const clsMod*>(owner);
  return mod ? mod->IDKey : 0;
}

}  // namespace

FormerState::FormerState(KVRCharacter& character)
    : character_(character),
      lastKey_(character.LastKey),
      lastKeyTemp_(character.lastKeyTemp_),
      dirty_(character.Dirty),
      changes_(character.ChangeLog.size()),
      totals_{character.CurrentLoad, character.EncumbranceLevel, character.TL,
              character.ParryIDKey,  character.ParryScore,       character.BlockIDKey,
              character.BlockScore,  character.ParryUsing,       character.BlockUsing} {}

// --- Taking notes
// -------------------------------------------------------------------------------------------------------

std::vector<FormerState::FormerMod> FormerState::ModsOf(const clsSortedModCollection& mods) {
  std::vector<FormerMod> former;
  for (const clsMod& mod : mods) former.push_back({mod.IDKey, mod.Flag, mod.TagList(), ModsOf(mod.Mods)});
  return former;
}

void FormerState::NoteItem(clsItem& item) {
  if (item.IDKey > lastKey_ || items_.contains(item.IDKey)) return;
  if (character_.ItemByKey(item.IDKey) != &item) return;  // a trait that is on no character
  FormerItem& former = items_[item.IDKey];
  former.type = item.ItemType;
  former.flag = item.Flag;
  former.data = std::make_unique<clsItem>();
  former.data->CopyData(item);
  if (!item.Mods.Empty()) former.mods = ModsOf(item.Mods);
}

void FormerState::NoteRecord(const clsBonus& record) {
  // A record without a key is just being made.
  if (record.IDKey <= 0 || record.IDKey > lastKeyTemp_ || NumberOf(record.Owner) > lastKey_) return;
  if (!recordKeys_.insert(record.IDKey).second) return;
  const auto& conditionals = record.Owner->Given()->conditionals;
  const bool conditional = std::ranges::find(conditionals, &record) != conditionals.end();
  records_.push_back({record, NumberOf(record.Owner), conditional});
}

void FormerState::NoteTexts() {
  if (texts_) return;
  const KVRCharacter& c = character_;
  texts_ = Texts{c.Race, c.BodyType, c.Height, c.Weight, c.Age, c.Appearance, c.CharTagList, c.Body};
}

void FormerState::NoteChangeLog() {
  if (!changeLog_) changeLog_ = character_.ChangeLog;
}

void FormerState::HandOverTo(FormerState& outer) {
  for (auto& [id, former] : items_) {
    if (id <= outer.lastKey_) outer.items_.try_emplace(id, std::move(former));
  }
  for (FormerRecord& former : records_) {
    if (former.record.IDKey > outer.lastKeyTemp_ || former.owner > outer.lastKey_) continue;
    if (outer.recordKeys_.insert(former.record.IDKey).second) outer.records_.push_back(std::move(former));
  }
  if (!outer.texts_) outer.texts_ = std::move(texts_);
  if (!outer.changeLog_) outer.changeLog_ = std::move(changeLog_);
  std::ranges::move(newCats_, std::back_inserter(outer.newCats_));
}

// --- Putting back
// -------------------------------------------------------------------------------------------------------

void FormerState::Restore() {
  DropNewRecords();
  DropNewItems();
  PutItemsBack();
  PutRecordsBack();
  RelinkAndRecalculate();
  PutTextsBack();
  QueueWhatWaited();
  character_.env_.events.RefreshLists();
}

// In a creation that goes on, a trait may have waited for its calculation when it was noted.
void FormerState::QueueWhatWaited() {
  if (character_.formerStates_.size() < 2) return;
  for (const auto& [id, former] : items_) character_.QueueKey(id);
}

// The links to them fall with all others, before anything is calculated.
void FormerState::DropNewRecords() {
  for (const RecordKind* kind : {&kBonuses, &kConditionals}) {
    auto& records = character_.*(kind->records);
    const auto isNew = [&](const auto& record) { return record->IDKey > lastKeyTemp_; };
    for (const auto& record : records) {
      if (isNew(record)) std::erase(record->Owner->Given()->*(kind->given), record.get());
    }
    std::erase_if(records, isNew);
  }
}

void FormerState::DropNewItems() {
  std::erase_if(character_.Taboos, [&](const auto& taboo) { return taboo->Owner->IDKey > lastKey_; });
  std::vector<clsItem*> made;
  for (clsItem& item : character_.Items) {
    if (item.IDKey > lastKey_) made.push_back(&item);
  }
  for (clsItem* item : made) {
    const std::string key = item->KeyText();
    character_.SetRefreshList(item->ItemType);
    character_.ItemsByType[static_cast<std::size_t>(item->ItemType)].Remove(key);
    character_.Items.Remove(key);
  }
}

void FormerState::PutItemsBack() {
  for (const auto& [id, former] : items_) {
    clsItem& item = ItemToRestore(id, former);
    PutData(item, former);
    PutModsBack(item, former);
  }
}

// The trait as it stands, or a new object in the place of one that was taken away.
clsItem& FormerState::ItemToRestore(std::int32_t id, const FormerItem& former) {
  if (clsItem* standing = character_.ItemByKey(id)) return *standing;
  auto made = std::make_unique<clsItem>();
  clsItem& item = *made;
  item.IDKey = id;
  item.Owner = &character_;
  item.ItemType = former.type;
  item.CopyData(*former.data);
  const std::string key = item.KeyText();
  character_.Items.Add(std::move(made), key);
  character_.ItemsByType[static_cast<std::size_t>(former.type)].Add(&item, key);
  character_.AddTaboosFromOwner(item);
  return item;
}

void FormerState::PutData(clsItem& item, const FormerItem& former) {
  const auto put = [&] {
    item.CopyData(*former.data);
    item.Flag = former.flag;
  };
  if (item.Name() == former.data->Name() && item.NameExt() == former.data->NameExt()) return put();
  character_.ResortItem(item, put);
}

bool FormerState::SameMods(const clsSortedModCollection& mods, const std::vector<FormerMod>& former) {
  return std::ranges::equal(std::ranges::subrange(mods.begin(), mods.end()), former,
                            [](const clsMod& mod, const FormerMod& was) {
                              return mod.IDKey == was.idKey && mod.Flag == was.flag &&
                                     mod.TagList() == was.tags && SameMods(mod.Mods, was.mods);
                            });
}

void FormerState::TakeMods(clsSortedModCollection& mods, ModPool& pool) {
  while (!mods.Empty()) {
    std::unique_ptr<clsMod> mod = mods.Take(std::string(mods.KeyAt(1)));
    TakeMods(mod->Mods, pool);
    pool.emplace(mod->IDKey, std::move(mod));
  }
}

void FormerState::PutMods(CalcItem& owner, clsSortedModCollection& mods, const std::vector<FormerMod>& former,
                          ModPool& pool) {
  for (const FormerMod& was : former) {
    auto living = pool.extract(was.idKey);
    std::unique_ptr<clsMod> mod = living.empty() ? std::make_unique<clsMod>() : std::move(living.mapped());
    clsMod& put = *mod;
    put.IDKey = was.idKey;
    put.Flag = was.flag;
    put.Owner = &owner;
    if (put.TagList() != was.tags) put.SetTagList(was.tags);
    mods.Add(std::move(mod), KeyTextOf(was.idKey));
    PutMods(put, put.Mods, was.mods, pool);
  }
}

// A modifier that is still there stays the same object: records point to it.
void FormerState::PutModsBack(clsItem& item, const FormerItem& former) {
  if (SameMods(item.Mods, former.mods)) return;
  ModPool pool;
  TakeMods(item.Mods, pool);
  PutMods(item, item.Mods, former.mods, pool);
  for (auto& [id, mod] : pool) {
    character_.RemoveBonusesFromOwner(*mod);
    character_.RemoveConditionalsFromOwner(*mod);
  }
}

clsBonus* FormerState::StandingRecord(const FormerRecord& former) const {
  const auto& records = former.conditional ? character_.Conditionals : character_.Bonuses;
  const auto place = std::ranges::lower_bound(records, former.record.IDKey, {},
                                              [](const auto& standing) { return standing->IDKey; });
  return place != records.end() && (*place)->IDKey == former.record.IDKey ? place->get() : nullptr;
}

void FormerState::PutRecordsBack() {
  for (const FormerRecord& former : records_) {
    CalcItem* owner = StandingRecord(former) ? nullptr : character_.GetObjectFromIDKey(former.owner);
    if (!owner) continue;
    const RecordKind& kind = former.conditional ? kConditionals : kBonuses;
    auto record = std::make_unique<clsBonus>(former.record);
    record->Owner = owner;
    clsBonus& put = *record;
    auto& given = owner->Given()->*kind.given;
    given.insert(std::ranges::lower_bound(given, put.IDKey, {}, &clsBonus::IDKey), &put);
    auto& records = character_.*kind.records;
    records.insert(std::ranges::lower_bound(records, put.IDKey, {},
                                            [](const auto& standing) { return standing->IDKey; }),
                   std::move(record));
  }
}

// For what is not kept as text: links, display lines, answers of the solver.
void FormerState::RelinkAndRecalculate() {
  character_.TokenCache.Clear();
  character_.CreateAllAffectsLinks();
  for (const auto& [id, former] : items_) {
    clsItem* item = character_.ItemByKey(id);
    if (!item) continue;
    character_.QueueKey(id);
    character_.PushRecalcItems(*item);
  }
  for (const FormerRecord& former : records_) {
    if (clsBonus* record = StandingRecord(former)) record->Calculate();
  }
  // A failure of a formula was logged where it was met.
  try {
    character_.TrickleRecalcItems();
  } catch (const SolverFailure&) {
  }
}

// Last, and exactly as it was: a calculation may have put a tag in another place of the list, and one that
// failed has left its numbers.
void FormerState::PutTextsBack() {
  KVRCharacter& c = character_;
  for (const auto& [id, former] : items_) {
    if (clsItem* item = c.ItemByKey(id)) PutData(*item, former);
  }
  for (const FormerRecord& former : records_) {
    clsBonus* record = StandingRecord(former);
    if (!record) continue;
    record->Value = former.record.Value;
    record->StringValueText = former.record.StringValueText;
  }
  if (changeLog_) c.ChangeLog = std::move(*changeLog_);
  c.ChangeLog.resize(std::min(changes_, c.ChangeLog.size()));
  if (texts_) {
    std::tie(c.Race, c.BodyType, c.Height, c.Weight, c.Age, c.Appearance, c.CharTagList, c.Body) =
        std::tie(texts_->race, texts_->bodyType, texts_->height, texts_->weight, texts_->age,
                 texts_->appearance, texts_->charTagList, texts_->body);
  }
  std::tie(c.CurrentLoad, c.EncumbranceLevel, c.TL, c.ParryIDKey, c.ParryScore, c.BlockIDKey, c.BlockScore,
           c.ParryUsing, c.BlockUsing) = std::tie(totals_.currentLoad, totals_.encumbranceLevel, totals_.tl,
                                                  totals_.parryKey, totals_.parryScore, totals_.blockKey,
                                                  totals_.blockScore, totals_.parryUsing, totals_.blockUsing);
  for (const std::string& key : newCats_) c.Cats.Remove(key);
  c.LastKey = lastKey_;
  c.Dirty = dirty_;
}

// --- Links that wait
// --------------------------------------------------------------------------------------------------------

bool FormerState::PutOffLinks(clsItem& item) {
  if (linking_) return false;
  putOff_.insert(item.IDKey);
  // What bonuses give a trait counts at once.
  UnlinkFromRecords(item);
  LinkToRecords(character_, item);
  return true;
}

void FormerState::MakeLinks(KVRCharacter& character) {
  if (character.formerStates_.empty() || character.formerStates_.front()->putOff_.empty()) return;
  constexpr std::size_t kFew = 4;
  FormerState& outermost = *character.formerStates_.front();
  const std::set<std::int32_t> waiting = std::move(outermost.putOff_);
  outermost.putOff_.clear();
  std::vector<clsItem*> items;
  for (std::int32_t id : waiting) {
    if (clsItem* item = character.ItemByKey(id)) items.push_back(item);
  }
  outermost.linking_ = true;
  if (items.size() <= kFew) {
    for (clsItem* item : items) character.CreateAffectsLinks(*item);
  } else {
    character.CreateAllAffectsLinks();
  }
  outermost.linking_ = false;
  for (clsItem* item : items) {
    character.ClearTokensForItem(*item);
    character.QueueItem(*item);
    character.PushRecalcItems(*item);
  }
}

void FormerState::MakeLinksFor(std::string_view formula, KVRCharacter& character) {
  if (formula.empty() || IsNumeric(formula) || character.formerStates_.empty()) return;
  MakeLinks(character);
  character.TrickleRecalcItems();
}

// --- The character's side
// -------------------------------------------------------------------------------------------------

void KVRCharacter::NoteFormerState(clsItem& item) {
  if (!formerStates_.empty()) formerStates_.back()->NoteItem(item);
}

void KVRCharacter::NoteFormerRecord(const clsBonus& record) {
  if (!formerStates_.empty()) formerStates_.back()->NoteRecord(record);
}

void KVRCharacter::NoteFormerTexts() {
  if (!formerStates_.empty()) formerStates_.back()->NoteTexts();
}

}  // namespace kvr
