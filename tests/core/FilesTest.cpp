#include "core/Files.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>

#include "support/TestWorld.h"

namespace kvr {
namespace {

namespace fs = std::filesystem;

std::size_t NumberOfFiles(const TestWorld& world) {
  std::size_t count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(Files::Native(world.Root())))
    count += entry.is_directory() ? 0 : 1;
  return count;
}

TEST(FilesTest, FindsNamesInAnyCaseExactOnesFirst) {
  TestWorld world;
  world.Write("Alpha\\Beta\\Gamma.kdf", "one");
  EXPECT_EQ(world.Read("ALPHA\\beta\\gamma.KDF"), "one");
  world.Write("Alpha\\Beta\\new.txt", "two");
  EXPECT_EQ(world.Read("alpha\\BETA\\NEW.TXT"), "two");
  EXPECT_TRUE(fs::exists(Files::Native(world.Root()) / "Alpha/Beta/new.txt"));

  const fs::path twins = Files::Native(world.Root()) / "twins";
  fs::create_directory(twins);
  std::ofstream(twins / "name") << "lower";
  std::ofstream(twins / "NAME") << "upper";
  EXPECT_EQ(world.Read(world.Root() + "twins\\name"), "lower");
  EXPECT_EQ(world.Read(world.Root() + "twins\\NAME"), "upper");
  EXPECT_EQ(world.Read(world.Root() + "twins\\Name"), "upper") << "the first in binary order";
  // Writing reaches the file that is there instead of making a second one.
  world.Write("ALPHA\\BETA\\gamma.kdf", "three");
  EXPECT_EQ(world.Read("Alpha\\Beta\\Gamma.kdf"), "three");
  EXPECT_EQ(Files::ListFiles(world.Path("alpha\\beta\\"), "*").size(), 2u);
}

TEST(FilesTest, OddPathsFailWithoutHarm) {
  const std::string withNul("a\0b", 3);
  const std::string longName(100000, 'x');
  for (const std::string& path :
       {std::string(), std::string("\\\\\\"), withNul, longName, std::string("\\tmp\\") + withNul,
        std::string("C:\\no\\such"), std::string(100000, '\\') + "nothing", std::string("\\dev\\zero")}) {
    SCOPED_TRACE(path.substr(0, 20));
    EXPECT_FALSE(Files::FileExists(path));
    EXPECT_FALSE(Files::ReadWhole(path));
    EXPECT_FALSE(Files::WriteWhole(path, "x"));
    EXPECT_TRUE(Files::ListFiles(path + "nothing here\\", "*").empty());
    EXPECT_EQ(Files::NewTemporaryFile(path + "nothing here\\"), "");
  }
  EXPECT_FALSE(Files::FolderExists(withNul, true));
}

TEST(FilesTest, PathTextIsTakenApart) {
  EXPECT_EQ(Files::SplitPath("%sys%\\a\\b.kdf").folder, "%sys%\\a\\");
  EXPECT_EQ(Files::SplitPath("%sys%\\a\\b.kdf").name, "b.kdf");
  EXPECT_EQ(Files::SplitPath("b.kdf").folder, "");
  EXPECT_EQ(Files::LowerExtension("C:\\my.folder\\File.KVR4"), ".kvr4");
  EXPECT_EQ(Files::LowerExtension("my.folder\\File"), "");
}

TEST(FilesTest, ReadingTellsWhy) {
  TestWorld world;
  std::string why;
  EXPECT_FALSE(Files::ReadWhole(world.Path("missing"), &why));
  EXPECT_EQ(why, "No such file or directory");
  EXPECT_FALSE(Files::ReadWhole(world.Root(), &why));
  EXPECT_EQ(why, "Is a directory");
  ASSERT_EQ(::mkfifo((Files::Native(world.Root()) / "pipe").c_str(), 0666), 0);
  EXPECT_FALSE(Files::ReadWhole(world.Root() + "pipe", &why))
      << "a pipe without a writer would wait for ever";
  EXPECT_EQ(why, "It is no regular file");
  EXPECT_EQ(Files::ReadWhole(world.Write("long", std::string(100000, 'x')), &why, 70000)->size(), 70000u);
  EXPECT_EQ(*Files::ReadWhole(world.Write("empty", "")), "");
}

TEST(FilesTest, WritingKeepsRightsLinksAndVersions) {
  TestWorld world;
  const std::string path = world.Write("kept.txt", "1");
  const fs::path native = Files::Native(path);
  fs::permissions(native, fs::perms(0640));
  fs::create_symlink("kept.txt", native.parent_path() / "link.txt");
  EXPECT_TRUE(Files::WriteWhole(world.Path("link.txt"), "2"));
  EXPECT_TRUE(fs::is_symlink(native.parent_path() / "link.txt"));
  EXPECT_EQ(world.Read("kept.txt"), "2");
  EXPECT_EQ(fs::status(native).permissions(), fs::perms(0640));

  fs::create_symlink("later.txt", native.parent_path() / "dangling.txt");
  EXPECT_TRUE(Files::WriteWhole(world.Path("dangling.txt"), "made"));
  EXPECT_EQ(world.Read("later.txt"), "made");
  fs::create_symlink("round.txt", native.parent_path() / "round.txt");
  EXPECT_FALSE(Files::WriteWhole(world.Path("round.txt"), "x"));

  for (const char* text : {"3", "4", "5"}) EXPECT_TRUE(Files::WriteWhole(path, text, 2));
  EXPECT_EQ(world.Read("kept.txt"), "5");
  EXPECT_EQ(world.Read("kept.txt.bak1"), "4");
  EXPECT_EQ(world.Read("kept.txt.bak2"), "3");
  EXPECT_FALSE(Files::FileExists(path + ".bak3"));
}

// Runs the writing with a bound on the size of files, as a full disk has.
Files::Outcome WriteOnFullDisk(const std::string& path, const std::string& bytes) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{1000, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const Files::Outcome outcome = Files::WriteWhole(path, bytes, 3);
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  return outcome;
}

TEST(FilesTest, AFailedWriteLosesNothing) {
  TestWorld world;
  const std::string path = world.Write("precious.txt", "old");
  const fs::path native = Files::Native(path);
  const std::size_t before = NumberOfFiles(world);
  EXPECT_EQ(WriteOnFullDisk(path, std::string(5000, 'x')).error, "File too large");

  fs::permissions(native, fs::perms(0444));
  EXPECT_EQ(Files::WriteWhole(path, "new").error, "Permission denied");
  fs::permissions(native, fs::perms(0644));
  fs::permissions(native.parent_path(), fs::perms(0555));
  EXPECT_EQ(Files::WriteWhole(path, "new").error, "Permission denied");
  fs::permissions(native.parent_path(), fs::perms(0755));

  EXPECT_EQ(Files::WriteWhole(world.Root(), "new").error, "Is a directory");
  EXPECT_EQ(Files::WriteWhole(world.Path("no folder\\a.txt"), "new").error, "No such file or directory");
  EXPECT_EQ(world.Read("precious.txt"), "old");
  EXPECT_EQ(NumberOfFiles(world), before) << "nothing temporary stays behind";
}

TEST(FilesTest, ListsSortedByPattern) {
  TestWorld world;
  for (const char* name : {"b.kdf", "A.KDF", "c.kdf.bak", ".hidden.kdf", "~1.tmp", "~1.tmp.xml", "Äx.kdf"})
    world.Write(std::string("lists\\") + name, "");
  Files::FolderExists(world.Path("lists\\folder.kdf\\"), true);
  const std::string folder = world.Path("lists\\");
  using Names = std::vector<std::string>;
  EXPECT_EQ(Files::ListFiles(folder, "*.kdf"), (Names{"A.KDF", "b.kdf", "Äx.kdf"}));
  EXPECT_EQ(Files::ListFiles(folder, "~*.tmp"), (Names{"~1.tmp"}));
  EXPECT_EQ(Files::ListFiles(folder, "?x.KDF"), (Names{"Äx.kdf"}));
  EXPECT_EQ(Files::ListFiles(folder, "*k*b*"), (Names{"c.kdf.bak"}));
  EXPECT_EQ(Files::ListSubfolders(folder), (Names{"folder.kdf"}));
}

TEST(FilesTest, TemporaryFilesAppendAndDelete) {
  TestWorld world;
  const std::string first = Files::NewTemporaryFile(world.Root()),
                    second = Files::NewTemporaryFile(world.Root());
  EXPECT_NE(first, second);
  EXPECT_EQ(Files::ListFiles(world.Root(), "~????????.tmp").size(), 2u);
  EXPECT_TRUE(Files::AppendLine(first, "one") && Files::AppendLine(first, "two"));
  EXPECT_EQ(*Files::ReadWhole(first), "one\r\ntwo\r\n");
  EXPECT_TRUE(Files::Delete(first));
  EXPECT_EQ(Files::Delete(first).error, "No such file or directory");
  EXPECT_TRUE(Files::FileExists(second));
}

}  // namespace
}  // namespace kvr
