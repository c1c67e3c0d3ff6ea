// The texts that describe a weapon in this character's hands, one value for each of its modes.
#include "calc/WeaponTags.h"

#include <algorithm>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/FormulaText.h"
#include "calc/ModeLists.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/DecimalScan.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

constexpr std::size_t kDamageRow = 0, kRowsBeforeSkill = 14;

// The numbers at the heads of the elements of a text take a bonus: "1,2" with +1 is "2,3", "3U" is "4U". An
// element that begins with none stays as it is. A sign that stood before a number stays.
std::string WithNumberBonus(std::string_view text, double adder, double multiplier) {
  std::string result;
  bool isFirst = true;
  modNewParser::ForEachToken(text, ',', modNewParser::kNames, [&](std::string_view element) {
    if (!isFirst) result += ',';
    isFirst = false;
    const std::string_view trimmed = Trim(element);
    // A "d" behind the number is dice, no exponent.
    const DecimalScan number = ScanDecimal(trimmed.substr(0, trimmed.find_first_of("dD")), Gaps::None);
    if (!number.found) {
      result += element;
      return;
    }
    const double value = (Val(trimmed.substr(0, number.end)) + adder) * multiplier;
    if (trimmed.front() == '+' && value >= 0) result += '+';
    result += NumberText(value);
    result += trimmed.substr(number.end);
  });
  return result;
}

// Words that are added lose the sign that says so; an amount keeps it.
std::string_view AddedText(std::string_view text) {
  const bool isAmount = text.size() > 1 && text[1] >= '0' && text[1] <= '9';
  if (text.starts_with('+') && !isAmount) text.remove_prefix(1);
  return text;
}

bool IsWordLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::size_t EndOfWord(std::string_view text, std::size_t at) {
  while (at < text.size() && IsWordLetter(text[at])) ++at;
  return at;
}

}  // namespace

const std::array<WeaponTags::Row, WeaponTags::kRows> WeaponTags::kTable = {{
    {"clsItem:privCalcCharDamage", "damage", "chardamage", "damage,chardamage"},
    {"clsItem:privCalcCharDamType", "damtype", "chardamtype", "damtype,chardamtype"},
    {"clsItem:privCalcCharAcc", "acc", "characc", "acc,characc"},
    {"clsItem:privCalcCharReach", "reach", "charreach", "reach,charreach"},
    {"clsItem:privCalcCharParry", "parry", "charparry", "parry,charparry"},
    {"clsItem:privCalcCharRange", "rangehalfdam", "charrangehalfdam", "rangehalfdam,charrangehalfdam"},
    {"clsItem:privCalcCharRange", "rangemax", "charrangemax", "rangemax,charrangemax"},
    {"clsItem:privCalcCharShots", "shots", "charshots", "shots,charshots"},
    {"clsItem:privCalcCharMinST", "minst", "charminst", "minst,charminst"},
    {"clsItem:privCalcCharDR", "dr", "chardr", "dr,chardr"},
    {"clsItem:privCalcCharDB", "db", "chardb", "db,chardb"},
    {"clsItem:privCalcCharRadius", "radius", "charradius", "radius,charradius"},
    {"clsItem:privCalcCharArmorDivisor", "armordivisor", "chararmordivisor", "armordivisor,chararmordivisor"},
    {"clsItem:privCalcCharBreak", "break", "charbreak", "break,charbreak"},
    // Behind parry, block and the skill used.
    {"clsItem:privCalcCharEffectiveST", "effectivest", "chareffectivest", "effectivest,chareffectivest"},
    {"clsItem:privBuildCharVersionTagString", "rof", "charrof", "rof,charrof"},
    {"clsItem:privBuildCharVersionTagString", "rcl", "charrcl", "rcl,charrcl"},
}};

