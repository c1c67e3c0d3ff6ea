// What a prompt without a user gives, and the goal of a selection in words.
#include "core/EnginePrompts.h"

#include "core/Numbers.h"

namespace kvr {

namespace {

// A request that names no limit counts what `ByNumberOrCost` says, with nothing to reach.
bool WantsNumber(const SelectionRequest& request) {
  return request.LimitNumber || (!request.LimitCost && request.ByNumberOrCost == CountBy::Number);
}

bool WantsCost(const SelectionRequest& request) {
  return request.LimitCost || (!request.LimitNumber && request.ByNumberOrCost == CountBy::Cost);
}

bool HasMaxCost(const SelectionRequest& request) {
  return request.HasMaxCost || !request.MaxCost.IsZero();
}

Currency AsCurrency(long number) {
  return Currency(1) * number;
}

std::string Goal(Currency least, Currency most, bool hasMost) {
  if (!hasMost) return "Want: at least " + NumberText(least);
  if (least == most) return "Want: exactly " + NumberText(least);
  return "Want: " + NumberText(least) + " to " + NumberText(most);
}

bool Within(Currency value, Currency least, Currency most, bool hasMost) {
  return value >= least && (!hasMost || value <= most);
}

}  // namespace

Answer CancelAnswer(Buttons buttons) {
  switch (buttons) {
    case Buttons::Ok:
      return Answer::Ok;
    case Buttons::YesNo:
      return Answer::No;
    case Buttons::OkCancel:
    case Buttons::YesNoCancel:
      break;
  }
  return Answer::Cancel;
}

std::string GoalLine(const SelectionRequest& request) {
  std::string line;
  if (WantsNumber(request)) {
    line = Goal(AsCurrency(request.MinNumber), AsCurrency(request.MaxNumber), request.MaxNumber != 0);
  }
  if (WantsCost(request)) {
    if (!line.empty()) line += '\n';
    line += Goal(request.MinCost, request.MaxCost, HasMaxCost(request));
  }
  return line;
}

std::string StatusLine(const SelectionRequest& request, long count, Currency cost) {
  std::string line;
  if (WantsNumber(request)) line = "Have: " + std::to_string(count);
  if (WantsCost(request)) {
    if (!line.empty()) line += '\n';
    line += "Cost: " + NumberText(cost);
  }
  return line;
}

bool GoalMet(const SelectionRequest& request, long count, Currency cost) {
  if (WantsNumber(request) && !Within(AsCurrency(count), AsCurrency(request.MinNumber),
                                      AsCurrency(request.MaxNumber), request.MaxNumber != 0))
    return false;
  return !WantsCost(request) || Within(cost, request.MinCost, request.MaxCost, HasMaxCost(request));
}

}  // namespace kvr
