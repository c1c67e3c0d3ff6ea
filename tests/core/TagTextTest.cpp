#include "core/TagText.h"

#include <gtest/gtest.h>

#include <random>

#include "core/Text.h"
#include "core/modTags.h"

namespace kvr {
namespace {

// The plain text search that every look-up stands for.
std::optional<std::string> Searched(const std::string& text, const std::string& tag) {
  const std::size_t hit = LCase(text).find("," + LCase(tag) + "(");
  if (hit == npos) return std::nullopt;
  const std::size_t value = hit + tag.size() + 2;
  int depth = 1;
  for (std::size_t i = value; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0)
      return std::string(Trim(std::string_view(text).substr(value, i - value)));
  }
  return "";
}

class TagTextRandom : public testing::TestWithParam<unsigned> {
 protected:
  std::string Random(std::initializer_list<const char*> pieces, std::size_t most) {
    std::string text;
    for (std::size_t count = random_() % (most + 1); count > 0; --count)
      text += pieces.begin()[random_() % pieces.size()];
    return text;
  }
  std::string RandomTag() {
    // Two of the longest make a name that is no short one.
    return random_() % 8 ? Random({"a", "B", "b", "ä", "Ä", "Craftsman", "crAftsman"}, 2)
                         : Random({"a", "b", ",", "(", ")", " ", "{"}, 3);
  }
  std::string RandomValue() {
    switch (random_() % 3) {
      case 0:
        return Random({"x", "1", " ", "Y"}, 8);
      case 1:
        return Random({"x", ",", ", b", " "}, 4);
      default:
        return Random({"(", ")", ",a(", "x", ",", ",B(y)", "(z)", ",ä(1)"}, 5);
    }
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(TagTextRandom, EveryChangeAgreesWithTheTextSearch) {
  for (int round = 0; round < 300; ++round) {
    TagText tags;
    std::string model = Random({",a(1)", ",b(x, y)", ",Ä()", "(", ")", "a", ",c( ,a(2))"}, 8);
    tags.Assign(model);
    for (int step = 0; step < 12; ++step) {
      const std::string tag = RandomTag(), value = RandomValue();
      const std::uint32_t before = tags.Revision();
      const std::string former = model;
      const bool found = Searched(model, tag).has_value();
      const std::size_t valuePos = modTags::FindTag(tag, model) + tag.size() + 2;
      const std::size_t length =
          found ? modTags::FindCloseParen(std::string_view(model).substr(valuePos)) : npos;
      switch (random_() % 4) {
        case 0:
          tags.Append(tag, value);
          model += "," + tag + "(" + value + ")";
          break;
        case 1:
          modTags::DeleteTagFromTagString(model, tag);
          EXPECT_EQ(tags.Delete(tag), model != former);
          break;
        default:
          if (!found)
            model += "," + tag + "(" + value + ")";
          else if (length != npos)
            model.replace(valuePos, length, value);
          EXPECT_EQ(tags.Set(tag, value), model != former);
      }
      ASSERT_EQ(tags.Text(), model);
      ASSERT_EQ(tags.Revision() != before, model != former) << model;
      for (int look = 0; look < 6; ++look) {
        const std::string wanted = look ? RandomTag() : tag;
        const std::optional<std::string_view> got = tags.Find(wanted);
        ASSERT_EQ(got ? std::optional<std::string>(*got) : std::nullopt, Searched(model, wanted))
            << "'" << wanted << "' in " << model;
        ASSERT_EQ(modTags::GetTagValue(wanted, model), tags.Value(wanted));
      }
      ASSERT_TRUE(step != 6 || tags.LowerText() == LCase(model));
    }
    ASSERT_EQ(tags.LowerText(), LCase(model));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TagTextRandom, testing::Range(1u, 21u));

TEST(TagText, KeepsItsRulesOnOneText) {
  TagText tags;
  EXPECT_FALSE(tags.Find("name").has_value());
  tags.Assign(",Name( Long Blade ),notes(see ,points(99)),points(4),open(x");
  EXPECT_EQ(tags.Value("NAME"), "Long Blade");
  EXPECT_EQ(tags.Value("points"), "99");  // the first in the text, nested or not
  EXPECT_EQ(tags.Find("open"), "");
  EXPECT_FALSE(tags.Find("ame").has_value());
  const std::uint32_t revision = tags.Revision();
  EXPECT_FALSE(tags.Set("name", " Long Blade "));
  EXPECT_FALSE(tags.Set("open", "y"));
  EXPECT_FALSE(tags.Delete("open"));
  EXPECT_EQ(tags.Revision(), revision);
  EXPECT_TRUE(tags.Set("notes", tags.Value("name")));  // a view into the text itself
  EXPECT_EQ(tags.Text(), ",Name( Long Blade ),notes(Long Blade),points(4),open(x");
  EXPECT_EQ(tags.Value("points"), "4");

  TagText copy = tags, moved = std::move(tags);
  tags.Assign("");
  EXPECT_TRUE(tags.Empty());
  EXPECT_FALSE(tags.Find("name").has_value());
  EXPECT_TRUE(copy.Set("points", "400"));
  EXPECT_EQ(moved.Value("points"), "4");
  EXPECT_EQ(copy.Value("points"), "400");
}

// Work that grows with the square of the text would take minutes here.
TEST(TagText, LargeTextStaysLinear) {
  const std::size_t kMany = 100000;
  std::string nested, flat, open(kMany, '(');
  for (std::size_t i = 0; i < kMany; ++i) {
    nested += ",n" + std::to_string(i) + "(";
    flat += ",t" + std::to_string(i) + "(v)";
  }
  nested += std::string(kMany, ')');
  TagText tags;
  tags.Assign(nested);
  EXPECT_EQ(tags.Value("n99999"), "");
  EXPECT_EQ(tags.Value("n0").size(), nested.size() - 5);
  tags.Assign(flat);
  for (std::size_t i = 0; i < kMany; ++i) ASSERT_EQ(tags.Value("t" + std::to_string(i)), "v");
  for (std::size_t i = 0; i < kMany; ++i) tags.Append("u" + std::to_string(i), "w");
  EXPECT_EQ(tags.Value("u99999"), "w");
  tags.Assign(",a(" + open);
  EXPECT_EQ(tags.Find("a"), "");
  EXPECT_TRUE(modTags::RepairParens(open));
  EXPECT_EQ(open, std::string(kMany, '['));
  TagText big;
  big.Set("description", std::string(8 << 20, 'x'));
  EXPECT_EQ(big.Value("description").size(), std::size_t{8} << 20);
}

}  // namespace
}  // namespace kvr
