// The traits that a trait brings: those that it adds from the library (`adds`), and those that it describes
// itself (`creates`).
#include <optional>

#include "character/ChooseItem.h"
#include "character/FormerState.h"
#include "character/TemplateEntries.h"
#include "character/WholeTagList.h"
#include "core/modTags.h"

namespace kvr {

namespace {

using templateEntries::Entry;
using templateEntries::TraitReference;

// One run over the entries of a tag. An entry that fails is logged, and the others are brought all the same.
class TraitBringer {
 public:
  TraitBringer(KVRCharacter& character, clsItem& bringer)
      : character_(character), bringer_(bringer), id_(bringer.IDKey) {}

  // The new trait's number, 0 when it was cancelled or refused, nothing when there is no such trait.
  using Maker = std::optional<std::int32_t> (TraitBringer::*)(const Entry&);
  void Bring(std::string_view list, Maker make);

  std::optional<std::int32_t> FromLibrary(const Entry& entry);
  std::optional<std::int32_t> FromItself(const Entry& entry);

 private:
  void BringEntry(std::size_t number, std::string_view text, Maker make);
  template <class Add>
  std::int32_t AddOrDouble(Add&& add);
  std::int32_t AddRecord(const clsSystemItem& record, bool noInitMods);
  std::int32_t AddWithExtension(const clsSystemItem& base, std::string_view ext, bool noInitMods);
  std::optional<std::int32_t> AddOneOf(const TraitReference& wanted, bool noInitMods);
  const clsSystemItem* Find(std::string_view fullName, ItemType type) const;
  void SetValue(clsItem& item, const Entry& entry);
  void Tie(clsItem& item);
  void NeedIt(const Entry& entry, const clsItem* item);
  void StoreNeeds();

