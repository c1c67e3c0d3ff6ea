// The tags of a character: its properties by name, and its own free tag list for every other name.
#include <algorithm>
#include <array>
#include <variant>

#include "character/KVRCharacter.h"
#include "character/SolvedTags.h"
#include "core/Numbers.h"
#include "core/TagText.h"
#include "core/Text.h"
#include "core/modLogging.h"
#include "core/modTags.h"

namespace kvr {
namespace {

// Properties that are counted by type or do more than store a value.
struct InPlayFlag {};
struct LastKeyNumber {};
struct RefreshFlag {
  ItemType type;
};
struct CountOf {
  ItemType type;
};
struct CostOf {
  ItemType type;
};
// A total: read only.
struct Total {
  Currency KVRCharacter::*value;
};
struct Level {
  std::int16_t KVRCharacter::*value;
};
// Of the base damage: what is written to the tag list stands in place of what the attribute gives.
struct DamageText {
  std::string KVRCharacter::*value;
};
struct DamageDiceCount {
  std::int32_t KVRCharacter::*value;
};

using Slot =
    std::variant<std::string KVRCharacter::*, std::int32_t KVRCharacter::*, InPlayFlag, LastKeyNumber,
                 RefreshFlag, CountOf, CostOf, Total, Level, DamageText, DamageDiceCount>;
struct CharacterTag {
  std::string_view tag;
  Slot slot;
};

// In order of the names.
constexpr CharacterTag kTags[] = {
    {"adcost", CostOf{kAds}},
    {"adcount", CountOf{kAds}},
    {"againstdisadlimit", Total{&KVRCharacter::AgainstDisadLimit}},
    {"age", &KVRCharacter::Age},
    {"appearance", &KVRCharacter::Appearance},
    {"basesw", DamageText{&KVRCharacter::BaseSW}},
    {"baseswadds", &KVRCharacter::BaseSwAdds},
    {"baseswdice", DamageDiceCount{&KVRCharacter::BaseSwDice}},
    {"baseth", DamageText{&KVRCharacter::BaseTH}},
    {"basethadds", &KVRCharacter::BaseTHAdds},
    {"basethdice", DamageDiceCount{&KVRCharacter::BaseTHDice}},
    {"bodytype", &KVRCharacter::BodyType},
    {"charactersheet", &KVRCharacter::FlexFile},
    {"charname", &KVRCharacter::Name},
    {"currentload", Total{&KVRCharacter::CurrentLoad}},
    {"currentloadout", &KVRCharacter::CurrentLoadout},
    {"datecreated", &KVRCharacter::DateCreated},
    {"description", &KVRCharacter::Description},
    {"disadcost", CostOf{kDisads}},
    {"disadcount", CountOf{kDisads}},
    {"dollarcost", Total{&KVRCharacter::DollarCost}},
    {"enclevel", Level{&KVRCharacter::EncumbranceLevel}},
    {"encumbrancelevel", Level{&KVRCharacter::EncumbranceLevel}},
    {"equipmentcost", CostOf{kEquipment}},
    {"equipmentcount", CountOf{kEquipment}},
    {"flexfile", &KVRCharacter::FlexFile},
    {"height", &KVRCharacter::Height},
    {"inplay", InPlayFlag{}},
    {"lastkey", LastKeyNumber{}},
    {"loadout", &KVRCharacter::CurrentLoadout},
    {"name", &KVRCharacter::Name},
    {"notes", &KVRCharacter::Notes},
    {"packagecost", CostOf{kPackages}},
    {"packagecount", CountOf{kPackages}},
    {"perkcost", CostOf{kPerks}},
    {"perkcount", CountOf{kPerks}},
    {"player", &KVRCharacter::Player},
    {"portrait", &KVRCharacter::Portrait},
    {"quirkcost", CostOf{kQuirks}},
    {"quirkcount", CountOf{kQuirks}},
    {"race", &KVRCharacter::Race},
    {"refreshads", RefreshFlag{kAds}},
    {"refreshdisads", RefreshFlag{kDisads}},
    {"refreshequipment", RefreshFlag{kEquipment}},
    {"refreshpackages", RefreshFlag{kPackages}},
    {"refreshperks", RefreshFlag{kPerks}},
    {"refreshquirks", RefreshFlag{kQuirks}},
    {"refreshskills", RefreshFlag{kSkills}},
    {"refreshspells", RefreshFlag{kSpells}},
    {"refreshstats", RefreshFlag{kStats}},
    {"skillcost", CostOf{kSkills}},
    {"skillcount", CountOf{kSkills}},
    {"spellcost", CostOf{kSpells}},
    {"spellcount", CountOf{kSpells}},
    {"statcost", CostOf{kStats}},
    {"statcount", CountOf{kStats}},
    {"totalcost", Total{&KVRCharacter::TotalCost}},
    {"totalweight", Total{&KVRCharacter::TotalWeight}},
    {"unspentpoints", Total{&KVRCharacter::UnspentPoints}},
    {"weight", &KVRCharacter::Weight},
};
static_assert(std::ranges::is_sorted(kTags, {}, &CharacterTag::tag));

const CharacterTag* FindTag(std::string_view lowerTag) {
  const CharacterTag* place = std::ranges::lower_bound(kTags, lowerTag, {}, &CharacterTag::tag);
  return place != std::end(kTags) && place->tag == lowerTag ? place : nullptr;
}

std::string FlagText(bool flag) {
  return flag ? "-1" : "0";
}

struct Reader {
  const KVRCharacter& character;

