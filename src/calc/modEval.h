// Pure arithmetic on a string of numbers and operators.
//
// The definition is a text reducer: parentheses from the left, then six levels of operators ("^"; "*" "/" "\"
// "MOD";
// "+" "-"; ">=" "<=" "<>"; ">" "<" "="; "|" "&"), each taking its leftmost operator, reading the numbers on
// both sides and writing the result back with 15 significant digits. What is no number reads as 0, and
// nothing reports it. See docs/formats/formulas.md.
#pragma once

#include <string>
#include <string_view>

namespace kvr::modEval {

struct Evaluation {
  double value = 0;
  bool fault = false;  // unbalanced parentheses, an operator at the end, division by 0: the value is then 0
};

// Parentheses nest to 200; deeper is a fault.
Evaluation Evaluate(std::string_view expression);

}  // namespace kvr::modEval
