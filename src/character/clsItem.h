// A trait on a character: a handful of typed fields that recalculation reads, and a free tag list in which
// everything else from the data rides along unchanged. A tag that no code knows survives loading, saving and
// copying.
//
// The members are defined in the source file of their topic: TagItem.cpp, TagLists.cpp, ItemNames.cpp here;
// Stats.cpp, Advantages.cpp, Editing.cpp, Calculate.cpp and others in calc/.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calc/CalcItem.h"
#include "calc/clsBonus.h"
#include "character/clsMod.h"
#include "core/Currency.h"
#include "core/TagText.h"
#include "core/modTags.h"
#include "library/modPrefixes.h"

namespace kvr {

struct SkillDefault;

class clsItem final : public CalcItem {
 public:
  clsItem() = default;
  clsItem(const clsItem&) = delete;
  clsItem& operator=(const clsItem&) = delete;

  // Marks in Flag; never saved.
  enum Marks : std::int16_t { kNewlyAdded = 8, kInShownLoadout = 64 };

  // --- Collections and links
  // ---------------------------------------------------------------------------------------
  clsSortedModCollection Mods;
  KVRCharacter* Owner = nullptr;
  // What a change of this trait reaches: keys of traits, bonuses, conditionals.
  std::vector<std::int32_t> AffectedItems, AffectedBonuses, AffectedConditionals;
  // The records that apply to this trait.
  std::vector<clsBonus*> AppliedBonuses, AppliedConditionals;

  // --- Fields
  // ------------------------------------------------------------------------------------------------------
  std::int32_t IDKey = 0;  // unique on its character, never reused
  kvr::ItemType ItemType = kNoType;
  std::int16_t Flag = 0;

  const std::string& Name() const { return name_; }
  const std::string& NameExt() const { return nameExt_; }
  const std::string& LCaseName() const { return lcaseName_; }
  const std::string& LCaseNameExt() const { return lcaseNameExt_; }
  // The name decides the place in the character's sorted collections: a trait that stands there is put back
  // in order by KVRCharacter::ResortItem, however its name is written (here, as a tag or in a whole list).
  void SetName(std::string_view name);
  void SetNameExt(std::string_view ext);

  const std::string& ParentKey() const { return parentKey_; }
  const std::string& ChildKeyList() const { return childKeyList_; }
  void SetParentKey(std::string_view key) { parentKey_ = key; }
  void SetChildKeyList(std::string_view list) { childKeyList_ = list; }

  Currency BasePoints() const { return basePoints_; }
  Currency Points() const { return points_; }
  Currency MultPoints() const { return multPoints_; }
  Currency DefPoints() const { return defPoints_; }
  Currency DefaultPoints() const { return defPoints_; }
  Currency BonusPoints() const { return bonusPoints_; }
  Currency SysPoints() const { return sysPoints_; }
  Currency SystemBonusPoints() const { return sysPoints_; }
  Currency ExtraPoints() const { return extraPoints_; }
  Currency AppPoints() const { return appPoints_; }
  Currency ApplicablePoints() const { return appPoints_; }
  Currency BaseAppPoints() const { return baseAppPoints_; }
  Currency PreModsPoints() const { return preModsPoints_; }
  void SetBasePoints(Currency v) { basePoints_ = v; }
  void SetPoints(Currency v) { points_ = v; }
  void SetMultPoints(Currency v) { multPoints_ = v; }
  void SetDefPoints(Currency v) { defPoints_ = v; }
  void SetBonusPoints(Currency v) { bonusPoints_ = v; }
  void SetSysPoints(Currency v) { sysPoints_ = v; }
  void SetExtraPoints(Currency v) { extraPoints_ = v; }
  void SetAppPoints(Currency v) { appPoints_ = v; }
  void SetBaseAppPoints(Currency v) { baseAppPoints_ = v; }
  void SetPreModsPoints(Currency v) { preModsPoints_ = v; }

  std::int32_t BaseLevel() const { return baseLevel_; }
  std::int32_t Level() const { return level_; }
  double Score() const { return score_; }
  void SetBaseLevel(std::int32_t v) { baseLevel_ = v; }
  void SetLevel(std::int32_t v) { level_ = v; }
  void SetScore(double v) { score_ = v; }

