// Arithmetic by rewriting text: what the value of any string is, however odd. Well-formed strings take the
// faster road of modEval.cpp, which has to agree with this one in every bit.
#include "calc/TextReducer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modTags.h"

namespace kvr::modEval {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsSign(char c) {
  return c == '+' || c == '-';
}
bool IsOfNumber(char c) {
  return IsDigit(c) || c == 'D' || c == 'E' || c == '.';
}

void ReplaceToExhaustion(std::string& text, std::string_view pair, char single) {
  for (std::size_t at = text.find(pair); at != npos; at = text.find(pair, at > 0 ? at - 1 : 0))
    text.replace(at, pair.size(), 1, single);
}

void CollapseSigns(std::string& text) {
  ReplaceToExhaustion(text, "++", '+');
  ReplaceToExhaustion(text, "--", '+');
  ReplaceToExhaustion(text, "-+", '-');
  ReplaceToExhaustion(text, "+-", '-');
}

void StripWhitespace(std::string& text) {
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

struct Operator {
  std::size_t at = npos;
  std::size_t length = 1;
  char code = 0;
};

// How far an operand reaches at a level of operators.
enum class Operands { Power, Sum, Compare };

struct Level {
  Operator (*find)(const std::string& text);
  Operands operands;
  bool faultAtFront;
};

void TakeLeftmost(Operator& best, std::size_t at, std::size_t length, char code) {
  if (at < best.at) best = {at, length, code};
}

Operator FindOneOf(const std::string& text, std::string_view marks) {
  const std::size_t at = text.find_first_of(marks);
  return at == npos ? Operator{} : Operator{at, 1, text[at]};
}

Operator FindPower(const std::string& text) {
  return FindOneOf(text, "^");
}
Operator FindProduct(const std::string& text) {
  Operator found = FindOneOf(text, "*/\\");
  TakeLeftmost(found, text.find("MOD"), 3, 'M');
  return found;
}
// A "-" at the front is the sign of the first number. A sign behind digit and "E" belongs to an exponent; the
// search then moves on to the next sign, once.
Operator FindSum(const std::string& text) {
  std::size_t at = text.find_first_of("+-");
  if (at == 0 && text[0] == '-') at = text.find_first_of("+-", 1);
  if (at == npos) return {};
  if (at >= 2 && text[at - 1] == 'E' && IsDigit(text[at - 2])) at = text.find_first_of("+-", at + 1);
  return at == npos ? Operator{} : Operator{at, 1, text[at]};
}
Operator FindWideComparison(const std::string& text) {
  Operator found;
  TakeLeftmost(found, text.find(">="), 2, 'g');
  TakeLeftmost(found, text.find("<="), 2, 'l');
  TakeLeftmost(found, text.find("<>"), 2, 'n');
  return found;
}
Operator FindComparison(const std::string& text) {
  return FindOneOf(text, "><=");
}
Operator FindLogic(const std::string& text) {
  return FindOneOf(text, "|&");
}

constexpr Level kLevels[] = {
    {FindPower, Operands::Power, true},        {FindProduct, Operands::Power, true},
    {FindSum, Operands::Sum, false},           {FindWideComparison, Operands::Compare, true},
    {FindComparison, Operands::Compare, true}, {FindLogic, Operands::Compare, true},
};

// Where the number at the end of the text begins.
std::size_t LeftOperandStart(std::string_view left) {
  std::size_t start = left.size();
  while (start > 0) {
    const char c = left[start - 1];
    if (start == 1 && c == '-') return 0;
    if (start > 2 && IsSign(c) && left[start - 2] == 'E')
      start -= 2;
    else if (IsOfNumber(c))
      --start;
    else
      break;
  }
  return start;
}

// Where the number at the front of the text ends.
std::size_t RightOperandEnd(std::string_view right, bool mayBeNegative) {
  std::size_t end = mayBeNegative && right.starts_with('-') ? 1 : 0;
  while (end < right.size() && IsOfNumber(right[end])) {
    const bool exponentSign = right[end] == 'E' && end + 2 < right.size() && IsSign(right[end + 1]);
    end += exponentSign ? 2 : 1;
  }
  return end;
}

class Reducer {
 public:
  Evaluation Run(std::string_view expression, int depth) {
    text_ = Trim(expression);
    StripWhitespace(text_);
    CollapseSigns(text_);
    if (text_.starts_with('+')) text_.erase(0, 1);
    if (IsFinished()) return {value_, false};
    if (std::ranges::count(text_, '(') != std::ranges::count(text_, ')')) return Fault();
    if (!ReplaceParentheses(depth)) return Fault();
    CollapseSigns(text_);
    if (IsFinished()) return {value_, false};
    for (const Level& level : kLevels) {
      CollapseSigns(text_);
      const Outcome outcome = ReduceLevel(level);
      if (outcome == Outcome::Fault) return Fault();
      if (outcome == Outcome::Finished) return {value_, false};
    }
    CollapseSigns(text_);
    return {Val(text_), false};
  }

 private:
  enum class Outcome { GoesOn, Finished, Fault };

  static Evaluation Fault() { return {0, true}; }

  // The test goes by length alone, so a single letter is finished too, with 0.
  bool IsFinished() {
    value_ = Val(text_);
    number_.clear();
    AppendStr(number_, value_);
    return number_.size() == text_.size();
  }

  bool ReplaceParentheses(int depth) {
    for (std::size_t open = text_.find('('); open != npos; open = text_.find('(', open)) {
      const std::string_view behind = std::string_view(text_).substr(open + 1);
      const std::size_t length = modTags::FindCloseParen(behind);
      if (length == npos || depth >= kDeepestNesting) return false;
      const Evaluation inner = Reducer().Run(behind.substr(0, length), depth + 1);
      if (inner.fault) return false;
      number_.clear();
      AppendStr(number_, inner.value);
      text_.replace(open, length + 2, number_);
    }
    return true;
  }

  Outcome ReduceLevel(const Level& level) {
    while (true) {
      const Operator op = level.find(text_);
      if (op.at == npos) return Outcome::GoesOn;
      if ((level.faultAtFront && op.at == 0) || op.at + op.length == text_.size()) return Outcome::Fault;
      const std::string_view whole = text_;
      const std::string_view left = whole.substr(0, op.at), right = whole.substr(op.at + op.length);
      const std::size_t start = LeftOperandStart(left);
      const std::size_t end = RightOperandEnd(right, level.operands != Operands::Sum);
      double result = 0;
      if (!Compute(op.code, Val(left.substr(start)), Val(right.substr(0, end)), result))
        return Outcome::Fault;
      rewritten_.assign(left, 0, start);
      AppendStr(rewritten_, result);
      rewritten_.append(right, end);
      if (rewritten_ == text_) return Outcome::GoesOn;
      text_.swap(rewritten_);
      if (IsFinished()) return Outcome::Finished;
    }
  }

  std::string text_, rewritten_, number_;
  double value_ = 0;
};

bool WholeOperands(double& left, double& right) {
  left = RoundHalfEven(left);
  right = RoundHalfEven(right);
  constexpr double low = std::numeric_limits<std::int32_t>::min();
  constexpr double high = std::numeric_limits<std::int32_t>::max();
  return left >= low && left <= high && right >= low && right <= high;
}

bool ComputeWhole(char op, double left, double right, double& result) {
  if (!WholeOperands(left, right)) return false;
  const auto a = static_cast<std::int64_t>(left), b = static_cast<std::int64_t>(right);
  if ((op == '\\' || op == 'M') && b == 0) return false;
  switch (op) {
    case '\\':
      result = static_cast<double>(a / b);
      break;
    case 'M':
      result = static_cast<double>(a % b);
      break;
    case '|':
      result = static_cast<double>(a | b);
      break;
    default:
      result = static_cast<double>(a & b);
      break;
  }
  return true;
}

double Truth(bool holds) {
  return holds ? -1 : 0;
}

}  // namespace

bool Compute(char op, double left, double right, double& result) {
  switch (op) {
    case '^':
      result = std::pow(left, right);
      break;
    case '*':
      result = left * right;
      break;
    case '/':
      if (right == 0) return false;
      result = left / right;
      break;
    case '+':
      result = left + right;
      break;
    case '-':
      result = left - right;
      break;
    case 'g':
      result = Truth(left >= right);
      break;
    case 'l':
      result = Truth(left <= right);
      break;
    case 'n':
      result = Truth(left != right);
      break;
    case '>':
      result = Truth(left > right);
      break;
    case '<':
      result = Truth(left < right);
      break;
    case '=':
      result = Truth(left == right);
      break;
    default:
      return ComputeWhole(op, left, right, result);
  }
  return std::isfinite(result);
}

Evaluation ReduceText(std::string_view expression) {
  if (expression.size() > kLongestOddText) return {0, true};
  Evaluation evaluation = Reducer().Run(expression, 0);
  evaluation.value += 0.0;  // never -0
  return evaluation;
}

}  // namespace kvr::modEval
