#include "calc/clsTokenCollection.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "core/Text.h"

namespace kvr {
namespace {

TEST(TokenCollection, KeysIgnoreCaseAndFirstValueStays) {
  clsTokenCollection tokens;
  EXPECT_EQ(tokens.Item("ST:DX"), nullptr);
  EXPECT_EQ(tokens.Error(), 5);
  tokens.Add("ST:DX", 12, 7);
  tokens.Add("st:dx", 13, 0);
  ASSERT_NE(tokens.Item("St:Dx"), nullptr);
  EXPECT_EQ(tokens.Error(), 0);
  EXPECT_EQ(tokens.Item("St:Dx")->Value, 12);
  EXPECT_EQ(tokens.Item("St:Dx")->ReferenceKey, 7);
  EXPECT_EQ(tokens.Count(), 1u);
  EXPECT_TRUE(tokens.Remove("sT:dX"));
  EXPECT_FALSE(tokens.Remove("ST:DX"));
  EXPECT_EQ(tokens.Count(), 0u);
}

struct ClearCase {
  const char* token;
  std::int32_t key;
  const char *name, *symbol;
  bool stays;
};

TEST(TokenCollection, ClearTokensForItem) {
  const ClearCase cases[] = {
      {"SK:Oar Fencing", 0, "oar fencing", "", false},
      {"2+SK:OAR FENCING-1", 0, "oar fencing", "", false},
      {"SK:Oar", 0, "oar fencing", "", true},
      {"anything", 5, "no such name", "", false},
      {"ST:DX+1", 0, "", "", true},
      {"ST:DX+1", 0, "st", "st", true},
      {"ST:DX+st", 0, "st", "", false},
      {"ST", 0, "st", "", false},
      {"2*DX", 0, "deftness", "dx", false},
      {"SK:Élan", 0, "élan", "", false},
      {"a", 0, "a", "", false},
      {"b", 0, "a", "", true},
  };
  for (const ClearCase& c : cases) {
    clsTokenCollection tokens;
    tokens.Add(c.token, 1, c.key);
    tokens.ClearTokensForItem(5, c.name, c.symbol);
    EXPECT_EQ(tokens.Item(c.token) != nullptr, c.stays) << c.token << " for " << c.name;
  }
}

// What a walk over all texts would drop.
class PlainTokens {
 public:
  void Add(const std::string& text, double value, std::int32_t key) {
    tokens_.try_emplace(LCase(text), value, key);
  }
  void Clear(std::int32_t key, const std::string& name, const std::string& symbol) {
    std::erase_if(tokens_, [&](const auto& token) {
      return token.second.second == key || Holds(token.first, name) || Holds(token.first, symbol);
    });
  }
  const std::map<std::string, std::pair<double, std::int32_t>>& All() const { return tokens_; }

 private:
  static bool Holds(std::string text, const std::string& name) {
    if (name == "st")
      for (std::size_t at = 0; (at = text.find("st:", at)) != npos;) text.replace(at, 2, "??");
    return !name.empty() && text.find(name) != npos;
  }
  std::map<std::string, std::pair<double, std::int32_t>> tokens_;
};

TEST(TokenCollection, DropsWhatTheWalkOverAllTextsDrops) {
  const char* const words[] = {"st",  "ST:", "dx", "Oar", "Fencing", "SK:", "Élan", "::level", "+", "2",
                               "est", "str", "a",  "-",   "Lore",    "É",   "oar",  "{",       "}", "DX"};
  std::mt19937 random(1234);
  const auto pick = [&random](std::size_t count) { return static_cast<std::size_t>(random() % count); };
  const auto text = [&](std::size_t longest) {
    std::string made;
    for (std::size_t n = 1 + pick(longest); n > 0; --n) made += words[pick(std::size(words))];
    return made;
  };
  clsTokenCollection tokens;
  PlainTokens plain;
  for (int round = 0; round < 20000; ++round) {
    if (round % 5000 == 4999) {
      tokens.Clear();
      plain = {};
    } else if (pick(8) != 0) {
      const std::string added = text(6);
      const auto key = static_cast<std::int32_t>(pick(40));
      tokens.Add(added, round, key);
      plain.Add(added, round, key);
    } else {
      const std::string name = pick(9) == 0 ? "" : LCase(text(3)),
                        symbol = pick(2) == 0 ? "" : LCase(text(1));
      const auto key = static_cast<std::int32_t>(1 + pick(60));
      tokens.ClearTokensForItem(key, name, symbol);
      plain.Clear(key, name, symbol);
    }
    ASSERT_EQ(tokens.Count(), plain.All().size()) << "round " << round;
    if (round % 50 != 0) continue;
    for (const auto& [held, token] : plain.All()) {
      const clsToken* found = tokens.Item(held);
      ASSERT_NE(found, nullptr) << held;
      EXPECT_EQ(found->Value, token.first);
      EXPECT_EQ(found->ReferenceKey, token.second);
    }
  }
}

}  // namespace
}  // namespace kvr
