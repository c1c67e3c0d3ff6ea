// The program's folders and the alias words that keep stored paths portable. All paths are path text with
// backslashes; a folder ends in one.
#pragma once

#include <string>
#include <string_view>

namespace kvr {

// What kind of file a path names, for PathKindFolders. Any other number means "documents".
enum PathKind : int {
  kGeneral = 0,
  kShippedDataSets = 1,
  kDataFiles = 2,
  kDataSets = 3,
  kCharacters = 4,
  kSheets = 5,
  kDocuments = 6,
};

// Which folder a path without one gets in ExpandPath.
enum ExpandMode : int { kUserFolder = 0, kSystemFolder = 1, kNoFolder = 9 };

class Folders {
 public:
  std::string BaseProgramFolder;
  std::string BaseAppDataFolder;
  std::string BaseMyDocsFolder;
  std::string FolderDataFilesUSER;
  std::string FolderDataSets;
  std::string FolderCharacters;
  std::string FolderSheets;

  // The defaults from three folders of path text. The application data and documents folders are the final
  // ones
  // ("...\BRASK Kivera 4\"); nothing is created.
  void Set(std::string_view programFolder, std::string_view appDataFolder, std::string_view documentsFolder);
  // Creates the user's folders level by level. What cannot be made is told in the result, one line each.
  std::string CreateUserFolders() const;

  std::string SystemDataFilesFolder() const { return BaseProgramFolder + "data files\\"; }

  struct KindFolders {
    std::string sys, user;
  };
  KindFolders PathKindFolders(int kind) const;

  // The folder of `path`, or the one that `mode` names, with its alias words ("%app%\", "%sys%\", "%user%\",
  // "%userbase%\", at the start, in any case) replaced; then the name.
  std::string ExpandPath(int kind, int mode, std::string_view path) const;
  // The reverse: the longest fitting folder at the start becomes its alias word.
  std::string AliasPath(int kind, std::string_view path) const;
};

// The user's application data and documents folders of this system (XDG), with the program's own part added.
std::string DefaultAppDataFolder();
std::string DefaultDocumentsFolder();

}  // namespace kvr
