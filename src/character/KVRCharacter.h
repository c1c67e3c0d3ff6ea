// One character: the owner of its traits, modifiers, bonuses, and of its own copies of the rules tables.
//
// Plain properties are public members under their own names; a property whose writing does more has a setter.
// The members are defined in the source file of their topic (the heading of each group names it).
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "calc/BasicDamage.h"
#include "calc/CalcItem.h"
#include "calc/SolverState.h"
#include "calc/clsBonus.h"
#include "calc/clsTokenCollection.h"
#include "character/CharacterRecords.h"
#include "character/clsItem.h"
#include "core/Environment.h"
#include "library/KVRSystem.h"

namespace kvr {

class clsFileReader;
class FormerState;  // FormerState.h

class KVRCharacter final : public CalcItem {
 public:
  KVRCharacter(Environment& env, KVRSystem& system);
  ~KVRCharacter() override;
  KVRCharacter(const KVRCharacter&) = delete;
  KVRCharacter& operator=(const KVRCharacter&) = delete;

  Environment& Env() const { return env_; }
  KVRSystem& System() const { return system_; }

  // --- Identity and files
  // ------------------------------------------------------------------------------------------
  std::int32_t LastKey = 0;
  std::string FileName;            // path text; empty until saved
  std::string TempBackupFileName;  // made when first needed
  std::string DamagedFile;         // the file that could not be read whole; it is never written
  std::string DataSet;             // full path text
  std::vector<std::string> DataFiles;
  std::string Name, Player, DateCreated, Portrait;
  std::string Race = "Human", BodyType = "Humanoid";
  std::string Description, Notes, Height, Weight, Age, Appearance;
  std::string FlexFile;  // current sheet
  std::vector<std::string> AltFlexFiles;
  std::string QuickView, QuickViewPath;
  std::string CharTagList;  // the character's own free tags
  bool Dirty = false;
  std::int16_t CurPreviewPage = 0;
  bool InPlay() const { return inPlay_; }
  void SetInPlay(bool inPlay);                                // going into play freezes the attributes
  void SetInPlayFieldOnly(bool inPlay) { inPlay_ = inPlay; }  // while a file is read

  // --- Totals (filled by CalcPointCosts)
  // ---------------------------------------------------------------------------
  ByType<Currency> Cost{};
  Currency DollarCost, TotalCost, UnspentPoints, TotalPoints, AgainstDisadLimit, TotalWeight, CurrentLoad;
  std::string CurrentLoadout;
  std::int16_t EncumbranceLevel = 0;
  std::string BaseSW, BaseTH;
  std::int32_t BaseSwDice = 0, BaseSwAdds = 0, BaseTHDice = 0, BaseTHAdds = 0;
  std::array<std::string, 6> PD, DR, DB;  // head, body, arms, legs, hands, feet
  std::string OtherPD, OtherDR, OtherDB;
  std::string ShieldFacingHexMask = "------";
  std::array<std::int16_t, 7> ShieldFacingDB{};  // 1 to 6
  std::int32_t ParryIDKey = 0, ParryScore = 0, BlockIDKey = 0, BlockScore = 0;
  std::string ParryUsing, BlockUsing;
  std::int16_t TL = 0;

  // --- Rules of this character (saved in [Settings])
  // -----------------------------------------------------------------
  std::int32_t AllowHalfPointSpells = 0, ModMultPercents = 0, RuleOf = 20, GlobalRuleOf = 0,
               UseDiceAddsConversion = 0, AllowNonIQOptSpecs = 0;

  // --- Collections
  // -------------------------------------------------------------------------------------------------
  clsSortedItemCollection Items;                                 // all traits, keyed "k17"
  std::array<clsSortedItemList, 10> ItemsByType;                 // 1 to 9, the same traits
  std::vector<std::unique_ptr<clsBonus>> Bonuses, Conditionals;  // in order of their keys
  std::vector<std::unique_ptr<clsTaboo>> Taboos;
  clsSortedCatCollection Cats;
  clsSortedRefCollection Groups;
  std::vector<clsBasicDamage> BasicDamageList;
  std::vector<clsDamageBreak> DamageBreaks;
  std::vector<std::unique_ptr<clsSkillCosts>> SkillTypes;
  clsCampaignInfo Campaign;
  clsBody Body;
  clsTokenCollection TokenCache;
  SolverState Solving;
  std::vector<clsChangeItem> ChangeLog;

