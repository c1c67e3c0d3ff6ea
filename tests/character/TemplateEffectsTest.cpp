// What templates do: traits brought, values set, modifiers moved, tags changed, lists to pick from; and that
// a cancel or a removal takes all of it back.
#include "character/ItemSelection.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kRules =
    "[ATTRIBUTES]\r\n"
    "Might, symbol(MG), basevalue(10), step(1), up(10), down(-10)\r\n"
    "[SKILLTYPES]\r\n"
    "MG/E, costs(1/2/4), baseadj(0), adds(0/1/2), defaultstat(ST:MG)\r\n"
    "[MODIFIERS]\r\n"
    "<Reach>\r\n"
    "Longer, +20%\r\n"
    "<Craft>\r\n"
    "Longer, +5%\r\n"
    "Fine, +10%\r\n"
    "[ADS]\r\n"
    "Fortune, 15\r\n"
    "Iron Arm, 5/10/15/20\r\n"
    "Hardy, 10, cat(Body), initmods({Plain, +0%})\r\n"
    "Sense (Smell), 5\r\n"
    "Sense (Sound), 5\r\n"
    "Bearer, 0, gives(+1 to ST:Might)\r\n"
    "[DISADS]\r\n"
    "Debts, -5/-10/-15\r\n"
    "[SKILLS]\r\n"
    "Rowing, MG/E\r\n"
    "Painting, MG/E\r\n"
    "Blade (Broad), MG/E\r\n"
    "Blade (Narrow), MG/E\r\n"
    "[EQUIPMENT]\r\n"
    "Arrow, basecost(2)\r\n"
    "[TEMPLATES]\r\n"
    "Mirror, adds({TE:Mirror}, AD:Fortune)\r\n"
    "Day, adds(TE:Night, AD:Fortune)\r\n"
    "Night, adds(TE:Day, AD:Hardy)\r\n"
    "Chooser, adds(AD:Sense)\r\n"
    "Outer, adds(TE:Inner, AD:Hardy), owns(yes)\r\n"
    "Inner, adds(AD:Fortune), race(Sprite), select1(list(AD:Iron Arm, SK:Rowing)), mergetags(in AD:Bearer "
    "with cat(Odd))\r\n";

// A world with a few traits on the character, which the templates change.
struct TemplateWorld : CharacterWorld {
  TemplateWorld() : CharacterWorld(kRules) {
    env.Config.AutoAddNeeds = 0;
    character.InitStartupValues();
    Added("Bearer", kAds);
  }
  std::int32_t Use(const std::string& tags) {
    return character.CreateNewItem(kPackages, "name(T)," + tags, "", "", 0, 0, 0);
  }
  clsItem* Find(std::string_view reference) {
    const auto [prefix, name] = modPrefixes::ExtractPrefix(reference);
    return character.FindItem(name, modPrefixes::TypeFromPrefix(prefix));
  }
  std::string Read(std::string_view reference, std::string_view tag) {
    clsItem* item = Find(reference);
    if (!item) return "<none>";
    if (tag != "mods") return item->TagItem(tag);
    std::string mods;
    for (const clsMod& mod : item->Mods) mods += "[" + mod.Group() + ":" + mod.FullName() + "]";
    return mods;
  }
  // The file without the counter of keys, which only goes up.
  std::string Text() {
    character.CalcPointCosts();
    std::string text = character.FileText();
    text.erase(text.find("lastkey("), text.find("dataset(") - text.find("lastkey("));
    return text;
  }
};

struct Expected {
  const char* reference;
  const char* tag;
  const char* value;
};
struct Case {
  const char* tags;
  std::vector<Expected> expected;
  const char* logged = "";
  std::vector<const char*> answers = {};
};

void Check(const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    TemplateWorld world;
    for (const char* answer : each.answers) world.Answer(answer);
    world.Use(each.tags);
    for (const Expected& is : each.expected) {
      EXPECT_EQ(world.Read(is.reference, is.tag), is.value) << each.tags << "\n"
                                                            << is.reference << " " << is.tag;
    }
    EXPECT_NE(world.Log().find(each.logged), npos) << each.tags << "\n" << world.Log();
    EXPECT_TRUE(world.notices.empty()) << each.tags << "\n" << world.notices.front();
    EXPECT_EQ(world.prompts.QueuedAnswers(), 0u) << each.tags;
  }
}

