#include "calc/modSolver.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/KVRError.h"
#include "core/Numbers.h"
#include "support/CharacterWorld.h"

namespace kvr {
namespace {

constexpr std::string_view kData =
    "[STATS]\r\n"
    "Deftness, base(12), symbol(DX), basevalue(12), score(12)\r\n"
    "Brawn, symbol(BW), basevalue(9), score(9)\r\n"
    "[ADS]\r\n"
    "Keen Nose, 5/10/15\r\n"
    "Night Ear, 10\r\n"
    "Loops, 1, one#(1+me::one#), two#(me::two#+me::two#+1), text$(a$textvalue(me::text$)%), "
    "grow(%$textvalue(me::grow)$textvalue(me::grow))\r\n";

struct Case {
  const char* expression;
  double value;
};
struct TextCase {
  const char* expression;
  const char* text;
};

class SolverTest : public ::testing::Test {
 protected:
  SolverTest() {
    nose_ = &world_.Added("Keen Nose", kAds);
    world_.Added("Night Ear", kAds);
    SetScore("Deftness", 12);
    SetScore("Brawn", 9);
  }

  void SetScore(std::string_view name, double score) {
    clsItem* stat = Character().FindItem(name, kStats);
    if (!stat) stat = &world_.Added(name, kStats);
    stat->SetScore(score);
    Character().ClearTokensForItem(*stat);
  }
  KVRCharacter& Character() { return world_.character; }
  double Solve(std::string_view text) { return modSolver::Solver(text, *nose_); }
  void ExpectAll(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      EXPECT_DOUBLE_EQ(Solve(c.expression), c.value) << c.expression;
      EXPECT_DOUBLE_EQ(Solve(c.expression), c.value) << "again: " << c.expression;
    }
  }