  std::int32_t Count(ItemType type) const;
  bool RefreshList(ItemType type) const { return refresh_[static_cast<std::size_t>(type)]; }
  void SetRefreshList(ItemType type);  // also sets Dirty
  void ClearRefreshList(ItemType type) { refresh_[static_cast<std::size_t>(type)] = false; }

  // --- A new character (NewCharacter.cpp)
  // ----------------------------------------------------------------------------
  void InitStartupValues();  // all of the following, in this order
  void InitSkillTypes();
  void InitBasicDamageList();
  void InitDamageBreaks();
  void InitCats();
  void InitGroups();
  void InitStats();
  void InitBodyParts();  // part of construction
  void Clear();
  void TerminateItems();
  std::int32_t NewKey() { return ++LastKey; }
  std::int32_t NewKeyTemp() { return ++lastKeyTemp_; }
  // A number met in a file: the counter goes on behind it.
  void NoteSavedKey(std::int32_t key);

  // --- Adding (CreateNewItem.cpp, AddMods.cpp)
  // ------------------------------------------------------------------------- The IDKey of the trait; 0 when
  // the user cancelled or there is no such library key. noInitMods, noNeedsCheck, allowDuplicate: 0 or -1.
  std::int32_t AddItemFromSystem(std::string_view sysKey, std::string_view parentKey = "", int noInitMods = 0,
                                 int noNeedsCheck = 0, int allowDuplicate = 0);
  std::int32_t CreateNewItem(ItemType itemType, std::string_view tagList, std::string_view sysKey,
                             std::string_view parentKey, int noInitMods, int noNeedsCheck,
                             int allowDuplicate);
  void CheckForNewCats(std::string_view list, ItemType type);
  // Puts a modifier on a trait or modifier; the IDKey, 0 when it was cancelled or refused.
  std::int32_t AddModFromSystem(std::string_view sysKey, CalcItem& owner);
  std::int32_t CreateNewMod(CalcItem& owner, std::string_view tagList, std::string_view group);
  // Asks what to do with a trait that is about to be doubled; a trait that is still being made is never
  // offered.
  void CheckDupe(std::int32_t id);

  // --- Removing and switching (RemoveItem.cpp, SwitchItem.cpp)
  // ---------------------------------------------------------
  void RemoveItem(std::string_view keyText);
  void RemoveMod(CalcItem& owner, std::string_view modKey);
  void RemoveModsFromOwner(CalcItem& owner);
  void DisableItem(std::string_view keyText);
  void EnableItem(std::string_view keyText);
  // False if the new name is in use already (said unless quiet; the rename is done all the same).
  bool RenameItem(std::string_view keyText, std::string_view newName, std::string_view newExt, bool quiet);
  void DeActivateItem(std::string_view keyText);
  void ReActivateItem(std::string_view keyText);
  // Takes the trait out, lets `change` alter its name, and puts it back under its key.
  void ResortItem(clsItem& item, const std::function<void()>& change);

  // --- Parents and children (Parents.cpp)
  // ------------------------------------------------------------------------------
  bool DisallowParent(std::string_view candidateKey, std::string_view childKey);
  // Makes the link and calculates both parents; false when it is not allowed.
  bool MakeChildOf(std::string_view childKey, std::string_view parentKey);
  void UnmakeChildOf(std::string_view childKey);
  // The user's operations on a selection of key texts; messages go to the log, the choice through the
  // prompts.
  void MakeChild(const std::vector<std::string>& selected, ItemType type);
  void UnmakeChild(const std::vector<std::string>& selected);

