// Runs every batch script beside this file through kivera-batch, each in a world of its own.
//
// NAME.road is the script; it passes when the program ends with status 0, that is when every `expect` held.
// NAME.out, if present, is the whole expected output, NAME.err the expected messages; a script with messages
// may end with status 1, which NAME.err then begins with as "status 1". Files that a script needs lie in
// files/NAME/ and are copied into the user's documents folder before.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path kFolder = fs::path(KIVERA_SOURCE_DIR) / "tests" / "roads";

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> RoadNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".road") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void ReplaceEach(std::string& text, const std::string& find, const std::string& replacement) {
  for (std::size_t at = text.find(find); at != std::string::npos;
       at = text.find(find, at + replacement.size())) {
    text.replace(at, find.size(), replacement);
  }
}

// Messages without the folder of this checkout, as a native path and as the program's path text.
std::string WithoutFolders(std::string text) {
  ReplaceEach(text, kFolder.string() + "/", "");
  std::string source = KIVERA_SOURCE_DIR;
  std::replace(source.begin(), source.end(), '/', '\\');
  ReplaceEach(text, source, "<source>");
  return text;
}

struct RoadRun {
  int status = 0;
  std::string out, err;
};

RoadRun RunRoad(const std::string& name, const fs::path& world, bool keepGoing) {
  const fs::path files = kFolder / "files" / name;
  if (fs::exists(files)) fs::copy(files, world, fs::copy_options::recursive);
  const fs::path out = world / "stdout.txt", err = world / "stderr.txt";
  const std::string command = "cd '" + world.string() + "' && timeout 120 '" KIVERA_BATCH "' --data-dir '" +
                              (fs::path(KIVERA_SOURCE_DIR) / "data").string() + "' --user-dir '" +
                              world.string() + "' " + (keepGoing ? "--keep-going" : "") + " '" +
                              (kFolder / (name + ".road")).string() + "' > '" + out.string() + "' 2> '" +
                              err.string() + "'";
  const int raw = std::system(command.c_str());
  return {WIFEXITED(raw) ? WEXITSTATUS(raw) : 128, ReadFile(out), WithoutFolders(ReadFile(err))};
}

// Each file saved a second time, with the one that it was read from.
std::vector<std::pair<fs::path, fs::path>> FilesSavedAgain(const fs::path& world) {
  std::vector<std::pair<fs::path, fs::path>> pairs;
  for (const auto& entry : fs::recursive_directory_iterator(world)) {
    std::string stem = entry.path().stem().string();
    if (entry.path().extension() != ".kvr4" || !stem.ends_with(" again")) continue;
    stem.erase(stem.size() - 6);
    pairs.emplace_back(entry.path().parent_path() / (stem + ".kvr4"), entry.path());
  }
  return pairs;
}

class Road : public testing::TestWithParam<std::string> {};

TEST_P(Road, LeadsWhereItShould) {
  const std::string& name = GetParam();
  const fs::path world =
      fs::temp_directory_path() / ("kivera-road-" + name + "-" + std::to_string(::getpid()));
  fs::remove_all(world);
  fs::create_directories(world);
  const fs::path expectedOut = kFolder / (name + ".out"), expectedErr = kFolder / (name + ".err");
  const std::string errors = fs::exists(expectedErr) ? ReadFile(expectedErr) : "";
  const bool commandsFail = errors.starts_with("status 1\n");
  const RoadRun run = RunRoad(name, world, commandsFail);
  EXPECT_EQ(run.status, commandsFail ? 1 : 0) << run.out << run.err;
  if (fs::exists(expectedOut)) {
    EXPECT_EQ(run.out, ReadFile(expectedOut));
  }
  if (!errors.empty()) {
    EXPECT_EQ((commandsFail ? "status 1\n" : "") + run.err, errors);
  }
  for (const auto& [first, second] : FilesSavedAgain(world)) {
    EXPECT_EQ(ReadFile(first), ReadFile(second)) << second;
  }
  fs::remove_all(world);
}

INSTANTIATE_TEST_SUITE_P(Roads, Road, testing::ValuesIn(RoadNames()), [](const auto& road) {
  std::string name = road.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
  return name;
});
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Road);

}  // namespace
