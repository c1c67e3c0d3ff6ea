// The solver for the defaults of skills: "17??level-5" is a tag of the trait with that key, held to the rule
// of limit, and the arithmetic behind it.
#include "calc/Explanation.h"
#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr::modSolver {
namespace {

// The highest value that a default may be taken from; 0 for no limit.
double LimitOfRule(clsItem& trait, std::string_view tag, double value, const KVRCharacter& character) {
  const bool isScore = tag == "score", isGlobal = character.GlobalRuleOf == -1;
  double limit = character.RuleOf;
  if (limit <= 0 || !(isScore || isGlobal)) return 0;
  if (value > limit && (trait.ItemType == kStats || !isScore)) {
    const double raise = trait.RaiseRuleOf();
    if (raise > 0) limit += raise;
  }
  return limit;
}

double LimitedValue(clsItem& trait, std::string_view tag, KVRCharacter& character) {
  const double value = Val(trait.TagItem(tag));
  const double limit = LimitOfRule(trait, tag, value, character);
  if (limit <= 0 || value <= limit) return value;
  explain::Note(character, "limited to ", limit, " by the rule of ", character.RuleOf);
  return limit;
}

// What stands before the first mark of an expression, with its trait put in.
std::string SolvedReference(std::string_view part, DefaultSource& source, Context& context) {
  const std::size_t marks = part.find("??");
  if (marks == npos) return std::string(part);
  clsItem* trait = context.character.ItemByKey(CLngClamped(Val(part.substr(0, marks))));
  if (!trait) return " 0";
  source = {trait->FullName(), trait->IDKey};
  std::string_view wanted = Trim(part.substr(marks + 2));
  if (wanted.starts_with("::")) wanted = Trim(wanted.substr(2));
  std::string tag = LCase(wanted);
  if (tag.empty()) tag = trait->ItemType == kStats ? "score" : "baselevel";
  return Str(LimitedValue(*trait, tag, context.character));
}

}  // namespace

double SolverForDefaults(std::string_view expression, DefaultSource& source, CalcItem& item) {
  source = {};
  expression = Trim(expression);
  if (expression.empty()) return 0;
  Context context = ContextOf(item);
  return Guarded("modSolver:SolverForDefaults", expression, context, [&] {
    std::string text(expression), solved;
    if (text.find('%') != npos) SubstituteSpecialCases(text, context);
    bool isFirst = true;
    ForEachPart(
        text, false,
        [&](std::string_view part) {
          if (isFirst)
            solved += SolvedReference(part, source, context);
          else if (!Trim(part).empty())
            solved += Str(Solver(part, item));
          isFirst = false;
        },
        [&](char mark) { solved += mark; });
    return Solver(solved, item);
  });
}

}  // namespace kvr::modSolver