  // --- Finding (FindItem.cpp)
  // ------------------------------------------------------------------------------------------ 1-based
  // positions in Items, 0 for none; type 0 matches any; among duplicates the lowest position.
  std::size_t ItemPositionByNameAndExt(std::string_view fullName, ItemType type,
                                       std::size_t startAt = 1) const;
  std::size_t ItemPositionByNameOnly(std::string_view name, ItemType type, std::size_t startAt = 1) const;
  std::size_t ItemPositionBySymbol(std::string_view symbol, ItemType type = kNoType) const;
  std::size_t ListItemPosByNameAndExt(ItemType type, std::string_view fullName,
                                      std::size_t startAt = 1) const;
  std::size_t ListItemPosByNameOnly(ItemType type, std::string_view name, std::size_t startAt = 1) const;
  std::size_t ListItemPosByKey(ItemType type, std::string_view keyText) const;
  std::vector<std::string> ItemKeysByNameAndExt(std::string_view fullName, ItemType type) const;
  // The traits themselves; nullptr for none. The fast road of the solver.
  clsItem* FindItem(std::string_view fullName, ItemType type) const;
  clsItem* FindItemBySymbol(std::string_view symbol, ItemType type = kNoType) const;
  clsItem* ItemByKey(std::int32_t idKey) const;
  // The trait or modifier with that number; nullptr for none.
  CalcItem* GetObjectFromIDKey(std::int32_t id) const;
  std::vector<std::size_t> ReturnItemIndexes(ItemType type) const;
  std::vector<std::string> ReturnItemCollectionKeys(ItemType type) const;
  // Index in SkillTypes from 1 by name in any case; 0 for an empty or unknown name.
  std::size_t ReturnSkillTypeIndexFromName(std::string_view name) const;
  clsSkillCosts* SkillType(std::string_view name) const;

  // --- Tags of the character (CharacterTags.cpp)
  // ------------------------------------------------------------------------- Totals are made current first.
  std::string TagItem(std::string_view tag) override;
  // Counts, costs, weight and load are not writable: such a write is ignored.
  void SetTagItem(std::string_view tag, std::string_view value);

  // --- Stacks (Stacks.cpp)
  // ------------------------------------------------------------------------------------------------
  void PushDeleteItem(std::string_view key) { deleteStack_.emplace_back(key); }
  std::string PopDeleteItem();
  void PushAddedItem(std::string_view key) { addedStack_.emplace_back(key); }
  std::string PopAddedItem();
  // Scripted answers to directives.
  void PushResponse(std::string_view response) { responses_.emplace_back(response); }
  std::string PopResponse();
  std::size_t ResponseCount() const { return responses_.size(); }
  void ClearResponses() { responses_.clear(); }
  // What was changed last: the lower-cased text with the number behind it. An empty list gives "".
  void ChangedItemAdd(std::string_view text, int flag);
  std::string ChangedItemGet() const;
  void ChangedItemRemove();

  // --- The character file (CharacterFile*.cpp)
  // ----------------------------------------------------------------------------
  Files::Outcome FileWrite(std::string_view path, bool clearDirty);
  std::string FileText();  // what FileWrite writes
  // ReadSections, then FinishLoading. False when the file is missing or of a format below 3.
  bool FileRead(std::string_view path);
  // The records of the file, with nothing linked or calculated yet.
  bool ReadSections(clsFileReader& reader);
  // Links, taboos, sums and a full recalculation of what was read.
  void FinishLoading();
  // RecalculateAll for a character that is being loaded: one whose formulas fail must open all the same, or
  // nobody could mend it. The failure is told in red; what depends on it keeps the values of the file.
  void RecalculateLoaded();
  // The character must have its copies of the library's tables; attributes come from the library.
  bool FileReadKVR2(std::string_view path);
  // The path of the backup; "" when it could not be written (logged).
  std::string FileWriteTempBackup();
  // One record as it stands in the file. While a file is read nothing is linked, and a record whose number is
  // taken waits for the end of the file (nullptr); otherwise it gets a new number at once. A record without
  // "|" is skipped.
  clsItem* AddItemFromSaved(ItemType type, std::string_view record);
  clsItem* AddItemFromSavedKVR2(ItemType type, std::string_view line);
  void AddModFromSaved(std::string_view line);
  void AddBonusFromSaved(std::string_view line);
  void AddConditionalFromSaved(std::string_view line);
  void AddCampaignFromSaved(std::string_view line);

