// Directives: what each comes to, whom it asks, and what it makes of bad input.
#include "character/modDirectives.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kRules =
    "[ADS]\r\n"
    "Calm, 5, cat(Mind, Quiet), page(3)\r\n"
    "Cool Head, 10, cat(Mind)\r\n"
    "Long Arms, 15, cat(Body), page(3)\r\n"
    "Mark of Honour, 5, cat(Social)\r\n"
    "[SKILLTYPES]\r\n"
    "Plain/E, costs(1/2/4), baseadj(0), defaultstat(10)\r\n"
    "Pair, costs(1/2), subzero(1), defaultstat(%combo)\r\n"
    "[SKILLS]\r\n"
    "Oar, Plain/E\r\n"
    "Net (Casting), Plain/E\r\n"
    "Twin Work, Pair, x(#buildcombo(highest))\r\n"
    "[LISTS]\r\n"
    "<Colours>\r\n"
    "Red\r\n"
    "Blue\r\n"
    "AD:Calm\r\n"
    "<Endless>\r\n"
    "a\r\n"
    "b #list(Endless)\r\n"
    "<Asking>\r\n"
    "Go #choice(Up, Down)%choice%\r\n"
    "<Keys>\r\n"
    "\"Key=4\"\r\n"
    "[GROUPS]\r\n"
    "<Crafts>\r\n"
    "SK:Net (Casting)\r\n"
    "AD:Calm\r\n"
    "[MODIFIERS]\r\n"
    "<Odd>\r\n"
    "Talking, +10%, x(#message(\"Well, hello\", Voice)), colour(#choice(Ochre, Umber)%choice%)\r\n";

// The runs in the order of a trait that is added.
std::string Run(CharacterWorld& world, std::string text) {
  const std::vector<modDirectives::Substitution> vars{{"%AddedItemsList%", ""}};
  const bool cancelled = modDirectives::HandleSpecialDirectives(text, world.character, vars) ||
                         modDirectives::HandleDirectives(text, world.character, vars) ||
                         modDirectives::HandleSelectXDirectives(text, world.character, vars);
  return cancelled ? "cancelled" : text;
}

// Everything that was said: prompts without an answer, then the log.
std::string Said(const CharacterWorld& world) {
  std::string said;
  for (const std::string& notice : world.notices) said += notice + "\n";
  return said + world.Log();
}

struct Case {
  std::string text;
  std::vector<std::string> answers;  // to prompts
  std::string expected;
  std::string_view said = "";               // part of what must have been said
  std::vector<std::string> responses = {};  // scripted; the last one is taken first
};

void RunCases(const std::vector<Case>& cases) {
  CharacterWorld world(kRules);
  world.Add("Long Arms", kAds);
  world.Add("Calm", kAds);
  for (const Case& each : cases) {
    world.notices.clear();
    world.env.log.Clear();
    for (const std::string& answer : each.answers) world.Answer(answer);
    for (const std::string& response : each.responses) world.character.PushResponse(response);
    EXPECT_EQ(Run(world, std::string(each.text)), each.expected) << each.text;
    EXPECT_NE(Said(world).find(each.said), std::string::npos) << each.text << "\n" << Said(world);
    EXPECT_EQ(world.prompts.QueuedAnswers(), 0u) << each.text;
    world.prompts.ClearAnswers();
    world.character.ClearResponses();
  }
}

