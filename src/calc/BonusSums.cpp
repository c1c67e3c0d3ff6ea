// What the bonuses on a trait come to: sums of added amounts and products of multipliers.
#include "character/clsItem.h"

namespace kvr {

double clsItem::CalcApplicableSysBonus() {
  return 0;
}
Currency clsItem::CalcApplicableSysPoints() {
  return 0;
}
double clsItem::CalcApplicablePointMult() {
  return 1;
}
double clsItem::CalcApplicableLevelMult() {
  return 1;
}
double clsItem::ConditionalApplicableSysBonus() {
  return 0;
}
Currency clsItem::ConditionalApplicableSysPoints() {
  return 0;
}
double clsItem::ConditionalApplicablePointMult() {
  return 1;
}
double clsItem::ConditionalApplicableLevelMult() {
  return 1;
}
double clsItem::CalcApplicableTargetTagBonus(std::string_view /*tag*/) {
  return 0;
}
double clsItem::CalcApplicableTargetTagMult(std::string_view /*tag*/) {
  return 1;
}

}  // namespace kvr
