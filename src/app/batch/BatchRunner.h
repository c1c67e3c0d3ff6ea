// Runs a text script against the engine, one command a line.
#pragma once

#include <iosfwd>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/ScriptedPrompts.h"
#include "frontend/Application.h"

namespace kvr::batch {

// What makes a command fail; the message is for the person who wrote the script.
class CommandFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The rest of a command line, taken apart from the left. Views into the line.
class Arguments {
 public:
  explicit Arguments(std::string_view text);
  bool Empty() const { return rest_.empty(); }
  // The next word, up to a blank; a failure naming `what` when there is none.
  std::string_view Word(std::string_view what);
  // The next reference: a group in braces (without them) or a word.
  std::string_view Reference();
  // All that is left as a reference: braces are optional.
  std::string_view LastReference();
  // All that is left, as it is written.
  std::string_view Rest() const { return rest_; }
  double Number(std::string_view what);

 private:
  std::string_view rest_;
};

class BatchRunner;

struct Command {
  std::string_view name;
  std::string_view usage;  // the arguments
  std::string_view help;
  void (*run)(BatchRunner& runner, Arguments& arguments);
};
// All commands, in the order of the help.
std::vector<Command> AllCommands();
std::span<const Command> LibraryCommands();
std::span<const Command> CharacterCommands();
std::span<const Command> TraitCommands();
std::span<const Command> ModifierCommands();
std::span<const Command> BonusCommands();
std::span<const Command> EquipmentCommands();
std::span<const Command> NeedsCommands();
std::span<const Command> ScriptCommands();

class BatchRunner {
 public:
  BatchRunner(Application& app, ScriptedPrompts& prompts, std::ostream& out, std::ostream& err);

  // The exit status: 0, or 1 when a command failed. Stops at the first failure unless `keepGoing`.
  int Run(std::istream& script, const std::string& scriptName, bool keepGoing);

  Application& App() { return app_; }
  ScriptedPrompts& Prompts() { return prompts_; }
  // Prints one line, with line breaks shown as "~P".
  void Print(std::string_view line);
  // The output of the last command that prints, lines joined by " | ".
  std::string LastOutput() const;

  // What commands ask for; a failure when it is not there.
  KVRCharacter& Character();
  clsItem& Trait(std::string_view reference);
  // Of the library, by prefix and full name.
  const clsSystemItem& LibraryTrait(std::string_view reference);
  // The native or bare path of an argument as path text: a bare name stays, anything else becomes absolute.
  static std::string PathArgument(std::string_view argument);

 private:
  void RunLine(std::string_view line);

  Application& app_;
  ScriptedPrompts& prompts_;
  std::ostream& out_;
  std::ostream& err_;
  std::vector<Command> commands_;
  std::vector<std::string> lastOutput_;
};

}  // namespace kvr::batch
