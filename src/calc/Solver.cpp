// The solver's main road: an expression through its stages (special cases, "$" functions, "@" functions,
// references, arithmetic), the cache around it, and the bounds that keep every formula finite.
#include "calc/modSolver.h"

#include <algorithm>
#include <initializer_list>
#include <span>

#include "calc/Explanation.h"
#include "calc/SolverContext.h"
#include "calc/TextReducer.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modSolver {
namespace {

// A text for the log, of a length that a person reads.
std::string Excerpt(std::string_view text) {
  constexpr std::size_t kLongest = 200;
  if (text.size() <= kLongest) return std::string(text);
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;  // not inside a letter
  return std::string(text.substr(0, end)) + "...";
}

std::string Quoted(std::string_view text) {
  return "\"" + Excerpt(text) + "\"";
}

void Trace(Context& context, std::string_view stage, std::string_view text) {
  if (!context.state.trace) return;
  context.character.Env().log.LogLine(TraceTop() + std::string(stage) + std::string(text));
}
void Trace(Context& context, std::string_view stage, double value) {
  if (context.state.trace) Trace(context, stage, Str(value));
}

// A result, which the explanation of a calculation shows with its formula.
template <class Solve>
double Explained(Context& context, std::string_view formula, Solve&& solve) {
  if (context.state.record == nullptr) return solve();
  explain::Step step(context.state);
  step.Formula(formula);
  return step.Is(solve());
}

// Whether an expression has words that read its context, so that its value is not kept.
bool NamesContext(std::string_view expression) {
  const auto anyAt = [&](std::size_t i, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words,
                               [&](auto word) { return StartsWithNoCase(expression.substr(i), word); });
  };
  for (std::size_t i = 0; i < expression.size(); ++i) {
    bool names = false;
    switch (expression[i]) {
      case '@':
        names = anyAt(i, {"@hasmod", "@ownerhasmod", "@itemhasmod"});
        break;
      case '%':
        names = anyAt(i, {"%level", "%count"});
        break;
      case '$':
        names = anyAt(i, {"$textvalue("});
        break;
      case 'm':
      case 'M':
        names = anyAt(i, {"me::"});
        break;
      case 'c':
      case 'C':
        names = anyAt(i, {"char::"});
        break;
      case 'o':
      case 'O':
        names = anyAt(i, {"owner::"});
        break;
      case 'p':
      case 'P':
        names = anyAt(i, {"prereq"});
        break;
      case 'd':
      case 'D':
        names = anyAt(i, {"default"});
        break;
      default:
        break;
    }
    if (names) return true;
  }
  return false;
}

// A "@" without a call behind it stands for 0, together with the word that follows it.
std::size_t EndOfWord(std::string_view text, std::size_t at) {
  const std::size_t end = text.find_first_of(kExpressionMarks, at);
  return end == npos ? text.size() : end;
}

void ReplaceAtFunctions(std::string_view text, std::string& replaced, Context& context) {
  ReplacementBound bound(context, text);
  double result = 0;
  std::size_t begin = 0;
  for (std::size_t at = text.find('@'); at != npos; at = text.find('@', begin)) {
    if (!bound.NextRound(replaced)) {
      replaced.clear();
      return;
    }
    replaced.append(text, begin, at - begin);
    const std::size_t open = text.find('(', at);
    const std::size_t length = open == npos ? npos : modTags::FindCloseParen(text.substr(open + 1));
    if (length == npos) {
      context.character.Env().log.LogLine("A function without its parentheses counts as 0: " + Quoted(text) +
                                          " (" + context.item.NameForMessages() + ")");
      replaced += " 0";
      begin = open == npos ? EndOfWord(text, at + 1) : text.size();
      continue;
    }
    result = Explained(context, text.substr(at, open + 1 + length + 1 - at), [&] {
      CallAtFunction(Trim(text.substr(at, open - at)), Trim(text.substr(open + 1, length)), context, result);
      return result;
    });
    if (!(result < 0)) replaced += ' ';
    AppendStr(replaced, result);
    begin = open + 1 + length + 1;
  }
  replaced.append(text, begin);
}

// The top of the stack of pieces, for as long as one expression needs it.
class PieceStack {
 public:
  explicit PieceStack(std::vector<modEval::Piece>& pieces) : pieces_(pieces), base_(pieces.size()) {}
  ~PieceStack() { pieces_.resize(base_); }
  PieceStack(const PieceStack&) = delete;
  PieceStack& operator=(const PieceStack&) = delete;
  void Push(double number, char mark) { pieces_.push_back({number, mark}); }
  std::span<const modEval::Piece> Pieces() const { return std::span(pieces_).subspan(base_); }

 private:
  std::vector<modEval::Piece>& pieces_;
  std::size_t base_;
};

