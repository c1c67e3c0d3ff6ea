// Pure arithmetic on a string of numbers and operators.
//
// The definition is a text reducer (TextReducer.h): parentheses from the left, then six levels of operators
// ("^"; "*" "/" "\" "MOD"; "+" "-"; ">=" "<=" "<>"; ">" "<" "="; "|" "&"), each taking its leftmost operator,
// reading the numbers on both sides and writing the result back with 15 significant digits. What is no number
// reads as 0, and nothing reports it. See docs/formats/formulas.md.
//
// Well-formed expressions take a direct road that works on numbers and marks and gives the same value, bit
// for bit; everything else goes to the reducer.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kvr::modEval {

struct Evaluation {
  double value = 0;
  bool fault = false;  // unbalanced parentheses, an operator at the end, division by 0: the value is then 0
};

// Parentheses nest to 200; deeper is a fault. An odd text of more than 32768 characters is one too.
Evaluation Evaluate(std::string_view expression);

// An expression whose numbers are known already.
struct Piece {
  double number = 0;
  char mark = 0;  // an operator or parenthesis ('M' for "MOD"); 0 for a number
};
// The value of the text in which each number stands as Str writes it.
Evaluation EvaluatePieces(std::span<const Piece> pieces);

}  // namespace kvr::modEval