TEST(Directives, Choice) {
  RunCases({
      {"name(%choice% Axe),x(#choice(Red, Blue, Green))", {"blue"}, "name(Blue Axe),x()"},
      {"n(%CHOICE%|%Choice1%|%choice2%|%choice3%|%choice4%),#choice(A, B, C)",
       {"B"},
       "n(B|B|%choice2%|%choice3%|%choice4%),"},
      {"a(%choicecost%)#choice(Ice=2, \"Fire=5\"=7.5)", {"2"}, "a(7.5)", "ChoicesList$(2) = Fire=5"},
      {"%pet%, %pet1%, %petlist%, %petnotlist%#choice(name(pet), list(Cat, Dog, {Owl, Snowy}))",
       {"Dog"},
       "Dog, Dog, Dog, Cat, Owl, Snowy"},
      {"%choice%/%choicealias%/%choice2%/%choice2alias%/%choicealiaslist%/%choicealiasnotlist%"
       "#choice(list(A, B, C), aliaslist(x, y), picksallowed(exactly 2))",
       {"1, 3"},
       "A/x/C/C/x, C/y"},
      {"%choicealt1list%;%choicealt5list%;%choicealt2list%;%choicecostlist%;%choicecostnotlist%"
       "#choicelist(list(A=1, B=2, C=3), alt1list(p, q, r), alt5list(s, t, u), picksallowed(atleast 1, upto "
       "2))",
       {"A, C"},
       "p, r;s, u;;1, 3;2"},
      {"%choice%-%choicelist%-%choice2%-%choice3%#choice(list(A, B, C), picksallowed(upto 2))",
       {""},
       "---%choice3%"},
      {"#choice(list(A), picksallowed(exactly 0))%choicenotlist%", {}, "A"},
      {"#choice(list(A=3, B=4, C=5), totalcost(exactly 8))%choicelist%", {"A, C"}, "A, C"},
      {"#choice(list(A=3, B=4, C=5), picksallowed(2), totalcost(upto 7), method(both))%choicelist%",
       {"B, C"},
       "cancelled",
       "does not fit"},
      {"#choice(list(A=3, B=4), totalcost(exactly 7), method(bynum))%choicelist%", {"A"}, "A"},
      {"#choice(list(Specialist(x), B))%choice%", {"1"}, "Specialist(x)"},
      {"#choice(Specialist(x), B)%choice%", {"1"}, "Specialist(x)"},
      // The dialog, when nobody answers.
      {"name(Sage)#choice(list(A, B), title(\"Lore\"), text(Which?))",
       {},
       "cancelled",
       "prompt: Lore: Which?"},
      {"name(Sage)#choice(A, B)", {}, "cancelled", "prompt: Sage: Please make your choice:"},
      // Scripted answers.
      {"#choice(list(A, B), aliaslist(x, y))%choice%", {}, "B", "", {"Y"}},
      {"#choice(list(A, B, C), picksallowed(atleast 2, upto 3))%choicelist%",
       {},
       "A, C",
       "",
       {"B", "a", "c"}},
      {"#choice(list(A, B, C), picksallowed(upto 3))%choicelist%", {}, "A, B", "", {"{A, B}"}},
      {"#choice(A, B)%choice%", {"A"}, "A", "The answer 'D' is none of the choices", {"D"}},
      // Inside out, once.
      {"#choice(#list(Colours))%choice%", {"Red"}, "Red"},
  });
}

