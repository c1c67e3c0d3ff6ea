// What the solver of one character remembers while formulas call each other.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "calc/modEval.h"

namespace kvr {

class CalcRecord;

struct SolverState {
  // Lines about each stage of an expression go to the log.
  bool trace = false;
  // What the calculation notes for the player who asks how a number came about; usually there is none.
  CalcRecord* record = nullptr;

  // A result computed with this set depends on the context and is not kept.
  bool noCache = false;
  int depth = 0;
  // A bound was met within the outermost call: what is running ends with what it has, nothing new begins.
  bool overBound = false;
  // Work done within the outermost call: one for each text solved, and one more for each 1024 characters.
  std::size_t work = 0;

  std::vector<modEval::Piece> pieces;  // a stack: each running expression has its pieces on top
  std::deque<std::string> texts;       // one for each depth, reused
};

}  // namespace kvr
