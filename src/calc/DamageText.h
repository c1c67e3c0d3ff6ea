// The damage of a weapon as text: "sw+2" becomes "2d+1" in the hands of this character.
#pragma once

#include <string>
#include <string_view>

#include "character/clsItem.h"

namespace kvr::modMain {

// What the damage of one weapon mode goes by.
struct DamageRules {
  double basis = 0;                       // the score that "thr" and "sw" stand for, Striking ST included
  double multiplier = 1, adder = 0;       // bonuses on `damage`
  std::string multiplierText, adderText;  // text bonuses on it
  bool isFormula = false;  // numbers were put into the text already: what is left of it is arithmetic
};

// The final damage text; the rules of the trait's first mode, or given ones. "thr" (also "th") and "sw" are
// read as whole parts in any case; "@thr(score)", "@sw(score)" and "@th(score)" give the dice at another
// score, "@thrx(n)" and "@swx(n)" those at n times the basis. Functions and references become numbers. Dice
// and plain numbers are summed, and with the character's option adds become dice; any other text stays as it
// stands. A divisor in parentheses at the end stays there.
std::string CalcDamage(clsItem& trait, std::string_view text);
std::string CalcDamage(clsItem& trait, std::string_view text, const DamageRules& rules);

}  // namespace kvr::modMain
