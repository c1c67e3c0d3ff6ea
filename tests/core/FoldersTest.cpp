#include "core/Folders.h"

#include <cstdlib>

#include "support/TestWorld.h"

namespace kvr {
namespace {

Folders SomeFolders() {
  Folders folders;
  folders.Set("\\opt\\Kivera\\", "\\home\\u\\app", "\\home\\u\\docs\\");
  return folders;
}

TEST(FoldersTest, ExpandsPaths) {
  const Folders folders = SomeFolders();
  const struct {
    int kind, mode;
    const char *path, *expanded;
  } cases[] = {
      {kDataFiles, kSystemFolder, "a.kdf", "\\opt\\Kivera\\data files\\a.kdf"},
      {kDataFiles, kUserFolder, "a.kdf", "\\home\\u\\docs\\data files\\a.kdf"},
      {kDataFiles, kNoFolder, "a.kdf", "a.kdf"},
      {kDataFiles, kNoFolder, "%USER%\\sub\\a.kdf", "\\home\\u\\docs\\data files\\sub\\a.kdf"},
      {kDataFiles, kUserFolder, "%sys%\\a.kdf", "\\opt\\Kivera\\data files\\a.kdf"},
      {kDataFiles, kUserFolder, "%app%\\a.kdf", "\\opt\\Kivera\\a.kdf"},
      {kGeneral, kSystemFolder, "kvr.ini", "\\home\\u\\app\\kvr.ini"},
      {kShippedDataSets, kSystemFolder, "a.kds", "\\home\\u\\app\\data sets\\a.kds"},
      {kDataSets, kUserFolder, "a.kds", "\\home\\u\\docs\\data sets\\a.kds"},
      {kDataSets, kUserFolder, "%sys%\\a.kds", "a.kds"},  // the kind has no such folder
      {kDataSets, kUserFolder, "%sys%\\%user%\\a.kds", "\\home\\u\\docs\\data sets\\a.kds"},
      {kCharacters, kUserFolder, "a.kvr4", "\\home\\u\\docs\\characters\\a.kvr4"},
      {kSheets, kUserFolder, "a.kcs", "\\home\\u\\docs\\sheets\\a.kcs"},
      {77, kUserFolder, "%userbase%\\x\\a.png", "\\home\\u\\docs\\x\\a.png"},
      {kDataFiles, kUserFolder, "\\other\\%sys%\\a.kdf", "\\other\\%sys%\\a.kdf"},  // only at the start
      {kDataFiles, kUserFolder, "%sys%", "\\home\\u\\docs\\data files\\%sys%"},     // a name
      {kDataFiles, kNoFolder, "", ""},
  };
  for (const auto& one : cases)
    EXPECT_EQ(folders.ExpandPath(one.kind, one.mode, one.path), one.expanded) << one.path;
}

TEST(FoldersTest, AliasesPathsAndBack) {
  const Folders folders = SomeFolders();
  const struct {
    int kind;
    const char *path, *aliased;
  } cases[] = {
      {kDataFiles, "\\OPT\\kivera\\data files\\a.kdf", "%sys%\\a.kdf"},
      {kDataFiles, "\\home\\u\\docs\\data files\\s\\a.kdf", "%user%\\s\\a.kdf"},
      {kDataFiles, "\\home\\u\\docs\\elsewhere\\a.kdf", "%userbase%\\elsewhere\\a.kdf"},
      {kDataFiles, "\\opt\\Kivera\\a.kdf", "%app%\\a.kdf"},
      {kDataSets, "\\home\\u\\docs\\data sets\\a.kds", "%user%\\a.kds"},
      {kGeneral, "\\home\\u\\docs\\a.kds", "%userbase%\\a.kds"},  // a kind without a user folder
      {kDocuments, "\\home\\u\\docs\\a.png", "%user%\\a.png"},
      {kDataFiles, "\\mnt\\home\\u\\docs\\a.kdf", "\\mnt\\home\\u\\docs\\a.kdf"},
      {kDataFiles, "a.kdf", "a.kdf"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(folders.AliasPath(one.kind, one.path), one.aliased);
    EXPECT_TRUE(EqualNoCase(folders.ExpandPath(one.kind, kNoFolder, one.aliased), one.path)) << one.path;
  }
  EXPECT_EQ(Folders().AliasPath(kDataFiles, "\\a"), "\\a") << "folders that are not fixed yet";
}

TEST(FoldersTest, FollowsTheDesktopsFolders) {
  TestWorld world;
  const auto set = [](const char* name, const std::string& value) { ::setenv(name, value.c_str(), 1); };
  const std::string home = Files::Native(world.Root()).string();
  set("HOME", home);
  set("XDG_DATA_HOME", "relative is to be ignored");
  set("XDG_CONFIG_HOME", "");
  set("XDG_DOCUMENTS_DIR", "");
  EXPECT_EQ(DefaultAppDataFolder(), world.Root() + ".local\\share\\Larkmoor Games\\BRASK Kivera 4\\");
  EXPECT_EQ(DefaultDocumentsFolder(), world.Root() + "Documents\\BRASK Kivera 4\\");
  world.Write(world.Root() + ".config\\user-dirs.dirs",
              "# made by hand\nXDG_MUSIC_DIR=\"$HOME/M\"\nXDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
  EXPECT_EQ(DefaultDocumentsFolder(), world.Root() + "Papers\\BRASK Kivera 4\\");
  set("XDG_DOCUMENTS_DIR", "/srv/papers");
  set("XDG_DATA_HOME", "/srv/data");
  EXPECT_EQ(DefaultDocumentsFolder(), "\\srv\\papers\\BRASK Kivera 4\\");
  EXPECT_EQ(DefaultAppDataFolder(), "\\srv\\data\\Larkmoor Games\\BRASK Kivera 4\\");
}

TEST(FoldersTest, TellsWhichFoldersCannotBeMade) {
  TestWorld world;
  world.Write(world.Root() + "blocked", "a file");
  Folders folders = world.env.Folders;
  folders.Set(world.Root() + "program", world.Root() + "new\\deep\\app", world.Root() + "blocked\\docs");
  const std::string problems = folders.CreateUserFolders();
  EXPECT_TRUE(Files::FolderExists(world.Root() + "new\\deep\\app\\data sets", false));
  EXPECT_NE(problems.find("Cannot make the folder " + world.Root() + "blocked\\docs\\sheets\\\n"), npos)
      << problems;
  EXPECT_EQ(problems.find("new"), npos) << problems;
}

}  // namespace
}  // namespace kvr
