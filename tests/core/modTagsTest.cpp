#include "core/modTags.h"

#include <gtest/gtest.h>

#include <random>

#include "core/modLogging.h"
#include "core/modTools.h"

namespace kvr::modTags {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs PairsOf(const std::vector<TagItem>& items) {
  Pairs pairs;
  for (const TagItem& item : items) pairs.emplace_back(item.name, item.value);
  return pairs;
}

TEST(modTags, ReadsItems) {
  const struct {
    std::string text;
    Pairs trimmed, kept;
  } cases[] = {
      {"", {{"", ""}}, {{"", ""}}},
      {"a(1),b(x,y),c(f(2,3))",
       {{"a", "1"}, {"b", "x,y"}, {"c", "f(2,3)"}},
       {{"a", "1"}, {"b", "x,y"}, {"c", "f(2,3)"}}},
      {" Name ( Big Sword ) , x", {{"name", "Big Sword"}, {"", ""}}, {{"name", " Big Sword "}, {"", ""}}},
      {"a(1), {b(2), c(3)}, d(4)",
       {{"a", "1"}, {"{b", "2), c(3)"}, {"d", "4"}},
       {{"a", "1"}, {"{b", "2), c(3)"}, {"d", "4"}}},
      {"a(1),", {{"a", "1"}, {"", ""}}, {{"a", "1"}, {"", ""}}},
      {"foo(bar", {{"foo", "ba"}}, {{"foo", "ba"}}},
      {"foo(Caf\xC3\xA9", {{"foo", "Caf"}}, {{"foo", "Caf"}}},
      {"foo(bar) x", {{"foo", "bar)"}}, {{"foo", "bar) "}}},
      {"foo(", {{"foo", ""}}, {{"foo", ""}}},
      {"a(1)),b(2),c(3)", {{"a", "1)),b(2),c(3"}}, {{"a", "1)),b(2),c(3"}}},
      {"a(\")\",b)", {{"a", "\")"}, {"", ""}}, {{"a", "\")"}, {"", ""}}},
  };
  for (const auto& [text, trimmed, kept] : cases) {
    EXPECT_EQ(PairsOf(ReturnTagItems(text)), trimmed) << text;
    EXPECT_EQ(PairsOf(ReturnTagItemsNoTrim(text)), kept) << text;
  }
  EXPECT_EQ(ValueOf(ReturnTagItems("A(1),b(2),a(3)"), "a"), "1");
  EXPECT_EQ(ValueOf(ReturnTagItems("a(1)"), "b"), "");
}

TEST(modTags, FindsTagsByTextSearch) {
  const struct {
    std::string text, tag, value, extracted, rest;
  } cases[] = {
      {"a(1),b(2)", "a", "", "", "a(1),b(2)"},
      {"a(1),b(2)", "B", "2", "2", "a(1)"},
      {"a(1), b(2)", "b", "", "", "a(1), b(2)"},
      {",upcost(1),cost(2)", "cost", "2", "2", ",upcost(1)"},
      {",a(1),B( x ),c(3)", "b", "x", " x ", ",a(1),c(3)"},
      {",a(x,b(1)),b(2)", "b", "1", "1", ",a(x),b(2)"},
      {",a(f(2,(3))),b(2)", "a", "f(2,(3))", "f(2,(3))", ",b(2)"},
      {",a(1,b(2)", "a", "", "", ",a(1,b(2)"},
      {",a()", "a", "", "", ""},
      {",größe(5)", "GRÖSSE", "", "", ",größe(5)"},
      {",GRÖẞE(5),GRÖE(6)", "gröe", "6", "6", ",GRÖẞE(5)"},
      {",x,a(1)", "x,a", "1", "1", ""},
      {"", "a", "", "", ""},
      {",a", "a", "", "", ",a"},
  };
  for (const auto& [text, tag, value, extracted, rest] : cases) {
    EXPECT_EQ(GetTagValue(tag, text), value) << text;
    std::string taken = text, deleted = text;
    EXPECT_EQ(ReturnTagValueExtractingTag(taken, tag), extracted) << text;
    EXPECT_EQ(taken, rest);
    DeleteTagFromTagString(deleted, tag);
    EXPECT_EQ(deleted, rest);
  }
}

TEST(modTags, Parentheses) {
  const struct {
    std::string text;
    std::size_t close, match;
    bool balanced;
    std::string repaired;
  } cases[] = {{"", npos, npos, true, ""},
               {")", 0, npos, false, "]"},
               {"a)b", 1, 1, false, "a]b"},
               {"(a)b)", 4, 2, false, "(a)b]"},
               {"(a(b))", npos, 5, true, "(a(b))"},
               {"((", npos, npos, false, "[["},
               {")(", 0, npos, false, "]["},
               {"(a))(b", 3, 2, false, "(a)][b"},
               {"\")\"{)}", 1, 1, false, "\"]\"{]}"},
               {"(()", npos, npos, false, "[()"}};
  for (const auto& [text, close, match, balanced, repaired] : cases) {
    EXPECT_EQ(FindCloseParen(text), close) << text;
    EXPECT_EQ(FindMatchingParen(text), match) << text;
    EXPECT_EQ(ParensBalance(text), balanced) << text;
    std::string mended = text;
    EXPECT_EQ(RepairParens(mended), !balanced) << text;
    EXPECT_EQ(mended, repaired);
    EXPECT_TRUE(ParensBalance(mended));
  }
}

TEST(modTags, Lists) {
  EXPECT_TRUE(IsItemInList("FOO", " foo , bar"));
  EXPECT_FALSE(IsItemInList(" foo", "foo"));  // the item is not trimmed
  EXPECT_FALSE(IsItemInList("fo", "foo, bar"));
  EXPECT_TRUE(IsItemInList("\"a", "\"a,b\""));           // marks do not nest here
  EXPECT_FALSE(IsItemInListAlt("\"a", "\"a,b\"", ","));  // but here
  EXPECT_TRUE(IsItemInListAlt("b", "a|B;c", ";|"));

  const std::pair<std::string, std::string> inserted[] = {
      {"", " New "}, {"foo, bar", "Foo"}, {"foo", "bar"}, {"foo", "   "}, {"foo,bar", "baz"}};
  const std::string results[] = {"New", "foo, bar", "foo, bar", "foo", "foo,bar, baz"};
  for (std::size_t i = 0; i < std::size(inserted); ++i) {
    std::string list = inserted[i].first;
    InsertItemIntoList(inserted[i].second, list);
    EXPECT_EQ(list, results[i]);
  }
  std::string bars = "a|b";
  InsertItemIntoListAlt("B", bars, "|");
  InsertItemIntoListAlt("c", bars, "|");
  EXPECT_EQ(bars, "a|b|c");

  const std::pair<std::string, std::string> removed[] = {
      {"a,b ,c", "B"}, {"a,b", "x"},  {"a, (b,c), d", "c"}, {"a, (b,c), d", "(B,C)"},
      {"b", "b"},      {"a,ab", "a"}, {"a,,b", ""}};
  const std::string remaining[] = {"a, c", "a,b", "a, (b,c), d", "a, d", "", "ab", "a, b"};
  for (std::size_t i = 0; i < std::size(removed); ++i) {
    std::string list = removed[i].first;
    RemoveItemFromList(removed[i].second, list);
    EXPECT_EQ(list, remaining[i]) << removed[i].first;
  }
  EXPECT_EQ(CreateListFromStringArray(std::vector<std::string>{"", "a", "", "b"}), "a, , b");
}

TEST(modTags, TrueFalseLists) {
  EXPECT_EQ(ReturnTrueFalseArrayFromString("1|0| True |yes||-1"),
            (std::vector<bool>{true, false, true, false, false, false}));
  EXPECT_EQ(ReturnStringFromTrueFalseArray({true, false, true}), "1|0|1");
  std::vector<std::string> texts = {"", "False", "0", "false", "x", "1"};
  EXPECT_EQ(ReturnStringFromTrueFalseStringArray(texts), "0|0|0|1|1|1");
  EXPECT_EQ(texts, (std::vector<std::string>{"0", "0", "0", "1", "1", "1"}));
}

TEST(modTools, EnclosingMarks) {
  EXPECT_TRUE(modTools::IsQuoted("  \"a\" "));
  EXPECT_FALSE(modTools::IsQuoted("\""));
  EXPECT_TRUE(modTools::IsQuoted("\"\""));
  EXPECT_TRUE(modTools::IsBraced("{a}"));
  EXPECT_TRUE(modTools::IsInParens("(a)(b)"));
  EXPECT_FALSE(modTools::IsBracketed("[a)"));
  EXPECT_EQ(modTools::StripQuotes(" \" say \"hi\" \" "), " say \"hi\" ");
  EXPECT_EQ(modTools::StripBraces("{a"), "{a");
  EXPECT_EQ(modTools::StripParens("((a))"), "(a)");
  EXPECT_EQ(modTools::StripBrackets("[]"), "");
  EXPECT_EQ(modTools::StripQuotesAndBraces("\"{ a }\""), "a");
}

TEST(modTools, Replaces) {
  const struct {
    std::string text, find, replacement, result;
  } cases[] = {{"%Level + %level", "%LEVEL", "2", "2 + 2"},
               {"aaa", "aa", "a", "aa"},
               {"aXa", "x", "xx", "axxa"},
               {"abc", "", "x", "abc"},
               {"ÄbÄ", "ä", "", "b"},
               {"", "a", "b", ""}};
  for (const auto& [text, find, replacement, result] : cases) {
    std::string replaced = text;
    modTools::ReplaceAll(replaced, find, replacement);
    EXPECT_EQ(replaced, result) << text;
  }
  std::string breaks = "a~Pb~~P~p";
  modTools::ParagraphMarksToLineBreaks(breaks);
  EXPECT_EQ(breaks, "a\r\nb~\r\n~p");
  EXPECT_EQ(modTools::DoubleQuotes("say \"hi\""), "say \"\"hi\"\"");
}

TEST(modTools, CountsAndPositions) {
  EXPECT_EQ(modTools::CountOccurrences("aaa", "aa"), 2u);
  EXPECT_EQ(modTools::CountOccurrences("aAa", "a"), 2u);
  EXPECT_EQ(modTools::CountOccurrences("aaa", ""), 0u);
  EXPECT_EQ(modTools::LastPosition(-1, "a (b) (c)", " ("), 6u);
  EXPECT_EQ(modTools::LastPosition(7, "a (b) (c)", " ("), 6u);
  EXPECT_EQ(modTools::LastPosition(6, "a (b) (c)", " ("), 2u);  // a match must end within the start
  EXPECT_EQ(modTools::LastPosition(0, "a", "a"), 0u);
  EXPECT_EQ(modTools::LastPosition(-1, "a", ""), 0u);
  const modTools::KeyValue pair = modTools::SplitKeyValue(" key = a=b "),
                           alone = modTools::SplitKeyValue(" key ");
  EXPECT_EQ(pair.key, "key");
  EXPECT_EQ(pair.value, "a=b");
  EXPECT_EQ(alone.key, "key");
  EXPECT_EQ(alone.value, "");
}

// The comb sort pass by pass, to the last one.
void CombSort(std::vector<std::string>& texts) {
  bool swapped = true;
  for (std::size_t gap = texts.size(); gap > 1 || swapped;) {
    gap = std::max<std::size_t>(gap * 10 / 13, 1);
    swapped = false;
    for (std::size_t i = 0; i + gap < texts.size(); ++i) {
      if (LCase(texts[i]) <= LCase(texts[i + gap])) continue;
      texts[i].swap(texts[i + gap]);
      swapped = true;
    }
  }
}

TEST(modTools, Sorts) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::vector<std::string> texts(random() % 60);
    for (std::string& text : texts)
      for (std::size_t i = random() % 4; i > 0; --i) text += "aAbBÄä_"[random() % 9];
    std::vector<std::string> binary = texts, blind = texts, combed = texts;
    modTools::SortStringArray(binary, false);
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(binary, texts);
    modTools::SortStringArray(blind, true);
    CombSort(combed);
    EXPECT_EQ(blind, combed) << "equal names keep the order of the comb sort";
  }
}

// An order that leaves nearly all the work to the last passes of a plain comb sort, which would take half a
// minute.
TEST(modTools, SortsManyInAnyOrder) {
  const std::size_t kMany = 200000;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < kMany; ++i) texts.push_back("ab"[i % 2] + std::to_string(i * 7919 % kMany));
  std::vector<std::string> expected = texts;
  std::sort(expected.begin(), expected.end());
  const TimerScope timer;
  modTools::SortStringArray(texts, true);
  EXPECT_EQ(texts, expected);
  EXPECT_LT(timer.Seconds(), 5.0);
}

}  // namespace
}  // namespace kvr::modTags