  // --- Recalculation (calc/Recalculation.cpp, calc/PointCosts.cpp)
  // ----------------------------------------------------------
  void PushRecalcItems(clsItem& item);
  void PushRecalcBonus(clsBonus& bonus);
  void QueueItem(clsItem& item) { QueueKey(item.IDKey); }
  void QueueKey(std::int32_t idKey);  // a key is in the queue only once
  // Calculates what is queued, first in, first out, until the queue is empty. One run visits a trait at most
  // 100 times; after that a red line names it. Returns at once while a trait is being calculated. A formula
  // that fails is passed on at the end of the run, as the other operations here do: the others are calculated
  // first.
  void TrickleRecalcItems();
  void PushTrickle(clsItem& item) {
    PushRecalcItems(item);
    TrickleRecalcItems();
  }
  // Calculates every trait in sort order; with pushAll each one's dependants right behind it.
  void RecalculateAll(bool pushAll = false);
  // Brings the totals up to date, then the traits that read them. From inside a calculation: the totals only.
  void CalcPointCosts();
  // Marks a calculation as running for its lifetime.
  class CalculationScope {
   public:
    explicit CalculationScope(KVRCharacter& character) : character_(character) { ++character_.calculating_; }
    ~CalculationScope() { --character_.calculating_; }
    CalculationScope(const CalculationScope&) = delete;
    CalculationScope& operator=(const CalculationScope&) = delete;

   private:
    KVRCharacter& character_;
  };
  void FreezeStats();
  // The score that a stat would have at a level.
  Currency CalcAStat(std::string_view statKey, std::int32_t level);
  // Drops what the solver knows of the trait; to be called whenever its value, name or text has changed.
  void ClearTokensForItem(clsItem& item);

  // --- Links (calc/AffectsLinks.cpp)
  // ----------------------------------------------------------------------------------------
  void CreateAffectsLinks(clsItem& item);
  void CreateAllAffectsLinks();  // the same result for all traits at once
  void ClearAffectsLinks(clsItem& item);
  void CreateBonusAffectsLinks(clsBonus& bonus);
  void ClearBonusAffectsLinks(clsBonus& bonus);
  void CreateConditionalAffectsLinks(clsBonus& conditional);
  void ClearConditionalAffectsLinks(clsBonus& conditional);
  bool ThisItemAffectsThatItem(clsItem& item, clsItem& that);
  bool ThisItemAffectsThatBonus(clsItem& item, clsBonus& that);
  static bool TrickleThruModsAffected(clsItem& item, std::string_view lcaseName);

  // --- Bonuses (calc/Bonuses.cpp)
  // -------------------------------------------------------------------------------------------
  void AddBonusesFromOwner(CalcItem& owner);
  void RemoveBonusesFromOwner(CalcItem& owner);
  void AddConditionalsFromOwner(CalcItem& owner);
  void RemoveConditionalsFromOwner(CalcItem& owner);
  void AddBonusesFromOwnerAsConditionals(CalcItem& owner);
  void DisableItemBonuses(clsItem& item);
  void EnableItemBonuses(clsItem& item);
  void DeActivateItemModsBonuses(clsItem& item);
  void ReActivateItemModsBonuses(clsItem& item);
  // Queues what the records of the trait and of its modifiers reach: their lines show its name.
  void PushRecalcGiven(clsItem& item);
  // Looks again for the parent that the trait's records on its "owner" reach.
  void RelinkOwnerBonuses(clsItem& item);

  // --- Equipment and damage (calc/Damage.cpp, calc/ParryBlock.cpp, calc/Encumbrance.cpp)
  // --------------------------------------
  // The dice of a swing and of a thrust at a score, by the character's table of basic damage.
  DamageDice ReturnSwFromScore(double score);
  DamageDice ReturnThrFromScore(double score);
  void CalcBaseDamage();
  void CalcParryBlock();
  // 0 to 4 for the first of the encumbrance stats that isn't below the weight, 5 for none.
  std::int16_t GetEncLevel(Currency weight);

  // --- Needs and taboos (Needs.cpp, NeedsReport.cpp, AddSpecifiedItems.cpp; the tests: modNeeds.h)
  // -------------------------------------------------------------------------------------------- Sets the
  // trait's NeedsCheck; true if that changed. With askToAdd what is missing is added, after a choice where
  // there are several ways; with report a failure is logged.
  bool ItemNeedsCheck(clsItem& item, bool askToAdd, bool report);
  // Sets TabooFailed and the tag `tabootext`; true if that changed.
  bool ItemTabooCheck(clsItem& item, bool report);
  // After traits came or went: what counts traits names none, so no link leads to it.
  void RecheckCountingNeeds();
  // All traits but attributes, until the number of failures settles; then all taboos. The report's lines,
  // which are shown, or logged if quiet.
  std::vector<std::string> NeedsCheckAll(bool quiet);
  std::vector<std::string> NeedsCheckSelected(const std::vector<std::string>& keys, bool quiet);
  static std::string NeedsListUserFriendly(std::string text);
  // Adds or raises each trait of a list of needs ("SK:Sword >= 12, AD:Luck"); one that can't be had is
  // logged. The needer, if it has a key, is never taken for what it needs.
  void AddSpecifiedItems(std::string_view neederName, std::string_view text, std::int32_t neederKey = 0);
  void AddTaboosFromOwner(clsItem& owner);
  void RemoveTaboosFromOwner(clsItem& owner);
  void DisableItemTaboos(clsItem& item);
  void EnableItemTaboos(clsItem& item);