TEST(TemplateEffects, AddTraits) {
  Check({
      {"adds(AD:Fortune)", {{"AD:Fortune", "level", "1"}, {"TE:T", "needs", "AD:{Fortune}"}}},
      {"needs(AD:Hardy|AD:Debts),adds(AD:Fortune)", {{"TE:T", "needs", "(AD:Hardy|AD:Debts),AD:{Fortune}"}}},
      {"needs(ST:MG >= 2),adds(AD:Fortune)", {{"TE:T", "needs", "ST:MG >= 2,AD:{Fortune}"}}},
      {"adds(SK:Rowing=12 #NoNeeds)", {{"SK:Rowing", "level", "12"}, {"TE:T", "needs", ""}}},
      {"adds(SK:Rowing = 4pts)", {{"SK:Rowing", "basepoints", "4"}, {"TE:T", "needs", "SK:{Rowing}=4pts"}}},
      {"adds(AD:Iron Arm = 15pts)", {{"AD:Iron Arm", "level", "3"}}},
      {"adds(EQ:Arrow=20)", {{"EQ:Arrow", "count", "20"}}},
      {"adds(AD:Iron Arm >= 3)", {{"AD:Iron Arm", "level", "3"}, {"TE:T", "needs", "AD:{Iron Arm}>=3"}}},
      {"creates({AD:Coach, 1, gives(+1 to AD:Iron Arm)}),adds(AD:Iron Arm = 3)",
       {{"AD:Iron Arm", "level", "3"}, {"AD:Iron Arm", "baselevel", "2"}}},
      {"adds(AD:Iron Arm = 1+ST:MG/5)", {{"AD:Iron Arm", "level", "3"}}},
      {"owns(yes),locks(yes),hides(sheet),adds(AD:Hardy, {AD:Fortune #donotown})",
       {{"AD:Hardy", "keep", "3"},
        {"AD:Hardy", "owned", "yes"},
        {"AD:Hardy", "locked", "yes"},
        {"AD:Hardy", "hide", "sheet"},
        {"TE:T", "pkids", "4"},
        {"AD:Fortune", "keep", ""},
        {"AD:Fortune", "locked", ""}}},
      {"owns(0),adds(AD:Hardy)", {{"AD:Hardy", "keep", ""}, {"TE:T", "pkids", ""}}},
      {"adds(AD:Hardy)", {{"AD:Hardy", "mods", "[Initial:Plain]"}}},
      {"adds(AD:Hardy with {Reach:Longer} and {Sturdy, +7%} and Fine)",
       {{"AD:Hardy", "mods", "[Craft:Fine][Reach:Longer][Package:Sturdy]"}}},
      {"adds({AD:Hardy with Unheard})", {{"AD:Hardy", "mods", ""}}, "gets no modifier 'Unheard'"},
      {"adds(SK:Painting (Oil))", {{"SK:Painting (Oil)", "basepoints", "1"}}},
      {"adds(AD:Sense)", {{"AD:Sense (Sound)", "level", "1"}}, "", {"Sense (Sound)"}},
      {"adds(AD:Nowhere, AD:Fortune)",
       {{"AD:Fortune", "level", "1"}, {"TE:T", "needs", "AD:Nowhere, AD:{Fortune}"}},
       "found no trait to add for 'AD:Nowhere'"},
      {"adds({AD:{Nets, Lines} = 2})",
       {{"TE:T", "needs", "AD:{Nets, Lines}=2"}},
       "found no trait to add for"},
      {"adds(Fortune)", {{"TE:T", "needs", "AD:{Fortune}"}}},
      {"adds(AD:Bearer)", {{"AD:Bearer", "level", "1"}}, "", {"yes"}},
      {"adds({AD:{Fortune}} )", {{"AD:Fortune", "level", "1"}}},
  });
}