bool clsItem::privCalcWeaponTags() {
  if (weaponTagsRevision_ != tags_.Revision()) {
    hasWeaponTags_ = WeaponTags::Appear(tags_);
    weaponTagsRevision_ = tags_.Revision();
  }
  if (!hasWeaponTags_ && bonusMarks_ == 0) return false;
  const std::uint32_t before = tags_.Revision();
  WeaponTags(*this).Calculate();
  return tags_.Revision() != before;
}

bool WeaponTags::Appear(const TagText& tags) {
  const auto appears = [&tags](std::string_view tag) { return tags.Find(tag).has_value(); };
  return std::ranges::any_of(kTable, [&](const Row& row) { return appears(row.source); }) ||
         std::ranges::any_of(modeLists::CalculatedTags(), appears) || appears("skillused") ||
         appears("parryat") || appears("blockat");
}

void WeaponTags::Calculate() {
  for (std::size_t row = 0; row < kRowsBeforeSkill; ++row) CalcRow(row);
  item_.privCalcParryAt();
  item_.privCalcBlockAt();
  CalcSkillUsed();
  for (std::size_t row = kRowsBeforeSkill; row < kRows; ++row) CalcRow(row);
}

void WeaponTags::CalcRow(std::size_t row) {
  TraceScope trace(kTable[row].procedure);
  explain::Section section(item_, kTable[row].explained);
  std::size_t modes = State(row).values.size();
  if (modes == 0 && BonusOn(row).isTarget) modes = std::max<std::size_t>(ModesCount(), 1);
  std::vector<std::string> values;
  values.reserve(modes);
  for (std::size_t mode = 1; mode <= modes; ++mode) {
    explain::Step step(item_, [&] { return ModeName(mode); });
    values.push_back(step.Is(Value(row, mode)));
    if (mode <= State(row).values.size()) step.Formula(State(row).values[mode - 1]);
  }
  WriteOrDeleteTag(item_, kTable[row].target, modeLists::Joined(values));
}

WeaponTags::RowState& WeaponTags::State(std::size_t row) {
  RowState& state = states_[row];
  if (!state.isRead) {
    state.list = item_.FreeTag(kTable[row].source);
    state.values = modeLists::Values(state.list);
    state.isRead = true;
  }
  return state;
}

const WeaponTags::TagBonus& WeaponTags::BonusOn(std::size_t row) {
  std::optional<TagBonus>& bonus = states_[row].bonus;
  if (bonus) return *bonus;
  explain::Section section(item_, kTable[row].explained);
  bonus = ReadBonus(kTable[row].source);
  return *bonus;
}

WeaponTags::TagBonus WeaponTags::ReadBonus(std::string_view tag) {
  TagBonus bonus;
  if (!item_.GetBonusAffectsFlag(tag)) return bonus;
  bonus.isTarget = true;
  bonus.multiplier = item_.CalcApplicableTargetTagMult(tag);
  bonus.adder = item_.CalcApplicableTargetTagBonus(tag);
  bonus.multiplierText = item_.CalcApplicableTargetTagMultString(tag);
  bonus.adderText = item_.CalcApplicableTargetTagBonusString(tag);
  return bonus;
}

std::string WeaponTags::ModeName(std::size_t mode) const {
  std::string name = item_.DamageModeName(mode);
  return name.empty() ? "mode " + std::to_string(mode) : name;
}

std::size_t WeaponTags::ModesCount() {
  return item_.DamageModesCount();
}

std::string WeaponTags::Value(std::size_t row, std::size_t mode) {
  RowState& state = State(row);
  // A value that is asked for while it is worked out would lead back to itself.
  if (state.isRunning) return "";
  state.isRunning = true;
  struct Ended {
    bool& isRunning;
    ~Ended() { isRunning = false; }
  } ended{state.isRunning};
  return WorkedOut(row, mode);
}

