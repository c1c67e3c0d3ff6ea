// Runs the benchmarks and prints, behind the usual table, each measured time as a ratio to its reference: a
// benchmark "Work/reference" is what "Work/ours" is compared with, both measured in this run.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      double& best = best_.try_emplace(run.benchmark_name(), run.GetAdjustedRealTime()).first->second;
      best = std::min(best, run.GetAdjustedRealTime());
    }
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\nRatios to the reference of the same run\n");
    for (const auto& [name, ours] : best_) {
      const std::size_t mark = name.find("/ours");
      if (mark == std::string::npos) continue;
      auto reference = best_.find(std::string(name).replace(mark, 5, "/reference"));
      if (reference == best_.end()) continue;
      std::printf("  %-60s %6.2f\n", std::string(name).erase(mark, 5).c_str(), ours / reference->second);
    }
  }

 private:
  std::map<std::string, double> best_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
