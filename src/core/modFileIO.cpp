// The lists kept in kvr.ini beside the options, the user's folders, and the two files of the program folder.
#include "core/modFileIO.h"

#include "core/Text.h"

namespace kvr::modFileIO {

namespace {

using FolderMember = std::string kvr::Folders::*;
constexpr std::pair<const char*, FolderMember> kUserFolders[] = {
    {"BaseMyDocsFolder", &kvr::Folders::BaseMyDocsFolder},
    {"FolderDataFilesUSER", &kvr::Folders::FolderDataFilesUSER},
    {"FolderDataSets", &kvr::Folders::FolderDataSets},
    {"FolderCharacters", &kvr::Folders::FolderCharacters},
    {"FolderSheets", &kvr::Folders::FolderSheets},
};

using DebugMember = std::int32_t kvr::Config::*;
constexpr std::pair<const char*, DebugMember> kDebugOptions[] = {
    {"Debug", &kvr::Config::Debug},
    {"DebugEchoToRun", &kvr::Config::DebugEchoToRun},
    {"Logging", &kvr::Config::Logging},
};

std::string NumberedKey(const char* word, std::size_t number) {
  return word + std::to_string(number);
}

// A character's name as a key: without the marks that the file would read otherwise.
std::string NameAsKey(std::string_view name) {
  std::string key(Trim(name));
  for (char& c : key) {
    if (std::string_view("=[];\r\n").find(c) != npos || c == '\0') c = '_';
  }
  return key.empty() ? "<no name given>" : key;
}

}  // namespace

void IniReadDebugOptions(Environment& env) {
  UseSettings(env, "Debug");
  for (const auto& [key, member] : kDebugOptions)
    env.Config.*member = env.ini.IniGetInt(key, env.Config.*member);
}

void IniWriteDebugOptions(Environment& env) {
  UseSettings(env, "Debug");
  for (const auto& [key, member] : kDebugOptions) env.ini.IniPutInt(key, env.Config.*member);
}

void IniReadUserFolders(Environment& env) {
  UseSettings(env, "UserFolders");
  for (const auto& [key, member] : kUserFolders) {
    std::string folder = env.ini.IniGetText(key, "");
    if (folder.empty()) continue;
    if (folder.back() != '\\') folder += '\\';
    // The other folders lie in the documents folder unless they are given themselves.
    if (member == &kvr::Folders::BaseMyDocsFolder)
      env.Folders.Set(std::string(env.Folders.BaseProgramFolder), std::string(env.Folders.BaseAppDataFolder),
                      folder);
    env.Folders.*member = std::move(folder);
  }
}

void IniWriteUserFolders(Environment& env) {
  UseSettings(env, "UserFolders");
  for (const auto& [key, member] : kUserFolders) env.ini.IniPutString(key, env.Folders.*member);
}

void IniReadMRUList(Environment& env) {
  const TraceScope trace("modFileIO:IniReadMRUList");
  UseSettings(env, "MRUFileList");
  for (std::size_t i = 0; i < env.Config.MRUFiles.size(); ++i)
    env.Config.MRUFiles[i] = env.ini.IniGetText(NumberedKey("MRUFile", i + 1), "");
  env.events.RecentFilesChanged();
}

void IniWriteMRUList(Environment& env) {
  const TraceScope trace("modFileIO:IniWriteMRUList");
  UseSettings(env, "MRUFileList");
  for (std::size_t i = 0; i < env.Config.MRUFiles.size(); ++i)
    env.ini.IniPutString(NumberedKey("MRUFile", i + 1), env.Config.MRUFiles[i]);
}

void InsertMRUItem(Environment& env, std::string_view file) {
  auto& files = env.Config.MRUFiles;
  auto place = std::find(files.begin(), files.end(), file);
  if (place == files.end()) --place;
  *place = file;
  std::rotate(files.begin(), place, place + 1);
  env.events.RecentFilesChanged();
}

std::vector<std::pair<std::string, std::string>> IniReadKVRLinks(Environment& env) {
  env.ini.IniSetContext("Links", env.Folders.BaseProgramFolder + "kvrlinks.ini");
  return env.ini.IniGetSection();
}

std::string IniGetAlias(Environment& env, std::string_view name) {
  env.ini.IniSetContext("Data", env.Folders.BaseProgramFolder + "kvraliaslist.ini");
  std::string alias = env.ini.IniGetText(name, "");
  if (alias.empty() && !name.starts_with('%')) alias = env.ini.IniGetText("%sys%\\" + std::string(name), "");
  return alias;
}

std::vector<std::string> IniReadDataFiles(Environment& env) {
  UseSettings(env, "DataFileList");
  std::vector<std::string> files;
  for (auto& [key, file] : env.ini.IniGetSection()) files.push_back(std::move(file));
  return files;
}

void IniWriteDataFiles(Environment& env, const std::vector<std::string>& files) {
  UseSettings(env, "DataFileList");
  env.ini.IniDeleteSection();
  for (std::size_t i = 0; i < files.size(); ++i) env.ini.IniAddString(NumberedKey("File", i + 1), files[i]);
}

std::vector<TempFile> IniReadTempFiles(Environment& env) {
  UseSettings(env, "TempFiles");
  return env.ini.IniGetSection();
}

void IniClearTempFiles(Environment& env) {
  IniWriteTempFiles(env, {});
}

void IniWriteTempFiles(Environment& env, const std::vector<TempFile>& files) {
  std::vector<TempFile> entries;
  for (const auto& [name, path] : files) entries.emplace_back(NameAsKey(name), path);
  // Backups are recorded with every command; the disk is touched only when the list is another one.
  if (entries == IniReadTempFiles(env)) return;
  env.ini.IniDeleteSection();
  for (const auto& [name, path] : entries) env.ini.IniAddString(name, path);
  env.ini.Flush();
}

bool WriteAllSettings(Environment& env) {
  IniWriteUIOptions(env);
  IniWriteMRUList(env);
  IniWriteDebugOptions(env);
  IniWriteUserFolders(env);
  return env.ini.Flush();
}

}  // namespace kvr::modFileIO
