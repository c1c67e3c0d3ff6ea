// Commands about the modifiers of a trait, counted from 1 in the collection's order.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "core/Numbers.h"
#include "core/modTools.h"
#include "frontend/TraitEditing.h"

namespace kvr::batch {

namespace {

void PrintMod(BatchRunner& runner, std::size_t index, clsMod& mod) {
  runner.Print(fmt::format("{} {} {}", index, mod.FullName(), mod.TagItem("value")));
}

void PrintMods(BatchRunner& runner, clsItem& item) {
  std::size_t index = 0;
  for (clsMod& mod : item.Mods) PrintMod(runner, ++index, mod);
}

std::size_t IndexArgument(clsItem& item, Arguments& arguments) {
  const double index = arguments.Number("the number of a modifier");
  if (index < 1 || index > static_cast<double>(item.Mods.Count())) {
    throw CommandFailure(fmt::format("\"{}\" has no modifier {}", item.FullName(), NumberText(index)));
  }
  return static_cast<std::size_t>(index);
}

void Mod(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  const std::string_view wanted = modTools::StripBraces(arguments.Rest());
  const std::size_t colon = wanted.find(':');
  if (colon == std::string_view::npos) throw CommandFailure("a modifier is written GROUP:NAME");
  ModRecord* source =
      runner.App().TheSystem.FindMod(Trim(wanted.substr(colon + 1)), Trim(wanted.substr(0, colon)));
  if (!source) throw CommandFailure(fmt::format("the library has no modifier \"{}\"", wanted));
  const std::int32_t key = runner.Character().AddModFromSystem(source->SysCollectionKey(), item);
  TraitEditing::AfterModsChanged(item);
  std::size_t index = 0;
  for (clsMod& mod : item.Mods) {
    ++index;
    if (mod.IDKey == key) PrintMod(runner, index, mod);
  }
}

void Mods(BatchRunner& runner, Arguments& arguments) {
  PrintMods(runner, runner.Trait(arguments.LastReference()));
}

void ModLevel(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  const std::size_t index = IndexArgument(item, arguments);
  TraitEditing::SetModLevel(item.Mods.Item(index), CLngClamped(arguments.Number("a level")));
  PrintMod(runner, index, item.Mods.Item(index));
}

void UnMod(BatchRunner& runner, Arguments& arguments) {
  clsItem& item = runner.Trait(arguments.Reference());
  const std::size_t index = IndexArgument(item, arguments);
  runner.Character().RemoveMod(item, item.Mods.KeyAt(index));
  TraitEditing::AfterModsChanged(item);
  PrintMods(runner, item);
}

constexpr Command kCommands[] = {
    {"mod", "REF GROUP:NAME (Ext)", "puts a library modifier on a trait; prints number, name and value", Mod},
    {"mods", "REF", "lists the modifiers of a trait: number, name and value", Mods},
    {"modlevel", "REF INDEX N", "sets the level of a modifier; prints number, name and value", ModLevel},
    {"unmod", "REF INDEX", "takes a modifier off a trait; lists those that are left", UnMod},
};

}  // namespace

std::span<const Command> ModifierCommands() {
  return kCommands;
}

}  // namespace kvr::batch