TEST(Directives, Inputs) {
  const std::string refused =
      "You entered a mismatched number of parenthesis, which is not allowed. Please try again.";
  RunCases({
      {"name(%input%)#input(Who?),a(%Input%)",
       {"Old #input(x) Tam"},
       "name(Old input(x) Tam),a(Old input(x) Tam)",
       "was changed to: Old input(x) Tam"},
      {"n(%input% (A))#input(Who?)",
       {"##list(Colours)#build#list(list(a)) #1 #choice"},
       "n(list(Colours)buildlist(list(a)) #1 choice (A))"},
      {"x(#inputtotag(motto, Words?))", {"No #1"}, "x(),motto(No #1)", "Now NewText$ = x(),motto(No #1)"},
      {"#input()", {}, "cancelled", "prompt: KVR Input: Please enter value:"},
      {"#input(\"Name, or none\", Tam, \"The Name\")", {}, "cancelled", "prompt: The Name: Name, or none"},
      {"#input(a, b, c, d)%input%", {}, "%input%", "Improper #Input directive: #input(a, b, c, d)"},
      {"n(%input%)#input(Who?)", {"a) (b", "ok", "(a)"}, "n((a))"},
      {"n(%input%)#input(Who?)", {"a)"}, "cancelled", refused},
      {"n(%input%)#input(Who?)", {}, "n(12)", "", {"12"}},
      {"n(%input%)#input(Who?)", {"fine"}, "n(fine)", "unbalanced parentheses", {":("}},
      {"n(@here)#inputreplace(@here, Where?, , Place)", {"Quay"}, "n(Quay)"},
      {"#inputreplace(@here)", {}, "", "Improper #InputReplace directive: #inputreplace(@here)"},
      {"x(#inputtotag(speed#, Formula?))", {"2*3"}, "x(),speed#(2*3)", "Now NewText$ = x(),speed#(2*3)"},
      {"name(X),x(#inputtotag(Colour, Which?))", {"red"}, "name(X),x(),colour(red)", "Now NewText$ = "},
      {"colour(blue),x(#inputtotag(colour, Which?))",
       {},
       "colour(blue),x()",
       "we already have a value for that tag!: colour = blue"},
      {"colour(#inputtotag(colour, Which?)),a(b)", {"red"}, "a(b),colour(red)"},
      {"a(b),#inputtotag(colour, Which?)", {""}, "a(b),"},
      {"#inputtotag(colour)", {}, "", "Improper #InputToTag directive: #inputtotag(colour)"},
      {"#inputtotag(a(b), c)", {}, "", "Improper #InputToTag directive: "},
      {"a(b),colour(blue),x(#inputtotagreplace(colour, Which?))", {"(", "ok", "red"}, "a(b),x(),colour(red)"},
      {"a(b),colour(blue),x(#inputtotagreplace(colour, Which?))", {""}, "a(b),x()"},
      {"#inputtotagreplace()", {}, "", "Improper #InputToTagReplace directive: "},
      {"a(#message(%input%))#input(#choice(Who, Whom)%choice%?)", {"Whom", "me", "ok"}, "a()"},
  });
}

