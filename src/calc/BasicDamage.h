// Basic damage: the dice of a blow at a score, from the table that the character carries.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/Records.h"

namespace kvr {

class CalcItem;
class KVRCharacter;

struct DamageDice {
  std::int32_t dice = 0, adds = 0;
  // "2d+1", "1d-2", "3d".
  std::string Text() const;
};

namespace basicDamage {

// The first row whose ST is not below the score, else the last; nullptr for an empty table.
const clsBasicDamage* RowForScore(const KVRCharacter& character, double score);
// A text of the table ("1", "-2", "@int(st:/10)") at a score: its "st:" parts read the score. Rounded down.
// `traceName` heads the line that goes to the log while the solver is traced.
double AtScore(std::string_view text, double score, CalcItem& context, std::string_view traceName);

// Adds that reach a break become dice: the highest break first, each as often as the adds reach it. A break
// that subtracts nothing applies once.
DamageDice ConvertAdds(DamageDice damage, std::vector<clsDamageBreak> breaks);

}  // namespace basicDamage
}  // namespace kvr