std::string WeaponTags::WorkedOut(std::size_t row, std::size_t mode) {
  const RowState& state = State(row);
  if (row == kDamageRow && state.values.empty()) return "";
  const TagBonus& bonus = BonusOn(row);
  std::string text;
  if (state.values.empty()) {
    // Without the tag the bonus alone is the value.
    if (bonus.adder != 0) text = NumberText(WithBonus(0, bonus));
  } else {
    if (mode > state.values.size() || state.values[mode - 1].empty()) return "";
    text = state.values[mode - 1];
    const bool readsOwnMode = SubstituteOwnMode(text, mode);
    if (row == kDamageRow) {
      modMain::DamageRules rules = RulesOfDamage(mode);
      rules.isFormula = readsOwnMode;
      return modMain::CalcDamage(item_, text, rules);
    }
    text = formulaText::Solved(text, item_, readsOwnMode);
    if (bonus.adder != 0 || bonus.multiplier != 1)
      text = WithNumberBonus(text, bonus.adder, bonus.multiplier);
  }
  if (!bonus.multiplierText.empty() && !text.empty()) text += "*" + bonus.multiplierText;
  return text.append(AddedText(bonus.adderText));
}

// "me::minst" in a formula of one mode means the value of that mode, not the list of all.
bool WeaponTags::SubstituteOwnMode(std::string& text, std::size_t mode) {
  constexpr std::string_view kMe = "me::";
  std::string result;
  std::size_t begin = 0;
  for (std::size_t at = FindNoCase(text, kMe); at != npos; at = FindNoCase(text, kMe, at + kMe.size())) {
    if (at > 0 && IsWordLetter(text[at - 1])) continue;
    const std::size_t end = EndOfWord(text, at + kMe.size());
    const std::string tag = LCase(std::string_view(text).substr(at + kMe.size(), end - at - kMe.size()));
    const bool isOfModes = std::ranges::find(modeLists::SourceTags(), tag) != modeLists::SourceTags().end();
    if (!isOfModes && RowOf(tag) == kRows) continue;
    result.append(text, begin, at - begin);
    result += OwnValue(tag, mode);
    begin = end;
  }
  if (begin == 0) return false;
  result.append(text, begin);
  text = std::move(result);
  return true;
}

// False where a value leads back to itself, or reads without end.
bool WeaponTags::SubstituteInSource(std::string& value, std::string_view tag, std::size_t mode) {
  constexpr int kMostReads = 100000;
  if (std::ranges::find(reading_, tag) != reading_.end() || ++reads_ > kMostReads) return false;
  reading_.push_back(tag);
  SubstituteOwnMode(value, mode);
  reading_.pop_back();
  return true;
}

std::string WeaponTags::OwnValue(std::string_view tag, std::size_t mode) {
  const std::size_t row = RowOf(tag);
  std::string value = row < kRows ? Value(row, mode) : item_.DamageModeTagItem(mode, tag);
  if (row == kRows && !value.empty() && !SubstituteInSource(value, tag, mode)) return "0";
  if (value.empty()) return "0";
  return formulaText::IsFormula(value) ? "(" + value + ")" : value;
}

// The row that writes the tag; kRows for none.
std::size_t WeaponTags::RowOf(std::string_view tag) {
  std::size_t row = 0;
  while (row < kRows && kTable[row].target != tag) ++row;
  return row;
}

modMain::DamageRules WeaponTags::RulesOfDamage(std::size_t mode) {
  const TagBonus& bonus = BonusOn(kDamageRow);
  return {Basis(mode), bonus.multiplier, bonus.adder, bonus.multiplierText, bonus.adderText};
}

double WeaponTags::Basis(std::size_t mode) {
  explain::Step step(item_, "strength for damage");
  const double striking = modSolver::Solver("ST:Striking ST", item_);
  const std::string effective = OwnValue("chareffectivest", mode);
  if (effective != "0") return step.Is(modSolver::Solver(effective, item_) + striking);
  std::string stat = item_.DamageModeTagItem(mode, "damagebasedon");
  if (stat.empty()) return step.Is(modSolver::Solver("ST:Damage Base", item_) + striking);
  if (!formulaText::IsReference(stat)) stat = "\"ST:" + stat + "\"";
  return step.Is(modSolver::Solver(stat, item_) + striking);
}

}  // namespace kvr
