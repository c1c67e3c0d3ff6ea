// The direct road of arithmetic: numbers and marks in an array, reduced level by level in one pass each.
//
// It may only take what the text reducer would read the same way, so it gives up ("odd") on whatever text
// could make a difference: a missing operand, numbers side by side, an exponent, three signs in a row, "MOD".
// The rules that remain visible in well-formed text are kept here too: a "-" belongs to a number only at the
// front of its group or directly behind an operator, and every value passes through 15 significant digits.
#include "calc/modEval.h"

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "calc/TextReducer.h"
#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr::modEval {
namespace {

constexpr std::size_t kMostDigits = 15;

enum LevelBits : unsigned {
  kPower = 1,
  kProduct = 2,
  kSum = 4,
  kWide = 8,
  kCompare = 16,
  kLogic = 32,
  kOdd = 64
};

constexpr unsigned LevelOf(char mark) {
  switch (mark) {
    case 0:
      return 0;
    case '^':
      return kPower;
    case '*':
    case '/':
    case '\\':
      return kProduct;
    case '+':
    case '-':
      return kSum;
    case 'g':
    case 'l':
    case 'n':
      return kWide;
    case '>':
    case '<':
    case '=':
      return kCompare;
    case '|':
    case '&':
      return kLogic;
    default:
      return kOdd;
  }
}

bool IsSign(char mark) {
  return mark == '+' || mark == '-';
}
char CollapsedSign(char first, char second) {
  return first == second ? '+' : '-';
}

// Whether Str writes the value without an exponent, so that its text holds nothing but digits and a point.
bool IsPlain(double size) {
  return size < 1e15 && (size >= 1e-4 || size == 0);
}

class DirectEvaluator {
 public:
  // `room` holds at least twice as many places as there are pieces.
  explicit DirectEvaluator(Piece* room) : tokens_(room) {}

  // False when the expression is odd.
  bool Run(std::span<const Piece> pieces, double& value) {
    for (const Piece& piece : pieces)
      if (!Take(piece)) return false;
    return depth_ == 0 && ReduceGroup(0, value);
  }

 private:
  bool Take(const Piece& piece) {
    if (piece.mark == 0) return TakeNumber(piece.number);
    if (IsSign(piece.mark)) return TakeSign(piece.mark);
    signs_ = 0;
    if (piece.mark == '(') return OpenGroup();
    if (piece.mark == ')') return CloseGroup();
    return TakeOperator(piece.mark);
  }

  std::size_t GroupStart() const { return depth_ == 0 ? 0 : groups_[depth_ - 1]; }
  bool BehindNumber() const { return size_ > GroupStart() && tokens_[size_ - 1].mark == 0; }

  bool TakeNumber(double number) {
    number = Round15(number);
    if (!IsPlain(std::abs(number)) || (number < 0 && !TakeSign('-'))) return false;
    signs_ = 0;
    if (BehindNumber()) return false;
    tokens_[size_++] = {std::abs(number), 0};
    return true;
  }
  bool TakeSign(char sign) {
    if (++signs_ > 2) return false;
    if (signs_ == 2)
      tokens_[size_ - 1].mark = CollapsedSign(tokens_[size_ - 1].mark, sign);
    else
      tokens_[size_++] = {0, sign};
    return true;
  }
  // The second character of ">=", "<=" and "<>" joins the first.
  bool TakeOperator(char mark) {
    char& last = tokens_[size_ > 0 ? size_ - 1 : 0].mark;
    if (size_ > GroupStart() && last == '>' && mark == '=')
      last = 'g';
    else if (size_ > GroupStart() && last == '<' && mark == '=')
      last = 'l';
    else if (size_ > GroupStart() && last == '<' && mark == '>')
      last = 'n';
    else
      tokens_[size_++] = {0, mark};
    return true;
  }
  bool OpenGroup() {
    if (BehindNumber() || depth_ == kDeepestNesting) return false;
    groups_[depth_++] = size_;
    return true;
  }
  bool CloseGroup() {
    double value = 0;
    const std::size_t start = GroupStart();
    if (depth_ == 0 || start == size_ || !ReduceGroup(start, value)) return false;
    size_ = start;
    --depth_;
    return Put(size_, GroupStart(), value);
  }

  // Writes a value at `at` as its text would stand there: a "-" joins a sign that stands before it.
  bool Put(std::size_t& at, std::size_t first, double value) {
    value = Round15(value);
    const double size = std::abs(value);
    if (!IsPlain(size)) return false;
    if (value < 0) {
      if (at > first && IsSign(tokens_[at - 1].mark))
        tokens_[at - 1].mark = CollapsedSign(tokens_[at - 1].mark, '-');
      else
        tokens_[at++] = {0, '-'};
    }
    tokens_[at++] = {size, 0};
    return true;
  }

  // Reduces all from `first` on to the number that then stands in front.
  bool ReduceGroup(std::size_t first, double& value) {
    if (first < size_ && tokens_[first].mark == '+') ++first;
    unsigned levels = 0;
    for (std::size_t i = first; i < size_; ++i) levels |= LevelOf(tokens_[i].mark);
    if (levels & kOdd) return false;
    if ((levels & kPower) && !ReduceLevel(first, kPower)) return false;
    if ((levels & kProduct) && !ReduceLevel(first, kProduct)) return false;
    if ((levels & kSum) && !ReduceSums(first)) return false;
    if ((levels & kWide) && !ReduceLevel(first, kWide)) return false;
    if ((levels & kCompare) && !ReduceLevel(first, kCompare)) return false;
    if ((levels & kLogic) && !ReduceLevel(first, kLogic)) return false;
    return ReadFront(first, value);
  }

