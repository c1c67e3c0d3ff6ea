// Adds what a trait lacks to be allowed: each entry of a list of needs becomes a trait on the character.
#include "character/ChooseItem.h"
#include "character/KVRCharacter.h"
#include "character/NeedsSteps.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modLogging.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace {

using modNeeds::Comparison;

class PrerequisiteAdder {
 public:
  PrerequisiteAdder(KVRCharacter& character, std::string_view neederName, std::int32_t neederKey)
      : character_(character), needer_(neederName), neederKey_(neederKey) {}

  void Satisfy(std::string_view text) {
    const modNeeds::Entry entry = modNeeds::ReadEntry(text);
    if (entry.name.empty()) return;
    const ItemType type = modPrefixes::TypeFromPrefix(entry.prefix);
    const bool isTrait = type != kNoType || entry.prefix.empty();
    if (!isTrait) return TellMissing(entry.left);
    if (clsItem* existing = Existing(entry.name, type)) return Adjust(*existing, entry);
    if (const clsSystemItem* record = InLibrary(entry.name, type)) Add(*record, entry);
  }

 private:
  // The first of that name that isn't the needer.
  clsItem* FirstFrom(std::size_t position, ItemType type, bool sameExtension) const {
    clsItem* first = nullptr;
    modNeeds::AnyFrom(character_, position, type, sameExtension, [&](clsItem& item) {
      if (item.IDKey != neederKey_) first = &item;
      return first != nullptr;
    });
    return first;
  }

  clsItem* ByFullName(std::string_view name, ItemType type) const {
    return FirstFrom(character_.ItemPositionByNameAndExt(name, type), type, true);
  }

  clsItem* Existing(std::string_view name, ItemType type) const {
    if (type == kStats || type == kNoType) {
      if (clsItem* stat = ByFullName(name, kStats)) return stat;
      if (clsItem* stat = character_.FindItemBySymbol(name, kStats)) return stat;
    }
    if (clsItem* item = ByFullName(name, type)) return item;
    if (modNeeds::HasExtension(name)) return nullptr;
    return FirstFrom(character_.ItemPositionByNameOnly(name, type), type, false);
  }

  const clsSystemItem* InLibrary(std::string_view name, ItemType type) const {
    const KVRSystem& library = character_.System();
    if (const clsSystemItem* record = library.FindItem(name, type)) return record;
    std::vector<std::size_t> found;
    if (!modNeeds::HasExtension(name)) found = library.GetAllItems(name, type);
    if (!found.empty()) {
      return ChooseItem(character_, name, needer_ + " needs " + std::string(name) + ".", found);
    }
    TellMissing(name);
    return nullptr;
  }

  void TellMissing(std::string_view name) const {
    character_.Env().log.LogLine(needer_ + ": I couldn't find: " + std::string(name) +
                                 ". You'll have to add it manually.");
  }

  void Add(const clsSystemItem& record, const modNeeds::Entry& entry) const {
    clsItem* item = character_.ItemByKey(character_.AddItemFromSystem(record.CollectionKey()));
    if (!item) return;
    character_.Env().log.LogLine("Auto-added to character: " + item->FullName());
    SetValue(*item, entry);
  }

  void Adjust(clsItem& item, const modNeeds::Entry& entry) const {
    if (!IsSet(item.FreeTag("locked"))) return SetValue(item, entry);
    const clsItem* bringer = character_.ItemByKey(CLngClamped(Val(item.FreeTag("keep"))));
    character_.Env().log.LogLine("Item '" + item.FullName() + "' is a component of item '" +
                                 (bringer ? bringer->FullName() : std::string()) +
                                 "', and can't be auto-adjusted by Needs.");
  }

  void SetValue(clsItem& item, const modNeeds::Entry& entry) const {
    const std::string wanted = WantedValue(entry);
    if (wanted.empty()) return;
    const bool inPoints = EqualNoCase(entry.tag, "points") || EqualNoCase(entry.tag, "baseapppoints");
    character_.SetExistingItemToValue(item, wanted, inPoints ? "points" : "");
  }

  // What is asked for at most, or otherwise than so, is left to the player.
  static std::string WantedValue(const modNeeds::Entry& entry) {
    switch (entry.comparison) {
      case Comparison::AtLeast:
        return ">= " + std::string(entry.value);
      case Comparison::MoreThan:  // the next whole value
        return ">= " + NumberText(Currency::FromVal(entry.value) + Currency(1));
      case Comparison::Equal:
        return "= " + std::string(entry.value);
      default:
        return "";
    }
  }

  KVRCharacter& character_;
  std::string needer_;
  std::int32_t neederKey_;
};

}  // namespace

void KVRCharacter::AddSpecifiedItems(std::string_view neederName, std::string_view text,
                                     std::int32_t neederKey) {
  TraceScope trace("KVRCharacter:AddSpecifiedItems");
  const std::string list(text);
  PrerequisiteAdder adder(*this, neederName, neederKey);
  env_.log.LogLine(std::string(neederName) + ": AutoAdding: " + list);
  for (std::string_view entry : modNewParser::ParseSplitChars(list, ",", modNewParser::kNames))
    LogFailure(env_.log, [&] { adder.Satisfy(entry); });
}

}  // namespace kvr