  const std::string& SkillType() const { return type_; }
  const std::string& RType() const { return type_; }
  void SetSkillType(std::string_view type) { type_ = type; }
  const std::string& Description() const { return description_; }
  const std::string& Notes() const { return notes_; }
  const std::string& Adds() const { return adds_; }
  const std::string& Creates() const { return creates_; }
  // 0 or -1.
  std::int16_t NeedsCheck() const { return needsCheck_; }
  std::int16_t TabooFailed() const { return tabooFailed_; }
  void SetNeedsCheck(std::int16_t v) { needsCheck_ = v; }
  void SetTabooFailed(std::int16_t v) { tabooFailed_ = v; }
  // 0 ordinary, 1 a technique, 2 a combination.
  std::int16_t Maneuver() const { return maneuver_; }

  // --- Tags (TagItem.cpp)
  // ------------------------------------------------------------------------------------------ A field or
  // computed tag, else the first ",tag(" of the free list, trimmed. A tag whose name ends in "$" is solved as
  // text, in "#" as a number; a failure there is logged and reads "".
  std::string TagItem(std::string_view tag) override;
  // A free tag without copying; a view that holds until the next write. Fields are not consulted.
  std::string_view FreeTag(std::string_view tag) const { return tags_.Value(tag); }
  bool FreeTagIsEmpty(std::string_view tag) const { return tags_.Value(tag).empty(); }
  // A number that is none, or does not fit, leaves its field and logs one line.
  void SetTagItem(std::string_view tag, std::string_view value);
  void DeleteTag(std::string_view tag);
  const TagText& FreeTags() const { return tags_; }

  // --- Whole lists (TagLists.cpp)
  // ---------------------------------------------------------------------------------- Fields without a tag
  // in the text keep their value; the free list is replaced.
  void NewTagList(std::string_view text);
  void SetTagList(std::string_view text) { NewTagList(text); }
  std::string TagList() const;
  const std::string& TagListNoFill() const { return tags_.Text(); }
  std::string TagListForSaving() const;
  // Change several tags; name and nameext are refused with a log line. The result lists what was changed.
  struct SegmentChange {
    bool complete = true;                                        // false if a name was refused
    std::vector<std::pair<std::string, std::string>> oldValues;  // each tag changed, and what it was
  };
  SegmentChange TagListSegmentReplace(std::string_view segment);
  SegmentChange TagListSegmentInsert(std::string_view segment);
  void AppendToTagList(std::string_view segment);
  // "Keys hold": see the note in the source on the substring test.
  void AddChild(std::string_view key);
  void RemoveChild(std::string_view key);
  bool HasChild(std::string_view key) const;  // exactly
  void Clear();
  // All fields, tags and marks of another trait; the number, modifiers and links stay.
  void CopyData(const clsItem& from);

  // --- Names (ItemNames.cpp)
  // ---------------------------------------------------------------------------------------
  std::string FullName() const;
  std::string FullNameTL() const;
  std::string FullNameExpanded(bool withValues);
  std::string FullNameTLExpanded(bool withValues);
  std::string ExpandedModCaptions(bool withValues);
  std::string KeyText() const { return "k" + std::to_string(IDKey); }
  // Display lines of bonuses that apply, rebuilt by each calculation; "" outside 1 to count.
  std::vector<std::string> BonusList, ConditionalList;
  std::size_t BonusListItemsCount() const { return BonusList.size(); }
  std::size_t ConditionalListItemsCount() const { return ConditionalList.size(); }
  std::string BonusListItems(std::size_t i) const {
    return i >= 1 && i <= BonusList.size() ? BonusList[i - 1] : "";
  }
  std::string ConditionalListItems(std::size_t i) const {
    return i >= 1 && i <= ConditionalList.size() ? ConditionalList[i - 1] : "";
  }
  void TerminateMods();

  // --- Calculation (calc/Calculate.cpp)
  // ---------------------------------------------------------------------------- Recalculates this trait; if
  // something changed, what it affects is queued. False when it failed: that is logged, and the numbers are
  // those from before. A failure of a formula (SolverFailure) passes through, likewise with the old numbers.
  bool Calculate();
  // Sets Maneuver and the tag `sd` from the skill type.
  void CalcManeuver();

