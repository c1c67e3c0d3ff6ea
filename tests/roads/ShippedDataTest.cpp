// Every data file that is shipped, checked with each data set that loads it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

std::string ReadFile(const fs::path& path) {
  std::stringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// The quoted names of a data set, as arguments of a command.
std::string FileArguments(const fs::path& dataSet) {
  const std::string text = ReadFile(dataSet);
  std::string arguments;
  for (std::size_t open = text.find('"'); open != std::string::npos;) {
    const std::size_t close = text.find('"', open + 1);
    arguments += " '" + text.substr(open + 1, close - open - 1) + "'";
    open = text.find('"', close + 1);
  }
  return arguments;
}

TEST(ShippedData, IsCleanInEverySet) {
  const fs::path data = fs::path(KIVERA_SOURCE_DIR) / "data";
  const fs::path world = fs::temp_directory_path() / ("kivera-lint-" + std::to_string(::getpid()));
  fs::create_directories(world);
  std::string checked;
  for (const auto& entry : fs::directory_iterator(data / "data sets")) {
    const std::string files = FileArguments(entry.path());
    checked += files;
    const fs::path out = world / "findings.txt";
    const std::string command = "timeout 120 '" KIVERA_BATCH "' --data-dir '" + data.string() +
                                "' --user-dir '" + world.string() + "' --dataset '" +
                                entry.path().stem().string() + "' --lint" + files + " > '" + out.string() +
                                "' 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 0) << entry.path() << "\n" << ReadFile(out);
    EXPECT_EQ(ReadFile(out), "");
  }
  for (const auto& file : fs::directory_iterator(data / "data files"))
    EXPECT_NE(checked.find("'" + file.path().filename().string() + "'"), std::string::npos)
        << "no set loads " << file;
  fs::remove_all(world);
}

}  // namespace