TEST(TemplateEffects, CreateSetAndModify) {
  Check({
      {"creates({AD:Foam Born, 5/12, cat(Sea, Body), gives(=2 to ST:Might)} = 2)",
       {{"AD:Foam Born", "points", "12"},
        {"AD:Foam Born", "keep", "3"},
        {"AD:Foam Born", "cat", "Sea, Body"},
        {"AD:Foam Born", "owned", ""},
        {"TE:T", "needs", "AD:{Foam Born}=2"}}},
      {"owns(yes),creates({AD:Mark, 5/10/15, locked(yes)} = 3 #donotown)",
       {{"AD:Mark", "level", "3"}, {"AD:Mark", "keep", ""}, {"TE:T", "pkids", ""}}},
      {"creates({SK:Eeling (Deep), MG/E, needs(AD:X >= 2)} #noneeds)",
       {{"SK:Eeling (Deep)", "type", "MG/E"}, {"SK:Eeling (Deep)", "needs", "AD:X >= 2"}}},
      {"creates(Plainly)", {{"TE:T", "needs", ""}}, "can't create 'Plainly'"},
      {"sets(ST:MG = 12, ST:Absent = 3)", {{"ST:Might", "score", "12"}}, "found nothing to set"},
      {"sets(ST:Might = 20pts with {Craft:Longer})",
       {{"ST:Might", "basescore", "12"}, {"ST:Might", "mods", "[Craft:Longer]"}}},
      {"addmods({Reach:Longer, #newmod(Odd, +7%), Wrong} to {AD:Bearer, AD:Gone}, {Fine} to AD:Bearer)",
       {{"AD:Bearer", "mods", "[Craft:Fine][Reach:Longer][Package:Odd]"}},
       "AddMods() unable to find specified modifier: Wrong"},
      {"addmods(Fine to AD:Gone)", {}, "AddMods() unable to find specified target: AD:Gone"},
      {"addmods(Fine AD:Bearer, Fine to AD:Bearer)",
       {{"AD:Bearer", "mods", ""}},
       "AddMods() improperly specified in item: T. AddMods() did not finish processing as a result."},
      {"addmods({Fine, Reach:Longer to AD:Bearer})", {{"AD:Bearer", "mods", "[Craft:Fine][Reach:Longer]"}}},
      {"adds({AD:Hardy}),removemods({Initial:Plain from {AD:Hardy}})", {{"AD:Hardy", "mods", ""}}},
      {"removemods(Fine from AD:Bearer)",
       {},
       "RemoveMods() unable to find and remove specified mod 'Fine' from target 'AD:Bearer'"},
      {"parentof(AD:Bearer, AD:Gone)", {{"AD:Bearer", "parentkey", "k3"}}, "but it wasn't found."},
      {"childof(AD:Bearer)", {{"TE:T", "parentkey", "k2"}, {"AD:Bearer", "childkeylist", "k3"}}},
      {"parentof(AD:Bearer),childof(AD:Bearer)", {{"TE:T", "parentkey", ""}}, "was disallowed."},
  });
}

TEST(TemplateEffects, MovesAValueAsTheOperatorSays) {
  struct {
    const char* wanted;
    const char* level;
    bool reached;
  } const cases[] = {{"3", "3", true},    {"=1", "1", true},   {">= 1", "2", true},     {">=4", "4", true},
                     {"> 2", "3", true},  {"<= 1", "1", true}, {"<2", "1", true},       {"<5", "2", true},
                     {"<>2", "2", false}, {"<> 1", "2", true}, {"ST:MG - 8", "3", true}};
  for (const auto& each : cases) {
    TemplateWorld world;
    clsItem& item = world.Added("Iron Arm", kAds);
    item.SetScoreTo(2);
    EXPECT_EQ(world.character.SetExistingItemToValue(item, each.wanted, ""), each.reached) << each.wanted;
    EXPECT_EQ(item.TagItem("level"), each.level) << each.wanted;
    item.SetTagItem("locked", "yes");
    EXPECT_TRUE(world.character.SetExistingItemToValue(item, "6", ""));
    EXPECT_TRUE(world.character.ForceExistingItemToValue(item, "7", ""));
    EXPECT_EQ(item.TagItem("level"), "7");
  }
}

