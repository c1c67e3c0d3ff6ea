// A world of its own for a test: a temporary folder with the program's and the user's folders, an environment
// with scripted prompts, and what the prompts and the log said.
//
//   TestWorld world;
//   world.Write("house.kdf", "[ADS]\r\nLuck, 15\r\n");
//   world.Answer("yes");
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/Environment.h"
#include "core/Files.h"
#include "core/Text.h"
#include "core/modFileIO.h"
#include "support/CancelingPrompts.h"

namespace kvr {

class TestWorld {
 public:
  TestWorld()
      : prompts([this](const std::string& notice) { notices.push_back(notice); }), env(prompts, events) {
    std::string name = (std::filesystem::temp_directory_path() / "kivera-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder for the test");
    native_ = name;
    env.Folders.Set(Root() + "program\\", Root() + "app data\\", Root() + "documents\\");
    Files::FolderExists(env.Folders.SystemDataFilesFolder(), true);
    const std::string problems = env.Folders.CreateUserFolders();
    if (!problems.empty()) throw std::runtime_error(problems);
    modFileIO::InitConfigDefaults(env);
  }
  ~TestWorld() {
    std::error_code ignored;
    std::filesystem::remove_all(native_, ignored);
  }
  TestWorld(const TestWorld&) = delete;
  TestWorld& operator=(const TestWorld&) = delete;

  // The world's folder as path text.
  std::string Root() const { return Files::PathText(native_) + "\\"; }
  // A full path as it is; a name or alias path in the folder of its kind ("rules.kdf", "%sys%\\rules.kdf");
  // where no folder leads to, in the world's own.
  std::string Path(std::string_view path, int kind = kDataFiles) const {
    std::string full = env.Folders.ExpandPath(kind, kUserFolder, path);
    return full.starts_with('\\') ? full : Root() + full;
  }
  // Writes a file, its folders included; its full path.
  std::string Write(std::string_view path, std::string_view bytes, int kind = kDataFiles) {
    const std::string full = Path(path, kind);
    Files::FolderExists(Files::SplitPath(full).folder, true);
    EXPECT_EQ(Files::WriteWhole(full, bytes).error, "") << full;
    return full;
  }
  // The bytes; a missing file fails the test.
  std::string Read(std::string_view path, int kind = kDataFiles) const {
    std::string why;
    const auto bytes = Files::ReadWhole(Path(path, kind), &why);
    EXPECT_TRUE(bytes) << path << ": " << why;
    return bytes.value_or("");
  }

  void Answer(std::string answer) { prompts.QueueAnswer(std::move(answer)); }
  // The log's lines, one below the other.
  std::string Log() const { return JoinLog(false); }
  std::string RedLog() const { return JoinLog(true); }

  std::vector<std::string> notices;  // of prompts without a fitting answer
  CancelingPrompts prompts;
  FrontEndEvents events;
  Environment env;

 private:
  std::string JoinLog(bool redOnly) const {
    std::string text;
    for (const LogEntry& line : env.log.Lines()) {
      if (!redOnly || line.level == LogLevel::Red) text += line.text + "\n";
    }
    return text;
  }

  std::filesystem::path native_;
};

}  // namespace kvr
