// Which check each tag gets.
#include "calc/Limits.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "frontend/LintChecks.h"

namespace kvr::Lint {
namespace {

// "upto(5)", "upto(8pts)", "maxscore(ST:HT limitingtotal)"
void CheckLimit(const Check& check, std::string_view text) {
  std::string_view formula = ReadLimit(text).formula;
  if (EndsWithNoCase(formula, "pts")) formula.remove_suffix(3);
  CheckFormula(check, formula);
}

// Formulas with commas between them, for each mode.
void CheckFormulaLists(const Check& check, std::string_view text) {
  for (std::string_view mode : modNewParser::ParseSplitChars(text, "|", modNewParser::kNames)) {
    modNewParser::ForEachToken(mode, ',', modNewParser::kNames,
                               [&](std::string_view formula) { CheckFormula(check, formula); });
  }
}

// The words that put the needs in their place stand for formulas that cannot be seen here.
void CheckDefaults(const Check& check, std::string_view text) {
  if (!ContainsNoCase(text, "prereq")) return CheckFormulaLists(check, text);
  modNewParser::ForEachToken(text, ',', modNewParser::kNames, [&](std::string_view formula) {
    if (!ContainsNoCase(formula, "prereq")) CheckFormula(check, formula);
  });
}

struct TagCheck {
  std::string_view tag;
  void (*run)(const Check& check, std::string_view text);
};
constexpr TagCheck kTagChecks[] = {{"needs", CheckNeeds},
                                   {"taboo", CheckNeeds},
                                   {"default", CheckDefaults},
                                   {"skillused", CheckFormulaLists},
                                   {"gives", CheckBonuses},
                                   {"conditional", CheckBonuses},
                                   {"adds", CheckAdds},
                                   {"sets", CheckAdds},
                                   {"creates", CheckCreates},
                                   {"formula", CheckFormula},
                                   {"upto", CheckLimit},
                                   {"downto", CheckLimit},
                                   {"maxscore", CheckLimit},
                                   {"minscore", CheckLimit},
                                   {"basevalue", CheckFormula},
                                   {"init", CheckFormula},
                                   {"stat", CheckFormula},
                                   {"basecost", CheckFormula},
                                   {"baseweight", CheckFormula},
                                   {"baseqty", CheckFormula},
                                   {"parryat", CheckFormula},
                                   {"blockat", CheckFormula},
                                   {"tier", CheckFormula},
                                   {"rangemax", CheckFormulaLists},
                                   {"rangehalfdam", CheckFormulaLists}};

// "select1" to "select99"
bool IsSelect(std::string_view tag) {
  constexpr std::string_view kHead = "select";
  return tag.starts_with(kHead) && tag.size() > kHead.size() &&
         tag.find_first_not_of("0123456789", kHead.size()) == npos;
}

}  // namespace

void CheckTags(ItemType type, std::string_view tagString, const KnownNames& names, const Complain& complain,
               int depth) {
  for (const modTags::TagItem& item : modTags::ReturnTagItems(tagString)) {
    const bool hasSkillType = item.name == "type" && (type == kSkills || type == kSpells);
    if (hasSkillType && !item.value.empty() && !IsUnsettled(item.value) && !names.HasSkillType(item.value))
      complain("An unknown skill type", item.value);
    for (const TagCheck& check : kTagChecks)
      if (check.tag == item.name) check.run({names, complain, check.tag, depth}, item.value);
    if (IsSelect(item.name)) CheckSelect({names, complain, item.name, depth}, item.value);
  }
}

}  // namespace kvr::Lint