  bool ReadFront(std::size_t first, double& value) const {
    const bool negative = first < size_ && tokens_[first].mark == '-';
    if (negative) ++first;
    if (first >= size_ || tokens_[first].mark != 0) return false;
    value = negative ? -tokens_[first].number : tokens_[first].number;
    return true;
  }

  // Takes the number before `at`, with a "-" only where it stands at the front.
  bool PopLeft(std::size_t& at, std::size_t first, double& number) const {
    if (at == first || tokens_[at - 1].mark != 0) return false;
    number = tokens_[--at].number;
    if (at == first + 1 && tokens_[first].mark == '-') {
      number = -number;
      --at;
    }
    return true;
  }

  bool ReduceLevel(std::size_t first, unsigned level) {
    std::size_t at = first;
    for (std::size_t i = first; i < size_; ++i) {
      const char op = tokens_[i].mark;
      if (LevelOf(op) != level) {
        tokens_[at++] = tokens_[i];
        continue;
      }
      const bool negative = i + 1 < size_ && tokens_[i + 1].mark == '-';
      i += negative ? 2 : 1;
      if (i >= size_ || tokens_[i].mark != 0) return false;
      const double right = negative ? -tokens_[i].number : tokens_[i].number;
      double left = 0, result = 0;
      if (!PopLeft(at, first, left) || !Compute(op, left, right, result) || !Put(at, first, result))
        return false;
    }
    size_ = at;
    return true;
  }

  // A sum that comes out negative behind a comparison is written as its own operand again, which ends the
  // level; what follows stays unadded.
  bool ReduceSums(std::size_t first) {
    std::size_t at = first;
    for (std::size_t i = first; i < size_; ++i) {
      const char op = tokens_[i].mark;
      if (!IsSign(op) || (op == '-' && at == first)) {
        tokens_[at++] = tokens_[i];
        continue;
      }
      if (++i >= size_ || tokens_[i].mark != 0) return false;
      double left = 0, result = 0;
      PopLeft(at, first, left);
      if (!Compute(op, left, tokens_[i].number, result) || !Put(at, first, result)) return false;
      if (at < first + 3 || tokens_[at - 2].mark != '-') continue;
      while (++i < size_) tokens_[at++] = tokens_[i];
    }
    size_ = at;
    return true;
  }

  Piece* tokens_;
  std::size_t size_ = 0;
  std::array<std::size_t, kDeepestNesting> groups_;
  std::size_t depth_ = 0;
  int signs_ = 0;  // how many signs of the text stand in a row
};

// Reads the number at `at`; false for one that the direct road leaves alone.
bool ReadNumber(std::string_view text, std::size_t& at, double& number) {
  const std::size_t begin = at;
  bool point = false;
  for (; at < text.size(); ++at) {
    if (text[at] == '.' && !point)
      point = true;
    else if (text[at] < '0' || text[at] > '9')
      break;
  }
  const std::size_t digits = at - begin - (point ? 1 : 0);
  number = Val(text.substr(begin, at - begin));
  return digits >= 1 && digits <= kMostDigits;
}

bool ReadPieces(std::string_view text, std::vector<Piece>& pieces) {
  constexpr std::string_view kMarks = "()+-/*=><&|^\\";
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++i;
    } else if ((c >= '0' && c <= '9') || c == '.') {
      pieces.emplace_back();
      if (!ReadNumber(text, i, pieces.back().number)) return false;
    } else if (kMarks.find(c) != npos) {
      pieces.push_back({0, c});
      ++i;
    } else {
      return false;
    }
  }
  return true;
}

bool EvaluateDirectly(std::span<const Piece> pieces, double& value) {
  constexpr std::size_t kUsual = 64;
  Piece usual[kUsual];
  if (pieces.size() * 2 <= kUsual) return DirectEvaluator(usual).Run(pieces, value);
  const auto room = std::make_unique<Piece[]>(pieces.size() * 2);
  return DirectEvaluator(room.get()).Run(pieces, value);
}

std::string TextOf(std::span<const Piece> pieces) {
  std::string text;
  for (const Piece& piece : pieces) {
    if (piece.mark == 0)
      text += Str(piece.number);
    else if (piece.mark == 'M')
      text += "MOD";
    else
      text += piece.mark;
  }
  return text;
}

}  // namespace

Evaluation Evaluate(std::string_view expression) {
  std::vector<Piece> pieces;
  pieces.reserve(expression.size() < 64 ? expression.size() : 64);
  double value = 0;
  if (ReadPieces(expression, pieces) && EvaluateDirectly(pieces, value)) return {value + 0.0, false};
  return ReduceText(expression);
}

Evaluation EvaluatePieces(std::span<const Piece> pieces) {
  if (pieces.size() == 1 && pieces[0].mark == 0) return {Round15(pieces[0].number) + 0.0, false};
  double value = 0;
  if (EvaluateDirectly(pieces, value)) return {value + 0.0, false};
  return ReduceText(TextOf(pieces));
}

}  // namespace kvr::modEval
