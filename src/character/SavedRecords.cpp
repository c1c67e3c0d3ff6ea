// The records of a character file put back on the character as they stand: no directives, no template
// effects, and, while a file is read, no links.
#include "character/CharacterFileFields.h"
#include "character/KVRCharacter.h"
#include "character/ModTree.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {

namespace {

// Numbers above it are no keys: the counter must have room to go on.
constexpr std::int32_t kHighestKey = 2'000'000'000;

struct SavedFrame {
  std::int32_t idKey = 0;
  std::string_view parentKey, childKeyList;
  std::string_view tags;
  bool complete = false;  // a "|" was there
};

SavedFrame FrameOf(std::string_view record) {
  SavedFrame frame;
  const std::size_t bar = record.find('|');
  frame.complete = bar != npos;
  if (frame.complete) frame.tags = record.substr(bar + 1);
  savedText::ForEachTag(record.substr(0, bar), [&](std::string_view tag, std::string_view value) {
    if (EqualNoCase(tag, "idkey")) {
      frame.idKey = savedText::ToLong(value);
    } else if (EqualNoCase(tag, "parentkey")) {
      frame.parentKey = Trim(value);
    } else if (EqualNoCase(tag, "childkeylist")) {
      frame.childKeyList = Trim(value);
    }
  });
  return frame;
}

// A list with a parenthesis too many or too few, such as one that was cut in the middle of a value, is
// repaired value by value: else the tags behind it would be read as part of the value, the name among them.
std::string_view ClosedTags(std::string_view tags, std::string& closed) {
  tags = tags.substr(0, tags.find_last_not_of(" \r\n") + 1);
  if (tags.empty() || (tags.ends_with(')') && modTags::ParensBalance(tags))) return tags;
  closed = savedText::RepairTagText(tags);
  return closed;
}

}  // namespace

void KVRCharacter::LeaveOut(std::string_view reason, std::string_view record) {
  constexpr std::size_t kShown = 80;
  env_.log.LogRed(std::string(reason).append(record.substr(0, kShown)));
  if (savedFile_) savedFile_->leftOut = true;
}

void KVRCharacter::NoteSavedKey(std::int32_t key) {
  if (key <= kHighestKey) LastKey = std::max(LastKey, key);
}

std::int32_t KVRCharacter::NumberForSaved(std::int32_t wanted, std::string_view kind,
                                          const std::string& name) {
  const bool taken = Items.Item(KeyTextOf(wanted)) ||
                     (savedFile_ ? savedFile_->mods.contains(wanted) : GetObjectFromIDKey(wanted) != nullptr);
  if (wanted > 0 && wanted <= kHighestKey && !taken) {
    NoteSavedKey(wanted);
    return wanted;
  }
  if (savedFile_ && !savedFile_->atEnd) return 0;
  const std::int32_t key = NewKey();
  env_.log.LogRed("The " + std::string(kind) + " '" + name + "' had the number " + std::to_string(wanted) +
                  ", which is taken or no key; it is " + std::to_string(key) + " now.");
  return key;
}

clsItem* KVRCharacter::AddItemFromSaved(ItemType type, std::string_view record) {
  const SavedFrame frame = FrameOf(record);
  if (!frame.complete) {
    LeaveOut("Left out, since it has no tag list: ", record);
    return nullptr;
  }
  std::string closed;
  auto item = std::make_unique<clsItem>();
  item->ItemType = type;
  item->SetParentKey(frame.parentKey);
  item->SetChildKeyList(frame.childKeyList);
  item->NewTagList(ClosedTags(frame.tags, closed));
  item->IDKey = NumberForSaved(frame.idKey, "trait", item->Name());
  if (item->IDKey == 0) {
    savedFile_->doubledItems.emplace_back(type, record);
    return nullptr;
  }
  item->Owner = this;
  clsItem* added = item.get();
  const std::string key = item->KeyText();
  Items.Add(std::move(item), key);
  ItemsByType[static_cast<std::size_t>(type)].Add(added, key);
  if (!savedFile_) CreateAffectsLinks(*added);
  return added;
}