  KVRCharacter& character_;
  clsItem& bringer_;
  const std::int32_t id_;
  std::string needs_;
};

void TraitBringer::Bring(std::string_view list, Maker make) {
  std::size_t number = 0;
  for (std::string_view text : templateEntries::Split(list)) {
    LogFailure(character_.Env().log, [&] { BringEntry(++number, text, make); });
    character_.ClearResponses();
    // An entry may have taken the bringer away.
    if (character_.ItemByKey(id_) != &bringer_) return;
  }
  StoreNeeds();
}

void TraitBringer::BringEntry(std::size_t number, std::string_view text, Maker make) {
  const Entry entry = templateEntries::ReadEntry(text);
  ActivityLog& log = character_.Env().log;
  log.LogLine("AddItems$(" + std::to_string(number) + ") = " + std::string(text));
  log.LogLine(" leftside$ = " + entry.left);
  log.LogLine("rightside$ = " + entry.value);
  // The stack gives the last one first, and the answers stand in the order of the questions.
  for (auto answer = entry.answers.rbegin(); answer != entry.answers.rend(); ++answer) {
    character_.PushResponse(*answer);
  }
  const std::optional<std::int32_t> made = (this->*make)(entry);
  if (made && *made == 0) return;
  clsItem* item = made ? character_.ItemByKey(*made) : nullptr;
  if (item) {
    SetValue(*item, entry);
    character_.AddModsFromAndList(*item, entry.mods);
    if (entry.ownIt) Tie(*item);
  } else {
    log.LogRed("'" + bringer_.FullName() + "' found no trait to add for '" + std::string(text) + "'.");
  }
  if (entry.needIt) NeedIt(entry, item);
}

// A trait that stands already is doubled, after the user was asked what to do with it.
template <class Add>
std::int32_t TraitBringer::AddOrDouble(Add&& add) {
  const std::int32_t lastKey = character_.LastKey;
  const std::int32_t made = add(0);
  if (made == 0 || made > lastKey) return made;
  character_.CheckDupe(made);
  return add(-1);
}

const clsSystemItem* TraitBringer::Find(std::string_view fullName, ItemType type) const {
  const KVRSystem& system = character_.System();
  if (type != kNoType) return system.FindItem(fullName, type);
  const std::size_t position = system.ItemPositionByNameAndExt(fullName, type);
  return position ? &system.Items.Item(position) : nullptr;
}

std::optional<std::int32_t> TraitBringer::FromLibrary(const Entry& entry) {
  const TraitReference wanted = templateEntries::ReadReference(entry.left);
  const bool noInitMods = !entry.mods.empty();
  if (const clsSystemItem* record = Find(wanted.name, wanted.type)) return AddRecord(*record, noInitMods);
  const auto [name, ext] = modPrefixes::SplitNameAndExt(wanted.name);
  if (ext.empty()) return AddOneOf(wanted, noInitMods);
  const clsSystemItem* base = Find(name, wanted.type);
  if (!base) return std::nullopt;
  return AddWithExtension(*base, ext, noInitMods);
}

std::int32_t TraitBringer::AddRecord(const clsSystemItem& record, bool noInitMods) {
  return AddOrDouble([&](int allowDuplicate) {
    return character_.AddItemFromSystem(record.CollectionKey(), "", noInitMods ? -1 : 0, -1, allowDuplicate);
  });
}

std::int32_t TraitBringer::AddWithExtension(const clsSystemItem& base, std::string_view ext,
                                            bool noInitMods) {
  const std::string list = WholeTagList(base, character_.Env().log) + ",nameext(" + std::string(ext) + ")";
  return AddOrDouble([&](int allowDuplicate) {
    return character_.CreateNewItem(base.ItemType, list, base.CollectionKey(), "", noInitMods ? -1 : 0, -1,
                                    allowDuplicate);
  });
}

// The name alone, where the library has it only with extensions.
std::optional<std::int32_t> TraitBringer::AddOneOf(const TraitReference& wanted, bool noInitMods) {
  const std::vector<std::size_t> positions = character_.System().GetAllItems(wanted.name, wanted.type);
  if (positions.empty()) return std::nullopt;
  const clsSystemItem* chosen =
      ChooseItem(character_, wanted.name,
                 bringer_.FullName() + " requested the adding of " + wanted.name + ".", positions);
  return chosen ? AddRecord(*chosen, noInitMods) : 0;
}

std::string TagStringOf(std::string_view line, ItemType type) {
  switch (type) {
    case kStats:
      return KVRSystem::ReturnStatItem(line);
    case kSkills:
      return KVRSystem::ReturnSkillItem(line);
    case kSpells:
      return KVRSystem::ReturnSpellItem(line);
    case kEquipment:
      return KVRSystem::ReturnEquipmentItem(line);
    case kPackages:
      return KVRSystem::ReturnGenericItem(line);
    default:
      return KVRSystem::ReturnAdItem(line);
  }
}

std::optional<std::int32_t> TraitBringer::FromItself(const Entry& entry) {
  const auto [prefix, line] = modPrefixes::ExtractPrefix(entry.left);
  const ItemType type = modPrefixes::TypeFromPrefix(prefix);
  if (type == kNoType) {
    character_.Env().log.LogRed("'" + bringer_.FullName() + "' can't create '" + entry.left +
                                "': no known type stands in front of it.");
    return 0;
  }
  std::string list = TagStringOf(templateEntries::StripWhole(line), type);
  if (entry.ownIt) list += ",keep(" + std::to_string(id_) + ")";
  return AddOrDouble([&](int allowDuplicate) {
    return character_.CreateNewItem(type, list, "", "", entry.mods.empty() ? 0 : -1, -1, allowDuplicate);
  });
}

void TraitBringer::SetValue(clsItem& item, const Entry& entry) {
  if (entry.value.empty()) return;
  const std::string_view points = templateEntries::PointsOf(entry.value);
  FormerState::MakeLinksFor(points.empty() ? std::string_view(entry.value) : points, character_);
  std::string wanted;
  if (entry.comparison != modNeeds::Comparison::Equal) wanted = modNeeds::OperatorText(entry.comparison);
  wanted += points.empty() ? std::string_view(entry.value) : points;
  std::string_view tag = item.ItemType == kEquipment ? "count" : "";
  if (!points.empty()) tag = "points";
  character_.SetExistingItemToValue(item, wanted, tag);
}

void TraitBringer::Tie(clsItem& item) {
  if (IsSet(bringer_.TagItem("owns"))) {
    item.SetTagItem("keep", std::to_string(id_));
    item.SetTagItem("owned", "yes");
    // A new number, so the list can't hold it yet.
    std::string pkids = std::to_string(item.IDKey);
    if (const std::string_view others = bringer_.FreeTag("pkids"); !others.empty()) {
      pkids.append(", ").append(others);
    }
    bringer_.SetTagItem("pkids", pkids);
  }
  if (IsSet(bringer_.TagItem("locks"))) item.SetTagItem("locked", "yes");
  if (const std::string hides = bringer_.TagItem("hides"); IsSet(hides)) item.SetTagItem("hide", hides);
}

// A name as needs write it: in braces where they would take it apart.
std::string NameInNeeds(const std::string& name) {
  return name.find_first_of(",|<>=") == npos ? name : "{" + name + "}";
}

void TraitBringer::NeedIt(const Entry& entry, const clsItem* item) {
  const TraitReference wanted = templateEntries::ReadReference(entry.left);
  std::string need = wanted.prefix;
  if (need.empty() && item) need = modPrefixes::ItemTypeName(item->ItemType);
  if (!need.empty()) need += ':';
  if (item) {
    need.append("{").append(item->FullName()).append("}");
  } else {
    need += NameInNeeds(wanted.name);
  }
  if (!entry.value.empty()) need.append(modNeeds::OperatorText(entry.comparison)).append(entry.value);
  if (!needs_.empty()) needs_ += ", ";
  needs_ += need;
}

// What was added is needed beside everything that was needed before.
void TraitBringer::StoreNeeds() {
  if (needs_.empty()) return;
  std::string needs = bringer_.TagItem("needs");
  if (needs.find('|') != npos) needs = "(" + needs + ")";
  bringer_.SetTagItem("needs", needs.empty() ? needs_ : needs + "," + needs_);
}

}  // namespace

void KVRCharacter::HandleAdds(clsItem& item) {
  const std::string list = item.Adds();
  if (list.empty()) return;
  TraceScope trace("KVRCharacter:HandleAdds");
  TraitBringer(*this, item).Bring(list, &TraitBringer::FromLibrary);
}

void KVRCharacter::HandleCreates(clsItem& item) {
  const std::string list = item.Creates();
  if (list.empty()) return;
  TraceScope trace("KVRCharacter:HandleCreates");
  TraitBringer(*this, item).Bring(list, &TraitBringer::FromItself);
}

}  // namespace kvr
