#include "core/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace kvr {
namespace {

TEST(Text, LowerCasesLettersAndKeepsPositions) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"Broadsword (Two-Handed) [@Z`z{", "broadsword (two-handed) [@z`z{"},
      {"ÄÖÜ Éclair ΣΟΦΙΑ ЖЕЗЛ", "äöü éclair σοφια жезл"},
      {"padded to a word: ÅNGSTRÖM and on", "padded to a word: ångström and on"},
      {"İstanbul Ⱥ ẞ \xE2\x84\xAA", "İstanbul Ⱥ ẞ \xE2\x84\xAA"},  // the lower case has another length
      {"A\xC3Z\xFFQ\xE2\x84", "a\xC3z\xFFq\xE2\x84"},              // no UTF-8
      {std::string("A\0B", 3), std::string("a\0b", 3)},
      {"𐐀", "𐐨"},
  };
  for (const auto& [text, lower] : cases) {
    EXPECT_EQ(LCase(text), lower);
    EXPECT_EQ(LCase(text).size(), text.size());
    EXPECT_EQ(LCase(LCase(text)), lower);
    EXPECT_TRUE(EqualNoCase(text, lower));
    EXPECT_EQ(HashNoCase(text), HashNoCase(lower));
  }
}

// A text of ASCII, other letters, broken bytes and marks whose codes lie next to letters.
std::string RandomText(std::mt19937& random, std::size_t pieces) {
  static const std::string kPieces[] = {"a", "A", "b", "B", "z", "Z",    "@", "[",
                                        "`", "{", "ä", "Ä", "İ", "\xC3", " "};
  std::string text;
  for (std::size_t i = 0; i < pieces; ++i) text += kPieces[random() % std::size(kPieces)];
  return text;
}

TEST(Text, ComparesAndSearchesLikeLoweredCopies) {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    const std::string a = RandomText(random, random() % 20), b = RandomText(random, 1 + random() % 3);
    const std::string other = round % 2 ? RandomText(random, random() % 20) : LCase(a);
    ASSERT_EQ(EqualNoCase(a, other), LCase(a) == LCase(other)) << a << '|' << other;
    ASSERT_TRUE(LCase(a) != LCase(other) || HashNoCase(a) == HashNoCase(other));
    if (b.find('\xC3') != npos) continue;  // half a letter has no position of its own
    const std::size_t from = random() % 8;
    ASSERT_EQ(FindNoCase(a, b, from), LCase(a).find(LCase(b), from)) << a << '|' << b << '|' << from;
  }
  EXPECT_EQ(FindNoCase("text", ""), npos);
  EXPECT_EQ(FindNoCase("ab", "abc"), npos);
  EXPECT_TRUE(StartsWithNoCase("ST:DX", "st:"));
  EXPECT_TRUE(EndsWithNoCase("Sword (BROAD)", "(broad)"));
  EXPECT_FALSE(EndsWithNoCase("d)", "(broad)"));
}

TEST(Text, HashTellsShortNamesApart) {
  std::set<std::string> names;
  std::set<std::uint64_t> hashes;
  for (std::size_t length = 0; length < 20; ++length)
    for (std::size_t i = 0; i < length; ++i)
      for (char c = 'a'; c <= 'z'; ++c) names.insert(std::string(length, 'a').replace(i, 1, 1, c));
  for (const std::string& name : names) hashes.insert(HashNoCase(name) & 0xFFFFFFFF);
  EXPECT_EQ(hashes.size(), names.size());
}

TEST(Text, TrimsBlanksOnly) {
  const std::pair<std::string, std::string> cases[] = {{"  a b ", "a b"}, {"   ", ""},
                                                       {"", ""},          {"\t a\r\n", "\t a\r\n"},
                                                       {"x", "x"},        {" \xC2\xA0 ", "\xC2\xA0"}};
  for (const auto& [text, trimmed] : cases) {
    EXPECT_EQ(Trim(text), trimmed);
    std::string inPlace = text;
    TrimInPlace(inPlace);
    EXPECT_EQ(inPlace, trimmed);
  }
}

TEST(Text, YesNoValues) {
  for (const char* value : {"", "0", "no", "NO", "No"}) EXPECT_FALSE(IsSet(value)) << value;
  for (const char* value : {"yes", "-1", "1", "none", "00", " "}) EXPECT_TRUE(IsSet(value)) << value;
}

}  // namespace
}  // namespace kvr