  std::string operator()(std::string KVRCharacter::*text) const { return character.*text; }
  std::string operator()(std::int32_t KVRCharacter::*number) const {
    return std::to_string(character.*number);
  }
  std::string operator()(InPlayFlag) const { return FlagText(character.InPlay()); }
  std::string operator()(LastKeyNumber) const { return std::to_string(character.LastKey); }
  std::string operator()(RefreshFlag list) const { return FlagText(character.RefreshList(list.type)); }
  std::string operator()(CountOf list) const { return std::to_string(character.Count(list.type)); }
  std::string operator()(CostOf list) const {
    return NumberText(character.Cost[static_cast<std::size_t>(list.type)]);
  }
  std::string operator()(Total total) const { return NumberText(character.*total.value); }
  std::string operator()(Level level) const { return std::to_string(character.*level.value); }
  std::string operator()(DamageText text) const { return character.*text.value; }
  std::string operator()(DamageDiceCount dice) const { return std::to_string(character.*dice.value); }
};

bool StandsInTagList(const Slot& slot) {
  return std::holds_alternative<DamageText>(slot) || std::holds_alternative<DamageDiceCount>(slot);
}

// True when the property may be written.
struct Writer {
  KVRCharacter& character;
  std::string_view value;

  std::int32_t Number() const { return value.empty() ? 0 : CLng(CDbl(value)); }

  bool operator()(std::string KVRCharacter::*text) const {
    character.*text = value;
    return true;
  }
  bool operator()(std::int32_t KVRCharacter::*number) const {
    character.*number = Number();
    return true;
  }
  bool operator()(InPlayFlag) const {
    character.SetInPlay(IsSet(value));
    return true;
  }
  // Never below the keys that are in use.
  bool operator()(LastKeyNumber) const {
    character.LastKey = std::max(character.LastKey, Number());
    return true;
  }
  bool operator()(RefreshFlag list) const {
    IsSet(value) ? character.SetRefreshList(list.type) : character.ClearRefreshList(list.type);
    return true;
  }
  template <class ReadOnly>
  bool operator()(ReadOnly) const {
    return false;
  }
};

}  // namespace

std::string KVRCharacter::TagItem(std::string_view tag) {
  CalcPointCosts();
  if (const CharacterTag* known = FindTag(LCase(tag))) return std::visit(Reader{*this}, known->slot);
  std::string value(modTags::GetTagValue(tag, CharTagList));
  return IsSolvedTag(tag) && !value.empty() ? SolvedTagValue(tag, value, *this) : value;
}

void KVRCharacter::SetTagItem(std::string_view tag, std::string_view value) {
  TraceScope trace("KVRCharacter:TagItem");
  value = Trim(value);
  // Formulas that read the character are worked out again with the next totals.
  const auto written = [this] {
    Dirty = true;
    for (std::int32_t key : charValueReaders_) QueueKey(key);
  };
  const CharacterTag* known = FindTag(LCase(tag));
  if (!known || StandsInTagList(known->slot)) {
    TagText tags;
    tags.Assign(CharTagList);
    tags.Set(tag, value);
    CharTagList = tags.Text();
    return written();
  }
  LogFailure(env_.log, [&] {
    if (std::visit(Writer{*this, value}, known->slot)) written();
  });
}

}  // namespace kvr
