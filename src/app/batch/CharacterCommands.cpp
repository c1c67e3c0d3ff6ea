// Commands about whole characters and their files.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modTags.h"
#include "frontend/CharacterSummary.h"
#include "frontend/TraitEditing.h"

namespace kvr::batch {

namespace {

void PrintCurrent(BatchRunner& runner) {
  if (KVRCharacter* character = runner.App().Current()) {
    runner.Print(fmt::format("character {}: {}", runner.App().CurChar, character->Name));
  }
}

// A bare name means the characters folder; a name without an extension is a character file.
std::string CharacterPath(BatchRunner& runner, std::string_view argument, std::string_view extension) {
  std::string path = BatchRunner::PathArgument(argument);
  if (Files::LowerExtension(path).empty()) path += extension;
  return runner.App().Env().Folders.ExpandPath(kCharacters, kUserFolder, path);
}

// A value that would not leave the saved text whole is refused. What is written as text of its own may hold
// anything.
void RefuseMismatchedParens(std::string_view tag, std::string_view value) {
  if (EqualNoCase(tag, "description") || EqualNoCase(tag, "notes")) return;
  if (!modTags::ParensBalance(value)) throw CommandFailure(std::string(TraitEditing::kMismatchedParens));
}

void New(BatchRunner& runner, Arguments& arguments) {
  RefuseMismatchedParens("name", arguments.Rest());
  KVRCharacter& character = runner.App().CreateNewCharacter();
  if (!arguments.Empty()) character.Name = arguments.Rest();
  PrintCurrent(runner);
}

void Open(BatchRunner& runner, Arguments& arguments) {
  const std::string path = CharacterPath(runner, arguments.Rest(), ".kvr4");
  if (!Files::FileExists(path))
    throw CommandFailure(fmt::format("there is no file \"{}\"", arguments.Rest()));
  if (!runner.App().LoadTheCharacter(path)) {
    throw CommandFailure(fmt::format("\"{}\" could not be loaded; see the log", arguments.Rest()));
  }
  PrintCurrent(runner);
}

void Save(BatchRunner& runner, Arguments& arguments) {
  KVRCharacter& character = runner.Character();
  if (arguments.Empty() && character.FileName.empty()) {
    throw CommandFailure("the character has no file name yet: say where to save it");
  }
  const std::string path =
      arguments.Empty() ? character.FileName : CharacterPath(runner, arguments.Rest(), ".kvr4");
  const Files::Outcome outcome = runner.App().SaveCharacter(character, path);
  const std::string_view shown = arguments.Empty() ? std::string_view(path) : arguments.Rest();
  if (!outcome) throw CommandFailure(fmt::format("\"{}\" was not saved: {}", shown, outcome.error));
  PrintCurrent(runner);
}

void Close(BatchRunner& runner, Arguments&) {
  runner.Character();
  runner.App().CloseCharacter(runner.App().CurChar);
  PrintCurrent(runner);
}

void Use(BatchRunner& runner, Arguments& arguments) {
  const double number = arguments.Number("the number of a character");
  if (number < 1 || number > static_cast<double>(runner.App().Chars.size())) {
    throw CommandFailure(fmt::format("there is no character {}", NumberText(number)));
  }
  runner.App().CurChar = static_cast<std::size_t>(number);
  PrintCurrent(runner);
}

void Points(BatchRunner& runner, Arguments&) {
  KVRCharacter& character = runner.Character();
  character.CalcPointCosts();
  for (ItemType type = kFirstType; type <= kLastType; ++type) {
    runner.Print(fmt::format("{} {}", modPrefixes::CollectionName(type),
                             NumberText(character.Cost[static_cast<std::size_t>(type)])));
  }
  runner.Print("total " + NumberText(character.TotalCost));
  runner.Print("unspent " + NumberText(character.UnspentPoints));
}

void Char(BatchRunner& runner, Arguments& arguments) {
  const std::string_view tag = arguments.Word("the name of a property");
  RefuseMismatchedParens(tag, arguments.Rest());
  if (!arguments.Empty()) runner.Character().SetTagItem(tag, arguments.Rest());
  runner.Print(runner.Character().TagItem(tag));
}

void Changes(BatchRunner& runner, Arguments&) {
  for (const clsChangeItem& change : runner.Character().ChangeLog) {
    runner.Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}", change.Op,
                             change.Target == 0 ? "character" : KeyTextOf(change.Target),
                             KeyTextOf(change.Source), change.Tag, change.OldValue, change.NewValue));
  }
}

void Recalc(BatchRunner& runner, Arguments& arguments) {
  runner.Character().RecalculateAll(EqualNoCase(arguments.Rest(), "all"));
}

bool OnOrOff(Arguments& arguments) {
  const std::string_view word = arguments.Word("on or off");
  if (!EqualNoCase(word, "on") && !EqualNoCase(word, "off")) {
    throw CommandFailure(fmt::format("on or off must stand here, not \"{}\"", word));
  }
  return EqualNoCase(word, "on");
}

void InPlay(BatchRunner& runner, Arguments& arguments) {
  KVRCharacter& character = runner.Character();
  character.SetInPlay(OnOrOff(arguments));
  character.RecalculateAll();
}

void Summary(BatchRunner& runner, Arguments&) {
  for (const std::string& line : CharacterSummary(runner.Character())) runner.Print(line);
}

void Party(BatchRunner& runner, Arguments& arguments) {
  if (runner.App().Chars.empty()) throw CommandFailure("there is no current character");
  for (const auto& character : runner.App().Chars) {
    if (character->FileName.empty())
      throw CommandFailure(fmt::format("\"{}\" is not saved yet", character->Name));
  }
  const std::string path = CharacterPath(runner, arguments.Rest(), ".KVR4party");
  const Files::Outcome outcome = runner.App().PartyWrite(path);
  if (!outcome)
    throw CommandFailure(fmt::format("\"{}\" was not saved: {}", arguments.Rest(), outcome.error));
}

void Backup(BatchRunner& runner, Arguments&) {
  for (const std::string& path : runner.App().WriteTempBackups()) runner.Print(path);
}

constexpr Command kCommands[] = {
    {"new", "[NAME]", "makes a character, which becomes the current one", New},
    {"open", "PATH", "loads a character file or a party list", Open},
    {"save", "[PATH]", "saves the current character", Save},
    {"close", "", "closes the current character", Close},
    {"use", "N", "makes another character the current one", Use},
    {"points", "", "prints the points by type, the total and what is unspent", Points},
    {"char", "TAG [VALUE]", "writes and reads a property of the character", Char},
    {"changes", "", "prints what traits changed elsewhere: kind, target, source, tag, old and new value",
     Changes},
    {"summary", "", "prints the character as a player would read it", Summary},
    {"recalc", "[all]", "recalculates the character; with all, spreads every trait", Recalc},
    {"inplay", "on|off", "takes the character into play or out of it", InPlay},
    {"party", "PATH", "saves a party list of all open characters", Party},
    {"backup", "", "writes the temporary backups and prints their paths", Backup},
};

}  // namespace

std::span<const Command> CharacterCommands() {
  return kCommands;
}

}  // namespace kvr::batch
