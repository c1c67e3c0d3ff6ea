// kivera-batch: makes the world that the command line asks for and runs the script in it.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "batch/BatchRunner.h"
#include "batch/LintRun.h"
#include "core/Files.h"
#include "core/modFileIO.h"

namespace fs = std::filesystem;

namespace {

struct Options {
  std::string dataDir, userDir, script;
  std::vector<std::string> lint;  // data files to check instead of running a script
  std::string dataSet;
  bool keepGoing = false;
};

// The folder that holds "data files": beside the program, where a package puts it, or in the source tree
// above it.
std::string FindProgramFolder() {
  std::error_code ignored;
  const fs::path program = fs::read_symlink("/proc/self/exe", ignored).parent_path();
  std::vector<fs::path> candidates = {program, program / ".." / "share" / "kivera"};
  for (fs::path up = program; up.has_relative_path(); up = up.parent_path())
    candidates.push_back(up / "data");
  for (const fs::path& candidate : candidates) {
    if (fs::is_directory(candidate / "data files", ignored)) return candidate.lexically_normal().string();
  }
  return program.string();
}

std::string FolderText(const std::string& nativeFolder) {
  std::string text = kvr::Files::PathText(fs::absolute(nativeFolder).lexically_normal());
  if (!text.ends_with('\\')) text += '\\';
  return text;
}

void MakeWorld(kvr::Environment& env, const Options& options) {
  std::string appData = kvr::DefaultAppDataFolder(), documents = kvr::DefaultDocumentsFolder();
  if (!options.userDir.empty()) {
    appData = FolderText(options.userDir) + "Larkmoor Games\\BRASK Kivera 4\\";
    documents = FolderText(options.userDir) + "BRASK Kivera 4\\";
  }
  env.Folders.Set(FolderText(options.dataDir.empty() ? FindProgramFolder() : options.dataDir), appData,
                  documents);
  kvr::modFileIO::IniReadUserFolders(env);
  const std::string problems = env.Folders.CreateUserFolders();
  if (!problems.empty()) std::cerr << problems << std::endl;
  kvr::modFileIO::IniReadDebugOptions(env);
  env.log.Start(true, env.Config.Debug != 0 && env.Config.DebugEchoToRun != 0
                          ? env.Folders.BaseAppDataFolder + "debug.run"
                          : "");
  kvr::modFileIO::InitConfigDefaults(env);
  kvr::modFileIO::IniReadMRUList(env);
}

int RunScript(const Options& options) {
  kvr::ScriptedPrompts prompts([](const std::string& notice) { std::cerr << notice << std::endl; });
  kvr::FrontEndEvents events;
  kvr::Environment env(prompts, events);
  MakeWorld(env, options);
  int status = 0;
  {
    kvr::Application app(env);
    kvr::batch::BatchRunner runner(app, prompts, std::cout, std::cerr);
    if (options.script == "-") {
      status = runner.Run(std::cin, "-", options.keepGoing);
    } else {
      std::ifstream script(options.script, std::ios::binary);
      if (!script) {
        std::cerr << options.script << ": the script could not be read" << std::endl;
        return 1;
      }
      status = runner.Run(script, options.script, options.keepGoing);
    }
  }
  if (!kvr::modFileIO::WriteAllSettings(env)) {
    std::cerr << "the settings could not be written" << std::endl;
    status = 1;
  }
  return status;
}

int LintFiles(const Options& options) {
  kvr::ScriptedPrompts prompts([](const std::string& notice) { std::cerr << notice << std::endl; });
  kvr::FrontEndEvents events;
  kvr::Environment env(prompts, events);
  MakeWorld(env, options);
  return kvr::batch::RunLint(env, options.lint, options.dataSet, std::cout, std::cerr);
}

std::string CommandHelp() {
  std::string text = "Commands, one a line; lines beginning with # are skipped:\n";
  for (const kvr::batch::Command& command : kvr::batch::AllCommands()) {
    text += fmt::format("  {:<32}{}\n", fmt::format("{} {}", command.name, command.usage), command.help);
  }
  return text +
         "REF is a key such as k17 or a reference such as {SK:Sword (Broad)}; the braces may be left out "
         "where it\n"
         "holds no blank or is the last argument. The last argument is the rest of the line, as it is "
         "written.";
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App cli("Runs a text script against the character builder, without a window.", "kivera-batch");
  Options options;
  cli.add_option("--data-dir", options.dataDir,
                 "The program folder, with \"data files\" and \"data sets\" in it")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  cli.add_option("--user-dir", options.userDir,
                 "Stands for the user's application data and documents folders")
      ->type_name("DIR");
  cli.add_flag("--keep-going", options.keepGoing,
               "Goes on behind a command that fails; the status is 1 at the end");
  CLI::Option* script = cli.add_option("SCRIPT", options.script, "The script, or - for standard input");
  CLI::Option* lint = cli.add_option("--lint", options.lint,
                                     "Checks these data files instead of running a script: one line for each "
                                     "finding, and the status is 1 when there is any")
                          ->type_name("FILE...")
                          ->excludes(script);
  cli.add_option(
         "--dataset", options.dataSet,
         "The data set whose files --lint reads with them; - for none. The set of the settings when it "
         "is left out")
      ->type_name("NAME")
      ->needs(lint);
  cli.footer(CommandHelp());
  CLI11_PARSE(cli, argc, argv);
  if (!options.lint.empty()) return LintFiles(options);
  if (options.script.empty()) {
    std::cerr << "SCRIPT is required\nRun with --help for more information." << std::endl;
    return static_cast<int>(CLI::ExitCodes::RequiredError);
  }
  return RunScript(options);
}
