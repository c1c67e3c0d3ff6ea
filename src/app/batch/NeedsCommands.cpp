// Commands about prerequisites and taboos: what a trait demands, who fails, and what keeps a library trait
// from being taken.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "character/modNeeds.h"

namespace kvr::batch {

namespace {

void Needs(BatchRunner& runner, Arguments& arguments) {
  for (const modNeeds::Term& term : modNeeds::NeedsTerms(runner.Trait(arguments.LastReference()))) {
    runner.Print(fmt::format("{}\t{}\t{}\t{}\t{}", term.place, term.entry, term.reading,
                             term.met ? "met" : "missing", term.found));
  }
}

void Taboo(BatchRunner& runner, Arguments& arguments) {
  for (const modNeeds::Term& term : modNeeds::TabooTerms(runner.Trait(arguments.LastReference()))) {
    runner.Print(
        fmt::format("{}\t{}\t{}\t{}", term.entry, term.reading, term.met ? "broken" : "kept", term.found));
  }
}

void PrintFailure(BatchRunner& runner, const clsItem& item, std::string_view what, std::string_view text) {
  runner.Print(fmt::format("{}\t{}:{}\t{}\t{}", item.KeyText(), modPrefixes::ItemTypeName(item.ItemType),
                           item.FullName(), what, text));
}

void Check(BatchRunner& runner, Arguments&) {
  KVRCharacter& character = runner.Character();
  character.NeedsCheckAll(true);
  for (clsItem& item : character.Items) {
    std::vector<std::string> missing;
    if (item.NeedsCheck() != 0 && !modNeeds::NeedsCheckORItems(item, modNeeds::NeedsText(item), missing)) {
      PrintFailure(runner, item, "needs",
                   KVRCharacter::NeedsListUserFriendly(fmt::format("{}", fmt::join(missing, " | "))));
    }
    if (item.TabooFailed() != 0) PrintFailure(runner, item, "taboo", item.TagItem("tabootext"));
  }
}

void Why(BatchRunner& runner, Arguments& arguments) {
  const auto reasons = modNeeds::WhyNot(runner.Character(), runner.LibraryTrait(arguments.Rest()));
  for (const std::string& reason : reasons) runner.Print(reason);
  if (reasons.empty()) runner.Print("can be taken");
}

constexpr Command kCommands[] = {
    {"needs", "REF", "prints what a trait needs: alternative, test, reading, met or missing, what was found",
     Needs},
    {"taboo", "REF",
     "prints what a trait may not stand beside: test, reading, kept or broken, what was found", Taboo},
    {"check", "", "checks all traits; prints those with unmet needs or broken taboos", Check},
    {"why", "PREFIX:Name (Ext)",
     "prints what keeps a library trait from being taken now, or \"can be taken\"", Why},
};

}  // namespace

std::span<const Command> NeedsCommands() {
  return kCommands;
}

}  // namespace kvr::batch
