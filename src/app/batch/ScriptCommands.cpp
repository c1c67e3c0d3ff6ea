// Commands about the script itself: answers, expectations, the log.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "core/Text.h"

namespace kvr::batch {

namespace {

void QueueAnswer(BatchRunner& runner, Arguments& arguments) {
  runner.Prompts().QueueAnswer(std::string(arguments.Rest()));
}

void Expect(BatchRunner& runner, Arguments& arguments) {
  const std::string output = runner.LastOutput();
  if (output != arguments.Rest()) {
    throw CommandFailure(fmt::format("expected \"{}\", got \"{}\"", arguments.Rest(), output));
  }
}

void Log(BatchRunner& runner, Arguments& arguments) {
  ActivityLog& log = runner.App().Env().log;
  if (EqualNoCase(arguments.Rest(), "clear")) {
    log.Clear();
    return;
  }
  const bool redOnly = EqualNoCase(arguments.Rest(), "red");
  for (const LogEntry& entry : log.Lines()) {
    if (!redOnly || entry.level == LogLevel::Red) runner.Print(entry.text);
  }
}

constexpr Command kCommands[] = {
    {"answer", "VALUE", "queues an answer for the next prompt", QueueAnswer},
    {"expect", "TEXT", "fails unless the last command printed TEXT (lines joined by \" | \")", Expect},
    {"log", "[red|clear]", "prints the activity log, its red lines, or empties it", Log},
};

}  // namespace

std::span<const Command> ScriptCommands() {
  return kCommands;
}

}  // namespace kvr::batch