  // --- Template effects (TemplateAdds.cpp, TemplateSets.cpp, TemplateMods.cpp, TemplateSelect.cpp,
  // TemplateFamilies.cpp, TagChanges.cpp, and what takes them back: ChangeLog.cpp, FormerState.cpp)
  // -----------------------------------------------
  void HandleSets(clsItem& item);
  void HandleCreates(clsItem& item);
  void HandleAdds(clsItem& item);
  void HandleAddMods(clsItem& item);
  void HandleRemoveMods(clsItem& item);
  struct SelectResult {
    std::vector<std::int32_t> added, existing;
    bool canceled = false;
  };
  // The tag "select" + index; `count` is how many the trait has.
  SelectResult HandleSelect(clsItem& item, int index, int count);
  void HandleParentOf(clsItem& item);
  void HandleChildOf(clsItem& item);
  void HandleMergeTags(clsItem& item);
  void HandleReplaceTags(clsItem& item);
  void HandleRace(clsItem& item);
  void HandleBodyType(clsItem& item);
  void HandleCharWeight(clsItem& item);
  void HandleCharHeight(clsItem& item);
  void HandleAge(clsItem& item);
  void HandleAppearance(clsItem& item);
  void HandleReversion(std::int32_t sourceKey);
  // Moves a trait to a value: "12", ">= 12" (raises only), "<= 12" (lowers only), by a tag (points or
  // another) or, with none, by what its type is bought in. False when it could not be reached.
  bool SetExistingItemToValue(clsItem& item, std::string_view wanted, std::string_view tag);
  // The same, whatever it stands at.
  bool ForceExistingItemToValue(clsItem& item, std::string_view wanted, std::string_view tag);
  // Library modifiers or definitions with " and " between them.
  void AddModsFromAndList(clsItem& item, std::string_view list);
  // To be called before a trait, a record or the character's own texts change, so that a cancelled creation
  // can put them back. Nothing is noted outside a creation, nor twice, nor what the creation itself made.
  void NoteFormerState(clsItem& item);
  void NoteFormerRecord(const clsBonus& record);  // about to be dropped or calculated anew
  void NoteFormerTexts();                         // race, body and the like
  // Adds to the trait's weapon modes what the modifier's `addmode` says.
  void ModAddsNewMode(clsMod& mod);

  // --- As the context of a formula
  // -----------------------------------------------------------------------------------------------
  double LevelForFormula() override { return 0; }
  CalcItem* OwnerContext() override { return nullptr; }
  KVRCharacter* RootOwnerChar() override { return this; }
  clsItem* RootOwnerItem() override { return nullptr; }
  clsMod* ModByLCaseFullName(std::string_view) override { return nullptr; }
  std::string NameForMessages() override { return Name; }

 private:
  void SetStartValues();
  void SetStartTexts();
  void SetStartRules();
  void SetStartCampaign();
  void ClearIdentity();
  void ClearTotals();
  void ClearWorkingState();
  void InitTechLevel();
  // The text lower-cased; holds until the next look-up.
  std::string_view LookupText(std::string_view text) const;
  clsMod* FindMod(std::int32_t id, std::string_view keyText) const;
  void IndexMods() const;

  // What is known only while a file is read.
  struct SavedFileState {
    std::unordered_map<std::int32_t, clsMod*> mods;              // by number
    std::vector<std::pair<ItemType, std::string>> doubledItems;  // records whose number was taken
    std::vector<std::string> doubledMods;
    bool leftOut = false;
    bool atEnd = false;  // all numbers are known: new ones can be given
  };
  CalcItem* SavedHolder(std::int32_t id) const;
  // The number that a record of the file gets; 0 when the record must wait.
  std::int32_t NumberForSaved(std::int32_t wanted, std::string_view kind, const std::string& name);
  // Tells of a record that can't be used.
  void LeaveOut(std::string_view reason, std::string_view record);
  void AddDoubledRecords();
  void RepairFamilies();
  bool HasSoundParents(const clsItem& item) const;
  clsBonus* AddBonusRecord(std::vector<std::unique_ptr<clsBonus>>& records, std::string_view line);
  std::unique_ptr<SavedFileState> savedFile_;
  bool readInPart_ = false;  // the sections read last had lost their end, or records were left out

