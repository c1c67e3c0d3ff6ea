#include "core/ScriptedPrompts.h"

#include "support/TestWorld.h"

namespace kvr {
namespace {

SelectionRequest Request(long least, long most) {
  SelectionRequest request;
  request.Title = "Pick";
  request.Text = "Some";
  const std::pair<const char*, int> choices[] = {{"Bow", 5}, {"Axe, large", 10}, {"3", 20}, {"Sling", -5}};
  for (const auto& [caption, cost] : choices) request.Choices.push_back({caption, "", {}, cost, false});
  request.MinNumber = least;
  request.MaxNumber = most;
  request.LimitNumber = true;
  return request;
}

std::string Captions(const std::vector<Choice>& choices) {
  std::string text;
  for (const Choice& choice : choices) text += choice.Caption + "|";
  return text;
}

TEST(EnginePromptsTest, SaysTheGoal) {
  SelectionRequest request = Request(2, 2);
  EXPECT_EQ(GoalLine(request), "Want: exactly 2");
  EXPECT_EQ(StatusLine(request, 1, 15), "Have: 1");
  EXPECT_TRUE(GoalMet(request, 2, 99));
  EXPECT_FALSE(GoalMet(request, 1, 0) || GoalMet(request, 3, 0));
  EXPECT_EQ(GoalLine(Request(1, 0)), "Want: at least 1");
  EXPECT_TRUE(GoalMet(Request(1, 0), 400, 0));
  EXPECT_EQ(GoalLine(Request(0, 0)), "Want: at least 0") << "no limit at all";
  EXPECT_TRUE(GoalMet(Request(0, 0), 4, 0));
  EXPECT_EQ(GoalLine(Request(0, 3)), "Want: 0 to 3");
  EXPECT_EQ(GoalLine(Request(1, 3)), "Want: 1 to 3");

  request.LimitCost = true;
  request.MinCost = Currency::FromDouble(-20.5);
  request.MaxCost = -10;
  EXPECT_EQ(GoalLine(request), "Want: exactly 2\nWant: -20.5 to -10");
  EXPECT_EQ(StatusLine(request, 2, -12), "Have: 2\nCost: -12");
  EXPECT_TRUE(GoalMet(request, 2, -12));
  EXPECT_FALSE(GoalMet(request, 2, -21) || GoalMet(request, 2, 0) || GoalMet(request, 1, -12));

  SelectionRequest byCost;
  byCost.ByNumberOrCost = CountBy::Cost;
  byCost.HasMaxCost = true;
  EXPECT_EQ(GoalLine(byCost), "Want: exactly 0");
  EXPECT_FALSE(GoalMet(byCost, 1, 5));
  byCost.MinCost = byCost.MaxCost = 12;
  EXPECT_EQ(GoalLine(byCost), "Want: exactly 12");
  EXPECT_EQ(StatusLine(byCost, 1, 9), "Cost: 9");
  EXPECT_FALSE(GoalMet(byCost, 1, 9));
}

TEST(ScriptedPromptsTest, WithoutAnswersEverythingIsCancelled) {
  TestWorld world;
  EnginePrompts& prompts = world.prompts;
  EXPECT_EQ(prompts.MessageBox("Two\r\nlines", "", Buttons::Ok), Answer::Ok);
  EXPECT_EQ(prompts.MessageBox("b", "T", Buttons::OkCancel), Answer::Cancel);
  EXPECT_EQ(prompts.MessageBox("c", "T", Buttons::YesNo), Answer::No);
  EXPECT_EQ(prompts.MessageBox("d", "T", Buttons::YesNoCancel), Answer::Cancel);
  EXPECT_TRUE(prompts.PopupInputBox("Name?", "Naming", "preset").Canceled);
  EXPECT_EQ(prompts.PopupInputBox("", "", "").Text, "");
  EXPECT_TRUE(prompts.ChooseOne("T", "one", {"a"}).Canceled);
  EXPECT_TRUE(prompts.ChooseMany(Request(0, 0)).Canceled);
  EXPECT_TRUE(prompts.SelectItems({}).Canceled);
  EXPECT_FALSE(prompts.ShowMessage({"T", "", "text", "", false, true, ""}));
  EXPECT_TRUE(prompts.ShowMessage({"T", "", "text", "", true, false, ""}));
  EXPECT_FALSE(prompts.Confirm("Duplicate Item", "x", true, "tick").Canceled);
  EXPECT_TRUE(prompts.Confirm("Duplicate Item", "x", false, "tick").Canceled);
  EXPECT_EQ(prompts.SaveFileName("Save", "a.kvr4", "") + prompts.ChooseDataSet("") +
                prompts.BrowseForFolder("") + prompts.OpenFileName("", "", ""),
            "");
  ASSERT_EQ(world.notices.size(), 17u);
  EXPECT_EQ(world.notices[0], "prompt: BRASK Kivera: Two~Plines");
  EXPECT_EQ(world.notices[5], "prompt: Naming: Name?") << "an empty title leaves the former one";
}

TEST(ScriptedPromptsTest, TakesAnswersInTurn) {
  TestWorld world;
  EnginePrompts& prompts = world.prompts;
  for (const char* answer : {" YES ", "cancel", "", "Cancel", "2", "sling", "ok,checked", "C:\\x.kds"})
    world.Answer(answer);
  EXPECT_EQ(prompts.MessageBox("a", "T", Buttons::YesNo), Answer::Yes);
  EXPECT_EQ(prompts.MessageBox("a", "T", Buttons::YesNo), Answer::No);
  const TextAnswer empty = prompts.PopupInputBox("a", "T", "preset");
  EXPECT_FALSE(empty.Canceled);
  EXPECT_EQ(empty.Text, "");
  EXPECT_TRUE(prompts.PopupInputBox("a", "T", "preset").Canceled);
  const ChoiceAnswer second = prompts.ChooseFromList("T", {"Bow", "Sling"});
  EXPECT_EQ(second.ChoiceNum, 2u);
  EXPECT_EQ(second.ChoiceText, "Sling");
  EXPECT_EQ(prompts.ChooseOne("T", "a", {"Bow", "Sling"}).ChoiceNum, 2u);
  const ConfirmAnswer confirmed = prompts.Confirm("T", "a", true, "tick");
  EXPECT_TRUE(!confirmed.Canceled && confirmed.ButtonChecked);
  EXPECT_EQ(prompts.ChooseDataSet(""), "C:\\x.kds");
  EXPECT_EQ(world.prompts.QueuedAnswers(), 0u);
  EXPECT_TRUE(world.notices.empty());
}

TEST(ScriptedPromptsTest, SelectsByPositionAndCaption) {
  const struct {
    const char* answer;
    long least, most;
    const char *chosen, *unchosen;  // nullptr: cancelled
  } cases[] = {
      {"2, bow", 2, 2, "Axe, large|Bow|", "3|Sling|"},
      {"{axe, large},4", 1, 0, "Axe, large|Sling|", "Bow|3|"},
      {"3", 1, 1, "3|", "Bow|Axe, large|Sling|"},
      {"{3}", 1, 1, "3|", "Bow|Axe, large|Sling|"},
      {"1,1", 1, 1, "Bow|", "Axe, large|3|Sling|"},
      {"", 0, 3, "", "Bow|Axe, large|3|Sling|"},
      {"", 1, 3, nullptr, nullptr},
      {"1,2", 1, 1, nullptr, nullptr},
      {"5", 1, 1, nullptr, nullptr},
      {"0", 1, 1, nullptr, nullptr},
      {"1,,2", 1, 0, nullptr, nullptr},
      {"Axe, large", 1, 0, nullptr, nullptr},
      {"99999999999999999999999", 1, 1, nullptr, nullptr},
  };
  for (const auto& one : cases) {
    TestWorld world;
    world.Answer(one.answer);
    const SelectionAnswer answer = world.prompts.ChooseMany(Request(one.least, one.most));
    EXPECT_EQ(answer.Canceled, one.chosen == nullptr) << one.answer;
    EXPECT_EQ(world.notices.size(), one.chosen ? 0u : 1u) << one.answer;
    EXPECT_EQ(Captions(answer.Chosen), one.chosen ? one.chosen : "");
    EXPECT_EQ(Captions(answer.Unchosen), one.unchosen ? one.unchosen : "");
  }
}

TEST(ScriptedPromptsTest, SelectsNewAndExistingItemsWithinTheirCost) {
  TestWorld world;
  SelectItemsRequest request;
  request.Items.push_back({"Bow", "2bow", {}, 5, false});
  request.Items.push_back({"Sword", "6sword", {"k17"}, 10, false});
  request.LimitCost = true;
  request.MaxCost = 15;
  world.Answer("sword,bow");
  const SelectItemsAnswer answer = world.prompts.SelectItems(request);
  EXPECT_FALSE(answer.Canceled);
  EXPECT_EQ(answer.ItemsAdded, (std::vector<std::string>{"2bow"}));
  EXPECT_EQ(answer.ExistingItemsAdded, (std::vector<std::string>{"k17"}));
  world.Answer("1,1,1,1");
  EXPECT_FALSE(world.prompts.SelectItems(request).Canceled) << "one trait counts once";
  request.MultiTrait = true;
  world.Answer("1,1,1,1");
  EXPECT_TRUE(world.prompts.SelectItems(request).Canceled) << "four of them cost 20";
  EXPECT_EQ(world.notices[0], "prompt: BRASK Kivera:  (the answer '1,1,1,1' does not fit)");
}

TEST(EnvironmentTest, ComparesVersions) {
  const struct {
    const char *a, *b;
    int order;
  } cases[] = {{"4.0.400", "4.0.315", 1},
               {"4.0.99", "4.0.315", -1},
               {"4", "4.0.0", 0},
               {"4.1", "4.0.900", 1},
               {"", "0.0", 0},
               {"4.0.3b", "4.0.3", 0},
               {"junk", "0.1", -1},
               {"4..1", "4.0.1", 0}};
  for (const auto& one : cases) {
    EXPECT_EQ(CompareVersions(one.a, one.b), one.order) << one.a << " " << one.b;
    EXPECT_EQ(CompareVersions(one.b, one.a), -one.order);
  }
  EXPECT_GE(CompareVersions(ProgramVersion(), "4.0.315"), 0);
}

}  // namespace
}  // namespace kvr