CalcItem* KVRCharacter::SavedHolder(std::int32_t id) const {
  if (!savedFile_) return GetObjectFromIDKey(id);
  if (clsItem* item = Items.Item(KeyTextOf(id))) return item;
  const auto mod = savedFile_->mods.find(id);
  return mod == savedFile_->mods.end() ? nullptr : mod->second;
}

void KVRCharacter::AddModFromSaved(std::string_view line) {
  const SavedFrame frame = FrameOf(line);
  if (!frame.complete) return LeaveOut("Left out, since it has no tag list: ", line);
  NoteSavedKey(frame.idKey);  // also of one that is left out: something else may name it
  auto mod = std::make_unique<clsMod>();
  std::string closed;
  mod->SetTagList(std::string(ClosedTags(frame.tags, closed)));
  CalcItem* holder = SavedHolder(savedText::ToLong(frame.parentKey));
  if (!holder) return LeaveOut("Error: Owning item not found for mod: ", mod->FullName());
  if (ModDepth(*holder) >= kDeepestMod) {
    return LeaveOut("Error: Nested too deep, and left out: mod ", mod->FullName());
  }
  mod->IDKey = NumberForSaved(frame.idKey, "modifier", mod->FullName());
  if (mod->IDKey == 0) {
    savedFile_->doubledMods.emplace_back(line);
    return;
  }
  mod->Owner = holder;
  if (savedFile_) savedFile_->mods.emplace(mod->IDKey, mod.get());
  const std::string key = KeyTextOf(mod->IDKey);
  ModsOf(*holder)->Add(std::move(mod), key);
  clsItem* root = holder->RootOwnerItem();
  if (!savedFile_ && root) CreateAffectsLinks(*root);
}

// Records whose number another one had: now that all numbers are known, they get new ones.
void KVRCharacter::AddDoubledRecords() {
  savedFile_->atEnd = true;
  const auto items = std::move(savedFile_->doubledItems);
  for (const auto& [type, record] : items) AddItemFromSaved(type, record);
  const auto mods = std::move(savedFile_->doubledMods);
  for (const std::string& line : mods) AddModFromSaved(line);
}

clsBonus* KVRCharacter::AddBonusRecord(std::vector<std::unique_ptr<clsBonus>>& records,
                                       std::string_view line) {
  auto bonus = std::make_unique<clsBonus>();
  std::int32_t owner = 0;
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    if (!EqualNoCase(tag, "ownerid")) return;
    value = Trim(value);
    if (StartsWithNoCase(value, "k")) value.remove_prefix(1);
    owner = savedText::ToLong(value);
  });
  savedFields::ReadLine(savedFields::Bonus(), line, *bonus);
  bonus->Owner = SavedHolder(owner);
  if (!bonus->Owner) {
    env_.log.LogRed("Error: Owning item not found for bonus: " + bonus->FullBonusText);
    return nullptr;
  }
  if (bonus->Affects.empty()) bonus->SetBonusAffects();
  bonus->IDKey = NewKeyTemp();
  return records.emplace_back(std::move(bonus)).get();
}

void KVRCharacter::AddBonusFromSaved(std::string_view line) {
  clsBonus* bonus = AddBonusRecord(Bonuses, line);
  if (!bonus) return;
  bonus->Owner->Given()->bonuses.push_back(bonus);
  if (!savedFile_) CreateBonusAffectsLinks(*bonus);
}

void KVRCharacter::AddConditionalFromSaved(std::string_view line) {
  clsBonus* conditional = AddBonusRecord(Conditionals, line);
  if (!conditional) return;
  conditional->Owner->Given()->conditionals.push_back(conditional);
  if (!savedFile_) CreateConditionalAffectsLinks(*conditional);
}

void KVRCharacter::AddCampaignFromSaved(std::string_view line) {
  savedFields::ReadLine(savedFields::Campaign(), line, Campaign);
}

}  // namespace kvr