TEST(TemplateEffects, ChangeTagsAndTakeThemBackWithTheTrait) {
  struct {
    const char* tags;
    std::vector<Expected> expected;
    std::size_t changes;
    const char* logged;
  } const cases[] = {
      {"mergetags(in AD:Bearer with cat(Odd), page(3))",
       {{"AD:Bearer", "cat", "Odd, Craft"}, {"AD:Bearer", "page", "3"}},
       2,
       ""},
      {"mergetags(in AD:Bearer with \"cat(Odd), page(3)\")",
       {{"AD:Bearer", "cat", "Odd, Craft"}, {"AD:Bearer", "page", "3"}},
       2,
       ""},
      {"mergetags(in all SK:Blade with cat(Sharp) , in AD:Cabin with x(1))",
       {{"SK:Blade (Broad)", "cat", "Sharp, Craft"}, {"SK:Blade (Narrow)", "cat", "Sharp, Craft"}},
       2,
       "Target not found: AD:Cabin"},
      {"mergetags(in AD:Bearer with cat(A), in AD:Bearer with cat(B))",
       {{"AD:Bearer", "cat", "B, A, Craft"}},
       2,
       ""},
      {"replacetags(in AD:Bearer with gives(+3 to ST:Might), name(Odd))",
       {{"ST:Might", "score", "13"}, {"AD:Bearer", "name", "Bearer"}},
       1,
       "Possible error with line: "},
      {"mergetags(AD:Bearer with cat(A))", {{"AD:Bearer", "cat", "Craft"}}, 0, "Bad MergeTags: "},
      {"replacetags(in AD:Bearer cat(A))", {{"AD:Bearer", "cat", "Craft"}}, 0, "Bad MergeTags: "},
      {"replacetags(in AD:Bearer with notes(n), page(7))",
       {{"AD:Bearer", "notes", "n"}, {"AD:Bearer", "page", "7"}},
       2,
       ""},
  };
  for (const auto& each : cases) {
    TemplateWorld world;
    world.Added("Blade (Broad)", kSkills);
    world.Added("Blade (Narrow)", kSkills);
    world.Find("AD:Bearer")->SetTagItem("notes", "half a {thought");
    const std::string before = world.Text();
    const std::int32_t id = world.Use(each.tags);
    for (const Expected& is : each.expected) {
      EXPECT_EQ(world.Read(is.reference, is.tag), is.value) << each.tags;
    }
    EXPECT_EQ(world.character.ChangeLog.size(), each.changes) << each.tags;
    EXPECT_NE(world.Log().find(each.logged), npos) << each.tags << world.Log();
    world.character.RemoveItem(KeyTextOf(id));
    EXPECT_EQ(world.Text(), before) << each.tags;
  }
}

TEST(TemplateEffects, ChangeTheCharactersOwnTexts) {
  TemplateWorld world;
  clsBodyItem tail;
  tail.Name = "Tail";
  tail.Cat = "Serpent";
  world.system.BodyParts.push_back(tail);
  const std::string before = world.Text();
  const std::int32_t first =
      world.Use("race(Sprite),bodytype(Serpent),charweight(40),charheight(90),age(7),appearance(green)");
  const std::int32_t second = world.Use("name(Ghost),race(Ghost)");
  KVRCharacter& c = world.character;
  EXPECT_EQ(c.Race + c.BodyType + c.Weight + c.Height + c.Age + c.Appearance, "GhostSerpent40907green");
  EXPECT_EQ(c.Body.Parts().size(), 1u);
  c.RemoveItem(KeyTextOf(second));
  EXPECT_EQ(c.Race, "Sprite");
  c.RemoveItem(KeyTextOf(first));
  EXPECT_EQ(world.Text(), before);
}

