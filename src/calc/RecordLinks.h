// Bonuses and conditionals as links: the traits that a record reaches, and the records that a trait's value
// goes into. Both kinds are linked alike; RecordKind says where each of them stands.
#pragma once

#include "calc/TraitNames.h"
#include "character/KVRCharacter.h"

namespace kvr {

struct RecordKind {
  std::vector<std::unique_ptr<clsBonus>> KVRCharacter::*records;
  std::vector<clsBonus*> GivenRecords::*given;
  std::vector<clsBonus*> clsItem::*applied;
  std::vector<std::int32_t> clsItem::*affected;
  void (KVRCharacter::*createLinks)(clsBonus&);
  void (KVRCharacter::*clearLinks)(clsBonus&);
};
inline constexpr RecordKind kBonuses{&KVRCharacter::Bonuses,
                                     &GivenRecords::bonuses,
                                     &clsItem::AppliedBonuses,
                                     &clsItem::AffectedBonuses,
                                     &KVRCharacter::CreateBonusAffectsLinks,
                                     &KVRCharacter::ClearBonusAffectsLinks};
inline constexpr RecordKind kConditionals{&KVRCharacter::Conditionals,
                                          &GivenRecords::conditionals,
                                          &clsItem::AppliedConditionals,
                                          &clsItem::AffectedConditionals,
                                          &KVRCharacter::CreateConditionalAffectsLinks,
                                          &KVRCharacter::ClearConditionalAffectsLinks};

// Works the amount out; true if it is another one now.
bool CalculateRecord(clsBonus& record);

// Compares one trait with all records of the character.
void LinkToRecords(KVRCharacter& character, clsItem& item);
void UnlinkFromRecords(clsItem& item);
// Makes the links of all records anew, whatever they were.
void LinkAllRecords(KVRCharacter& character, TraitNameIndex& index);

}  // namespace kvr
