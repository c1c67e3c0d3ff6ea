// Every shipped template on every sample character: a cancel at any of its questions, and its removal, leave
// the character byte for byte as it was.
#include <functional>
#include <map>

#include "character/KVRCharacter.h"
#include "library/KVRSystem.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

// Of two traits of one name both stay: to give the older one up is the player's choice, and lasts.
class KeepingPrompts : public CancelingPrompts {
 public:
  Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) override {
    const Answer answer = CancelingPrompts::MessageBox(text, title, buttons);
    return answer == Answer::Yes ? Answer::No : answer;
  }
};

class ShippedTemplates : public testing::Test {
 protected:
  ShippedTemplates() {
    const std::string data = Files::PathText(std::filesystem::path(KIVERA_SOURCE_DIR) / "data") + "\\";
    env_.Folders.Set(data, world_.Root() + "app data\\", world_.Root() + "documents\\");
    modFileIO::InitConfigDefaults(env_);
    // What is added to meet prerequisites is the player's own and stays.
    env_.Config.AutoAddNeeds = 0;
    EXPECT_TRUE(system_.LoadDataSet("house table.kds")) << env_.log.Lines().back().text;
    for (const clsSystemItem& item : system_.Items)
      if (item.ItemType == kPackages) templates_.push_back(item.FullName());
    EXPECT_GE(templates_.size(), 25u);
  }
  ~ShippedTemplates() override {
    if (character_) character_->TerminateItems();
  }

  // --- Sample characters

  void Take(std::string_view reference, Currency points = 0) {
    const auto [prefix, name] = modPrefixes::ExtractPrefix(reference);
    const ItemType type = modPrefixes::TypeFromPrefix(prefix);
    const clsSystemItem* record = system_.FindItem(name, type);
    ASSERT_TRUE(record) << reference;
    clsItem* item =
        character_->ItemByKey(character_->AddItemFromSystem(record->CollectionKey(), "", 0, -1, 0));
    ASSERT_TRUE(item) << reference;
    if (!points.IsZero()) item->SetBasePoints(points);
    item->Calculate();
    character_->TrickleRecalcItems();
  }
  void SetScore(std::string_view stat, double score) {
    character_->FindItem(stat, kStats)->SetScoreTo(score);
  }

  void MakeBeginner() {}
  void MakeSoldier() {
    SetScore("ST", 12);
    SetScore("DX", 13);
    for (std::string_view each : {"AD:Luck", "AD:Sworn Company", "AD:Company Horse", "AD:Ally (Old Friend)",
                                  "DI:Curious", "EQ:Levy Sword", "EQ:Back Pack", "EQ:Hand Bell"})
      Take(each);
    Take("SK:Long Blade", 8);
    Take("SK:Spear", 4);
    Take("SK:Leading", 2);
  }
  void MakeWanderer() {
    SetScore("IQ", 13);
    for (std::string_view each : {"AD:Spell Knack", "AD:Luck", "AD:Night Eyes", "DI:Thin Blood", "SP:Kindle",
                                  "SP:Read Mood", "QU:Throws Salt", "EQ:Walking Staff"})
      Take(each);
    Take("SK:Small Boats", 2);
    Take("SK:Law (Guilds)", 4);
    Take("SK:Ghost Lore", 4);
    character_->Race = "Marsh folk";
  }

  struct Sample {
    std::string_view name;
    void (ShippedTemplates::*make)();
  };
  static constexpr Sample kSamples[] = {{"beginner", &ShippedTemplates::MakeBeginner},
                                        {"soldier", &ShippedTemplates::MakeSoldier},
                                        {"wanderer", &ShippedTemplates::MakeWanderer}};

  void MakeAnew(const Sample& sample) {
    if (character_) character_->TerminateItems();
    character_ = std::make_unique<KVRCharacter>(env_, system_);
    character_->InitStartupValues();
    prompts_.CancelAt(0);
    (this->*sample.make)();
    character_->RecalculateAll();
    env_.log.Clear();
  }

  // Without the line of the last key: a key is never given twice.
  std::string Text() {
    std::string text = character_->FileText();
    const std::size_t line = text.find("lastkey(");
    return text.erase(line, text.find("\r\n", line) - line);
  }
  std::int32_t Add(const std::string& name) {
    return character_->AddItemFromSystem(system_.FindItem(name, kPackages)->CollectionKey(), "", 0, 0, 0);
  }

  // Nothing that reads what has changed waits for its calculation.
  void ExpectUpToDate(const std::string& name) {
    character_->CalcPointCosts();
    const std::string before = Text();
    character_->RecalculateAll();
    EXPECT_EQ(Text(), before) << name;
  }
  // Removes the template, and the one piece that the data hands over for good.
  void Remove(const std::string& name, std::int32_t id) {
    character_->RemoveItem(KeyTextOf(id));
    const clsItem* gift = name == "Sellsword" ? character_->FindItem("Whetstone", kEquipment) : nullptr;
    EXPECT_EQ(gift != nullptr, name == "Sellsword");
    if (gift) character_->RemoveItem(gift->KeyText());
    character_->CalcPointCosts();
  }
  // What it does to traits that were there stays: only tags and the character's own texts are put back.
  bool Lasts(const std::string& name) const {
    const clsSystemItem& item = *system_.FindItem(name, kPackages);
    const auto has = [&](std::string_view tag) { return !item.GetTagItem(tag).empty(); };
    return has("sets") || has("addmods") || has("removemods") || has("parentof") || has("childof");
  }

  TestWorld world_;
  KeepingPrompts prompts_;
  Environment env_{prompts_, world_.events};
  KVRSystem system_{env_};
  std::vector<std::string> templates_;
  std::unique_ptr<KVRCharacter> character_;
};

// A cancel within a component leaves the component out and the template goes on; what is on the character
// then is as if that component had not been named.
TEST_F(ShippedTemplates, ACancelAtAnyQuestionLeavesNothingBehind) {
  int cancelled = 0, leftOut = 0;
  for (const Sample& sample : kSamples) {
    for (const std::string& name : templates_) {
      for (int question = 1;; ++question) {
        MakeAnew(sample);
        const std::string before = Text();
        prompts_.CancelAt(question);
        const std::int32_t id = Add(name);
        if (prompts_.Asked() < question) break;
        id == 0 ? ++cancelled : ++leftOut;
        if (id != 0) {
          ExpectUpToDate(name);
          Remove(name, id);
        }
        EXPECT_EQ(Text(), before) << name << " on the " << sample.name << ", question " << question;
      }
    }
  }
  // As many as the templates' own questions and those of their components come to.
  EXPECT_GE(cancelled, 50);
  EXPECT_GE(leftOut, 5);
}

TEST_F(ShippedTemplates, RemovalRestoresTheCharacter) {
  std::string notAdded;
  for (const Sample& sample : kSamples) {
    for (const std::string& name : templates_) {
      MakeAnew(sample);
      const std::string before = Text();
      if (const std::int32_t id = Add(name)) {
        EXPECT_NE(Text(), before) << name;
        ExpectUpToDate(name);
        Remove(name, id);
        if (!Lasts(name)) {
          EXPECT_EQ(Text(), before) << name << " on the " << sample.name;
        }
      } else {
        notAdded += name + " on the " + std::string(sample.name) + "; ";
      }
    }
  }
  // Who has no arms yet has none to choose from.
  EXPECT_EQ(notAdded, "Veteran on the beginner; Veteran on the wanderer; ");
}

}  // namespace
}  // namespace kvr