TEST(Directives, Lists) {
  const std::string_view wrongForm =
      "#BuildSelectList should be in this format: #BuildSelectList( <Type> where <tag> [ is | isnot | "
      "includes | "
      "excludes | listincludes | listexcludes ] <tagvalue> , template( [some text]%ListItem%[more text] ))";
  RunCases({
      {"#list(colours)", {}, "AD:Calm, Blue, Red"},
      {"#list(Colours, flags(noprefix, quotes), append( (Dark)), prepend(\"Very \"))",
       {},
       "Very \"Calm\" (Dark), Very \"Blue\" (Dark), Very \"Red\" (Dark)"},
      {"#list(Colours, inquotes, masterbraces)", {}, "{\"AD:Calm\", \"Blue\", \"Red\"}"},
      {"#list(Colours, flags(indoublequotes))", {}, "\"\"AD:Calm\"\", \"\"Blue\"\", \"\"Red\"\""},
      {"#list(Colours, flags(indoubledquotes, noquotes, masterquotes))",
       {},
       "\"\"\"AD:Calm\"\", \"\"Blue\"\", \"\"Red\"\"\""},
      {"#list(Colours, flags(quotes, noquotes))", {}, "AD:Calm, Blue, Red"},
      {"#list(Colours, flags(parens))#list(Colours, parenit)#list(Colours, inparens)",
       {},
       "(AD:Calm), (Blue), (Red)(AD:Calm), (Blue), (Red)(AD:Calm), (Blue), (Red)"},
      {"#list(Colours, inbraces, huge)", {}, "{AD:Calm}, {Blue}, {Red}", "Unknown option 'huge' in #list"},
      {"#list(Nowhere)", {}, "", "The library has nothing for #list(Nowhere)"},
      {"#list(Asking)", {"Up"}, "Go Up"},
      {"#choice(#list(Keys), Lock)%choice%:%choicecost%", {"Key=4"}, "Key=4:0"},
      {"#grouplist(Crafts)", {}, "AD:Calm, SK:Net (Casting)"},
      {"#grouplist(Crafts, flags(noprefix))", {}, "Calm, Net (Casting)"},
      {"#buildlist(list(a, {b, c}), template({AD:%ListItem%, 5}), flags(masterbraces))",
       {},
       "{{AD:a, 5}, {AD:\"b, c\", 5}}",
       ": BuildList = "},
      {"#buildlist(list(a, b), flags(quotes))", {}, "\"a\", \"b\""},
      {"#buildlist(template(x))", {}, "", "Improper #BuildList directive: #buildlist(template(x))"},
      {"#buildselectlist(ads where cat is Mind, template(%listitem%))",
       {},
       "Cool Head",
       "found item: Cool Head"},
      {"#buildselectlist(AD: where page isnot 3, template({AD:%ListItem%}))",
       {},
       "{AD:Cool Head}, {AD:Mark of Honour}"},
      {"#BuildSelectList(advantages where name includes \"AR\")", {}, "Long Arms, Mark of Honour"},
      {"#buildselectlist(ad: where cat excludes mind)", {}, "Long Arms, Mark of Honour"},
      {"#buildselectlist(ads where cat listincludes quiet)", {}, "Calm"},
      {"#buildselectlist(ads where cat is mind, quiet, template(%listitem%))", {}, "Calm"},
      {"#buildselectlist(ads where cat listexcludes mind)", {}, "Long Arms, Mark of Honour"},
      {"#buildselectlist(statistics where name is x)", {}, "", ": BuildSelectList = "},
      {"#buildselectlist(ads with cat is x)", {}, "", wrongForm},
      {"#buildselectlist(ads where cat matches x)",
       {},
       "",
       "This #BuildSelectList was improperly defined, and could not be used: "},
      {"#buildcharitemlist(ads with cat is x)", {}, "", wrongForm},
      {"#buildcharitemlist(ads where page is 3, template(AD:%listitem%=1))", {}, "AD:Calm=1, AD:Long Arms=1"},
      {"#choice(#buildselectlist(ads where cat is None))", {}, "cancelled", "no choice out of 0"},
      {"#choice(list(#buildselectlist(ads where cat is None)), picksallowed(upto 2))%choicelist%", {}, ""},
  });
}

TEST(Directives, MessagesAndWordsThatStay) {
  RunCases({
      {"x(#message(Beware!, Notice))", {}, "x()", "prompt: Notice: Beware!"},
      {"x(#message(\"One, two\"))", {}, "x()", "prompt: BRASK Kivera: One, two"},
      {"x(#message(One, two, three))", {}, "x()", "prompt: BRASK Kivera: One, two, three"},
      {"#codes(upto 2)#donotown #noneeds #buildit #edit #buildcombo(x) #newitem(a) #newmod(b) #) speed#(3)",
       {},
       "#codes(upto 2)#donotown #noneeds #buildit #edit #buildcombo(x) #newitem(a) #newmod(b) #) speed#(3)"},
      {"item #1, x(#choice(A, B)%choice%)", {"B"}, "item #1, x(B)"},
      {"rank #1 #choice (A, B)%choice%", {"A"}, "rank #1 A"},
      {"#newitem(a(#choice(A, B)%choice%))", {"A"}, "#newitem(a(A))"},
      {"#foo(1)#lists(2)#choice(A)%choice%", {"A"}, "#foo(1)#lists(2)A", "Unknown directive: #lists("},
      {"x(#message(You have %AddedItemsList%.))#choice(A)%choice%",
       {"A"},
       "x(#message(You have %AddedItemsList%.))A",
       ": Protected Var: Don't process yet!"},
      {"x(#message(#nope(1) %AddedItemsList%))",
       {},
       "x(#message(#nope(1) %AddedItemsList%))",
       "Unknown directive: #nope("},
  });
}

