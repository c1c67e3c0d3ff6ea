// A character from its construction to its end: start values, reset, and the small properties.
#include "character/KVRCharacter.h"

#include "character/FormerState.h"

#include "core/Numbers.h"

namespace kvr {

KVRCharacter::KVRCharacter(Environment& env, KVRSystem& system) : env_(env), system_(system) {
  SetStartValues();
}

KVRCharacter::~KVRCharacter() {
  TerminateItems();
}

void KVRCharacter::SetStartValues() {
  SetStartTexts();
  SetStartRules();
  SetStartCampaign();
  InitBodyParts();
}

void KVRCharacter::SetStartTexts() {
  const Config& config = env_.Config;
  DateCreated = LongDateToday();
  DataSet = system_.DataSetPath + system_.DataSet;
  DataFiles.clear();
  for (const KVRSystem::DataFileEntry& file : system_.DataFiles) {
    if (!file.path.empty()) DataFiles.push_back(file.path);
  }
  FlexFile = config.DefaultKCSPath + config.DefaultKCS;
  AltFlexFiles = config.AlternateKCS;
  QuickView = config.DefaultQuickView;
  QuickViewPath = config.DefaultQuickViewPath;
  Race = "Human";
  BodyType = "Humanoid";
  ShieldFacingHexMask = "------";
}

void KVRCharacter::SetStartRules() {
  const Config& config = env_.Config;
  AllowHalfPointSpells = config.AllowHalfPointSpells;
  ModMultPercents = config.ModMultPercents;
  RuleOf = config.RuleOf;
  GlobalRuleOf = config.GlobalRuleOf;
  UseDiceAddsConversion = config.UseDiceAddsConversion;
  AllowNonIQOptSpecs = config.AllowNonIQOptSpecs;
}

void KVRCharacter::SetStartCampaign() {
  const Config& config = env_.Config;
  Campaign = {};
  Campaign.BasePoints = config.BasePoints;
  Campaign.DisadLimit = config.DisadLimit;
  Campaign.QuirkLimit = config.QuirkLimit;
  Campaign.BaseTL = config.DefaultTL;
}

void KVRCharacter::Clear() {
  TerminateItems();
  ClearIdentity();
  ClearTotals();
  ClearWorkingState();
  SetStartValues();
}

void KVRCharacter::ClearIdentity() {
  LastKey = lastKeyTemp_ = 0;
  for (std::string* text :
       {&FileName, &TempBackupFileName, &DamagedFile, &Name, &Player, &Portrait, &Description, &Notes,
        &Height, &Weight, &Age, &Appearance, &CharTagList, &CurrentLoadout}) {
    text->clear();
  }
  inPlay_ = false;
  Dirty = false;
  CurPreviewPage = 0;
}

void KVRCharacter::ClearTotals() {
  Cost = {};
  for (Currency* sum : {&DollarCost, &TotalCost, &UnspentPoints, &TotalPoints, &AgainstDisadLimit,
                        &TotalWeight, &CurrentLoad}) {
    *sum = 0;
  }
  EncumbranceLevel = 0;
  BaseSwDice = BaseSwAdds = BaseTHDice = BaseTHAdds = 0;
  PD = DR = DB = {};
  for (std::string* text : {&BaseSW, &BaseTH, &OtherPD, &OtherDR, &OtherDB, &ParryUsing, &BlockUsing})
    text->clear();
  ShieldFacingDB = {};
  ParryIDKey = ParryScore = BlockIDKey = BlockScore = 0;
  TL = 0;
}

void KVRCharacter::ClearWorkingState() {
  refresh_ = {};
  deleteStack_.clear();
  addedStack_.clear();
  responses_.clear();
  changedItems_.clear();
  creations_.clear();
  traitsMade_ = 0;
  removing_.clear();
  savedFile_.reset();
  readInPart_ = false;
}

void KVRCharacter::TerminateItems() {
  for (clsItem& item : Items) item.TerminateMods();
  recalcQueue_.clear();
  queued_.clear();
  visits_.clear();
  charValueReaders_.clear();
  modHolders_.clear();
  for (clsSortedItemList& list : ItemsByType) list.Clear();
  Items.Clear();
  Bonuses.clear();
  Conditionals.clear();
  Taboos.clear();
  ChangeLog.clear();
  Cats.Clear();
  Groups.Clear();
  BasicDamageList.clear();
  DamageBreaks.clear();
  SkillTypes.clear();
  Campaign.Log.clear();
  Body.Clear();
  TokenCache.Clear();
}

std::int32_t KVRCharacter::Count(ItemType type) const {
  if (type < kFirstType || type > kLastType) return 0;
  return static_cast<std::int32_t>(ItemsByType[static_cast<std::size_t>(type)].Count());
}

void KVRCharacter::SetRefreshList(ItemType type) {
  refresh_[static_cast<std::size_t>(type)] = true;
  Dirty = true;
}

void KVRCharacter::SetInPlay(bool inPlay) {
  const bool changed = inPlay_ != inPlay;
  if (changed) Dirty = true;
  inPlay_ = inPlay;
  if (inPlay) FreezeStats();  // also those that came after play began
  if (!changed) return;
  // These cost something else in play.
  for (clsItem& stat : ItemsByType[kStats]) {
    if (stat.FreeTagIsEmpty("inplaymult")) continue;
    ClearTokensForItem(stat);
    QueueItem(stat);
  }
}

}  // namespace kvr
