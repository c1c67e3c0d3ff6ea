// Where every kind of file has its place, and paths with alias words.
#include "core/Folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "core/Files.h"
#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/modTools.h"

namespace kvr {

namespace {

std::string AsFolder(std::string_view path) {
  std::string folder(path);
  if (!folder.empty() && folder.back() != '\\') folder += '\\';
  return folder;
}

struct Alias {
  std::string_view word, folder;
};

// An absolute path of the environment as a folder, else "".
std::string FolderOfVariable(const char* name) {
  const char* value = std::getenv(name);
  return value && *value == '/' ? AsFolder(Files::PathText(value)) : std::string();
}

std::string HomeFolder() {
  std::string home = FolderOfVariable("HOME");
  if (!home.empty()) return home;
  const passwd* user = ::getpwuid(::getuid());
  return user && user->pw_dir ? AsFolder(Files::PathText(user->pw_dir)) : "\\";
}

// The documents folder that the desktop's user-dirs.dirs names, "" if it names none: a line of the form
// XDG_DOCUMENTS_DIR="$HOME/Papers".
std::string DesktopDocumentsFolder(const std::string& home) {
  std::string config = FolderOfVariable("XDG_CONFIG_HOME");
  if (config.empty()) config = home + ".config\\";
  clsFileReader reader;
  reader.FileOpen(config + "user-dirs.dirs", 0, TextEncoding::AlwaysUtf8);
  while (!reader.FileEOF()) {
    const auto [key, value] = modTools::SplitKeyValue(reader.FileNextLine());
    if (key != "XDG_DOCUMENTS_DIR") continue;
    const std::string_view path = modTools::StripQuotes(value);
    constexpr std::string_view kHome = "$HOME/";
    if (path.starts_with(kHome)) return AsFolder(home + Files::PathText(path.substr(kHome.size())));
    if (path.starts_with('/')) return AsFolder(Files::PathText(path));
  }
  return {};
}

}  // namespace

void Folders::Set(std::string_view programFolder, std::string_view appDataFolder,
                  std::string_view documentsFolder) {
  BaseProgramFolder = AsFolder(programFolder);
  BaseAppDataFolder = AsFolder(appDataFolder);
  BaseMyDocsFolder = AsFolder(documentsFolder);
  FolderDataFilesUSER = BaseMyDocsFolder + "data files\\";
  FolderDataSets = BaseMyDocsFolder + "data sets\\";
  FolderCharacters = BaseMyDocsFolder + "characters\\";
  FolderSheets = BaseMyDocsFolder + "sheets\\";
}

std::string Folders::CreateUserFolders() const {
  std::string problems;
  for (const std::string& folder : {BaseAppDataFolder, BaseAppDataFolder + "data sets\\", BaseMyDocsFolder,
                                    FolderDataFilesUSER, FolderDataSets, FolderCharacters, FolderSheets}) {
    if (!Files::FolderExists(folder, true)) problems += "Cannot make the folder " + folder + "\n";
  }
  return problems;
}

Folders::KindFolders Folders::PathKindFolders(int kind) const {
  switch (kind) {
    case kGeneral:
      return {BaseAppDataFolder, ""};
    case kShippedDataSets:
      return {BaseAppDataFolder + "data sets\\", ""};
    case kDataFiles:
      return {SystemDataFilesFolder(), FolderDataFilesUSER};
    case kDataSets:
      return {"", FolderDataSets};
    case kCharacters:
      return {"", BaseMyDocsFolder + "characters\\"};
    case kSheets:
      return {"", BaseMyDocsFolder + "sheets\\"};
    default:
      return {"", BaseMyDocsFolder};
  }
}

std::string Folders::ExpandPath(int kind, int mode, std::string_view path) const {
  const KindFolders folders = PathKindFolders(kind);
  const auto [givenFolder, name] = Files::SplitPath(path);
  std::string folder(givenFolder);
  if (folder.empty() && mode == kSystemFolder) folder = folders.sys;
  if (folder.empty() && mode == kUserFolder) folder = folders.user;
  // In this order and one after the other: a word whose folder is "" can bring another to the start.
  for (const auto& [word, meaning] :
       {Alias{"%app%\\", BaseProgramFolder}, Alias{"%sys%\\", folders.sys}, Alias{"%user%\\", folders.user},
        Alias{"%userbase%\\", BaseMyDocsFolder}}) {
    if (StartsWithNoCase(folder, word)) folder.replace(0, word.size(), meaning);
  }
  return folder.append(name);
}

std::string Folders::AliasPath(int kind, std::string_view path) const {
  const KindFolders folders = PathKindFolders(kind);
  Alias best;
  for (const Alias& alias : {Alias{"%sys%\\", folders.sys}, Alias{"%user%\\", folders.user},
                             Alias{"%userbase%\\", BaseMyDocsFolder}, Alias{"%app%\\", BaseProgramFolder}}) {
    if (alias.folder.size() > best.folder.size() && StartsWithNoCase(path, alias.folder)) best = alias;
  }
  return std::string(best.word).append(path.substr(best.folder.size()));
}

std::string DefaultAppDataFolder() {
  std::string folder = FolderOfVariable("XDG_DATA_HOME");
  if (folder.empty()) folder = HomeFolder() + ".local\\share\\";
  return folder + "Larkmoor Games\\BRASK Kivera 4\\";
}

std::string DefaultDocumentsFolder() {
  std::string folder = FolderOfVariable("XDG_DOCUMENTS_DIR");
  const std::string home = HomeFolder();
  if (folder.empty()) folder = DesktopDocumentsFolder(home);
  if (folder.empty()) folder = home + "Documents\\";
  return folder + "BRASK Kivera 4\\";
}

}  // namespace kvr
