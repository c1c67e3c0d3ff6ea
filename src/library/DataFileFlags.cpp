// The notice check: reads the heads of data files for what they say about each other and about themselves.
#include <optional>
#include <set>

#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/modNewParser.h"
#include "core/modTools.h"
#include "library/KVRSystem.h"
#include "library/LogicalLines.h"

namespace kvr {

namespace {

constexpr std::string_view kRule = "------------------------------";

struct FileFlags {
  std::string name;       // bare, lower-cased; what lists of other files are compared with
  std::string shownName;  // as the set names it
  bool missing = false;
  bool incomplete = false;
  std::optional<std::string> setting;                         // of a world book
  std::vector<std::string> taboo, requiredBefore, loadAfter;  // as written
  bool afterAll = false;
};

std::string BareName(std::string_view path) {
  return LCase(Files::SplitPath(path).name);
}

bool Names(std::string_view entry, const FileFlags& file) {
  return BareName(entry) == file.name;
}

std::vector<std::string> FileList(std::string_view value) {
  std::vector<std::string> names;
  for (std::string_view entry : modNewParser::ParseSplitChars(value, ",", 9)) {
    entry = modTools::StripQuotesAndBraces(entry);
    if (!entry.empty()) names.emplace_back(entry);
  }
  return names;
}

void ReadFlag(std::string_view line, FileFlags& flags) {
  const std::size_t equals = line.find('=');
  const std::string_view value = equals == npos ? "" : Trim(line.substr(equals + 1));
  if (StartsWithNoCase(line, "incomplete")) {
    flags.incomplete = EqualNoCase(value, "yes");
  } else if (StartsWithNoCase(line, "worldbook")) {
    flags.setting.reset();
    if (!EqualNoCase(value, "no")) flags.setting = value;
  } else if (StartsWithNoCase(line, "taboo")) {
    flags.taboo = FileList(value);
  } else if (StartsWithNoCase(line, "requires")) {
    flags.requiredBefore = FileList(value);
  } else if (StartsWithNoCase(line, "loadafter")) {
    flags.loadAfter = FileList(value);
    flags.afterAll =
        std::erase_if(flags.loadAfter, [](const auto& name) { return EqualNoCase(name, "all"); }) > 0;
  }
}

FileFlags ReadFlags(const KVRSystem& system, const std::string& entry) {
  FileFlags flags;
  flags.name = BareName(entry);
  flags.shownName = entry;
  const std::string path = system.FindDataFile(entry);
  clsFileReader reader;
  flags.missing = path.empty() || !reader.FileOpen(path);
  LogicalLines lines(reader);
  while (!lines.AtEnd()) {
    const std::string_view line = lines.NextAlone();
    if (line.starts_with('[')) break;
    ReadFlag(line, flags);
  }
  return flags;
}

class Notices {
 public:
  explicit Notices(const std::vector<FileFlags>& files) : files_(files) {}

  std::string Text() {
    AddBlock(
        "MISSING FILES",
        "Some of the files you want to load appear to be missing, or are not actual files. These files are:",
        Missing());
    AddBlock("TABOO",
             "Some of the files you are loading are marked as Taboo to some of the other files you are "
             "loading. This "
             "means that they have been found incompatible with each other. These files are:",
             TabooPairs());
    AddBlock("REQUIRES",
             "Some of the files you are loading require other files to be loaded BEFORE them in the load "
             "order. These "
             "files are:",
             Requirements());
    AddBlock("LOADAFTER",
             "Some of the files you are loading request that they be loaded AFTER some other files in the "
             "load order. "
             "These files are:",
             LaterFiles());
    AddBlock("WORLD BOOKS",
             "The following files are marked as World Books. In a World Book, some traits may be different "
             "from and/or "
             "incompatiable with the versions of those traits found in the Basic Set or other source books, "
             "and loading "
             "files from multiple world book settings together can result in unexpected behavoir of some "
             "traits. You "
             "should remove from your data set files that do not share the same setting tag.",
             WorldBooks());
    AddBlock(
        "INCOMPLETE",
        "The following files are marked as Incomplete. An 'Incomplete' file does not contain all the data "
        "from the "
        "related source material, and you may find the trait you are looking for is missing or incomplete.",
        Incomplete());
    return text_;
  }

