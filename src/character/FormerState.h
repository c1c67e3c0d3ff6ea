// How a character stood before a creation changed it, so that a cancelled creation leaves no trace.
//
// There is one for each running creation. It notes what the creation is about to change: traits that were
// there before (with their modifiers, and also those that are taken away), records that are dropped, the
// character's own texts. What the creation itself made needs no note; it is simply taken away again. When the
// creation succeeds, its notes pass to the creation that it is part of.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr {

class FormerState {
 public:
  explicit FormerState(KVRCharacter& character);

  void NoteItem(clsItem& item);
  void NoteRecord(const clsBonus& record);
  void NoteTexts();
  // Before records are taken out of it; its growth needs no note.
  void NoteChangeLog();
  void NoteNewCat(std::string key) { newCats_.push_back(std::move(key)); }

  // Makes the character what it was.
  void Restore();
  void HandOverTo(FormerState& outer);

  // Links by name compare every trait with every other, so those of traits that a creation makes are put off
  // (on the outermost one) and made for all of them at once: at its end, or before something reads what may
  // depend on them. False where they have to be made now.
  bool PutOffLinks(clsItem& item);
  // Makes what was put off, and queues what it reaches.
  static void MakeLinks(KVRCharacter& character);
  // The same where a formula is about to be read; a plain number depends on nothing.
  static void MakeLinksFor(std::string_view formula, KVRCharacter& character);

 private:
  struct FormerMod {
    std::int32_t idKey = 0;
    std::int16_t flag = 0;
    std::string tags;
    std::vector<FormerMod> mods;
  };
  struct FormerItem {
    ItemType type = kNoType;
    std::int16_t flag = 0;
    std::unique_ptr<clsItem> data;  // fields and tags
    std::vector<FormerMod> mods;
  };
  struct FormerRecord {
    clsBonus record;
    std::int32_t owner = 0;
    bool conditional = false;
  };
  struct Texts {
    std::string race, bodyType, height, weight, age, appearance, charTagList;
    clsBody body;
  };
  // Totals that are saved, or read without being brought up to date.
  struct Totals {
    Currency currentLoad;
    std::int16_t encumbranceLevel = 0, tl = 0;
    std::int32_t parryKey = 0, parryScore = 0, blockKey = 0, blockScore = 0;
    std::string parryUsing, blockUsing;
  };
  using ModPool = std::map<std::int32_t, std::unique_ptr<clsMod>>;

  static std::vector<FormerMod> ModsOf(const clsSortedModCollection& mods);
  static bool SameMods(const clsSortedModCollection& mods, const std::vector<FormerMod>& former);
  static void TakeMods(clsSortedModCollection& mods, ModPool& pool);
  static void PutMods(CalcItem& owner, clsSortedModCollection& mods, const std::vector<FormerMod>& former,
                      ModPool& pool);

  // Steps of Restore. What is new is dropped at once, with its links and records; everything that it reached
  // is put back by its note, so nothing needs to be calculated in between.
  void DropNewRecords();
  void DropNewItems();
  void PutItemsBack();
  clsItem& ItemToRestore(std::int32_t id, const FormerItem& former);
  void PutData(clsItem& item, const FormerItem& former);
  void PutModsBack(clsItem& item, const FormerItem& former);
  clsBonus* StandingRecord(const FormerRecord& former) const;
  void PutRecordsBack();
  void RelinkAndRecalculate();
  void PutTextsBack();
  void QueueWhatWaited();

  KVRCharacter& character_;
  const std::int32_t lastKey_, lastKeyTemp_;
  const bool dirty_;
  const std::size_t changes_;  // in the change log
  const Totals totals_;
  std::map<std::int32_t, FormerItem> items_;  // by number
  std::vector<FormerRecord> records_;
  std::set<std::int32_t> recordKeys_;
  std::optional<Texts> texts_;
  std::optional<std::vector<clsChangeItem>> changeLog_;
  std::vector<std::string> newCats_;  // keys
  std::set<std::int32_t> putOff_;     // traits without their links
  bool linking_ = false;
};

}  // namespace kvr
