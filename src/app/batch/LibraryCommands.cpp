// Commands about the library: data sets, data files, and what they define.
#include <fmt/format.h>

#include "batch/BatchRunner.h"
#include "character/modNeeds.h"
#include "core/Files.h"
#include "core/Text.h"

namespace kvr::batch {

namespace {

void PrintLoaded(BatchRunner& runner) {
  runner.Print(fmt::format("loaded {} traits", runner.App().TheSystem.Items.Count()));
}

std::string WithExtension(std::string path, std::string_view extension) {
  return Files::LowerExtension(path).empty() ? path.append(extension) : path;
}

void DataSet(BatchRunner& runner, Arguments& arguments) {
  KVRSystem& system = runner.App().TheSystem;
  const std::string path = WithExtension(BatchRunner::PathArgument(arguments.Rest()), ".kds");
  if (!Files::FileExists(system.FindDataSet(path))) {
    throw CommandFailure(fmt::format("there is no data set \"{}\"", arguments.Rest()));
  }
  if (!system.LoadDataSet(path)) throw CommandFailure(fmt::format("\"{}\" was not loaded", arguments.Rest()));
  PrintLoaded(runner);
}

void DataFile(BatchRunner& runner, Arguments& arguments) {
  const std::string path = WithExtension(BatchRunner::PathArgument(arguments.Rest()), ".kdf");
  std::string programVersion;
  if (!runner.App().TheSystem.LoadDataFile(path, programVersion)) {
    throw CommandFailure(fmt::format("there is no data file \"{}\"", arguments.Rest()));
  }
  PrintLoaded(runner);
}

ItemType TypeArgument(std::string_view word) {
  if (word.size() == 1 && word[0] >= '1' && word[0] <= '9') return static_cast<ItemType>(word[0] - '0');
  ItemType type = modPrefixes::TypeFromTypeWord(word);
  if (type == kNoType) type = modPrefixes::TypeFromCollectionName(word);
  if (type == kNoType) throw CommandFailure(fmt::format("\"{}\" is no kind of trait", word));
  return type;
}

constexpr std::string_view kAllowedSwitch = "--allowed";

// Takes the switch from either end of what is left of the line.
bool TakeAllowedSwitch(std::string_view& text) {
  const auto isBlank = [](std::string_view rest) { return rest.empty() || rest.front() == ' '; };
  if (text.starts_with(kAllowedSwitch) && isBlank(text.substr(kAllowedSwitch.size()))) {
    text = Trim(text.substr(kAllowedSwitch.size()));
    return true;
  }
  const std::string_view atEnd = " --allowed";
  if (!text.ends_with(atEnd)) return false;
  text = Trim(text.substr(0, text.size() - atEnd.size()));
  return true;
}

void Library(BatchRunner& runner, Arguments& arguments) {
  const ItemType type = TypeArgument(arguments.Word("a kind of trait"));
  std::string_view wanted = arguments.Rest();
  KVRCharacter* character = TakeAllowedSwitch(wanted) ? &runner.Character() : nullptr;
  for (const clsSystemItem& item : runner.App().TheSystem.Items) {
    if (item.ItemType != type) continue;
    const std::string name = item.FullName();
    if (!wanted.empty() && !ContainsNoCase(name, wanted)) continue;
    if (!character || modNeeds::MayBeTaken(*character, item)) {
      runner.Print(name);
    } else {
      runner.Print(
          fmt::format("{}\tnot allowed\t{}", name, fmt::join(modNeeds::WhyNot(*character, item), ", and ")));
    }
  }
}

void List(BatchRunner& runner, Arguments& arguments) {
  const ItemType type = TypeArgument(arguments.Word("a kind of trait"));
  for (clsItem& item : runner.Character().ItemsByType[static_cast<std::size_t>(type)]) {
    runner.Print(fmt::format("{}\t{}\t{}\t{}", item.KeyText(), item.FullName(), item.TagItem("level"),
                             item.TagItem("points")));
  }
}

void Flags(BatchRunner& runner, Arguments&) {
  KVRSystem& system = runner.App().TheSystem;
  std::vector<std::string> files;
  for (const KVRSystem::DataFileEntry& entry : system.DataFiles) files.push_back(entry.file);
  std::string notices;
  system.CheckDataFileFlags(files, notices);
  std::string_view rest = notices;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    runner.Print(line);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

constexpr Command kCommands[] = {
    {"dataset", "NAME", "loads a data set", DataSet},
    {"datafile", "NAME", "loads one data file into the library", DataFile},
    {"library", "TYPE [TEXT] [--allowed]",
     "lists library traits of a type whose name holds TEXT; --allowed marks those that can't be taken now",
     Library},
    {"list", "TYPE", "lists the character's traits of a type: key, name, level, points", List},
    {"flags", "", "prints the notices about the loaded data files", Flags},
};

}  // namespace

std::span<const Command> LibraryCommands() {
  return kCommands;
}

}  // namespace kvr::batch