  std::vector<std::string> Incomplete() const {
    std::vector<std::string> entries;
    for (const FileFlags& file : files_) {
      if (file.incomplete) entries.push_back(file.shownName);
    }
    return entries;
  }

 private:
  void AddBlock(std::string_view title, std::string_view explanation,
                const std::vector<std::string>& entries) {
    if (entries.empty()) return;
    text_.append(kRule).append("\r\n").append(title).append("\r\n").append(kRule).append("\r\n\r\n");
    text_.append(explanation).append("\r\n\r\n");
    for (const std::string& entry : entries) text_.append(entry).append("\r\n");
    text_.append("\r\n");
  }

  std::vector<std::string> Missing() const {
    std::vector<std::string> entries;
    for (const FileFlags& file : files_) {
      if (file.missing) entries.push_back(file.shownName);
    }
    return entries;
  }

  std::vector<std::string> TabooPairs() const {
    std::vector<std::string> entries;
    for (const FileFlags& file : files_) {
      for (const FileFlags& other : files_) {
        const bool named = std::any_of(file.taboo.begin(), file.taboo.end(),
                                       [&](const std::string& name) { return Names(name, other); });
        if (named && &file != &other) entries.push_back(file.shownName + " <-> " + other.shownName);
      }
    }
    return entries;
  }

  std::vector<std::string> Requirements() const {
    std::vector<std::string> entries;
    for (auto file = files_.begin(); file != files_.end(); ++file) {
      for (const std::string& name : file->requiredBefore) {
        const bool before =
            std::any_of(files_.begin(), file, [&](const FileFlags& other) { return Names(name, other); });
        if (!before) entries.push_back(file->shownName + " -> requires -> " + name);
      }
    }
    return entries;
  }

  std::vector<std::string> LaterFiles() const {
    std::vector<std::string> entries;
    for (auto file = files_.begin(); file != files_.end(); ++file) {
      for (const std::string& name : file->loadAfter) {
        const bool behind =
            std::any_of(file + 1, files_.end(), [&](const FileFlags& other) { return Names(name, other); });
        if (behind) entries.push_back(file->shownName + " -> after -> " + name);
      }
      // Files that all want to come last satisfy each other.
      const bool regularBehind =
          std::any_of(file + 1, files_.end(), [](const FileFlags& other) { return !other.afterAll; });
      if (file->afterAll && regularBehind)
        entries.push_back(file->shownName + " -> after -> ALL regular data files");
    }
    return entries;
  }

  std::vector<std::string> WorldBooks() const {
    std::vector<std::string> entries;
    std::set<std::string> settings;
    for (const FileFlags& file : files_) {
      if (!file.setting) continue;
      settings.insert(LCase(*file.setting));
      entries.push_back(file.shownName + " [Setting: " + *file.setting + "]");
    }
    return settings.size() > 1 ? entries : std::vector<std::string>{};
  }

  const std::vector<FileFlags>& files_;
  std::string text_;
};

}  // namespace

bool KVRSystem::CheckDataFileFlags(const std::vector<std::string>& files, std::string& notices) {
  TraceScope trace("KVRSystem:CheckDataFileFlags");
  std::vector<FileFlags> flags;
  for (const std::string& entry : files) flags.push_back(ReadFlags(*this, entry));
  Notices check(flags);
  notices = check.Text();
  if (notices.empty()) return true;
  if (const std::vector<std::string> incomplete = check.Incomplete(); !incomplete.empty()) {
    env_.log.LogLine("The following files are marked as Incomplete.");
    for (const std::string& file : incomplete) env_.log.LogLine("->" + file);
  }
  MessageRequest request;
  request.Title = "Flagged Files";
  request.Heading = "Notices have been generated, and are shown below.";
  request.Text = notices;
  request.ClosingLine = "Click OK to continue loading these files anyway, or click Cancel to make changes.";
  request.ShowCancel = true;
  request.ConfirmOkay = true;
  request.CheckBoxText = "I want to load these files anyway.";
  return !env_.prompts.ShowMessage(request);
}

}  // namespace kvr
