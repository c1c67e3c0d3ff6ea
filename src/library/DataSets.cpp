// Data sets: which files make up the library, in which order; repairing the list, loading, saving it.
#include <fmt/format.h>

#include <unordered_set>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/clsFileWriter.h"
#include "core/modFileIO.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/KVRSystem.h"

namespace kvr {

namespace {

constexpr std::string_view kDeleted = "<deleted>";
constexpr std::string_view kNoFileName = "<NoFileNameProvided>";

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// An entry as it stands in a set, without its quotes; an entry that is only a folder has no file name.
std::string EntryOf(std::string_view text) {
  const std::string_view entry = text.starts_with('"') ? Trim(modTools::StripQuotes(text)) : text;
  if (!entry.empty() && Files::SplitPath(entry).name.empty()) return std::string(kNoFileName);
  return std::string(entry);
}

// "%sys%\" is where a bare name is looked for, so it need not be written.
std::string StoredForm(const std::string& entry) {
  const auto [folder, name] = Files::SplitPath(entry);
  return EqualNoCase(folder, "%sys%\\") ? std::string(name) : entry;
}

}  // namespace

std::string KVRSystem::FindDataSet(std::string_view path) const {
  const Folders& folders = env_.Folders;
  const std::string own = folders.ExpandPath(kDataSets, kUserFolder, path);
  if (Files::FileExists(own)) return own;
  if (!Files::SplitPath(path).folder.empty()) return own;
  const std::string shipped = folders.ExpandPath(kShippedDataSets, kSystemFolder, path);
  if (Files::FileExists(shipped)) return shipped;
  const std::string beside = folders.BaseProgramFolder + "data sets\\" + std::string(path);
  return Files::FileExists(beside) ? beside : own;
}

std::string KVRSystem::FindDataFile(std::string_view fileName) const {
  for (const int mode : {kSystemFolder, kUserFolder}) {
    const std::string path = env_.Folders.ExpandPath(kDataFiles, mode, fileName);
    if (Files::FileExists(path)) return path;
  }
  return "";
}

std::vector<std::string> KVRSystem::ReadDataSetFiles(std::string_view path) const {
  std::vector<std::string> files;
  clsFileReader reader;
  reader.FileOpen(FindDataSet(path));
  while (!reader.FileEOF()) {
    for (const modTags::TagItem& tag : modTags::ReturnTagItems(reader.FileNextLine())) {
      if (tag.name != "files") continue;
      files.clear();
      for (std::string_view entry : modNewParser::ParseSplitChars(tag.value, ",", 3)) {
        if (!entry.empty()) files.push_back(EntryOf(entry));
      }
    }
  }
  std::erase(files, "");
  return files;
}

Files::Outcome KVRSystem::WriteDataSetFile(std::string_view path, const std::vector<std::string>& files) {
  std::string line = "files(";
  for (const std::string& entry : files) {
    if (line.size() > 6) line += ", ";
    line += '"' + StoredForm(entry) + '"';
  }
  line += ')';
  if (!IsAscii(line)) line.insert(0, "\xEF\xBB\xBF");
  clsFileWriter writer;
  writer.FileOpen(path);
  writer.FilePrint(line);
  return writer.FileClose();
}

bool KVRSystem::SaveDataSet() {
  if (!dataSetChanged_) return true;
  std::vector<std::string> files;
  for (const DataFileEntry& entry : DataFiles) files.push_back(entry.file);
  const Files::Outcome outcome = WriteDataSetFile(DataSetPath + DataSet, files);
  if (!outcome) env_.log.LogRed("Data Set '" + DataSet + "' could not be saved: " + outcome.error);
  dataSetChanged_ = !outcome;
  return static_cast<bool>(outcome);
}

// The full path of the set to load; "" when the user cancelled.
std::string KVRSystem::AskForDataSet(std::string_view path) {
  const std::string found = FindDataSet(path);
  if (Files::FileExists(found)) return found;
  const std::string name(Files::SplitPath(found).name);
  const Answer answer = env_.prompts.MessageBox("The Data Set that I'm supposed to use (" + name +
                                                    ") doesn't seem to exist. Please create it, or select "
                                                    "another, from the next dialog box. (Press Cancel to "
                                                    "skip loading the Data Set.)",
                                                "Missing Data Set", Buttons::OkCancel);
  if (answer != Answer::Ok) return "";
  const std::string chosen = env_.prompts.ChooseDataSet(found);
  if (chosen.empty()) return "";
  const std::string chosenPath = FindDataSet(chosen);
  if (Files::FileExists(chosenPath)) return chosenPath;
  env_.log.LogRed("There is no data set '" + chosen + "'.");
  return "";
}

// Replaces files that have moved and drops those that are gone for good.
std::vector<std::string> KVRSystem::RepairDataSetFiles(std::vector<std::string> files) {
  for (std::string& entry : files) {
    if (!FindDataFile(entry).empty()) continue;
    const std::string alias = modFileIO::IniGetAlias(env_, entry);
    if (alias.empty()) continue;
    if (EqualNoCase(alias, "deleted")) {
      env_.log.LogRed("File is no longer used by KVR, and is no longer available:");
      env_.log.LogRed(entry);
      env_.log.LogRed("More than likely, data from this file is now included in the Basic Set data file.");
      entry = kDeleted;
    } else {
      env_.log.LogRed("File has been moved from:");
      env_.log.LogRed(entry);
      env_.log.LogRed("And is now found here:");
      env_.log.LogRed(alias);
      entry = alias;
    }
    dataSetChanged_ = true;
  }
  std::erase(files, kDeleted);
  return files;
}

// The path at which the user found a missing file; "" to skip it.
std::string KVRSystem::AskForDataFile(const std::string& entry) {
  const std::string name(Files::SplitPath(entry).name);
  for (;;) {
    const Answer answer = env_.prompts.MessageBox("The Data File that I'm supposed to load now (" + name +
                                                      ") doesn't seem to exist. Please select the folder "
                                                      "where it can be found from the next dialog box. "
                                                      "(Press Cancel to skip loading this file.)",
                                                  "Data File Not Found", Buttons::OkCancel);
    if (answer != Answer::Ok) break;
    std::string folder = env_.prompts.BrowseForFolder("Find Folder Containing: " + name);
    if (folder.empty()) continue;
    if (!folder.ends_with('\\')) folder += '\\';
    if (Files::FileExists(folder + name)) return folder + name;
  }
  env_.log.LogLine("Skipping file (" + name + ")");
  return "";
}

// Loads the files in order. The result pairs each file with the program version that it asks for.
std::vector<std::pair<std::string, std::string>> KVRSystem::LoadDataSetFiles() {
  std::vector<std::pair<std::string, std::string>> programVersions;
  for (DataFileEntry& entry : DataFiles) {
    if (entry.path.empty()) {
      entry.path = AskForDataFile(entry.file);
      if (entry.path.empty()) continue;
      entry.file = env_.Folders.AliasPath(kDataFiles, entry.path);
      dataSetChanged_ = true;
    }
    std::string programVersion;
    if (LoadDataFile(entry.path, programVersion)) programVersions.emplace_back(entry.file, programVersion);
  }
  return programVersions;
}

void KVRSystem::LoadDataSetCatCleanup() {
  TellStage("Cleaning up categories...");
  filedLists_.Clear();
  std::unordered_set<std::string> used;
  for (const clsSystemItem& item : Items) {
    if (item.ItemType == kStats) continue;
    modNewParser::ForEachToken(item.Category(), ',', modNewParser::kPlain, [&](std::string_view name) {
      used.insert(std::to_string(item.ItemType) + LCase(Trim(name)));
    });
  }
  std::vector<std::string> unused;
  for (const clsCategory& cat : Cats) {
    if (!used.contains(std::to_string(cat.ItemType) + LCase(cat.Name))) unused.push_back(Cats.KeyOf(cat));
  }
  for (const std::string& key : unused) {
    env_.log.LogIndented("Deleting category: " + Cats.Item(key)->Name);
    Cats.Remove(key);
  }
}

void KVRSystem::TellOfNewerVersions(const std::vector<std::pair<std::string, std::string>>& programVersions) {
  std::string newer;
  for (const auto& [file, version] : programVersions) {
    if (version.empty() || CompareVersions(version, ProgramVersion()) <= 0) continue;
    newer += (newer.empty() ? "" : "\r\n") + std::string(Files::SplitPath(file).name) + " (specifies v." +
             version + ")";
  }
  if (newer.empty()) return;
  env_.prompts.MessageBox(
      fmt::format(
          "The following files all specify a version of KVR that is more recent than your own (which is "
          "v.{}):\r\n\r\n{}\r\n\r\nThese files may make use of features or options that are not available in "
          "this version of KVR. You should select 'Check for Update!' from the 'Help' menu and download the "
          "most recent version of KVR.",
          ProgramVersion(), newer),
      "", Buttons::Ok);
}

void KVRSystem::TellStage(std::string_view text) {
  env_.log.LogIndented(text);
  env_.events.StatusText(text);
}

bool KVRSystem::LoadDataSet(std::string_view path) {
  TraceScope trace("KVRSystem:LoadDataSet");
  const std::string setPath = AskForDataSet(path);
  if (setPath.empty()) {
    env_.log.LogLine("No Data Set was loaded.");
    return false;
  }
  // The library that stands is kept where there is nothing to put in its place.
  if (std::string why; !Files::ReadWhole(setPath, &why)) {
    env_.log.LogRed("Data Set '" + setPath + "' could not be read: " + why);
    return false;
  }
  const auto [folder, name] = Files::SplitPath(setPath);
  const TimerScope timer;
  TellStage("Loading Data File Set: " + std::string(name));
  static_cast<DataSetOptions&>(env_.Config) = env_.UserOptions;
  dataSetChanged_ = false;
  DataSet = name;
  DataSetPath = folder;
  DataFiles.clear();
  for (const std::string& file : RepairDataSetFiles(ReadDataSetFiles(setPath)))
    DataFiles.push_back({file, FindDataFile(file)});

  std::vector<std::pair<std::string, std::string>> programVersions;
  UseFastFile = env_.Config.KeepFastFiles != 0 && LoadFastFileIfValid();
  if (UseFastFile) {
    env_.log.LogIndented(fmt::format("Data Set FastLoad took {} seconds", NumberText(timer.Seconds())));
  } else {
    ClearLibrary();
    programVersions = LoadDataSetFiles();
    RebuildItemsByType();
    LoadDataSetCatCleanup();
    env_.log.LogIndented(fmt::format("Data Set load took {} seconds", NumberText(timer.Seconds())));
  }
  SaveDataSet();
  BuildDisplayStrings();
  if (!UseFastFile) {
    BuildIcons();
    if (env_.Config.KeepFastFiles != 0) BuildFastFile();
  }
  TellOfNewerVersions(programVersions);
  return true;
}

}  // namespace kvr