TEST(Directives, BadInputEnds) {
  std::string marks, unknown, nested, unclosed;
  for (int i = 0; i < 10000; ++i) {
    marks += "#";
    unknown += "#no(";
    nested += "#list(";
  }
  RunCases({
      {"name(Ring),#list(Endless)",
       {},
       "cancelled",
       "'Ring' can't be added: its directives lead to others without end."},
      {"name(Well)," + nested, {}, "cancelled", "'Well' can't be added: its directives stand too deep"},
      {marks, {}, marks},
      {unknown, {}, unknown, "Unknown directive: #no("},
      {"name(X),y(%choice%),#choice(A, B", {"B"}, "name(X),y(B),"},
      {"#list", {}, "#list"},
      {"#choice()", {}, "cancelled", "no choice out of 0"},
      {"#choice(list(A, B), picksallowed(atleast 3))",
       {},
       "cancelled",
       "no choice out of 2 meets the limits"},
      {"x(#choicelist(name(pet), list(A, B), picksallowed(3))),name(Ring)",
       {},
       "cancelled",
       "'Ring' can't be added: no choice out of 2 meets the limits of #choicelist 'pet'."},
      {"#choice(list(A, B), picksallowed(2), method(cost))%choicelist%",
       {"A"},
       "A",
       "picksallowed was passed over"},
      {"#choice(list(A=1, B=2), totalcost(atleast 4))", {}, "cancelled", "meets the limits"},
      {"#choice(list(A, B), picksallowed(atleast 2, upto 1))", {}, "cancelled", "meets the limits"},
      {"#choice(list(A, B), picksallowed(about 2))%choice%",
       {"A"},
       "A",
       "Unknown limit of a choice: about 2"},
      {"n(%choice%),#choice(a (b, c", {"1"}, "n(a [b, c),", "unbalanced parentheses"},
  });
}

TEST(Directives, RunWhereATraitIsAdded) {
  CharacterWorld world(kRules);
  world.Load(
      "[ADS]\r\n"
      "Master, 5, nameext(%choice%), x(#choice(Oars, Nets)), motto(#inputtotag(motto, Words?))\r\n"
      "Herald, 5, initmods({Talking, +10%, x(#message (Hark, Voice)), colour(#choice(Ochre, "
      "Umber)%choice%)}), "
      "notes(#message(Late))\r\n");
  const std::string before = world.Everything();
  for (const std::vector<std::string>& answers : {std::vector<std::string>{}, {"Hold fast"}}) {
    for (const std::string& answer : answers) world.Answer(answer);
    EXPECT_EQ(world.Add("Master (%choice%)", kAds), 0);
    EXPECT_EQ(world.Everything(), before);
  }
  world.Answer("Hold fast");
  world.Answer("Nets");
  const clsItem& master = world.Added("Master (%choice%)", kAds);
  EXPECT_EQ(master.FullName(), "Master (Nets)");
  EXPECT_EQ(master.TagListNoFill().find("#"), std::string::npos);
  EXPECT_EQ(world.Tag(master.IDKey, "motto") + world.Tag(master.IDKey, "basedon"),
            "Hold fastMaster (%choice%)");

  world.notices.clear();
  world.Answer("Umber");
  world.Answer("ok");
  clsItem& herald = world.Added("Herald", kAds);
  ASSERT_EQ(herald.Mods.Count(), 1u);
  EXPECT_EQ(herald.Mods.Item(1).TagItem("colour"), "Umber");
  EXPECT_EQ(herald.Mods.Item(1).TagList().find("message"), std::string::npos);
  EXPECT_EQ(world.notices, std::vector<std::string>{"prompt: BRASK Kivera: Late"});  // the first was answered
}

