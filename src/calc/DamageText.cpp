// Damage texts: bonuses put on, "thr" and "sw" looked up, formulas solved, dice and adds summed.
#include "calc/DamageText.h"

#include <cmath>
#include <functional>

#include "calc/Explanation.h"
#include "calc/FormulaText.h"
#include "calc/SolverContext.h"
#include "calc/WeaponTags.h"
#include "calc/modEval.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modMain {
namespace {

std::string Number(double value) {
  return std::string(Trim(Str(value)));
}

// "(2)" or "(0.5)" behind the damage itself.
std::string_view CutDivisor(std::string_view& text) {
  if (!text.ends_with(')')) return {};
  const std::size_t open = text.rfind('(');
  if (open == npos || open == 0) return {};
  const std::string_view inner = text.substr(open + 1, text.size() - open - 2);
  std::string_view before = text.substr(0, open);
  if (const std::size_t mark = before.find_last_of(modSolver::kExpressionMarks); mark != npos)
    before.remove_prefix(mark + 1);
  before = Trim(before);
  if (!IsNumeric(inner) || before.empty() || formulaText::IsFormula(before)) return {};
  const std::string_view divisor = text.substr(open);
  text = Trim(text.substr(0, open));
  return divisor;
}

std::string WithBonuses(std::string_view text, const DamageRules& rules) {
  std::string result(text);
  const auto add = [&](std::string_view adder) {
    if (!adder.starts_with('+') && !adder.starts_with('-')) result += '+';
    result += adder;
  };
  const bool multiplies = rules.multiplier != 1 || !rules.multiplierText.empty();
  if (multiplies) result = "((" + result + ")";
  if (rules.multiplier != 1) result += "*" + Number(rules.multiplier);
  if (!rules.multiplierText.empty()) result += "*" + rules.multiplierText;
  if (rules.adder != 0) add(Number(rules.adder));
  if (!rules.adderText.empty()) add(rules.adderText);
  return multiplies ? result + ")" : result;
}

std::string WithForms(std::string_view text, const DamageRules& rules) {
  std::string result;
  modSolver::ForEachPart(
      text, false,
      [&](std::string_view part) {
        const std::string_view word = Trim(part);
        if (EqualNoCase(word, "thr") || EqualNoCase(word, "th"))
          result += "@thr(" + Number(rules.basis) + ")";
        else if (EqualNoCase(word, "sw"))
          result += "@sw(" + Number(rules.basis) + ")";
        else
          result += part;
      },
      [&](char mark) { result += mark; });
  return result;
}

// Calls replaced(arguments) for each call of the function in the text, and puts its result there. A call
// without its closing parenthesis stays.
template <class Replaced>
void ReplaceCalls(std::string& text, std::string_view function, Replaced&& replaced) {
  std::string result;
  std::size_t begin = 0;
  for (std::size_t at = FindNoCase(text, function); at != npos; at = FindNoCase(text, function, begin)) {
    const std::string_view behind = std::string_view(text).substr(at + function.size());
    const std::size_t length = modTags::FindCloseParen(behind);
    if (length == npos) break;
    result.append(text, begin, at - begin);
    result += replaced(behind.substr(0, length));
    begin = at + function.size() + length + 1;
  }
  if (begin == 0) return;
  result.append(text, begin);
  text = std::move(result);
}

void ReplaceForms(std::string& text, clsItem& trait, const DamageRules& rules) {
  struct Form {
    std::string_view function, name;
    DamageDice (KVRCharacter::*damage)(double score);
    bool isMultiple;
  };
  static constexpr Form kForms[] = {{"@thrx(", "thrust", &KVRCharacter::ReturnThrFromScore, true},
                                    {"@swx(", "swing", &KVRCharacter::ReturnSwFromScore, true},
                                    {"@th(", "thrust", &KVRCharacter::ReturnThrFromScore, false},
                                    {"@thr(", "thrust", &KVRCharacter::ReturnThrFromScore, false},
                                    {"@sw(", "swing", &KVRCharacter::ReturnSwFromScore, false}};
  for (const Form& form : kForms) {
    ReplaceCalls(text, form.function, [&](std::string_view argument) {
      const double value = modSolver::Solver(argument, trait);
      const double score = form.isMultiple ? value * rules.basis : value;
      explain::Step step(trait, form.name, " at ", score);
      return step.Is(std::invoke(form.damage, *trait.Owner, score).Text());
    });
  }
}

// Each function and each reference becomes its number; true if there was one.
bool SolveFormulas(std::string& text, clsItem& trait) {
  if (!formulaText::IsFormula(text)) return false;
  std::string solved;
  std::size_t begin = 0;
  for (std::size_t at = text.find('@'); at != npos; at = text.find('@', begin)) {
    const std::size_t open = text.find('(', at);
    const std::size_t length =
        open == npos ? npos : modTags::FindCloseParen(std::string_view(text).substr(open + 1));
    if (length == npos) break;
    const std::size_t end = open + length + 2;
    solved.append(text, begin, at - begin);
    solved += NumberText(modSolver::Solver(std::string_view(text).substr(at, end - at), trait));
    begin = end;
  }
  solved.append(text, begin);
  text.clear();
  modSolver::ForEachPart(
      solved, false,
      [&](std::string_view part) {
        if (formulaText::IsReference(part))
          text += NumberText(modSolver::Solver(part, trait));
        else
          text += part;
      },
      [&](char mark) { text += mark; });
  return true;
}

// Damage as a sum: dice of one kind ("" or the sides, "6") and adds.
class DamageSum {
 public:
  // Whether arithmetic without dice is a formula to be worked out, or a text to be left alone.
  explicit DamageSum(bool worksOut) : worksOut_(worksOut) {}

