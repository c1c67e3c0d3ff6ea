// The command line of the lint: which set, which files, and the findings as lines.
#include "batch/LintRun.h"

#include <filesystem>
#include <ostream>

#include "batch/BatchRunner.h"
#include "core/Files.h"
#include "frontend/Lint.h"

namespace kvr::batch {
namespace {

// A file where the user stands, else one of the data files folders. The path stays as it was written when
// there is none: reading it tells so.
std::string DataFilePath(const KVRSystem& system, const std::string& argument) {
  std::error_code ignored;
  const std::filesystem::path native(argument);
  if (std::filesystem::is_regular_file(native, ignored))
    return Files::PathText(std::filesystem::absolute(native).lexically_normal());
  const std::string found = system.FindDataFile(BatchRunner::PathArgument(argument));
  return found.empty() ? argument : found;
}

std::string DataSetPath(const KVRSystem& system, const std::string& dataSet) {
  const Config& config = system.Env().Config;
  std::string path =
      dataSet.empty() ? config.DataSetPath + config.DataSet : BatchRunner::PathArgument(dataSet);
  if (Files::LowerExtension(path).empty()) path += ".kds";
  const std::string found = system.FindDataSet(path);
  if (!Files::FileExists(found) && dataSet.empty()) return system.FindDataSet(config.DataSet);
  return found;
}

}  // namespace

int RunLint(Environment& env, const std::vector<std::string>& files, const std::string& dataSet,
            std::ostream& out, std::ostream& err) {
  KVRSystem system(env);
  std::string set;
  if (dataSet != "-") {
    set = DataSetPath(system, dataSet);
    if (!Files::FileExists(set)) {
      err << "there is no data set \"" << (dataSet.empty() ? env.Config.DataSet : dataSet) << '"'
          << std::endl;
      return 1;
    }
  }
  std::vector<Lint::File> asked;
  for (const std::string& file : files) asked.push_back({file, DataFilePath(system, file)});
  const std::vector<Lint::Finding> findings = Lint::Run(system, set, asked);
  for (const Lint::Finding& finding : findings) out << Lint::Text(finding) << '\n';
  out.flush();
  return findings.empty() ? 0 : 1;
}

}  // namespace kvr::batch