  // --- Attributes (calc/Stats.cpp), advantages and the like (calc/Advantages.cpp)
  // ------------------------------------
  void privCalcStatItem();
  Currency CalcStatPoints(std::int32_t level, bool inPlay);
  bool SetStatScoreTo(double value);  // SetScoreTo for stats
  void privCalcAdItem();
  // --- Skills and spells (calc/Skills.cpp, calc/SkillLevels.cpp, calc/SkillDefaults.cpp)
  // ---------------------------------------------------------------------------
  void privCalcSkillItem();
  void privCalcSkillComboItem();
  // With an unknown skill type the default level, and 0 points; -1 for a level below the start value.
  std::int32_t privGetLevel(std::int32_t defaultLevel, Currency points);
  Currency privGetPointsForLevel(std::int32_t defaultLevel, std::int32_t wanted);
  // The best level that a default gives, with the name and key of its trait; the earliest of equals. 0 when
  // there is none.
  std::int32_t privGetDefaultLevel(std::string& name, std::int32_t& idKey);
  // The entries of the `default` tag that may be used (calc/SkillDefaults.h), in their order.
  std::vector<SkillDefault> privGetValidDefaultList();
  // Adds one entry, unless it names no trait on the character or one that may not be used.
  void privGetValidExpandedDefaultList(std::string_view entry, std::vector<SkillDefault>& list);
  // A skill may be used as a default when it has points of its own or is a technique, and its own defaults do
  // not lead back here.
  bool privSkillDefaultIsValid(std::int32_t candidateKey);
  bool SetSkillScoreTo(double value);  // SetScoreTo for skills and spells
  double GetUserBonusLevels();
  Currency GetUserBonusPoints();
  // One step easier (on), and back.
  void SetOptionalSpecialtyStatus(bool on);
  // --- Equipment and templates (calc/Equipment.cpp, calc/Advantages.cpp)
  // ------------------------------------------------
  void privCalcEquipmentItem();
  void privCalcPackageItem();
  // --- What others read of a trait beside its level (calc/RaiseRuleOf.cpp, calc/ParryBlock.cpp)
  // -------------------------
  // Both true if a value changed.
  bool privCalcRaiseRuleOf();
  bool privCalcWeaponTags();  // calc/WeaponTags.cpp
  void privCalcParryAt();
  void privCalcBlockAt();
  // By how much the tag `raiseruleof` and the bonuses on it raise the rule of limit.
  double RaiseRuleOf() const { return raiseRuleOf_; }
  // What the solved `parryat` or `blockat` comes to at another level of the trait; its bonuses count.
  double DefenceAtLevel(std::string_view atTag, double level);
  // --- Weapon modes, counted from 1 (calc/WeaponModes.cpp)
  // ---------------------------------------------------------------
  std::size_t DamageModesCount() const;
  std::string DamageModeName(std::size_t mode) const { return DamageModeTagItem(mode, "mode"); }
  // As calculated, else as written.
  std::string DamageModeDamage(std::size_t mode) const;
  std::string DamageModeType(std::size_t mode) const;
  std::string DamageModeTagItem(std::size_t mode, std::string_view tag) const;
  // A mode past the end fills the list up with empty values.
  void DamageModeTagItemSet(std::size_t mode, std::string_view tag, std::string_view value);
  // How many modes have a value of the tag, and the first of them at or behind `startMode`; 0 for none.
  std::size_t DamageModeTagItemCount(std::string_view tag) const;
  std::size_t DamageModeTagItemAt(std::string_view tag, std::size_t startMode = 1) const;
  // Adds the mode that the data describe ("Thrown, damage(thr+1), reach(%copyprev)" or the same as tags with
  // `mode` or `name`), or changes the one of that name. "%copyfirst" and "%copyprev" take the value of the
  // first and of the previous mode, "%calcme" leaves the value to the calculation.
  void AddNewMode(std::string_view modeData);
  // --- Modifiers (calc/Modifiers.cpp)
  // -------------------------------------------------------------------------------- Sets Points from
  // PreModsPoints, or `cost` on equipment.
  void CalcModifiers();
  // --- Bonuses (calc/Bonuses.cpp, calc/BonusSums.cpp)
  // ----------------------------------------------------------------
  double CalcApplicableSysBonus();
  Currency CalcApplicableSysPoints();
  double CalcApplicablePointMult();
  double CalcApplicableLevelMult();
  double ConditionalApplicableSysBonus();
  Currency ConditionalApplicableSysPoints();
  double ConditionalApplicablePointMult();
  double ConditionalApplicableLevelMult();
  double CalcApplicableTargetTagBonus(std::string_view tag);
  double CalcApplicableTargetTagMult(std::string_view tag);
  // The texts that text bonuses on a tag come to: added ones one behind the other, multipliers with "*"
  // between.
  std::string CalcApplicableTargetTagBonusString(std::string_view tag);
  std::string CalcApplicableTargetTagMultString(std::string_view tag);
  // The display lines of all bonuses on a tag.
  std::vector<std::string> GetApplicableTargetTagBonuses(std::string_view tag) const;
  // Whether the record applies to this trait; unmarked, whether its target names the trait, whoever gives it
  // (BonusTargets.cpp).
  bool BonusAppliesByRef(const clsBonus& bonus);
  bool UnmarkedBonusAppliesByRef(const clsBonus& bonus);
  bool ConditionalAppliesByRef(const clsBonus& conditional) { return BonusAppliesByRef(conditional); }
  bool UnmarkedConditionalAppliesByRef(const clsBonus& conditional) {
    return UnmarkedBonusAppliesByRef(conditional);
  }
  // True if a value changed.
  bool UpdateMyBonuses();
  bool UpdateMyConditionals();
  // Marks of tags that some bonus on this trait targets, so that the others need no search (BonusMarks.cpp).
  void SetBonusAffectsFlag(std::string_view tag);
  bool GetBonusAffectsFlag(std::string_view tag) const;
  void ClearBonusAffectsFlag() { bonusMarks_ = 0; }

