// What the lint tells of a data file that is read behind a set of two others.
#include "frontend/Lint.h"

#include "core/modTools.h"
#include "library/KVRSystem.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kRules =
    "Version=3\r\n[ATTRIBUTES]\r\nGrit, symbol(GT)\r\n[SKILLTYPES]\r\nGT/E, defaultstat(ST:Grit)\r\n"
    "[ADVANTAGES]\r\n<Gifts:GF>\r\nBold, 5\r\nTongue (Low), 1\r\n[SKILLS]\r\n<Water>\r\nRowing, GT/E\r\n"
    "[MODIFIERS]\r\n<Limits>\r\nAshore, -10%\r\n[GROUPS]\r\n<Boats>\r\nSK:Rowing\r\n";
constexpr std::string_view kMore =
    "Version=3\r\n[TEMPLATES]\r\nBoatman, 0, creates({AD:Oar Hand, 2}), adds(TE:Ferryman)\r\n"
    "Ferryman, 0\r\n#delete AD:Doomed\r\n";

std::string Findings(std::string_view text) {
  TestWorld world;
  world.Write("rules.kdf", kRules);
  world.Write("more.kdf", kMore);
  const std::string path = world.Write("own.kdf", "Version=3\r\n" + std::string(text));
  world.Write("both.kds", "files(\"rules.kdf\", \"more.kdf\")", kDataSets);
  KVRSystem system(world.env);
  std::string lines;
  for (const Lint::Finding& finding : Lint::Run(system, "both.kds", {{"own.kdf", path}}))
    lines += Lint::Text(finding) + "\n";
  return lines;
}

struct Case {
  std::string_view data, expected;  // "/n/" stands for a line break; the data begins in line 2
};

std::string Lines(std::string_view text) {
  std::string lines(text);
  modTools::ReplaceAll(lines, "/n/", "\n");
  return lines;
}