double SolveParts(std::string_view text, Context& context) {
  PieceStack stack(context.state.pieces);
  ForEachPart(
      text, true,
      [&](std::string_view part) {
        part = modTools::StripQuotesAndBraces(part);
        if (part.empty()) return;
        Trace(context, ": Before GetItemVal Parts$(", part);
        const double value = Explained(context, part, [&] { return ReferenceValue(part, context); });
        Trace(context, ":  After GetItemVal Parts$(", value);
        stack.Push(value, 0);
      },
      [&](char mark) { stack.Push(0, mark); });
  const auto [value, fault] = modEval::EvaluatePieces(stack.Pieces());
  if (fault && text.size() > modEval::kLongestOddText) MeetBound(context, text, "is too long");
  Trace(context, ": After Evaluate tValue = ", value);
  return value;
}

double SolveText(std::string_view text, Context& context) {
  std::string changed;
  if (text.find('%') != npos) {
    changed = text;
    SubstituteSpecialCases(changed, context);
    text = changed;
    Trace(context, ": After subs tmp$ = ", text);
  }
  if (text.find('$') != npos) {
    changed = ReplaceTextFunctions(text, context);
    text = changed;
    Trace(context, ": After TextFunctions tmp$ = ", text);
  }
  if (text.find('@') != npos) {
    std::string& replaced = context.state.texts[static_cast<std::size_t>(context.state.depth - 1)];
    replaced.clear();
    ReplaceAtFunctions(text, replaced, context);
    text = replaced;
    Trace(context, ": After @Functions tmp$ = ", text);
  }
  return text.empty() ? 0 : SolveParts(text, context);
}

// A nested expression can't clear what the outer one must remember.
class NoCacheScope {
 public:
  explicit NoCacheScope(SolverState& state) : state_(state), outer_(std::exchange(state.noCache, false)) {}
  ~NoCacheScope() { state_.noCache = state_.noCache || outer_; }
  NoCacheScope(const NoCacheScope&) = delete;
  NoCacheScope& operator=(const NoCacheScope&) = delete;

 private:
  SolverState& state_;
  bool outer_;
};

double SolveNew(std::string_view expression, Context& context) {
  return Guarded("modSolver:Solver", expression, context, [&] {
    NoCacheScope scope(context.state);
    const double value = Explained(context, expression, [&] { return SolveText(expression, context); });
    if (!context.state.noCache && !NamesContext(expression))
      context.character.TokenCache.Add(expression, value, 0);
    Trace(context, ": Solver Result = ", value);
    return value;
  });
}

}  // namespace

Context ContextOf(CalcItem& item) {
  KVRCharacter* character = item.RootOwnerChar();
  if (!character) throw SolverFailure(FailureText(KVRError(ErrorNumber::ObjectNotSet)));
  return {item, *character, character->Solving};
}

SolverCall::SolverCall(Context& context, std::string_view text)
    : state_(context.state), entered_(!state_.overBound) {
  if (entered_ && state_.depth >= kDeepestCall) {
    MeetBound(context, text, "calls itself without end");
    entered_ = false;
  }
  entered_ = entered_ && Charge(context, text);
  ++state_.depth;
  if (state_.texts.size() < static_cast<std::size_t>(state_.depth)) state_.texts.emplace_back();
}

SolverCall::~SolverCall() {
  if (--state_.depth > 0) return;
  state_.overBound = false;
  state_.work = 0;
}

bool ReplacementBound::NextRound(std::string_view text) {
  if (++rounds_ > kMostRounds || text.size() > room_) {
    MeetBound(context_, text, "replaces its own text without end");
    return false;
  }
  return true;
}

bool Charge(Context& context, std::string_view text) {
  context.state.work += 1 + text.size() / 1024;
  if (context.state.work > kMostWork) MeetBound(context, text, "takes too many steps");
  return !context.state.overBound;
}

void MeetBound(Context& context, std::string_view text, std::string_view what) {
  context.state.noCache = true;
  if (std::exchange(context.state.overBound, true)) return;
  context.character.Env().log.LogRed("The formula " + Quoted(text) + " of '" +
                                     context.item.NameForMessages() + "' " + std::string(what) +
                                     "; it counts as 0.");
}

void Fail(const KVRError& error, std::string_view text, Context& context) {
  const std::string message = FailureText(error) + " (in the formula " + Quoted(text) + " of '" +
                              context.item.NameForMessages() + "')";
  context.character.Env().log.LogRed(message);
  throw SolverFailure(message);
}

double Solver(std::string_view expression, CalcItem& item) {
  expression = Trim(expression);
  if (expression.empty()) return 0;
  if (IsNumeric(expression)) return Val(expression);
  Context context = ContextOf(item);
  // A kept answer doesn't tell what went into it.
  if (context.state.record != nullptr) return SolveNew(expression, context);
  if (const clsToken* token = context.character.TokenCache.Item(expression)) return token->Value;
  return SolveNew(expression, context);
}

double SolverGuarded(std::string_view expression, CalcItem& item) {
  try {
    return Solver(expression, item);
  } catch (const SolverFailure&) {
    return 0;
  }
}

}  // namespace kvr::modSolver