  // --- What the window's editing does (calc/Editing.cpp)
  // -------------------------------------------------------------
  void Increment();
  void Decrement();
  // True when the trait reached the value, or passed it in the direction moved.
  bool SetScoreTo(double value);
  // A level for points, as fixed point; used when bonuses in points become levels.
  Currency ReturnLevelForPoints(Currency points, bool roundUp);
  std::string LevelName();
  std::string LevelCaption();

  // --- As the context of a formula
  // -----------------------------------------------------------------------------------
  double LevelForFormula() override { return level_; }
  CalcItem* OwnerContext() override;
  KVRCharacter* RootOwnerChar() override { return Owner; }
  clsItem* RootOwnerItem() override { return this; }
  clsMod* ModByLCaseFullName(std::string_view lcaseFullName) override;
  GivenRecords* Given() override { return &given_; }
  std::string NameForMessages() override { return FullName(); }

 private:
  friend struct ItemFields;  // the table of tags that have fields

  // The value as it stands, formulas unsolved.
  std::string StoredTag(std::string_view tag) const;
  std::string SpecialTag(std::string_view tag);
  std::string GroupBesideInitMods() const;
  void StoreName(std::string& field, std::string& lower, std::string_view text);
  // True, with a log line, for the tags of the name; `request` is "replace" or "insert into".
  bool RefusesName(std::string_view tag, std::string_view request) const;

  std::string name_, nameExt_, lcaseName_, lcaseNameExt_;
  std::string parentKey_, childKeyList_;
  Currency basePoints_, points_, multPoints_, defPoints_, bonusPoints_, sysPoints_, extraPoints_, appPoints_,
      baseAppPoints_, preModsPoints_;
  std::int32_t baseLevel_ = 0, level_ = 0;
  double score_ = 0;
  std::string type_, description_, notes_, adds_, creates_;
  std::int16_t needsCheck_ = 0, tabooFailed_ = 0, maneuver_ = 0;
  // Steps of Calculate. CalcMitigation is true when a modifier sets the trait's taboos aside.
  bool CalcMitigation();
  void CalcByType();
  void CheckNeedsAndTaboos(bool taboosMitigated);
  void CalcAll();

  // Steps of privCalcEquipmentItem and of the weapon tags.
  friend class EquipmentSums;
  friend class WeaponTags;
  void CalcDefence(std::string_view atTag, std::string_view levelTag);
  void AddNewModeAddData(const std::vector<modTags::TagItem>& data, std::string_view name);
  void UpdateExistingModeData(std::size_t mode, const std::vector<modTags::TagItem>& data);
  std::string NewModeValue(std::size_t mode, std::string_view tag, std::string_view value) const;

  GivenRecords given_;
  std::uint32_t bonusMarks_ = 0;
  std::uint32_t weaponTagsRevision_ = 0xFFFFFFFF;  // of the tags, when hasWeaponTags_ was found out
  bool hasWeaponTags_ = false;
  std::uint8_t reportedFaults_ = 0;  // of amounts, each a bit; told once as long as they last
  double raiseRuleOf_ = 0;
  bool mitigatedByModifier_ = false;  // the tag `mitigated` was written by Calculate
  TagText tags_;
};

// Lower-cased name, extension, type; among equals the newer key first.
std::weak_ordering SortOrder(const clsItem& a, const clsItem& b);

using clsSortedItemCollection = SortedCollection<clsItem>;      // owns
using clsSortedItemList = SortedCollection<clsItem, clsItem*>;  // lists

}  // namespace kvr