TEST(Lint, TellsFileLineAndText) {
  const Case cases[] = {
      // Lines
      {"[ADS]/n/A, 5, gives(+1 to ST:Grit))", "own.kdf:3: Unmatched parentheses (1 '(' and 2 ')')"},
      {"[ADS]/n/A, 5,/n/* note/n/B, 5",
       "own.kdf:3: A comment line threw away the lines joined before it (A, 5,)"},
      {"[ADS]/n/A, page(5).", "own.kdf:3: Text behind the closing parenthesis of a tag ('page(5).')"},
      {"[ADS]/n/A, page (5)", "own.kdf:3: A tag name that ends in a blank ('page ')"},
      {"[SPELLS]/n/Flash, M/H, type(GT/E)", "own.kdf:3: A value without a tag (M/H)"},
      {"[PERKS]/n/Tail,/n/   page(3),/n/",
       "own.kdf:3: The file ends behind a \",\" or \"|\" that joins the next line to it"},
      {"[PERKS]/n/Tail|", "own.kdf:3: The file ends behind a \",\" or \"|\" that joins the next line to it"},
      {"[PERKS]/n/Tail_", ""},
      {"[PURKS]/n/A, 1", "own.kdf:2: An unknown section ([PURKS])"},
      {"<Odd/n/[ADS]/n/<Odd/n/A, 1", "own.kdf:4: A bad heading (<Odd)"},
      {"#delete AD:Nobody", "own.kdf:2: A command that cannot be carried out (#delete AD:Nobody)"},
      // Skill types
      {"[SKILLS]/n/A, GT/Q/n/B, GT/E/n/C, type(%choice%)", "own.kdf:3: An unknown skill type (GT/Q)"},
      // Needs
      {"[ADS]/n/A, needs(AD:Bald), taboo(SK:Rowin)",
       "own.kdf:3: No such trait in needs (AD:Bald)/n/own.kdf:3: No such trait in taboo (SK:Rowin)"},
      {"[ADS]/n/A, needs(AD:Bold >= 2 | GT < 9, (SK:Rowing >= 4pts | ST:Grot::score >= 3))",
       "own.kdf:3: No such trait in needs (ST:Grot)"},
      {"[ADS]/n/A, needs(Grit >= 9, Bold, 9+GT > 12, Bild)", "own.kdf:3: No such trait in needs (Bild)"},
      {"[ADS]/n/A, needs(2 GR:Boats, 1 CA:GF, 3 skills, 2 skills from 3 other classes, 2 SAMECAT:own >= 3)",
       ""},
      {"[ADS]/n/A, needs(GR:Bots, 1 CA:Gift)",
       "own.kdf:3: No such group in needs (GR:Bots)/n/own.kdf:3: No such category in needs (CA:Gift)"},
      {"[ADS]/n/A, needs(AD:Tongue, AD:Oar Hand, AD:%choice%, AD:#choice(X))", ""},
      {"[ADS]/n/A, needs($if(1 then AD:Nobody else \"\"))", ""},
      // Defaults and other formulas
      {"[SKILLS]/n/A, GT/E, default(SK:Rowing-4, ST:Grit/2, SK:Sailing-3, prereq-4)",
       "own.kdf:3: No such trait in default (SK:Sailing)"},
      {"[ADS]/n/A, upto(@max(3, @mox(2)))", "own.kdf:3: An unknown function in upto (@mox)"},
      {"[ADS]/n/A, upto(@max)", "own.kdf:3: A function without its parentheses in upto (@max)"},
      {"[ADS]/n/A, formula(5*%level+)",
       "own.kdf:3: A formula that cannot be worked out in formula (5*%level+)"},
      {"[ADS]/n/A, init(@if(ST:Grit > 9 elseif 2 then 3)), upto(@if(1 else 2))",
       "own.kdf:3: An @if without \"then\" in upto (1 else 2)"},
      {"[ADS]/n/A, upto(4pts), formula(@indexedvalue(me::level, 1, (2-3)*4) + owner::x), init(char::age)",
       ""},
      {"[ATTR]/n/A, maxscore(ST:Grit-ST:GT limitingtotal), basevalue(1/(ST:Grit-ST:GT)), minscore(Grat)",
       "own.kdf:3: No such trait in minscore (Grat)"},
      // Bonuses
      {"[ADS]/n/A, gives(+1 to SK:Rowing, x2 to me, +2pts to skills, +1 to Grit, +1 to BYTAG:Ads where cat "
       "is X)",
       ""},
      {"[ADS]/n/A, gives(+1 to SK:Rowin upto 3 when wet), conditional(+1 to CL:Wind)",
       "own.kdf:3: No such trait in gives (SK:Rowin)/n/own.kdf:3: No such category in conditional (CL:Wind)"},
      {"[ADS]/n/A, gives(+1 to {SK:Rowing, AD:Bald}, +1 to SK:{Rowing, Poling})",
       "own.kdf:3: No such trait in gives (AD:Bald)/n/own.kdf:3: No such trait in gives (SK:Poling)"},
      {"[ADS]/n/A, gives(+ST:Grat/2 to GT, +me::level to GT, +1)",
       "own.kdf:3: No such trait in gives (ST:Grat)/n/own.kdf:3: A sentence that names no target in gives "
       "(+1)"},
      // Effects
      {"[TEMPLATES]/n/A, adds(AD:Bold=2 with Limits:Ashore and {Own, -5%} respond x #donotown, AD:Bald, "
       "Bold)",
       "own.kdf:3: No such trait in adds (AD:Bald)/n/own.kdf:3: An entry without the prefix of a type in "
       "adds (Bold)"},
      {"[TEMPLATES]/n/A, adds(AD:Tongue, AD:Tongue (High), AD:Bold with {Limits:Afloat})",
       "own.kdf:3: No such trait in adds (AD:Tongue (High))/n/own.kdf:3: No such modifier in adds "
       "(Limits:Afloat)"},
      {"[TEMPLATES]/n/A, creates({SK:Poling, GT/X, needs(AD:Bald)})/n/B, needs(SK:Poling)",
       "own.kdf:3: An unknown skill type in creates (GT/X)/n/own.kdf:3: No such trait in needs in creates "
       "(AD:Bald)"},
      {"[TEMPLATES]/n/A, select2(itemswanted(2), list(SK:Rowing, {AD:New, 5}, #list(X), SK:Poling)), "
       "selection(SK:X)",
       "own.kdf:3: No such trait in select2 (SK:Poling)"},
      // What leads back, also by way of other files and of what is made
      {"[TEMPLATES]/n/A, adds(TE:A)", "own.kdf:3: A trait that leads back to itself (TE:A > TE:A)"},
      {"[TEMPLATES]/n/Ferryman, 0, creates({AD:X, adds(TE:Boatman)})",
       "own.kdf:3: A trait that leads back to itself (TE:Ferryman > TE:Boatman > TE:Ferryman)"},
      {"[TEMPLATES]/n/A, adds(TE:B, TE:C)/n/B, adds(TE:C)/n/C, 0", ""},
      // Commands; and a trait that is gone needs nothing
      {"#mergetags in AD:Bold with needs(AD:Bald)", "own.kdf:2: No such trait in needs (AD:Bald)"},
      {"[ADS]/n/A, needs(AD:Bald)/n/#delete AD:A", ""},
  };
  for (const Case& each : cases) {
    const std::string expected = each.expected.empty() ? "" : Lines(each.expected) + "\n";
    EXPECT_EQ(Findings(Lines(each.data)), expected) << each.data;
  }
}

