// Commands about one trait: adding, editing, reading, and the formulas read in its context.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "calc/Explanation.h"
#include "calc/SkillDefaults.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "frontend/TraitEditing.h"

namespace kvr::batch {

namespace {

std::string TraitLine(const clsItem& item) {
  return fmt::format("{} {}:{}", item.KeyText(), modPrefixes::ItemTypeName(item.ItemType), item.FullName());
}

// Of an attribute the score is bought, of equipment the quantity.
std::string LevelText(const clsItem& item) {
  if (item.ItemType == kStats) return NumberText(item.Score());
  return item.ItemType == kEquipment ? std::string(item.FreeTag("count")) : std::to_string(item.Level());
}

void PrintLevelLine(BatchRunner& runner, const clsItem& item) {
  runner.Print(fmt::format("{} {} {}", item.KeyText(), LevelText(item), NumberText(item.Points())));
}

void PrintTraitsSince(BatchRunner& runner, std::int32_t lastKey) {
  KVRCharacter& character = runner.Character();
  for (std::int32_t key = lastKey + 1; key <= character.LastKey; ++key) {
    if (const clsItem* item = character.ItemByKey(key)) runner.Print(TraitLine(*item));
  }
}

void Add(BatchRunner& runner, Arguments& arguments) {
  KVRCharacter& character = runner.Character();
  const clsSystemItem& source = runner.LibraryTrait(arguments.Rest());
  const std::int32_t lastKey = character.LastKey;
  const std::int32_t key = character.AddItemFromSystem(source.CollectionKey());
  if (key == 0) {
    runner.Print("cancelled");
  } else if (key <= lastKey) {
    runner.Print(TraitLine(*character.ItemByKey(key)));
  } else {
    PrintTraitsSince(runner, lastKey);
  }
}

void Remove(BatchRunner& runner, Arguments& arguments) {
  runner.Character().RemoveItem(runner.Trait(arguments.LastReference()).KeyText());
}

void Set(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  const std::string_view tag = arguments.Word("the name of a tag");
  if (!TraitEditing::SetTag(item, tag, arguments.Rest())) {
    runner.Prompts().MessageBox(TraitEditing::kMismatchedParens, "", Buttons::Ok);
  }
  runner.Print(item.TagItem(tag));
}

void Tag(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  runner.Print(item.TagItem(arguments.Word("the name of a tag")));
}

void Show(BatchRunner& runner, Arguments& arguments) {
  const std::string tagList = runner.Trait(arguments.LastReference()).TagList();
  modNewParser::ForEachToken(tagList, ',', modNewParser::kParens, [&](std::string_view tag) {
    const std::size_t paren = tag.find('(');
    if (paren == npos) return;
    runner.Print(fmt::format("{}={}", tag.substr(0, paren), tag.substr(paren + 1, tag.size() - paren - 2)));
  });
}

void Level(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  TraitEditing::SetLevel(item, arguments.Number("a level"));
  PrintLevelLine(runner, item);
}

void Spend(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  TraitEditing::SetPointsSpent(item, Currency::FromDouble(arguments.Number("a number of points")));
  PrintLevelLine(runner, item);
}

constexpr double kMostSteps = 1000000;

int StepsArgument(Arguments& arguments) {
  if (arguments.Empty()) return 1;
  const double steps = arguments.Number("a number of steps");
  if (steps < 0 || steps > kMostSteps) {
    throw CommandFailure(fmt::format("{} is no sensible number of steps", NumberText(steps)));
  }
  return static_cast<int>(steps);
}

void Inc(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  TraitEditing::Increment(item, StepsArgument(arguments));
  PrintLevelLine(runner, item);
}

void Dec(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  TraitEditing::Decrement(item, StepsArgument(arguments));
  PrintLevelLine(runner, item);
}

void Rename(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  if (arguments.Empty()) throw CommandFailure("the new name is missing");
  if (!modTags::ParensBalance(arguments.Rest()))
    throw CommandFailure(std::string(TraitEditing::kMismatchedParens));
  const auto [name, ext] = modPrefixes::SplitNameAndExtAtLast(arguments.Rest());
  runner.Character().RenameItem(item.KeyText(), name, ext, false);
}

template <void (KVRCharacter::*Operation)(std::string_view)>
void Switch(BatchRunner& runner, Arguments& arguments) {
  (runner.Character().*Operation)(runner.Trait(arguments.LastReference()).KeyText());
}

void Parent(BatchRunner& runner, Arguments& arguments) {
  clsItem& child = runner.Trait(arguments.Reference());
  const std::string_view parent = arguments.LastReference();
  if (parent == "-") {
    runner.Character().UnmakeChildOf(child.KeyText());
  } else {
    runner.Character().MakeChildOf(child.KeyText(), runner.Trait(parent).KeyText());
  }
}

void OptSpec(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  const std::string_view word = arguments.Word("on or off");
  if (!EqualNoCase(word, "on") && !EqualNoCase(word, "off")) {
    throw CommandFailure(fmt::format("on or off must stand here, not \"{}\"", word));
  }
  item.SetOptionalSpecialtyStatus(EqualNoCase(word, "on"));
  runner.Character().PushTrickle(item);
  runner.Print(item.TagItem("type"));
}

// The character itself is "char".
void Explain(BatchRunner& runner, Arguments& arguments) {
  const std::string_view reference = arguments.Reference();
  const std::string_view tag = arguments.Word("the name of a tag");
  for (const std::string& line : EqualNoCase(reference, "char") ? ExplainTag(runner.Character(), tag)
                                                                : ExplainTag(runner.Trait(reference), tag)) {
    runner.Print(line);
  }
}

// By reference, or by its name alone.
clsItem& SkillArgument(BatchRunner& runner, std::string_view name) {
  for (const ItemType type : {kSkills, kSpells}) {
    if (clsItem* item = runner.Character().FindItem(name, type)) return *item;
  }
  clsItem& item = runner.Trait(name);
  if (item.ItemType == kSkills || item.ItemType == kSpells) return item;
  throw CommandFailure(fmt::format("\"{}\" is no skill and no spell", name));
}

void Skill(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = SkillArgument(runner, arguments.LastReference());
  runner.Print(fmt::format("{}\t{}\t{}", item.Level(), DefaultInUse(item), NumberText(item.Points())));
}

// "@" directly followed by a key, a brace, or a prefix with its colon names the context; "@max(" does not.
CalcItem& ContextArgument(BatchRunner& runner, Arguments& arguments) {
  const std::string_view rest = arguments.Rest();
  if (rest.size() < 2 || rest[0] != '@') return runner.Character();
  const std::string_view word = rest.substr(1, rest.find(' ') - 1);
  const bool isKey = word.size() > 1 && (word[0] == 'k' || word[0] == 'K') &&
                     word.find_first_not_of("0123456789", 1) == npos;
  const bool isReference = !modPrefixes::ExtractPrefix(word).prefix.empty() && word.find('(') == npos;
  if (!isKey && !isReference && rest[1] != '{') return runner.Character();
  Arguments behindMark(rest.substr(1));
  clsItem& item = runner.Trait(behindMark.Reference());
  arguments = Arguments(behindMark.Rest());
  return item;
}

void Eval(BatchRunner& runner, Arguments& arguments) {
  CalcItem& context = ContextArgument(runner, arguments);
  runner.Print(NumberText(modSolver::Solver(arguments.Rest(), context)));
}

void Text(BatchRunner& runner, Arguments& arguments) {
  CalcItem& context = ContextArgument(runner, arguments);
  runner.Print(modSolver::TextFunctionSolver(arguments.Rest(), context));
}

constexpr Command kCommands[] = {
    {"add", "PREFIX:Name (Ext)", "adds a library trait; prints it and each further trait made by it", Add},
    {"remove", "REF", "removes a trait", Remove},
    {"set", "REF TAG VALUE", "writes a tag, recalculates what depends on it, and reads it", Set},
    {"tag", "REF TAG", "reads a tag", Tag},
    {"show", "REF", "prints all tags of a trait", Show},
    {"level", "REF N", "moves a trait to a level or score; prints key, level and points", Level},
    {"spend", "REF N", "sets the points spent on a trait; prints key, level and points", Spend},
    {"inc", "REF [N]", "raises a trait by N steps", Inc},
    {"dec", "REF [N]", "lowers a trait by N steps", Dec},
    {"rename", "REF NAME", "renames a trait", Rename},
    {"disable", "REF", "switches a component off", Switch<&KVRCharacter::DisableItem>},
    {"enable", "REF", "switches a component on again", Switch<&KVRCharacter::EnableItem>},
    {"deactivate", "REF", "lets a trait give no bonuses", Switch<&KVRCharacter::DeActivateItem>},
    {"reactivate", "REF", "lets a trait give its bonuses again", Switch<&KVRCharacter::ReActivateItem>},
    {"parent", "REF REF", "makes the second trait the parent of the first; - for none", Parent},
    {"optspec", "REF on|off", "makes a skill an optional specialty; prints its type", OptSpec},
    {"skill", "NAME", "level, default in use and points of a skill or spell", Skill},
    {"explain", "REF TAG",
     "how a tag's value came about: a tree of formulas, bonuses, modifiers and limits; char for the "
     "character",
     Explain},
    {"eval", "[@REF] EXPR", "the number that a formula comes to, for a trait or the character", Eval},
    {"text", "[@REF] EXPR", "the text that a formula comes to", Text},
};

}  // namespace

std::span<const Command> TraitCommands() {
  return kCommands;
}

}  // namespace kvr::batch