TEST(TemplateEffects, LetTheUserPick) {
  const std::vector<Case> cases = {
      {"select1(list(AD:Fortune, AD:Hardy))",
       {{"AD:Hardy", "level", "1"}, {"AD:Fortune", "level", "<none>"}},
       "",
       {"Hardy"}},
      {"owns(yes),select1(text(Pick), itemswanted(upto 2), tagwith(page(7)), list(AD:Fortune, SK:Rowing))",
       {{"AD:Fortune", "page", "7"}, {"SK:Rowing", "keep", "3"}, {"TE:T", "pkids", "5, 4"}},
       "NewItemsAdded(2) = Rowing",
       {"1,2"}},
      {"select1(itemswanted(upto 2), list(AD:Fortune))", {{"AD:Fortune", "level", "<none>"}}, "", {""}},
      {"select1(list({AD:Fortune, page(9)}, #newitem(AD:Own Star, cost(4), page(2))))",
       {{"AD:Own Star", "page", "2"}, {"AD:Own Star", "points", "4"}},
       "",
       {"Own Star"}},
      {"select1(list(#newitem(AD:, name(Deck Song), nameext(Low), cost(1)), AD:))",
       {{"AD:Deck Song (Low)", "points", "1"}},
       "AD:: Didn't find item: AD:",
       {"Deck Song (Low)"}},
      {"select1(list(#newitem(AD:Hardy, tint(red))))",
       {{"AD:Hardy", "tint", "red"},
        {"AD:Hardy", "cat", "Body, Craft"},
        {"AD:Hardy", "mods", "[Initial:Plain]"}},
       "",
       {"1"}},
      {"select1(pointswanted(exactly 20), list(AD:Iron Arm, AD:Fortune))",
       {{"AD:Iron Arm", "level", "1"}, {"AD:Fortune", "level", "1"}},
       "",
       {"1,2"}},
      {"select1(pointswanted(15), list(AD:Iron Arm #codes(upto 3)))",
       {{"AD:Iron Arm", "level", "3"}, {"AD:Iron Arm", "control_upto", ""}},
       "",
       {"1,1,1"}},
      {"select1(pointswanted(atleast -10, upto -15), list(DI:Debts))",
       {{"DI:Debts", "points", "-10"}},
       "",
       {"1,1"}},
      {"select1(itemswanted(1), pointswanted(upto 9), list({ST:Might, existing(yes)}))",
       {{"ST:Might", "score", "11"}, {"ST:Might", "waslevel", ""}},
       "",
       {"1"}},
  };
  Check(cases);
}

TEST(TemplateEffects, ReadTheLimitsOfASelectionFromEitherEnd) {
  struct {
    const char* text;
    double least, most;
  } const cases[] = {{"atleast -20, upto -10", 10, 20},
                     {"atleast -10, upto -20", 10, 20},
                     {"-20, -10", 10, 20},
                     {"5, 2", 2, 5},
                     {"2, 5", 2, 5},
                     {"-40, 0", 0, 40},
                     {"-5, 5", -5, 5},
                     {"atleast 3", 3, 0},
                     {"atleast 3, upto 0", 3, 0},
                     {"upto -4", 0, 4}};
  for (const auto& each : cases) {
    const SelectLimits limits = SelectLimits::Read(each.text);
    EXPECT_EQ(limits.least.ToDouble(), each.least) << each.text;
    EXPECT_EQ(limits.most.ToDouble(), each.most) << each.text;
  }
}

TEST(TemplateEffects, LeaveAloneWhatATypedNameMeets) {
  TemplateWorld world;
  world.env.Config.RefuseDupes[kAds] = -1;
  world.Load("[ADS]\r\nScent, 5, kind(scent), nameext(%input%#input(Which?))\r\n");
  const std::int32_t id = world.character.CreateNewItem(kAds, "name(Scent),nameext(Smell)", "", "", 0, 0, 0);
  for (const char* answer : {"1", "Smell"}) world.Answer(answer);
  world.Use(
      "owns(yes),select1(itemswanted(upto 1),list(#buildselectlist(ads where kind is scent, "
      "template(AD:%listitem%))))");
  EXPECT_NE(world.Log().find("Can't add Scent (Smell) because"), npos);
  ASSERT_TRUE(world.character.ItemByKey(id));
  EXPECT_EQ(world.character.ItemByKey(id)->TagItem("owned"), "");
}