TEST(Lint, ShortensALongWayBack) {
  std::string data = "[TEMPLATES]";
  for (int i = 0; i < 20; ++i)
    data += "\nT" + std::to_string(i) + ", adds(TE:T" + std::to_string((i + 1) % 20) + ")";
  const std::string findings = Findings(data);
  EXPECT_EQ(
      findings.substr(0, findings.find('\n')),
      "own.kdf:3: A trait that leads back to itself (TE:T0 > TE:T1 > TE:T2 > TE:T3 > TE:T4 > TE:T5 > TE:T6 > "
      "TE:T7 > TE:T8 > TE:T9 > TE:T10 > TE:T11 > ... > TE:T19 > TE:T0)");
}

// Traits in traits, groups in groups and functions in functions are left alone where they are too deep.
TEST(Lint, ComesToAnEnd) {
  const auto nested = [](std::string_view open, std::string_view inside, std::string_view close) {
    std::string text(inside);
    for (int i = 0; i < 20000; ++i) text.insert(0, open), text += close;
    return text;
  };
  EXPECT_NE(Findings("[ADS]\nA, needs(" + nested("(", "AD:Bald", ")") + ")").find("nested too deep"), npos);
  EXPECT_NE(Findings("[ADS]\nA, upto(" + nested("@max(", "1", ")") + ")").find("nested too deep"), npos);
  EXPECT_NE(
      Findings("[ADS]\nA, creates(" + nested("{AD:A, creates(", "AD:B", ")}") + ")").find("nested too deep"),
      npos);
  EXPECT_NE(Findings("[ADS]\nA, creates(" + std::string(20000, '{')).find("Unmatched"), npos);
}

TEST(Lint, TellsOnlyOfTheFilesAskedForAndInTheirOrder) {
  TestWorld world;
  const std::string a = world.Write("a.kdf", "Version=3\r\n[ADS]\r\nA, needs(AD:B)\r\nC, needs(AD:Z)\r\n");
  const std::string b = world.Write("b.kdf", "Version=3\r\n[ADS]\r\nB, needs(AD:Z)\r\n");
  world.Write("set.kds", "files(\"a.kdf\")", kDataSets);
  KVRSystem system(world.env);
  const auto run = [&](std::string_view set, const std::vector<Lint::File>& files) {
    std::string lines;
    for (const Lint::Finding& finding : Lint::Run(system, set, files)) lines += Lint::Text(finding) + "|";
    return lines;
  };
  EXPECT_EQ(run("set.kds", {{"b", b}}), "b:3: No such trait in needs (AD:Z)|");
  EXPECT_EQ(run("set.kds", {{"b", b}, {"a", a}}),
            "b:3: No such trait in needs (AD:Z)|a:4: No such trait in needs (AD:Z)|");
  EXPECT_EQ(run("", {{"a", a}}), "a:3: No such trait in needs (AD:B)|a:4: No such trait in needs (AD:Z)|");
  EXPECT_EQ(run("", {{"gone.kdf", a + "x"}}),
            "gone.kdf: The file cannot be read (No such file or directory)|");
}

}  // namespace
}  // namespace kvr
