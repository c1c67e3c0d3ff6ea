// What the bonuses on a trait come to: sums of added amounts and products of multipliers, and the lines that
// say so to the player.
#include <string>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "character/clsItem.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {
namespace {

using Records = std::vector<clsBonus*>;
using Lines = std::vector<std::string>;

bool Multiplies(const clsBonus& record) {
  return record.BonusType == 2 || record.BonusType == 4;
}

// The author's own line for a bonus.
std::string BonusListAsSpecialCaseSubs(const clsBonus& record) {
  std::string line = record.ListAs;
  modTools::ReplaceAll(line, "%value%", NumberText(record.Value));
  modTools::ReplaceAll(line, "%stringvalue%", record.StringValueText);
  modTools::ReplaceAll(line, "%name%", record.Owner->TagItem("name"));
  modTools::ReplaceAll(line, "%targetname%", record.TargetName);
  modTools::ReplaceAll(line, "%targettag%", record.TargetTag);
  return line;
}

// "+2", "x2" or the text that a text bonus brings.
std::string AmountOf(const clsBonus& record) {
  if (!record.StringValue.empty()) return record.StringValueText;
  return (Multiplies(record) ? "x" : record.Value > 0 ? "+" : "") + NumberText(record.Value);
}

// "+2 from 'Keen Hearing' when it is quiet"
std::string DisplayLine(const clsBonus& record) {
  std::string line;
  if (!record.ListAs.empty()) {
    line = BonusListAsSpecialCaseSubs(record);
  } else {
    const clsItem* root = record.Owner->RootOwnerItem();
    line = AmountOf(record);
    line += record.Affects == "points" ? "pts from '" : " from '";
    line += root == nullptr ? record.Owner->NameForMessages() : root->FullName();
    line += "'";
  }
  if (!record.Notes.empty()) line += " when " + record.Notes;
  return line;
}

// The sentence, where its amount is not just what is written: a formula, a multiple by level, a limit.
std::string HowItCameAbout(const clsBonus& record) {
  if (!record.StringValue.empty() || (IsNumeric(record.Bonus) && Val(record.Bonus) == record.Value))
    return "";
  std::string how = " by \"" + record.FullBonusText + "\"";
  if (record.ValueBeforeUpto != record.Value) {
    how += ", limited to " + NumberText(record.Value) + ", else " + NumberText(record.ValueBeforeUpto);
  }
  return how;
}

// Adds the line of a record that counts.
void List(const clsBonus& record, Lines& lines) {
  explain::Note(
      *record.Owner, [&] { return record.GiverName(); }, " gives ", [&] { return AmountOf(record); },
      record.Affects == "points" ? " points" : "", [&] { return HowItCameAbout(record); });
  lines.push_back(DisplayLine(record));
}

// Which records a sum takes; the tag is empty for levels and points.
struct Wanted {
  bool multiplying;
  std::string_view affects, tag;