// Points that no level asks for are kept.
TEST(TemplateEffects, GiveAnUnpickedSkillBackAsItWas) {
  struct {
    const char* codes;
    const char* steps;  // + picks, - unpicks
    int count;
    const char* points;
  } const cases[] = {{"", "+", 1, "3"},
                     {"", "+-", 0, "3"},
                     {"", "++", 1, "4"},
                     {"", "++-", 1, "3"},
                     {" #codes(upto 13)", "++", 1, "3"},
                     {" #codes(upto 12)", "+-", 0, "3"}};
  for (const auto& each : cases) {
    TemplateWorld world;
    clsItem& rowing = world.Added("Rowing", kSkills);
    ASSERT_TRUE(world.character.ForceExistingItemToValue(rowing, "3", "points"));
    const SelectText text("list({SK:Rowing, existing(yes)}" + std::string(each.codes) + ")");
    ItemSelection selection(world.character, *world.Find("AD:Bearer"), text);
    for (char step : std::string_view(each.steps)) {
      step == '+' ? selection.Pick(0) : selection.Unpick(0);
    }
    EXPECT_EQ(selection.CurCount(), each.count) << each.codes << each.steps;
    EXPECT_EQ(rowing.TagItem("basepoints"), each.points) << each.codes << each.steps;
    EXPECT_EQ(rowing.TagItem("points"), each.points) << each.codes << each.steps;
  }
}

TEST(TemplateEffects, MakeNothingOfASelectionThatCantBeMet) {
  struct {
    const char* tags;
    const char* answer;
  } const cases[] = {
      {"select1(list(AD:Fortune, AD:Hardy))", "1,2"},
      {"select1(itemswanted(2), list(AD:Fortune, AD:Hardy))", "1"},
      {"select1(itemswanted(3), list(AD:Fortune, AD:Hardy))", nullptr},
      {"select1(list())", nullptr},
      {"select1(pointswanted(exactly 7), list(AD:Fortune, AD:Iron Arm))", "1"},
      {"select1(pointswanted(20), list(AD:Iron Arm #codes(upto 3)))", "1,1,1,1"},
      {"select1(list(AD:Bearer))", "1"},
      {"select1(itemswanted(1), list(AD:Fortune)),select2(list(SK:Rowing, SK:Painting))", "1"},
      {"sets(ST:MG=14),select1(pointswanted(upto 9), list({ST:Might, existing(yes)}))", "1,1"},
  };
  for (const auto& each : cases) {
    TemplateWorld world;
    const std::string before = world.character.FileText();
    if (each.answer) world.Answer(each.answer);
    EXPECT_EQ(world.Use(each.tags), 0) << each.tags;
    EXPECT_EQ(world.character.FileText(), before) << each.tags;
    EXPECT_EQ(world.prompts.QueuedAnswers(), 0u) << each.tags;
  }
}

TEST(TemplateEffects, ThatLeadBackToThemselvesAreRefusedThere) {
  TemplateWorld world;
  world.Added("Mirror", kPackages);
  EXPECT_EQ(world.Names(), (std::vector<std::string>{"Bearer", "Fortune", "Might", "Mirror"}));
  EXPECT_NE(world.RedLog().find("'Mirror' was not added: it is being added already"), npos);
  world.Answer("no");
  world.Added("Day", kPackages);
  EXPECT_EQ(world.character.Count(kPackages), 3);
  EXPECT_EQ(world.character.Count(kAds), 4);
}

