// Between the source files of modSolver: the running context, its bounds, and what the stages call of each
// other.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "calc/CalcItem.h"
#include "calc/SolverState.h"
#include "character/KVRCharacter.h"
#include "core/modLogging.h"
#include "core/modNewParser.h"

namespace kvr::modSolver {

inline constexpr int kDeepestCall = 200;
inline constexpr int kMostRounds = 1000;
inline constexpr std::size_t kMostWork = 100000;
inline constexpr std::size_t kMostGrowth = 1000000;  // characters that replacements may add to a text

// The marks at which an expression comes apart.
inline constexpr std::string_view kExpressionMarks = "()+-/*=><&|^\\";

struct Context {
  CalcItem& item;
  KVRCharacter& character;
  SolverState& state;
};
// Throws SolverFailure for a record that is on no character.
Context ContextOf(CalcItem& item);

// One call of the solver. It may go on only if Entered(): otherwise a bound is met, and its result is 0 or
// "".
class SolverCall {
 public:
  SolverCall(Context& context, std::string_view text);
  ~SolverCall();
  SolverCall(const SolverCall&) = delete;
  SolverCall& operator=(const SolverCall&) = delete;
  bool Entered() const { return entered_; }

 private:
  SolverState& state_;
  bool entered_;
};

// Counts the rounds of one replacement loop over a growing text.
class ReplacementBound {
 public:
  ReplacementBound(Context& context, std::string_view text)
      : context_(context), room_(text.size() + kMostGrowth) {}
  // False when the loop must end: the text is over a bound.
  bool NextRound(std::string_view text);

 private:
  Context& context_;
  std::size_t room_;
  int rounds_ = 0;
};

// Adds to the work of the outermost call; false when it is over its bound.
bool Charge(Context& context, std::string_view text);
// Logs the first bound met within the outermost call; from then on nothing new begins in it.
void MeetBound(Context& context, std::string_view text, std::string_view what);

// Logs a failure with the formula and the trait, and throws it on as SolverFailure.
[[noreturn]] void Fail(const KVRError& error, std::string_view text, Context& context);

// Runs a public procedure as one call of the solver; a run-time failure in it becomes a SolverFailure.
template <class Stage>
auto Guarded(const char* procedure, std::string_view text, Context& context, Stage&& stage) {
  TraceScope trace(procedure);
  SolverCall call(context, text);
  if (!call.Entered()) return decltype(stage())();
  try {
    return stage();
  } catch (const KVRError& error) {
    Fail(error, text, context);
  }
}

// A "@" call: `name` with its "@", in any case; `arguments` is what stands between the parentheses. A name
// that is no function leaves `result` as it is.
void CallAtFunction(std::string_view name, std::string_view arguments, Context& context, double& result);

// The largest and the smallest value of a list of expressions.
double LargestOf(std::string_view list, Context& context);
double SmallestOf(std::string_view list, Context& context);

// The value of an "@indexedvalue" or "$indexedvalue" call: the text of the entry, "" for none.
std::string_view IndexedEntry(std::string_view arguments, Context& context);
// The same for "@textindexedvalue" and "$textindexedvalue".
std::string_view TextIndexedEntry(std::string_view arguments);

std::string ReplaceTextFunctions(std::string_view text, Context& context);
void SubstituteSpecialCases(std::string& text, Context& context);
double ReferenceValue(std::string_view reference, Context& context);
std::string ReferenceText(std::string_view reference, Context& context);

// Calls part(text) and mark(character) for each piece of an expression, in order; a part may be empty. Quotes
// and braces protect. `wholeLanguage` also keeps the sign of an exponent in its number and divides at " MOD "
// (mark 'M').
template <class Part, class Mark>
void ForEachPart(std::string_view text, bool wholeLanguage, Part&& part, Mark&& mark) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  modNewParser::NestingLevels levels(modNewParser::kQuotes | modNewParser::kBraces);
  bool plain = true;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"' || c == '{' || c == '}') {
      plain = levels.Step(c);
      continue;
    }
    if (!plain) continue;
    std::size_t length = 1;
    char code = c;
    if (c == ' ') {
      if (!wholeLanguage || text.substr(i + 1, 4) != "MOD ") continue;
      code = 'M';
      length = 4;
    } else if (kExpressionMarks.find(c) == npos) {
      continue;
    } else if (wholeLanguage && (c == '+' || c == '-') && i >= 2 && text[i - 1] == 'E' &&
               isDigit(text[i - 2]) && i + 1 < text.size() && isDigit(text[i + 1])) {
      continue;
    }
    part(text.substr(begin, i - begin));
    mark(code);
    begin = i + length;
    i = begin - 1;
  }
  part(text.substr(begin));
}

}  // namespace kvr::modSolver