  bool Takes(const clsBonus& record) const {
    return Multiplies(record) == multiplying && record.Affects == affects &&
           (tag.empty() || EqualNoCase(record.TargetTag, tag));
  }
};

// Calls f with each record that is taken, and lists it.
template <class F>
void ForEachTaken(const Records& records, Lines& lines, const Wanted& wanted, F&& f) {
  for (const clsBonus* record : records) {
    if (!wanted.Takes(*record)) continue;
    f(*record);
    List(*record, lines);
  }
}

double Sum(const Records& records, Lines& lines, const Wanted& wanted) {
  double sum = 0;
  ForEachTaken(records, lines, wanted, [&](const clsBonus& record) { sum += record.Value; });
  return sum;
}

double Product(const Records& records, Lines& lines, const Wanted& wanted) {
  double product = 1;
  ForEachTaken(records, lines, wanted, [&](const clsBonus& record) { product *= record.Value; });
  return product;
}

// A bonus doesn't give a level to a skill that was not learned. That goes for skills only, not for spells.
double SumOfLevels(const clsItem& item, const Records& records, Lines& lines) {
  const bool unlearned = item.ItemType == kSkills && item.Points().IsZero() && item.BaseLevel() == 0;
  double sum = 0;
  for (const clsBonus* record : records) {
    if (record->Value == 0 || !Wanted{false, "level", ""}.Takes(*record)) continue;
    if (unlearned) {
      explain::Note(item, "bonuses give no level to a skill that was not learned");
      return 0;
    }
    sum += record->Value;
    List(*record, lines);
  }
  return sum;
}

// The text of a text bonus without the operator and the quotes that may still stand around it.
std::string_view BareText(const clsBonus& record) {
  std::string_view text = Trim(record.StringValueText);
  if (record.BonusType == 1) return text;
  if (text.starts_with('=')) text.remove_prefix(1);
  if (Multiplies(record) && !text.empty()) text.remove_prefix(1);
  return modTools::StripQuotes(text);
}

std::string Texts(const Records& records, Lines& lines, const Wanted& wanted, std::string_view between) {
  std::string texts;
  ForEachTaken(records, lines, wanted, [&](const clsBonus& record) {
    if (!texts.empty()) texts += between;
    texts += BareText(record);
  });
  return texts;
}

}  // namespace

double clsItem::CalcApplicableSysBonus() {
  return SumOfLevels(*this, AppliedBonuses, BonusList);
}
Currency clsItem::CalcApplicableSysPoints() {
  return Currency::FromDouble(Sum(AppliedBonuses, BonusList, {false, "points", ""}));
}
double clsItem::CalcApplicablePointMult() {
  return Product(AppliedBonuses, BonusList, {true, "points", ""});
}
double clsItem::CalcApplicableLevelMult() {
  return Product(AppliedBonuses, BonusList, {true, "level", ""});
}

double clsItem::ConditionalApplicableSysBonus() {
  return SumOfLevels(*this, AppliedConditionals, ConditionalList);
}
Currency clsItem::ConditionalApplicableSysPoints() {
  return Currency::FromDouble(Sum(AppliedConditionals, ConditionalList, {false, "points", ""}));
}
double clsItem::ConditionalApplicablePointMult() {
  return Product(AppliedConditionals, ConditionalList, {true, "points", ""});
}
double clsItem::ConditionalApplicableLevelMult() {
  return Product(AppliedConditionals, ConditionalList, {true, "level", ""});
}

void ListTagConditionals(clsItem& item) {
  for (const clsBonus* record : item.AppliedConditionals) {
    if (record->Affects.starts_with("other")) item.ConditionalList.push_back(DisplayLine(*record));
  }
}

double clsItem::CalcApplicableTargetTagBonus(std::string_view tag) {
  return tag.empty() ? 0 : Sum(AppliedBonuses, BonusList, {false, "other", tag});
}
double clsItem::CalcApplicableTargetTagMult(std::string_view tag) {
  return tag.empty() ? 1 : Product(AppliedBonuses, BonusList, {true, "other", tag});
}
std::string clsItem::CalcApplicableTargetTagBonusString(std::string_view tag) {
  return tag.empty() ? "" : Texts(AppliedBonuses, BonusList, {false, "otherstring", tag}, "");
}
std::string clsItem::CalcApplicableTargetTagMultString(std::string_view tag) {
  return tag.empty() ? "" : Texts(AppliedBonuses, BonusList, {true, "otherstring", tag}, "*");
}

std::vector<std::string> clsItem::GetApplicableTargetTagBonuses(std::string_view tag) const {
  std::vector<std::string> lines;
  for (const clsBonus* record : AppliedBonuses) {
    if (!tag.empty() && EqualNoCase(record->TargetTag, tag)) lines.push_back(DisplayLine(*record));
  }
  return lines;
}

}  // namespace kvr
