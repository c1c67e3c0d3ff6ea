// Run-time failures: what stops a step, is logged, and lets the procedure around it go on.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kvr {

// The numbers that callers test for.
enum class ErrorNumber : int {
  MissingKey = 5,
  Overflow = 6,
  Subscript = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  FileNotFound = 53,
  ObjectNotSet = 91,
  DuplicateKey = 457,
};

// The usual description of a number, such as "Type mismatch".
std::string_view ErrorDescription(ErrorNumber number);

class KVRError : public std::runtime_error {
 public:
  explicit KVRError(ErrorNumber number) : KVRError(number, std::string(ErrorDescription(number))) {}
  KVRError(ErrorNumber number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  ErrorNumber Number() const { return number_; }

 private:
  ErrorNumber number_;
};

// A failure inside a formula. It leaves the calculation that met it and is caught at the boundary of a
// command: the program writes its backups, shows the message and ends; kivera-batch fails the command.
class SolverFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Steps of one operation: a formula that fails in one of them doesn't keep the others from being done. The
// first failure goes on when all are.
class FirstFailure {
 public:
  template <class Step>
  void Run(Step&& step) {
    try {
      step();
    } catch (const SolverFailure&) {
      if (!first_) first_ = std::current_exception();
    }
  }
  void PassOn() const {
    if (first_) std::rethrow_exception(first_);
  }

 private:
  std::exception_ptr first_;
};

}  // namespace kvr
