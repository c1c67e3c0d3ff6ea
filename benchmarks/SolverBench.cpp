// The solver: an expression that it knows against one hash look-up of the same text, and expressions that it
// meets for the first time against a formula parser that compiles and evaluates the equal formula.
#include <benchmark/benchmark.h>
#include <muParser.h>

#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "calc/modSolver.h"

#include "BenchCharacter.h"

namespace {

using namespace kvr;

constexpr std::size_t kStatCount = 20;
constexpr std::size_t kExpressionCount = 1000;

// One formula in both languages.
struct Formula {
  std::string ours, peers;

  void Add(const std::string& text) {
    ours += text;
    peers += text;
  }
};

class FormulaMaker {
 public:
  FormulaMaker(unsigned seed, int operands) : random_(seed), operands_(operands) {}

  Formula Make() {
    Formula formula;
    for (int i = 0; i < operands_;) {
      if (i > 0) formula.Add(Pick(3) == 0 ? "-" : Pick(2) == 0 ? "*" : "+");
      const int left = operands_ - i;
      if (left >= 4 && Pick(8) == 0)
        i += AddCondition(formula);
      else if (left >= 3 && Pick(4) == 0)
        i += AddFunction(formula);
      else
        i += AddOperand(formula);
    }
    return formula;
  }

 private:
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  int AddOperand(Formula& formula) {
    if (Pick(2) == 0) {
      formula.Add(std::to_string(1 + Pick(99)));
      if (Pick(4) == 0) formula.Add("." + std::to_string(1 + Pick(9)));
      return 1;
    }
    const std::string number = std::to_string(Pick(kStatCount));
    formula.ours += "ST:S" + number;
    formula.peers += "S" + number;
    return 1;
  }
  int AddFunction(Formula& formula) {
    const char* name = Pick(2) == 0 ? "max(" : "min(";
    formula.ours += '@';
    formula.Add(name);
    AddOperand(formula);
    formula.Add(",");
    AddOperand(formula);
    formula.Add("+");
    AddOperand(formula);
    formula.Add(")");
    return 3;
  }
  int AddCondition(Formula& formula) {
    formula.ours += "@if(";
    formula.peers += "((";
    AddOperand(formula);
    formula.Add(">");
    AddOperand(formula);
    formula.ours += " then ";
    formula.peers += ") ? ";
    AddOperand(formula);
    formula.ours += " else ";
    formula.peers += " : ";
    AddOperand(formula);
    formula.Add(")");
    return 4;
  }

  std::mt19937 random_;
  int operands_;
};

class SolverWorld : public BenchCharacter {
 public:
  explicit SolverWorld(int operands) {
    for (std::size_t i = 0; i < kStatCount; ++i) {
      scores_[i] = static_cast<double>(7 + i * 3 % 11);
      AddStat("S" + std::to_string(i), scores_[i]);
      parser.DefineVar("S" + std::to_string(i), &scores_[i]);
    }
    FormulaMaker maker(20251, operands);
    for (std::size_t i = 0; i < kExpressionCount; ++i) formulas.push_back(maker.Make());
  }

  double Solve(const Formula& formula) { return modSolver::Solver(formula.ours, character); }
  double Parse(const Formula& formula) {
    parser.SetExpr(formula.peers);
    return parser.Eval();
  }
  // Our values pass through 15 digits at every step.
  bool IsRight() {
    for (const Formula& formula : formulas) {
      const double ours = Solve(formula), peers = Parse(formula);
      if (std::abs(ours - peers) > 1e-9 * std::max(1.0, std::abs(peers))) return false;
    }
    return true;
  }

  mu::Parser parser;
  std::vector<Formula> formulas;

 private:
  void AddStat(const std::string& name, double score) { Put(kStats, "name(" + name + ")").SetScore(score); }

  std::array<double, kStatCount> scores_{};
};

void CachedOurs(benchmark::State& state) {
  SolverWorld world(static_cast<int>(state.range(0)));
  if (!world.IsRight()) state.SkipWithError("wrong value");
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(world.Solve(world.formulas[i++ % kExpressionCount]));
}

void CachedReference(benchmark::State& state) {
  SolverWorld world(static_cast<int>(state.range(0)));
  std::unordered_map<std::string, double> values;
  for (const Formula& formula : world.formulas) values.emplace(formula.ours, world.Solve(formula));
  std::size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(values.find(world.formulas[i++ % kExpressionCount].ours)->second);
}

void NewOurs(benchmark::State& state) {
  SolverWorld world(static_cast<int>(state.range(0)));
  if (!world.IsRight()) state.SkipWithError("wrong value");
  std::size_t i = kExpressionCount;
  for (auto _ : state) {
    if (i >= kExpressionCount) {
      world.character.TokenCache.Clear();
      i = 0;
    }
    benchmark::DoNotOptimize(world.Solve(world.formulas[i++]));
  }
}

void NewReference(benchmark::State& state) {
  SolverWorld world(static_cast<int>(state.range(0)));
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(world.Parse(world.formulas[i++ % kExpressionCount]));
}

BENCHMARK(CachedOurs)->Name("SolverCached/ours")->Arg(3)->Arg(10)->Arg(30);
BENCHMARK(CachedReference)->Name("SolverCached/reference")->Arg(3)->Arg(10)->Arg(30);
BENCHMARK(NewOurs)->Name("SolverNew/ours")->Arg(3)->Arg(10)->Arg(30);
BENCHMARK(NewReference)->Name("SolverNew/reference")->Arg(3)->Arg(10)->Arg(30);

}  // namespace
