// The usual descriptions of the failure numbers.
#include "core/KVRError.h"

namespace kvr {

std::string_view ErrorDescription(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::MissingKey:
      return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return "Overflow";
    case ErrorNumber::Subscript:
      return "Subscript out of range";
    case ErrorNumber::DivisionByZero:
      return "Division by zero";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::FileNotFound:
      return "File not found";
    case ErrorNumber::ObjectNotSet:
      return "Object not set";
    case ErrorNumber::DuplicateKey:
      return "This key is already in the collection";
  }
  return "Unknown failure";
}

}  // namespace kvr
