// The one tokenizer of the tag grammar.
//
// A mode is a sum of bits that says which marks nest. Levels start at 0, may go negative and are never reset:
// one stray ")" keeps the rest of the text "nested" until a later "(" brings the level back. Quotes do not
// shield the other marks from being counted. A delimiter counts only while every counted level is 0 and the
// quote flag is off; the levels are updated for a character before it is tested, so a closing mark can be a
// delimiter itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Text.h"

namespace kvr::modNewParser {

enum Mode : unsigned {
  kPlain = 0,
  kQuotes = 1,
  kParens = 2,
  kBrackets = 4,
  kBraces = 8,
  kTags = kParens | kBraces,             // 10: the general tag split
  kNames = kQuotes | kParens | kBraces,  // 11: lists of names
};

// Walks the text and keeps the levels.
class NestingLevels {
 public:
  explicit NestingLevels(unsigned mode) : mode_(mode) {}
  // Counts one character and tells whether it stands at level 0, outside quotes.
  bool Step(char c) {
    if (c == '"') {
      if (mode_ & kQuotes) quoted_ = !quoted_;
    } else if (c == '(' || c == ')') {
      if (mode_ & kParens) parens_ += c == '(' ? 1 : -1;
    } else if (c == '[' || c == ']') {
      if (mode_ & kBrackets) brackets_ += c == '[' ? 1 : -1;
    } else if (c == '{' || c == '}') {
      if (mode_ & kBraces) braces_ += c == '{' ? 1 : -1;
    }
    return !quoted_ && (parens_ | brackets_ | braces_) == 0;
  }

 private:
  unsigned mode_;
  bool quoted_ = false;
  long parens_ = 0, brackets_ = 0, braces_ = 0;
};

// The tokens are views into the text that was parsed; delimiters[i] ended tokens[i], so there is one fewer.
struct Tokens {
  std::vector<std::string_view> tokens;
  std::string delimiters;

  std::size_t TokenCount() const { return tokens.size(); }
  // 1-based; "" past the end.
  std::string_view Token(std::size_t i) const { return i >= 1 && i <= tokens.size() ? tokens[i - 1] : ""; }
  std::string_view TokenDelimiter(std::size_t i) const {
    return i >= 1 && i <= delimiters.size() ? std::string_view(delimiters).substr(i - 1, 1) : "";
  }
};

// Splits at any one character of `delimiters` at level 0. An empty text is one empty token.
Tokens ParseChars(std::string_view text, std::string_view delimiters, unsigned mode);

// Splits at each level-0 match of `word`, in any case; the levels go on behind a match as they stand after
// its first character. A word that begins with an opening mark of the mode does not match at level 0. An
// empty word gives the text as one token.
std::vector<std::string_view> ParseWord(std::string_view text, std::string_view word, unsigned mode);

// Position (0-based) of the first level-0 match at or after `start`, levels starting at 0 there; npos if
// none.
std::size_t FindWordTopLevel(std::string_view text, std::string_view word, unsigned mode,
                             std::size_t start = 0);

// The same parses with every token trimmed.
std::vector<std::string_view> ParseSplitChars(std::string_view text, std::string_view delimiters,
                                              unsigned mode);
std::vector<std::string_view> ParseSplitWord(std::string_view text, std::string_view word, unsigned mode);

// Calls f(token) for each token of a one-character split, without making an array.
template <class F>
void ForEachToken(std::string_view text, char delimiter, unsigned mode, F&& f) {
  std::size_t begin = 0;
  auto finish = [&](std::size_t end) {
    f(text.substr(begin, end - begin));
    begin = end + 1;
  };
  if (mode == kPlain) {
    for (std::size_t i = text.find(delimiter); i != npos; i = text.find(delimiter, begin)) finish(i);
  } else {
    NestingLevels levels(mode);
    for (std::size_t i = 0; i < text.size(); ++i)
      if (levels.Step(text[i]) && text[i] == delimiter) finish(i);
  }
  f(text.substr(begin));
}

}  // namespace kvr::modNewParser
