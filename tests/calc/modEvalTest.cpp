#include "calc/modEval.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <string>
#include <vector>

#include "calc/TextReducer.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

using modEval::Evaluate;
using modEval::Evaluation;
using modEval::ReduceText;

struct Case {
  const char* expression;
  double value;
  bool fault = false;
};

void ExpectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    for (const Evaluation result : {Evaluate(c.expression), ReduceText(c.expression)}) {
      EXPECT_DOUBLE_EQ(result.value, c.value) << c.expression;
      EXPECT_EQ(result.fault, c.fault) << c.expression;
    }
  }
}

TEST(Evaluate, Precedence) {
  ExpectAll({{"2+3*4", 14},
             {"(2+3)*4", 20},
             {"2^3^2", 64},
             {"7\\2", 3},
             {"-7\\2", -3},
             {"7 MOD 3", 1},
             {"1 + 2 * 3 > 6 & 4 | 1", 5},
             {"10-4-3", 3},
             {"100/10/5", 2},
             {"2*(3+(4-1))^2", 72},
             {"5>3", -1},
             {"5>=5", -1},
             {"5<>5", 0},
             {"3=3", -1},
             {"6 & 3", 2},
             {"6|3", 7},
             {"1/3*3", .999999999999999}});
}

// What the text makes of signs, of names that were left in it and of things that stand side by side.
TEST(Evaluate, TextRules) {
  ExpectAll({{"3*-2", -6},  {"3--2", 5},    {"3-(-2)", 5},    {"--5", 5},       {"+-+5", -5},
             {"(-3)^2", 9}, {"-3^2", 9},    {"1*(-3)^2", -9}, {"3*+2", 2},      {"3*-(-2)", 2},
             {"2(3)", 23},  {"(2)(3)", 23}, {"1E+2+1", 101},  {"1E4+1", 10000}, {"5>-3+2", -1},
             {"1 2+1", 13}, {"abc+5", 0},   {"5+abc", 5},     {"x", 0},         {"==", 0, true},
             {"3==3", 0},   {"", 0},        {"()", 0},        {"7MOD3^2", 7}});
}

TEST(Evaluate, Faults) {
  ExpectAll({{"(2+3", 0, true},
             {"2+3)", 0, true},
             {")2(", 0, true},
             {"2+", 0, true},
             {"*2", 0, true},
             {"2^", 0, true},
             {"5>=", 0, true},
             {"1/0", 0, true},
             {"3+(1/0)", 0, true},
             {"7\\0.4", 0, true},
             {"7 MOD 0", 0, true},
             {"(-8)^.5", 0, true},
             {"0^-1", 0, true},
             {"3000000000\\2", 0, true},
             {"1E+300*1E+300", 0, true}});
}

TEST(Evaluate, NestsTo200AndNotDeeper) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + "7" + std::string(depth, ')');
  };
  EXPECT_EQ(Evaluate(nested(200)).value, 7);
  EXPECT_TRUE(Evaluate(nested(201)).fault);
  EXPECT_TRUE(Evaluate(nested(100000)).fault);
  EXPECT_TRUE(Evaluate(std::string(100000, '(')).fault);
}

TEST(Evaluate, LongTextsEnd) {
  std::string sum = "1", odd = "1";
  for (int i = 0; i < 500000; ++i) sum += "+1";
  for (int i = 0; i < 500000; ++i) odd += "+a";
  EXPECT_EQ(Evaluate(sum).value, 500001);
  EXPECT_TRUE(Evaluate(odd).fault);
}

// A generator of expressions: well-formed ones with every operator, and ones in which characters were
// swapped, dropped and strewn in.
class ExpressionMaker {
 public:
  explicit ExpressionMaker(unsigned seed) : random_(seed) {}

  std::string WellFormed(int depth) {
    std::string text = Term(depth);
    for (int n = Pick(5); n > 0; --n) text += Gap() + Operator() + Gap() + Term(depth);
    return text;
  }
  std::string Odd() {
    static constexpr std::string_view kStrewn = "()+-/*=><&|^\\MODE. 0123456789a%";
    std::string text = Pick(4) == 0 ? "" : WellFormed(2);
    for (int n = 1 + Pick(4); n > 0; --n) {
      const auto at = static_cast<std::size_t>(Pick(static_cast<int>(text.size()) + 1));
      if (Pick(3) == 0 && at < text.size())
        text.erase(at, 1);
      else
        text.insert(at, 1, kStrewn[static_cast<std::size_t>(Pick(static_cast<int>(kStrewn.size())))]);
    }
    return text;
  }
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

 private:
  std::string Term(int depth) {
    const std::string sign = Pick(6) == 0 ? "-" : "";
    if (depth > 0 && Pick(4) == 0) return sign + "(" + WellFormed(depth - 1) + ")";
    return sign + Number();
  }
  std::string Number() {
    switch (Pick(8)) {
      case 0:
        return std::to_string(Pick(100000)) + "." + std::to_string(Pick(100000));
      case 1:
        return "." + std::to_string(Pick(1000));
      case 2:
        return std::to_string(random_()) + std::to_string(Pick(100000));
      case 3:
        return "0";
      case 4:
        return std::to_string(Pick(10)) + "E" + (Pick(2) ? "+" : "-") + std::to_string(Pick(20));
      default:
        return std::to_string(Pick(30));
    }
  }
  std::string Operator() {
    static const char* const kOperators[] = {"+", "-", "*", "/",  "+",  "-",  "*", "\\", "^",
                                             "=", "<", ">", ">=", "<=", "<>", "&", "|",  "MOD"};
    return kOperators[Pick(18)];
  }
  std::string Gap() { return Pick(5) == 0 ? " " : ""; }

  std::mt19937 random_;
};

void ExpectSame(const std::string& text, const Evaluation& direct, const Evaluation& reduced) {
  ASSERT_EQ(std::bit_cast<std::uint64_t>(direct.value), std::bit_cast<std::uint64_t>(reduced.value))
      << text << ": " << direct.value << " against " << reduced.value;
  ASSERT_EQ(direct.fault, reduced.fault) << text;
}

TEST(Evaluate, DirectRoadGivesWhatTheReducerGives) {
  ExpressionMaker maker(4711);
  for (int i = 0; i < 300000; ++i) {
    const std::string text = i % 2 == 0 ? maker.WellFormed(3) : maker.Odd();
    ExpectSame(text, Evaluate(text), ReduceText(text));
    if (HasFatalFailure()) return;
  }
}

TEST(Evaluate, PiecesGiveWhatTheirTextGives) {
  static constexpr std::string_view kMarks = "+-*/+-*/()^\\=<>&|M";
  std::mt19937_64 random(99);
  for (int i = 0; i < 200000; ++i) {
    std::vector<modEval::Piece> pieces;
    std::string text;
    for (std::size_t n = 1 + random() % 9; n > 0; --n) {
      if (n % 2 == 1 || random() % 8 == 0) {
        double number = static_cast<double>(static_cast<int>(random() % 2001) - 400);
        if (random() % 3 == 0) number /= static_cast<double>(1 + random() % 999);
        if (random() % 40 == 0) number *= 1e15;
        pieces.push_back({number, 0});
        text += Str(number);
      } else {
        const char mark = kMarks[random() % kMarks.size()];
        pieces.push_back({0, mark});
        if (mark == 'M')
          text += "MOD";
        else
          text += mark;
      }
    }
    ExpectSame(text, modEval::EvaluatePieces(pieces), ReduceText(text));
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace kvr