// Each cancel leaves the file as it was, or, where only a part was cancelled, what the rest did goes with the
// template.
TEST(TemplateEffects, ACancelAtAnyPromptLeavesNoTrace) {
  const char* const templates[] = {
      "adds(AD:Sense),sets(ST:MG=14),race(Sprite)",
      "addmods(Fine to AD:Bearer),removemods(Old from AD:Bearer),select1(list(AD:Fortune,AD:Hardy))",
      "adds(AD:Bearer, AD:Fortune),mergetags(in AD:Bearer with cat(Odd)),select1(list(AD:Hardy, SK:Rowing))",
      "childof(AD:Bearer),select1(itemswanted(2), list(AD:Fortune,{AD:Hardy},{ST:Might, existing(yes)}))",
      "owns(yes),adds(TE:Outer, AD:Sense with {Reach:Longer}),select1(list(SK:Rowing)),bodytype(Odd)",
  };
  for (const char* tags : templates) {
    int cancels = 0, asked = 1;
    for (int number = 1; number <= asked; ++number) {
      TemplateWorld world;
      clsItem& bearer = *world.Find("AD:Bearer");
      world.character.CreateNewMod(bearer, "name(Old),cost(+50%),gives(+2 to SK:Rowing)", "Craft");
      world.Added("Rowing", kSkills);
      world.Use("name(Older),mergetags(in AD:Bearer with page(3))");
      world.Added("Hardy", kAds).SetScoreTo(1);
      world.character.RemoveItem(world.Find("AD:Hardy")->KeyText());
      world.character.RemoveItem(world.Find("SK:Rowing")->KeyText());
      const std::string totals = world.Text(), before = world.character.FileText();
      world.prompts.CancelAt(number);
      const std::int32_t id = world.Use(tags);
      asked = std::max(asked, world.prompts.Asked());
      if (id == 0) {
        ++cancels;
        EXPECT_EQ(world.character.FileText(), before) << tags << " at " << number;
        EXPECT_EQ(world.Text(), totals) << tags << " at " << number;
      }
    }
    const bool selects = std::string_view(tags).find("select") != npos;
    EXPECT_GE(cancels, selects ? 1 : 0) << tags;
  }
}

// What a template brings is linked at its end, but a formula in it reads what came before.
TEST(TemplateEffects, AFormulaReadsWhatTheTemplateChangedBefore) {
  TemplateWorld world;
  world.Load(
      "[ATTRIBUTES]\r\nLift, symbol(LF), basevalue(5 + AD:Iron Arm::level), step(1)\r\n"
      "[ADS]\r\nStrider, 1/2/3, init(ST:Lift - 6)\r\n"
      "[TEMPLATES]\r\nPorter, adds({AD:Iron Arm = 3})\r\n");
  world.Added("Lift", kStats);
  world.Use("adds(TE:Porter, AD:Hardy, AD:Fortune, AD:Strider, {SK:Rowing = ST:Lift + 5})");
  EXPECT_EQ(world.Read("ST:Lift", "score"), "8");
  EXPECT_EQ(world.Read("AD:Strider", "level"), "2");
  EXPECT_EQ(world.Read("SK:Rowing", "level"), "13");
  world.Find("AD:Iron Arm")->SetScoreTo(1);
  EXPECT_EQ(world.Read("ST:Lift", "score"), "6");
}

TEST(TemplateEffects, AnInnerCancelTakesBackOnlyWhatTheInnerDid) {
  TemplateWorld world;
  const std::int32_t older = world.Use("mergetags(in AD:Bearer with page(3))");
  world.prompts.CancelAt(1);
  const std::int32_t outer = world.Add("Outer", kPackages);
  EXPECT_EQ(world.prompts.Asked(), 1);
  EXPECT_EQ(world.Names(), (std::vector<std::string>{"Bearer", "Hardy", "Might", "Outer", "T"}));
  EXPECT_EQ(world.character.Race, "Human");
  EXPECT_EQ(world.Read("AD:Bearer", "cat"), "Craft");
  EXPECT_EQ(world.character.ChangeLog.size(), 1u);
  EXPECT_EQ(world.Tag(outer, "pkids"), std::to_string(outer + 1));
  world.character.RemoveItem(KeyTextOf(outer));
  EXPECT_EQ(world.Names(), (std::vector<std::string>{"Bearer", "Might", "T"}));
  EXPECT_EQ(world.Read("AD:Bearer", "page"), "3");
  world.character.RemoveItem(KeyTextOf(older));
  EXPECT_EQ(world.Read("AD:Bearer", "page"), "");
}

