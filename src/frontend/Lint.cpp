// Reads the set and the files with an ear for what their lines define, then puts each record of the files
// asked for through the checks.
#include "frontend/Lint.h"

#include <algorithm>

#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/modNewParser.h"
#include "core/modTools.h"
#include "frontend/LintChecks.h"
#include "library/DataFileReader.h"

namespace kvr::Lint {
namespace {

// A record of a file, as its line defines it.
struct Definition {
  std::size_t line = 0;
  ItemType type = kNoType;  // 0 for a modifier
  std::string fullName;     // "" for tags that a command gives
  std::string tags;
};

// What is remembered of one file while it is read.
class Listener : public DataFileObserver {
 public:
  explicit Listener(const File& file) : file_(file) {}

  void Note(std::size_t line, std::string_view what, std::string_view found) override {
    findings.push_back({file_.shownName, line, std::string(what), std::string(found)});
  }
  void Item(std::size_t line, const clsSystemItem& item) override {
    definitions_.push_back({line, item.ItemType, item.FullName(), item.TagList()});
  }
  void Mod(std::size_t line, const ModRecord& mod) override {
    definitions_.push_back({line, kNoType, mod.FullName(), mod.TagList()});
  }
  void Command(std::size_t line, std::string_view command) override;

  const std::vector<Definition>& Definitions() const { return definitions_; }
  const File& Asked() const { return file_; }
  std::vector<Finding> findings;

 private:
  const File& file_;
  std::vector<Definition> definitions_;
};

// "#mergetags in SK:Foo with needs(...)": the tags are checked like those of the trait.
void Listener::Command(std::size_t line, std::string_view command) {
  constexpr std::string_view kWith = " with ";
  const bool edits = StartsWithNoCase(command, "#mergetags ") || StartsWithNoCase(command, "#replacetags ");
  const std::size_t with = modNewParser::FindWordTopLevel(command, kWith, modNewParser::kNames);
  if (!edits || with == npos) return;
  const std::size_t target = FindNoCase(command, " in ");
  std::string_view name = target == npos ? "" : Trim(command.substr(target + 4, with - target - 4));
  name = modTools::StripQuotesAndBraces(name);
  if (StartsWithNoCase(name, "all ")) name = Trim(name.substr(4));
  const ItemType type = modPrefixes::TypeFromPrefix(modPrefixes::ExtractPrefix(name).prefix);
  const std::string_view tags = modTools::StripQuotesAndBraces(command.substr(with + kWith.size()));
  definitions_.push_back({line, type, "", std::string(tags)});
}

void ReadFile(KVRSystem& system, const std::string& path, Listener* listener) {
  clsFileReader file;
  if (!file.FileOpen(path)) {
    if (listener) listener->Note(0, "The file cannot be read", file.Error());
    return;
  }
  DataFileReader(system, file, std::string(Files::SplitPath(path).name), listener).Read();
}

// --- All checks of one file

// A trait that a later command deleted needs nothing and brings nothing.
void CheckDefinition(const KVRSystem& system, const KnownNames& names, Circles& circles,
                     const Definition& definition, const Complain& complain) {
  if (definition.type == kNoType || definition.fullName.empty())
    return CheckTags(definition.type, definition.tags, names, complain);
  const clsSystemItem* item = system.FindItem(definition.fullName, definition.type);
  if (!item) return;
  CheckTags(definition.type, definition.tags, names, complain);
  if (const std::string way = circles.WayBack(*item); !way.empty())
    complain("A trait that leads back to itself", way);
}

void CheckFile(const KVRSystem& system, const KnownNames& names, Circles& circles, Listener& listener) {
  for (const Definition& definition : listener.Definitions()) {
    CheckDefinition(system, names, circles, definition, [&](std::string_view what, std::string_view found) {
      listener.Note(definition.line, what, found);
    });
  }
  std::ranges::stable_sort(listener.findings, {}, &Finding::line);
}

std::vector<Listener> Listen(const std::vector<File>& files) {
  return {files.begin(), files.end()};
}

}  // namespace

std::string Text(const Finding& finding) {
  std::string text = finding.file;
  if (finding.line > 0) text += ":" + std::to_string(finding.line);
  text += ": " + finding.what;
  if (!finding.found.empty()) text += " (" + finding.found + ")";
  return text;
}

std::vector<Finding> Run(KVRSystem& system, std::string_view dataSet, const std::vector<File>& files) {
  const TraceScope trace("Lint:Run");
  system.ClearLibrary();
  std::vector<Listener> listeners = Listen(files);
  std::vector<bool> read(files.size(), false);
  const auto readFile = [&](const std::string& path) {
    const auto asked = std::ranges::find(files, path, &File::path);
    const auto index = static_cast<std::size_t>(asked - files.begin());
    if (asked == files.end()) return ReadFile(system, path, nullptr);
    if (!read[index]) ReadFile(system, path, &listeners[index]);
    read[index] = true;
  };
  if (!dataSet.empty())
    for (const std::string& file : system.ReadDataSetFiles(dataSet)) readFile(system.FindDataFile(file));
  for (const File& file : files) readFile(file.path);
  const KnownNames names(system);
  Circles circles(system);
  std::vector<Finding> findings;
  for (Listener& listener : listeners) {
    CheckFile(system, names, circles, listener);
    std::ranges::move(listener.findings, std::back_inserter(findings));
  }
  return findings;
}

}  // namespace kvr::Lint