  // False when the text is no such sum.
  bool Read(std::string_view text, int depth = 0) {
    std::size_t begin = 0;
    double sign = 1;
    bool isOpen = true;  // a term must follow
    modNewParser::NestingLevels levels(modNewParser::kParens);
    for (std::size_t i = 0; i <= text.size(); ++i) {
      const bool atEnd = i == text.size();
      if (!atEnd && (!levels.Step(text[i]) || (text[i] != '+' && text[i] != '-'))) continue;
      const std::string_view term = Trim(text.substr(begin, i - begin));
      if (!term.empty() && !ReadTerm(term, sign, depth)) return false;
      if (!term.empty()) sign = 1;
      isOpen = term.empty();
      if (!atEnd && text[i] == '-') sign = -sign;
      begin = i + 1;
    }
    return !isOpen;
  }
  bool IsSum() const { return terms_ > 1 || worked_; }
  bool HasDice() const { return hasDice_; }

  std::string Text(const KVRCharacter& character) const {
    if (!hasDice_) return NumberText(adds_);
    if (dice_ == std::floor(dice_) && adds_ == std::floor(adds_)) return WholeText(character);
    std::string text = NumberText(dice_) + mark_ + sides_;
    if (adds_ > 0) text += '+';
    return adds_ == 0 ? text : text + NumberText(adds_);
  }

 private:
  static constexpr int kDeepestParens = 50;

  bool ReadTerm(std::string_view term, double sign, int depth) {
    ++terms_;
    if (IsNumeric(term) && term.find_first_of("eEdD") == npos) {
      adds_ += sign * Val(term);
      return true;
    }
    if (ReadDice(term)) return sign > 0;
    if (term.front() == '(' && modTags::FindMatchingParen(term) == term.size() - 1) {
      worked_ = true;
      return sign > 0 && depth < kDeepestParens && Read(modTools::StripParens(term), depth + 1);
    }
    if (!worksOut_ || !formulaText::IsArithmetic(term)) return false;
    adds_ += sign * modEval::Evaluate(term).value;
    worked_ = true;
    return true;
  }

  bool ReadDice(std::string_view term) {
    const std::size_t mark = term.find_first_of("dD");
    if (mark == npos || mark == 0) return false;
    const std::string_view count = term.substr(0, mark), sides = term.substr(mark + 1);
    if (count.find_first_not_of("0123456789.") != npos || !IsNumeric(count)) return false;
    if (sides.find_first_not_of("0123456789") != npos) return false;
    if (hasDice_ && sides != sides_) return false;
    dice_ += Val(count);
    mark_ = term[mark];
    sides_ = sides;
    hasDice_ = true;
    return true;
  }

  std::string WholeText(const KVRCharacter& character) const {
    DamageDice damage{CLngClamped(dice_), CLngClamped(adds_)};
    if (character.UseDiceAddsConversion != 0 && damage.dice > 0)
      damage = basicDamage::ConvertAdds(damage, character.DamageBreaks);
    std::string text = damage.Text();
    const std::size_t mark = text.find('d');
    return text.replace(mark, 1, mark_ + sides_);
  }

  bool worksOut_, worked_ = false, hasDice_ = false;
  int terms_ = 0;
  double dice_ = 0, adds_ = 0;
  std::string mark_ = "d", sides_;
};

std::string Tidied(std::string text, bool isFormula, const KVRCharacter& character) {
  for (std::size_t size = 0; size != text.size();) {
    size = text.size();
    modTools::ReplaceAll(text, "+-", "-");
  }
  DamageSum sum(isFormula);
  if (sum.Read(text) && (sum.IsSum() || sum.HasDice())) return sum.Text(character);
  return std::string(Trim(text));
}

}  // namespace

std::string CalcDamage(clsItem& trait, std::string_view text, const DamageRules& rules) {
  text = Trim(text);
  if (text.empty() || trait.Owner == nullptr) return "";
  TraceScope trace("modMain:CalcDamage");
  const std::string_view divisor = CutDivisor(text);
  std::string damage = WithBonuses(text, rules);
  if (damage != text) explain::Note(trait, "with its bonuses: ", damage);
  if (damage.find_first_of("$%") != npos) damage = modSolver::TextFunctionSolver(damage, trait);
  damage = WithForms(damage, rules);
  ReplaceForms(damage, trait, rules);
  const bool isFormula = SolveFormulas(damage, trait) || rules.isFormula;
  return Tidied(std::move(damage), isFormula, *trait.Owner).append(divisor);
}

std::string CalcDamage(clsItem& trait, std::string_view text) {
  // The lines of the bonuses stand there already.
  const std::size_t lines = trait.BonusList.size();
  const DamageRules rules = WeaponTags(trait).RulesOfDamage(1);
  trait.BonusList.resize(lines);
  return CalcDamage(trait, text, rules);
}

}  // namespace kvr::modMain