  CharacterWorld world_{kData};
  clsItem* nose_ = nullptr;
};

TEST_F(SolverTest, ArithmeticAndReferences) {
  nose_->SetTagItem("level", "2");
  nose_->SetTagItem("points", "10");
  ExpectAll({{"", 0},
             {" 5 ", 5},
             {"1E+2+1", 101},
             {"7 MOD 3", 1},
             {"ST:DX", 12},
             {"st:deftness+1", 13},
             {"DX*2", 24},
             {"(DX+ST:BW)/2", 10.5},
             {"{ST:DX}-\"BW\"", 3},
             {"AD:Keen Nose", 2},
             {"AD:Keen Nose pts", 10},
             {"{AD:Keen Nose::points}/4", 2.5},
             {"me::level*3", 6},
             {"%level+%level", 4},
             {"AD:Nobody", 0},
             {"nothing", 0},
             {"3abc+1", 4},
             {"2(3)", 23},
             {"%count", 0}});
}

TEST_F(SolverTest, AtFunctions) {
  ExpectAll({{"@max(1,ST:DX,3)", 12},
             {"@min(4,@max(1,2),ST:DX)", 2},
             {"@max(-3,-5)", -3},
             {"@iseven(4)", -1},
             {"@iseven(3)", 0},
             {"@if(5>3 then 2 else 4)", 2},
             {"@if(0 then 1 elseif 1 then 7 else 9)", 7},
             {"@if(0 then 1 elseif 0 then 7 else 9)", 9},
             {"@if(0 then 1)", 0},
             {"@if(ST:DX>=12 THEN (1+1)*5 ELSE 0)", 10},
             {"@if(5>3)", 0},
             {"@fac(5)", 120},
             {"@sqrt(16)+@sqr(9)", 7},
             {"@power(2,10)", 1024},
             {"@power(-8,.5)", 1},
             {"@power(2)", 1},
             {"@logn(0)", 1},
             {"@log(1000)", 3},
             {"@int(-2.5)", -3},
             {"@int(2*3.3, 9)", 6},
             {"@fix(-2.5)", -2},
             {"@round(2.5)", 2},
             {"@round(3.5)", 4},
             {"@round(2.345,2)", 2.34},
             {"@round(-2.355,2)", -2.36},
             {"@round(.00006,4)", .0001},
             {"@round(1,2,3)", 1},
             {"@modulo(7,3)", 1},
             {"@modulo(7)", -1},
             {"@modulo(7,.3)", 0},
             {"@sametext(\"One\", one)", 1},
             {"@sametext(a)", 0},
             {"@indexedvalue(2,5,6,7)", 6},
             {"@indexedvalue(9,5,6,7)", 7},
             {"@indexedvalue(0,5,6,7)", 0},
             {"@indexedvalue(1)", 0},
             {"@textindexedvalue(b,(a,1),(\"B\",ST:DX),else 3)", 12},
             {"@textindexedvalue(x,(a,1),else 3,(x,5))", 3},
             {"@hasmod(anything)+@ownerhasmod(x)+@itemhasmod(AD:Night Ear,x)", 0},
             {"@nosuch(4)", 0},
             {"@max(4,5)+@nosuch(1)", 10},
             {"2+@nosuch", 2},
             {"2+@max(3,4", 2}});
}

TEST_F(SolverTest, TextFunctions) {
  nose_->SetTagItem("level", "2");
  nose_->SetTagItem("motto", "sniff");
  const TextCase cases[] = {{" ", ""},
                            {"plain", "plain"},
                            {"$if(5>3 then \"yes\" else no)", "yes"},
                            {"$if(0 then yes else {no, no})", "no, no"},
                            {"$if(0 then yes)", ""},
                            {"$if(5)", ""},
                            {"a $solver(ST:DX+1) b $eval(1/4)", "a 13 b .25"},
                            {"$indexedvalue(2,one,\"two\",three)", "two"},
                            {"$indexedvalue(0,one)", ""},
                            {"$textindexedvalue(B,(a,first),(b,second),else third)", "second"},
                            {"$textindexedvalue(z,(a,first),else third)", "third"},
                            {"$nosuch(1) costs $50", "$nosuch(1) costs $50"},
                            {"$if($solver(1) then $eval(2) else 3)", "2"},
                            {"%level of $textvalue(me::motto)", " 2 of sniff"},
                            {"$textvalue(me::motto)", "$textvalue(me::motto)"}};
  for (const TextCase& c : cases)
    EXPECT_EQ(modSolver::TextFunctionSolver(c.expression, *nose_), c.text) << c.expression;
  EXPECT_EQ(modSolver::GetItemTextVal("me::motto", *nose_), "sniff");
  EXPECT_EQ(modSolver::GetItemTextVal("AD:Nobody", *nose_), "0");
  EXPECT_EQ(modSolver::GetItemTextVal("3abc", *nose_), "3abc");
}

// An expression that read its context is solved anew; one that didn't is served from the cache until its
// trait is cleared, whatever its letter case.
TEST_F(SolverTest, WhatIsKept) {
  nose_->SetTagItem("level", "2");
  EXPECT_EQ(Solve("me::level+@max(1,2)"), 4);
  nose_->SetTagItem("level", "5");
  EXPECT_EQ(Solve("me::level+@max(1,2)"), 7);

  EXPECT_EQ(Solve("ST:DX+1"), 13);
  Character().FindItem("Deftness", kStats)->SetScore(20);
  EXPECT_EQ(Solve("st:dx+1"), 13);
  Character().ClearTokensForItem(*Character().FindItem("Deftness", kStats));
  EXPECT_EQ(Solve("st:dx+1"), 21);

  // The inner call that reads the context keeps the outer one from being stored.
  nose_->SetTagItem("default", "4");
  EXPECT_EQ(Solve("@max(owner::nothing,3)+@max(1,2)"), 5);
  EXPECT_EQ(Character().TokenCache.Item("@max(owner::nothing,3)+@max(1,2)"), nullptr);
  EXPECT_NE(Character().TokenCache.Item("st:dx+1"), nullptr);
}

TEST_F(SolverTest, PrerequisitesAndValueLists) {
  nose_->SetTagItem("needs", "ST:DX >= 12|{ST:BW}<>4, AD:Night Ear");
  EXPECT_EQ(modSolver::GetPrereqList(*nose_), "ST:DX, {ST:BW}, AD:Night Ear");
  const double ear = Solve("AD:Night Ear");
  EXPECT_EQ(modSolver::GetValueList("ST:DX|ST:BW, AD:Night Ear", *nose_), "12,9," + NumberText(ear));
  ExpectAll({{"prereq", 12}, {"lowprereq+10", std::min(9.0, ear) + 10}});
}

TEST_F(SolverTest, DefaultsAreHeldToTheRuleOfLimit) {
  clsItem& deftness = *Character().FindItem("Deftness", kStats);
  SetScore("Deftness", 26);
  Character().RuleOf = 20;
  const std::string key = std::to_string(deftness.IDKey);
  modSolver::DefaultSource source;
  EXPECT_EQ(modSolver::SolverForDefaults(key + "??"
                                               "-5",
                                         source, *nose_),
            15);
  EXPECT_EQ(source.name, "Deftness");
  EXPECT_EQ(source.idKey, deftness.IDKey);
  deftness.SetTagItem("raiseruleof", "2");
  deftness.privCalcRaiseRuleOf();
  EXPECT_EQ(modSolver::SolverForDefaults(key + "??score+1", source, *nose_), 23);
  EXPECT_EQ(modSolver::SolverForDefaults("999999??"
                                         "-5",
                                         source, *nose_),
            -5);
  EXPECT_EQ(source.idKey, 0);
  EXPECT_EQ(modSolver::SolverForDefaults(" ", source, *nose_), 0);
}

TEST_F(SolverTest, FailuresAreLoggedAndThrown) {
  nose_->SetTagItem("color", "green");
  for (const char* text : {"AD:Keen Nose::color", "1+@max(2,AD:Keen Nose::color)", "@sqr(-1)", "@log(0)",
                           "@fac(171)", "@indexedvalue(40000,1)", "@modulo(3000000000,2)"}) {
    world_.env.log.Clear();
    EXPECT_THROW(Solve(text), SolverFailure) << text;
    EXPECT_NE(world_.RedLog().find(": Error "), npos) << text;
    EXPECT_NE(world_.RedLog().find("Keen Nose"), npos) << text;
    EXPECT_EQ(world_.RedLog().find('\n'), world_.RedLog().size() - 1) << "one line: " << world_.RedLog();
    EXPECT_EQ(modSolver::SolverGuarded(text, *nose_), 0);
    EXPECT_EQ(Solve("1+1"), 2) << "after " << text;
  }
}

// Formulas that lead back to themselves end, say so once, and leave nothing wrong behind.
TEST_F(SolverTest, CyclesEndWithOneRedLine) {
  clsItem& loops = world_.Added("Loops", kAds);
  const std::string nested(100000, '(');
  std::string functions;
  for (int i = 0; i < 5000; ++i) functions += "@max(1,";
  functions += "1" + std::string(5000, ')');
  std::string many;
  for (int i = 0; i < 3000; ++i) many += "+@max(1,2)";
  for (const std::string& text :
       {std::string("me::one#"), std::string("me::two#"), std::string("me::grow"), functions, many}) {
    world_.env.log.Clear();
    modSolver::Solver(text, loops);
    const std::string red = world_.RedLog();
    EXPECT_NE(red.find("Loops"), npos) << text.substr(0, 50);
    EXPECT_EQ(red.find('\n'), red.size() - 1) << "one line: " << red;
    EXPECT_EQ(modSolver::Solver("2*ST:DX", loops), 24) << "after " << text.substr(0, 50);
    EXPECT_EQ(Character().TokenCache.Item(text), nullptr);
  }
  world_.env.log.Clear();
  modSolver::TextFunctionSolver("$textvalue(me::text$)%", loops);
  EXPECT_NE(world_.RedLog().find("Loops"), npos);
  EXPECT_EQ(modSolver::TextFunctionSolver("$solver(2)", loops), "2");
  EXPECT_EQ(modSolver::Solver(nested + "1", loops), 0);
}

TEST_F(SolverTest, AnOddTextThatIsTooLongIsTold) {
  std::string sum = "2(3)";
  while (sum.size() < 20000) sum += "+2(3)";
  EXPECT_GT(Solve(sum), 0);
  EXPECT_EQ(world_.RedLog(), "");
  while (sum.size() < 40000) sum += "+2(3)";
  EXPECT_EQ(Solve(sum), 0);
  EXPECT_NE(world_.RedLog().find("is too long; it counts as 0."), npos);
}

TEST_F(SolverTest, TraceShowsTheStages) {
  Solve("1+@max(3,4)");
  EXPECT_EQ(world_.Log().find("tmp$"), npos);
  Character().Solving.trace = true;
  Solve("2+@max(3,4)");
  EXPECT_NE(world_.Log().find("modSolver:Solver: After @Functions tmp$ = 2+ 4"), npos);
  EXPECT_NE(world_.Log().find("modSolver:Solver: Solver Result =  6"), npos);
}

}  // namespace
}  // namespace kvr
