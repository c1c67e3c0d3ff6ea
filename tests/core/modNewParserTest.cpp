#include "core/modNewParser.h"

#include <gtest/gtest.h>

namespace kvr::modNewParser {
namespace {

using Views = std::vector<std::string_view>;

TEST(modNewParser, SplitsAtCharactersOutsideTheMarksOfTheMode) {
  const struct {
    std::string text, delimiters;
    unsigned mode;
    Views tokens;
    std::string ended;
  } cases[] = {
      {"", ",", kTags, {""}, ""},
      {",", ",", kPlain, {"", ""}, ","},
      {"a(1),b(x,y),c(f(2,3))", ",", kTags, {"a(1)", "b(x,y)", "c(f(2,3))"}, ",,"},
      {"a(1), {b(2), c(3)}, d(4)", ",", kTags, {"a(1)", " {b(2), c(3)}", " d(4)"}, ",,"},
      {"a(1), {b(2), c(3)}, d(4)", ",", kParens, {"a(1)", " {b(2)", " c(3)}", " d(4)"}, ",,,"},
      {"a,b|c,d", "|,", kPlain, {"a", "b", "c", "d"}, ",|,"},
      // One stray ")" ends all splitting until a "(" makes up for it; "{" and "(" are counted apart.
      {"a),b,c", ",", kTags, {"a),b,c"}, ""},
      {"a),b,(c,d", ",", kTags, {"a),b,(c", "d"}, ","},
      {"a(,b},c),d", ",", kTags, {"a(,b},c),d"}, ""},
      // Quotes shield delimiters but not the other marks.
      {"\"a,b\",c", ",", kQuotes, {"\"a,b\"", "c"}, ","},
      {"\"a)\",b,(c,d", ",", kNames, {"\"a)\",b,(c", "d"}, ","},
      {"\"a,b", ",", kQuotes, {"\"a,b"}, ""},
      {"\"a,b\"", ",", kTags, {"\"a", "b\""}, ","},
      {"[a,b],c", ",", kBrackets, {"[a,b]", "c"}, ","},
      {"[a,b],c", ",", kNames, {"[a", "b]", "c"}, ",,"},
      // The mark that closes the level is a delimiter itself.
      {"(a)b)c", ")", kParens, {"(a", "b)c"}, ")"},
      {"aXbxc", "x", kPlain, {"aXb", "c"}, "x"},
  };
  for (const auto& [text, delimiters, mode, tokens, ended] : cases) {
    const Tokens parsed = ParseChars(text, delimiters, mode);
    EXPECT_EQ(parsed.tokens, tokens) << text;
    EXPECT_EQ(parsed.delimiters, ended) << text;
    if (delimiters.size() > 1) continue;
    Views walked;
    ForEachToken(text, delimiters[0], mode, [&](std::string_view token) { walked.push_back(token); });
    EXPECT_EQ(walked, tokens) << text;
  }
  const Tokens parsed = ParseChars("a|b", "|", kPlain);
  EXPECT_EQ(parsed.Token(2), "b");
  EXPECT_EQ(parsed.TokenDelimiter(1), "|");
  EXPECT_EQ(parsed.Token(0), "");
  EXPECT_EQ(parsed.Token(3), "");
  EXPECT_EQ(parsed.TokenDelimiter(2), "");
}

TEST(modNewParser, SplitsAtWordsOutsideTheMarks) {
  const struct {
    std::string text, word;
    unsigned mode;
    Views tokens;
    std::size_t first;
  } cases[] = {
      {"", " or ", kNames, {""}, npos},
      {"a or b OR (c or d)", " or ", kNames, {"a", "b", "(c or d)"}, 1},
      {"oror", "or", kPlain, {"", "", ""}, 0},
      {"aaa", "aa", kPlain, {"", "a"}, 0},
      {"a", "", kPlain, {"a"}, npos},
      {"a(b(c", "(b", kParens, {"a(b(c"}, npos},
      {"a(b(c", "(b", kPlain, {"a", "(c"}, 1},
      {"(a)or b", ")or", kParens, {"(a", " b"}, 2},
      {"a)(b", "(b", kParens, {"a)", ""}, 2},
      // Marks inside a match, behind its first character, are not counted.
      {"x(y,x(z", "x(", kParens, {"", "y,", "z"}, 0},
      {"ä und Ä UND ö", "ä", kPlain, {"", " und ", " UND ö"}, 0},
      {"1 mod 2 {3 mod 4}", " MOD ", kBraces, {"1", "2 {3 mod 4}"}, 1},
  };
  for (const auto& [text, word, mode, tokens, first] : cases) {
    EXPECT_EQ(ParseWord(text, word, mode), tokens) << text;
    EXPECT_EQ(FindWordTopLevel(text, word, mode), first) << text;
  }
  EXPECT_EQ(FindWordTopLevel("a,(b,c),d", ",", kParens, 2), 7u);
  EXPECT_EQ(FindWordTopLevel("a,(b,c),d", ",", kParens, 3), 4u);  // the levels start at 0 there
  EXPECT_EQ(FindWordTopLevel("a,b", ",", kParens, 99), npos);
}

TEST(modNewParser, SplitTrimsTokens) {
  EXPECT_EQ(ParseSplitChars(" a , b,,\tc ", ",", kPlain), (Views{"a", "b", "", "\tc"}));
  EXPECT_EQ(ParseSplitWord(" a  AND b and {c and d} ", "and", kNames), (Views{"a", "b", "{c and d}"}));
}

}  // namespace
}  // namespace kvr::modNewParser
