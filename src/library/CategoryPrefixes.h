// The prefixes that name a category of traits: "CO:Fire" is the spells of the college Fire.
#pragma once

#include <string_view>

#include "core/Text.h"
#include "library/modPrefixes.h"

namespace kvr::modPrefixes {

// kNoType for a prefix that names no category; in any case of letters.
inline ItemType TypeFromCategoryPrefix(std::string_view prefix) {
  struct Row {
    std::string_view prefix;
    ItemType type;
  };
  static constexpr Row kRows[] = {{"CA", kAds},
                                  {"ADCAT", kAds},
                                  {"DICAT", kDisads},
                                  {"DISADCAT", kDisads},
                                  {"PECAT", kPerks},
                                  {"PERKCAT", kPerks},
                                  {"POCAT", kPerks},
                                  {"POWERCAT", kPerks},
                                  {"EQCAT", kEquipment},
                                  {"EQUIPCAT", kEquipment},
                                  {"EQUIPMENTCAT", kEquipment},
                                  {"CL", kSkills},
                                  {"SKCAT", kSkills},
                                  {"SKILLCAT", kSkills},
                                  {"CO", kSpells},
                                  {"SPCAT", kSpells},
                                  {"SPELLCAT", kSpells}};
  for (const Row& row : kRows)
    if (EqualNoCase(row.prefix, prefix)) return row.type;
  return kNoType;
}

}  // namespace kvr::modPrefixes
