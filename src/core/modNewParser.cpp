// The tokenizer: splits text at characters or words that stand outside the nesting marks of the mode.
#include "core/modNewParser.h"

#include <array>

namespace kvr::modNewParser {
namespace {

// The characters that a walk must look at: the marks of the mode and the delimiters.
class CharacterSet {
 public:
  CharacterSet(std::string_view delimiters, unsigned mode) {
    Insert(delimiters);
    if (mode & kQuotes) Insert("\"");
    if (mode & kParens) Insert("()");
    if (mode & kBrackets) Insert("[]");
    if (mode & kBraces) Insert("{}");
  }
  bool Contains(char c) const { return contains_[static_cast<unsigned char>(c)]; }

 private:
  void Insert(std::string_view characters) {
    for (char c : characters) contains_[static_cast<unsigned char>(c)] = true;
  }
  std::array<bool, 256> contains_{};
};

// The characters where a match of the word can begin, for the same walk.
std::string FirstCharacters(std::string_view word) {
  if (static_cast<unsigned char>(word[0]) < 0x80) return LCase(word.substr(0, 1)) + UCase(word.substr(0, 1));
  std::string beyondAscii;
  for (int c = 0x80; c <= 0xFF; ++c) beyondAscii += static_cast<char>(c);
  return beyondAscii;
}

std::vector<std::string_view> Trimmed(std::vector<std::string_view> tokens) {
  for (std::string_view& token : tokens) token = Trim(token);
  return tokens;
}

}  // namespace

Tokens ParseChars(std::string_view text, std::string_view delimiters, unsigned mode) {
  const CharacterSet noted(delimiters, mode);
  NestingLevels levels(mode);
  Tokens parsed;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (!noted.Contains(c) || !levels.Step(c) || delimiters.find(c) == npos) continue;
    parsed.tokens.push_back(text.substr(begin, i - begin));
    parsed.delimiters += c;
    begin = i + 1;
  }
  parsed.tokens.push_back(text.substr(begin));
  return parsed;
}

std::vector<std::string_view> ParseWord(std::string_view text, std::string_view word, unsigned mode) {
  std::vector<std::string_view> tokens;
  std::size_t begin = 0;
  if (!word.empty()) {
    const CharacterSet noted(FirstCharacters(word), mode);
    NestingLevels levels(mode);
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (!noted.Contains(text[i]) || !levels.Step(text[i])) continue;
      if (!StartsWithNoCase(text.substr(i), word)) continue;
      tokens.push_back(text.substr(begin, i - begin));
      begin = i + word.size();
      i = begin - 1;
    }
  }
  tokens.push_back(text.substr(begin));
  return tokens;
}

std::size_t FindWordTopLevel(std::string_view text, std::string_view word, unsigned mode, std::size_t start) {
  if (word.empty()) return npos;
  const CharacterSet noted(FirstCharacters(word), mode);
  NestingLevels levels(mode);
  for (std::size_t i = start; i < text.size(); ++i) {
    if (!noted.Contains(text[i]) || !levels.Step(text[i])) continue;
    if (StartsWithNoCase(text.substr(i), word)) return i;
  }
  return npos;
}

std::vector<std::string_view> ParseSplitChars(std::string_view text, std::string_view delimiters,
                                              unsigned mode) {
  return Trimmed(ParseChars(text, delimiters, mode).tokens);
}

std::vector<std::string_view> ParseSplitWord(std::string_view text, std::string_view word, unsigned mode) {
  return Trimmed(ParseWord(text, word, mode));
}

}  // namespace kvr::modNewParser
