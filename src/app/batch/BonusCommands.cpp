// Commands about bonuses: who gives what to whom, and under which condition.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "character/ModTree.h"
#include "core/Numbers.h"

namespace kvr::batch {

namespace {

// "+2", "x2", "=5", "=x2", or the text that a text bonus adds.
std::string AmountOf(const clsBonus& bonus) {
  if (!bonus.StringValue.empty()) return bonus.StringValueText;
  const std::string value = NumberText(bonus.Value);
  switch (bonus.BonusType) {
    case 2:
      return "x" + value;
    case 3:
      return "=" + value;
    case 4:
      return "=x" + value;
    default:
      return bonus.Value >= 0 ? "+" + value : value;
  }
}

// "level", "points", or the tag.
std::string_view ChangedBy(const clsBonus& bonus) {
  return bonus.Affects == "level" || bonus.Affects == "points" ? bonus.Affects : bonus.TargetTag;
}

void PrintBonus(BatchRunner& runner, std::string_view first, const clsBonus& bonus) {
  runner.Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}", first, AmountOf(bonus), ChangedBy(bonus),
                           bonus.GiverName(), bonus.Notes, bonus.FullBonusText));
}

void PrintGiven(BatchRunner& runner, CalcItem& owner) {
  for (const clsBonus* bonus : owner.Given()->bonuses) PrintBonus(runner, "gives", *bonus);
  for (const clsBonus* bonus : owner.Given()->conditionals) PrintBonus(runner, "may give", *bonus);
}

void Bonuses(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.LastReference());
  PrintGiven(runner, item);
  for (clsMod* mod : AllModsOf(item)) PrintGiven(runner, *mod);
  for (const clsBonus* bonus : item.AppliedBonuses) PrintBonus(runner, "receives", *bonus);
  for (const clsBonus* bonus : item.AppliedConditionals) PrintBonus(runner, "may receive", *bonus);
}

// A line for each trait that a conditional reaches, in order of the conditionals.
void Conditionals(BatchRunner& runner, Arguments&) {
  const KVRCharacter& character = runner.Character();
  for (const auto& bonus : character.Conditionals) {
    if (bonus->Targets.empty()) PrintBonus(runner, "-", *bonus);
    for (std::int32_t key : bonus->Targets) {
      if (const clsItem* target = character.ItemByKey(key)) PrintBonus(runner, target->FullName(), *bonus);
    }
  }
}

constexpr Command kCommands[] = {
    {"bonuses", "REF",
     "each bonus that a trait gives or receives, \"may give\" and \"may receive\" for conditional ones: way, "
     "amount, "
     "what it changes, giver, condition, sentence (TAB between)",
     Bonuses},
    {"conditionals", "",
     "each conditional bonus: the trait it reaches (- for none), amount, what it changes, giver, condition, "
     "sentence (TAB between)",
     Conditionals},
};

}  // namespace

std::span<const Command> BonusCommands() {
  return kCommands;
}

}  // namespace kvr::batch