  Environment& env_;
  KVRSystem& system_;
  bool inPlay_ = false;
  std::int32_t lastKeyTemp_ = 0;
  std::array<bool, 10> refresh_{};
  std::vector<std::string> deleteStack_, addedStack_, responses_, changedItems_;
  mutable std::string lookup_;
  mutable std::unordered_map<std::int32_t, std::int32_t> modHolders_;  // modifier to the trait at its root

  // A trait that is being made: its library key ("" for none) and, once it is on the character, its number.
  struct Creation {
    std::string sysKey;
    std::int32_t id = 0;
  };
  friend class ItemCreation;  // CreateNewItem.cpp
  friend class ItemRemoval;   // RemoveItem.cpp
  friend class FormerState;   // FormerState.h

  bool KeysAreLeft();
  bool MayCreate(ItemType type, std::string_view sysKey, std::string_view tagList);
  bool RemovalTakesUnfinished(const clsItem& item) const;
  // CreateNewMod without the recalculation; nullptr when it was cancelled or refused.
  clsMod* MakeMod(CalcItem& owner, std::string_view tagList, std::string_view group);
  // The entries of a list with "|" between them, each a modifier of the group "Initial".
  void MakeInitialMods(CalcItem& owner, std::string_view initMods);
  bool NewModeAllowed(const clsMod& mod);
  void MakeModRecords(clsMod& mod);
  void AfterModsChanged(clsItem& item);
  std::int32_t MakeDisablingItem(const clsItem& item, std::string_view fullName);
  // Makes the link on both sides, whatever it was before.
  void AttachChild(clsItem& child, clsItem& parent);
  // Undoes it; the former parent, nullptr if there was none.
  clsItem* DetachFromParent(clsItem& child);
  // From one parent to another; the new one is left to be calculated.
  void MoveToParent(clsItem& child, clsItem& parent);

  bool MoveToValue(clsItem& item, std::string_view wanted, std::string_view tag, bool always);

  std::vector<Creation> creations_;                         // outermost first
  std::vector<std::unique_ptr<FormerState>> formerStates_;  // one for each of them
  std::size_t traitsMade_ = 0;                              // by the outermost creation and all in it
  std::vector<std::int32_t> removing_;                      // traits whose removal is under way
  // One run through the queue.
  class TrickleScope {
   public:
    explicit TrickleScope(KVRCharacter& character) : character_(character) { character_.trickling_ = true; }
    ~TrickleScope() {
      character_.trickling_ = false;
      character_.visits_.clear();
    }
    TrickleScope(const TrickleScope&) = delete;
    TrickleScope& operator=(const TrickleScope&) = delete;

   private:
    KVRCharacter& character_;
  };
  class TotalsRead;
  void TellReadersOfTotals();
  std::shared_ptr<const TotalsRead> totalsTold_;  // what the traits that read totals have seen
  void EmptyQueue();
  bool MayVisit(const clsItem& item);
  void SumCosts();
  void SumItem(const clsItem& item);
  void SumEquipment(const clsItem& item);
  bool CostsAreInOwner(const clsItem& item) const;
  void UpdateTotals();
  void QueueRecords(const std::vector<std::int32_t>& keys,
                    const std::vector<std::unique_ptr<clsBonus>>& records);
  void LinkCharValues(clsItem& item);
  void LinkRecordToCharValues(const clsBonus& record);

  std::deque<std::int32_t> recalcQueue_;          // first in, first out
  std::unordered_set<std::int32_t> queued_;       // the same keys
  std::unordered_map<std::int32_t, int> visits_;  // of each trait in the running trickle
  bool trickling_ = false;
  bool costing_ = false;
  int calculating_ = 0;
  std::vector<std::int32_t> charValueReaders_;  // traits whose text reads the character ("char::", "damage(")
};

// The number in a key text, "k17" -> 17; 0 when there is none.
std::int32_t NumberOfKeyText(std::string_view keyText);
std::string KeyTextOf(std::int32_t idKey);

}  // namespace kvr
