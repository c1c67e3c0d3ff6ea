// The definition of modEval::Evaluate: arithmetic by rewriting the text.
#pragma once

#include <string_view>

#include "calc/modEval.h"

namespace kvr::modEval {

inline constexpr int kDeepestNesting = 200;
inline constexpr std::size_t kLongestOddText = 32768;

Evaluation ReduceText(std::string_view expression);

// The one arithmetic of both roads. False for a fault: division by 0, a power without a value, operands of
// whole-number operators beyond 32 bits. `op` is the operator's first character, 'g' for ">=", 'l' for "<=",
// 'n' for "<>", 'M' for "MOD".
bool Compute(char op, double left, double right, double& result);

}  // namespace kvr::modEval