TEST(Directives, SelectListsOfATrait) {
  CharacterWorld world(kRules);
  const auto create = [&](std::string_view list) {
    return world.character.CreateNewItem(kPackages, list, "", "", 0, 0, 0);
  };
  // Without select1 nothing is picked, and what waits in select2 stays.
  const std::int32_t wide = create(
      "name(Wide),known(#buildselectlist(ads where cat is Mind)),select2(#buildselectlist(ads where x is "
      "y))");
  EXPECT_EQ(world.Tag(wide, "known"), "Cool Head");
  EXPECT_EQ(world.Tag(wide, "select2"), "#buildselectlist(ads where x is y)");

  std::string nested = "name(Guild),select1(";
  for (int i = 0; i < 60; ++i) nested += "#buildselectlist(";
  EXPECT_EQ(create(nested + std::string(61, ')')), 0);
  EXPECT_NE(world.Log().find("'Guild' (select1) can't be added: its directives stand too deep"),
            std::string::npos);
}

TEST(Directives, AddedItemsAndCombinations) {
  CharacterWorld world(kRules);
  const std::int32_t net = world.Add("Net (Casting)", kSkills);
  const std::int32_t oar = world.Add("Oar", kSkills);
  std::string text = "creates(%AddedItemsList%)";
  modDirectives::HandleAddedItemsList(text, {oar, 0, 99, net}, world.character);
  EXPECT_EQ(text, "creates(\"SK:Oar\", \"SK:Net (Casting)\")");

  std::string left;
  world.Answer("No #1");
  text = "#inputreplace(@n, Which?)#inputreplace(@m, @n of %AddedItemsList%)";
  modDirectives::HandleSpecialDirectives(text, world.character, {{"%AddedItemsList%", ""}}, &left);
  EXPECT_EQ(left, "#inputreplace(@m, No #1 of %AddedItemsList%)");

  // What waits for the traits that a template has brought, questions included, runs when they are there.
  const std::string list =
      "name(Guild),pkids(" + std::to_string(oar) +
      "),x(#message({Have %AddedItemsList%})#inputreplace(@n, {Name %AddedItemsList%})),n(@n)";
  world.Answer("Rowers");
  const std::int32_t guild = world.character.CreateNewItem(kPackages, list, "", "", 0, 0, 0);
  EXPECT_EQ(world.Tag(guild, "n"), "Rowers");
  EXPECT_EQ(world.notices, std::vector<std::string>{"prompt: BRASK Kivera: Have \"SK:Oar\""});

  EXPECT_EQ(world.Add("Twin Work", kSkills), 0);
  world.Answer("{Net (Casting)}, Oar");
  clsItem& pair = world.Added("Twin Work", kSkills);
  EXPECT_EQ(pair.FullName(), "Net [Casting] + Oar");
  EXPECT_EQ(world.character.FindItem("Net [Casting] + Oar", kSkills), &pair);
  EXPECT_EQ(pair.TagItem("combokeys"), std::to_string(net) + ", " + std::to_string(oar));
  EXPECT_EQ(pair.TagItem("comboattacks") + pair.TagItem("comboflags"), "1, 1highest");
  EXPECT_EQ(pair.TagItem("combodeffrom"), "{SK:Net (Casting)}, {SK:Oar}");
}

TEST(Directives, OpenTheWindowsOfATrait) {
  struct : ScriptedPrompts {
    bool EditMods(std::string_view key) override { return Note("mods ", key); }
    bool EditItem(std::string_view key) override { return Note("item ", key); }
    bool Note(std::string_view window, std::string_view key) {
      opened.append(window).append(key).append(";");
      return true;
    }
    std::string opened;
  } prompts;
  FrontEndEvents events;
  Environment env(prompts, events);
  KVRSystem system(env);
  KVRCharacter character(env, system);
  const std::string_view list = "name(Odd),x(#BuildIt #edit #edition),notes(n)";
  clsItem* item = character.ItemByKey(character.CreateNewItem(kAds, list, "", "", 0, 0, 0));
  ASSERT_TRUE(item);
  EXPECT_EQ(prompts.opened, "mods k1;item k1;");
  EXPECT_EQ(item->TagItem("notes"), "n");
  character.CreateNewItem(kAds, "name(Quiet),x(#buildit)", "", "", -1, 0, 0);
  EXPECT_EQ(prompts.opened, "mods k1;item k1;");
}

}  // namespace
}  // namespace kvr
