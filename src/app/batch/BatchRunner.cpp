// The loop over the script's lines, and what every command shares: arguments, references, output.
#include "batch/BatchRunner.h"

#include <fmt/format.h>

#include <filesystem>
#include <istream>
#include <ostream>

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::batch {

namespace {

std::string_view WithoutLineEnd(std::string_view line) {
  while (line.ends_with('\r') || line.ends_with('\n')) line.remove_suffix(1);
  return line;
}

std::string WithParagraphMarks(std::string_view text) {
  std::string shown(text);
  modTools::ReplaceAll(shown, "\r\n", "~P");
  modTools::ReplaceAll(shown, "\n", "~P");
  modTools::ReplaceAll(shown, "\r", "~P");
  return shown;
}

std::size_t MatchingBrace(std::string_view text) {
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '{') ++depth;
    if (text[i] == '}' && --depth == 0) return i;
  }
  return npos;
}

bool IsKeyText(std::string_view text) {
  return text.size() > 1 && (text[0] == 'k' || text[0] == 'K') &&
         text.find_first_not_of("0123456789", 1) == npos && text.size() < 12;
}

}  // namespace

Arguments::Arguments(std::string_view text) : rest_(Trim(text)) {}

std::string_view Arguments::Word(std::string_view what) {
  if (rest_.empty()) throw CommandFailure(fmt::format("{} is missing", what));
  const std::string_view word = rest_.substr(0, rest_.find(' '));
  rest_ = Trim(rest_.substr(word.size()));
  return word;
}

std::string_view Arguments::Reference() {
  if (!rest_.starts_with('{')) return Word("a trait");
  const std::size_t end = MatchingBrace(rest_);
  if (end == npos) throw CommandFailure(fmt::format("the brace of \"{}\" is not closed", rest_));
  const std::string_view reference = Trim(rest_.substr(1, end - 1));
  rest_ = Trim(rest_.substr(end + 1));
  return reference;
}

std::string_view Arguments::LastReference() {
  if (rest_.empty()) throw CommandFailure("a trait is missing");
  return modTools::StripBraces(rest_);
}

double Arguments::Number(std::string_view what) {
  const std::string_view word = Word(what);
  if (!IsNumeric(word)) throw CommandFailure(fmt::format("{} must be a number, not \"{}\"", what, word));
  return Val(word);
}

std::vector<Command> AllCommands() {
  std::vector<Command> all;
  for (std::span<const Command> part :
       {LibraryCommands(), CharacterCommands(), TraitCommands(), ModifierCommands(), BonusCommands(),
        EquipmentCommands(), NeedsCommands(), ScriptCommands()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

BatchRunner::BatchRunner(Application& app, ScriptedPrompts& prompts, std::ostream& out, std::ostream& err)
    : app_(app), prompts_(prompts), out_(out), err_(err), commands_(AllCommands()) {}

int BatchRunner::Run(std::istream& script, const std::string& scriptName, bool keepGoing) {
  int status = 0;
  std::string line;
  for (std::size_t number = 1; std::getline(script, line); ++number) {
    const std::string_view text = Trim(WithoutLineEnd(line));
    if (text.empty() || text.starts_with('#')) continue;
    try {
      RunLine(text);
    } catch (const std::exception& failure) {
      out_.flush();
      err_ << scriptName << ':' << number << ": " << WithParagraphMarks(failure.what()) << std::endl;
      status = 1;
      if (!keepGoing) break;
    }
  }
  out_.flush();
  return status;
}

void BatchRunner::RunLine(std::string_view line) {
  Arguments arguments(line);
  const std::string name = LCase(arguments.Word("a command"));
  const auto command = std::find_if(commands_.begin(), commands_.end(),
                                    [&](const Command& candidate) { return candidate.name == name; });
  if (command == commands_.end()) throw CommandFailure(fmt::format("unknown command \"{}\"", name));
  const bool keepsOutput = name == "expect" || name == "answer";
  if (!keepsOutput) lastOutput_.clear();
  try {
    command->run(*this, arguments);
    // What a window does behind every edit: the totals, and what reads them.
    if (KVRCharacter* character = app_.Current()) character->CalcPointCosts();
  } catch (const SolverFailure&) {
    app_.WriteTempBackups();
    throw;
  }
}

void BatchRunner::Print(std::string_view line) {
  lastOutput_.push_back(WithParagraphMarks(line));
  out_ << lastOutput_.back() << '\n';
}

std::string BatchRunner::LastOutput() const {
  return fmt::format("{}", fmt::join(lastOutput_, " | "));
}

KVRCharacter& BatchRunner::Character() {
  if (!app_.Current()) throw CommandFailure("there is no current character");
  return *app_.Current();
}

clsItem& BatchRunner::Trait(std::string_view reference) {
  KVRCharacter& character = Character();
  clsItem* item = nullptr;
  if (IsKeyText(reference)) {
    item = character.ItemByKey(NumberOfKeyText(reference));
  } else {
    const auto [prefix, name] = modPrefixes::ExtractPrefix(reference);
    const ItemType type = modPrefixes::TypeFromPrefix(prefix);
    if (type != kNoType) item = character.FindItem(name, type);
  }
  if (!item) throw CommandFailure(fmt::format("the character has no trait \"{}\"", reference));
  return *item;
}

const clsSystemItem& BatchRunner::LibraryTrait(std::string_view reference) {
  const auto [prefix, name] = modPrefixes::ExtractPrefix(modTools::StripBraces(reference));
  const ItemType type = modPrefixes::TypeFromPrefix(prefix);
  const clsSystemItem* found = type == kNoType ? nullptr : app_.TheSystem.FindItem(name, type);
  if (!found) throw CommandFailure(fmt::format("the library has no trait \"{}\"", reference));
  return *found;
}

std::string BatchRunner::PathArgument(std::string_view argument) {
  if (argument.empty()) throw CommandFailure("a file name is missing");
  if (argument.find_first_of("/\\") == npos || argument.starts_with('%')) return std::string(argument);
  if (argument.find('/') == npos) return std::string(argument);
  return Files::PathText(std::filesystem::absolute(std::filesystem::path(argument)).lexically_normal());
}

}  // namespace kvr::batch