// A record of an older trait that reads what came and went.
TEST(TemplateEffects, AnOlderBonusHasItsFormerValueAfterACancel) {
  TemplateWorld world;
  world.character.CreateNewItem(kAds, "name(Lifter),gives(+AD:Iron Arm::level to ST:MG)", "", "", 0, 0, 0);
  const std::string before = world.Text();
  world.prompts.CancelAt(1);
  EXPECT_EQ(world.Use("adds(AD:Iron Arm = 3),select1(list(AD:Hardy))"), 0);
  EXPECT_EQ(world.prompts.Asked(), 1);
  EXPECT_EQ(world.Text(), before);
  world.Use("adds(AD:Iron Arm = 3)");
  EXPECT_EQ(world.Read("ST:Might", "score"), "14");
}

TEST(TemplateEffects, ACancelKeepsThePlacesOfTagsAndTheCategories) {
  TemplateWorld world;
  world.Added("Fortune", kAds);
  const std::int32_t id =
      world.character.CreateNewItem(kAds, "name(Lone),taboo(AD:Fortune)", "", "", 0, 0, 0);
  ASSERT_NE(world.Tag(id, "tabootext"), "");
  world.character.ItemByKey(id)->SetTagItem("zeal", "1");  // behind what the check wrote
  const std::string before = world.Text();
  world.Answer("yes");
  world.Answer("cancel");
  EXPECT_EQ(world.Use("adds(AD:Fortune),creates({AD:Seen, 1, cat(Unheard)}),select1(list(AD:Hardy))"), 0);
  EXPECT_EQ(world.Text(), before);
}

TEST(TemplateEffects, AFailingFormulaDeepInsideLeavesNoTrace) {
  TemplateWorld world;
  world.Load(
      "[ADS]\r\nCursed, 5, init(AD:Bearer::page + 1)\r\n"
      "[TEMPLATES]\r\nDoom, race(Ghost), mergetags(in AD:Bearer with cat(Odd)), adds(AD:Cursed)\r\n");
  world.Find("AD:Bearer")->SetTagItem("page", "none");
  const std::string before = world.Text();
  EXPECT_THROW(world.Use("sets(ST:MG = 14),addmods(Fine to AD:Bearer),adds(AD:Fortune, TE:Doom respond x)"),
               SolverFailure);
  EXPECT_EQ(world.character.ResponseCount(), 0u);
  EXPECT_EQ(world.Text(), before);
  EXPECT_EQ(world.Read("ST:Might", "score"), "11");
}

TEST(TemplateEffects, AnOlderTraitThatWasTakenAwayComesBackWhole) {
  TemplateWorld world;
  clsItem& bearer = *world.Find("AD:Bearer");
  world.character.CreateNewMod(bearer, "name(Old),gives(+2 to SK:Rowing)", "Craft");
  clsItem& rowing = world.Added("Rowing", kSkills);
  clsItem& fortune = world.Added("Fortune", kAds);
  bearer.SetTagItem("isparent", "yes");
  ASSERT_TRUE(world.character.MakeChildOf(fortune.KeyText(), bearer.KeyText()));
  const std::string before = world.Text();
  const std::int32_t key = bearer.IDKey, lastKey = world.character.LastKey;
  world.Answer("yes");     // the older Bearer goes, and its child with it
  world.Answer("cancel");  // and then the selection is cancelled
  EXPECT_EQ(world.Use("adds(AD:Bearer),select1(list(AD:Hardy, SK:Painting))"), 0);
  EXPECT_EQ(world.Text(), before);
  EXPECT_EQ(world.character.LastKey, lastKey);
  // Its records reach what they reached.
  EXPECT_EQ(world.Read("ST:Might", "score"), "11");
  const std::int32_t level = rowing.Level();
  world.character.DeActivateItem(KeyTextOf(key));
  EXPECT_EQ(rowing.Level(), level - 3);
}

}  // namespace
}  // namespace kvr
