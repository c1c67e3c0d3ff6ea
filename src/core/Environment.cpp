// The program's version and how version texts compare.
#include "core/Environment.h"

#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {

namespace {

// Takes the part before the next point off the text.
double TakeVersionPart(std::string_view& text) {
  const std::size_t point = text.find('.');
  const double value = Val(text.substr(0, point));
  text = point == npos ? std::string_view() : text.substr(point + 1);
  return value;
}

}  // namespace

std::string_view ProgramVersion() {
  return KIVERA_VERSION;
}

int CompareVersions(std::string_view a, std::string_view b) {
  while (!a.empty() || !b.empty()) {
    const double left = TakeVersionPart(a);
    const double right = TakeVersionPart(b);
    if (left != right) return left < right ? -1 : 1;
  }
  return 0;
}

}  // namespace kvr
