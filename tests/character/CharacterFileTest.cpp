// The road of a character through its file: everything comes back, a second save is equal to the first byte
// for byte, and no file, however broken, loses more than its broken lines.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "RecordWorld.h"
#include "character/SavedText.h"
#include "core/clsFileReader.h"

namespace kvr {
namespace {

std::unique_ptr<KVRCharacter> ReadText(RecordWorld& world, const std::string& text) {
  auto character = std::make_unique<KVRCharacter>(world.env, world.system);
  clsFileReader reader;
  reader.TextOpen(text, 0, TextEncoding::AlwaysUtf8);
  EXPECT_TRUE(character->ReadSections(reader));
  return character;
}

// A file whose sections are those given, closed as a whole file is.
std::string FileOf(const std::string& sections) {
  return "Encoding=UTF-8\r\n[System]\r\nversion(3)\r\n\r\n" + sections + "\r\n[ChangeLog]\r\n\r\n";
}

void AddLogEntry(KVRCharacter& c, const std::string& notes) {
  clsLogEntry entry;
  entry.EntryDate = "11/24/2026";
  entry.CampaignDate = "3rd of Frost";
  entry.CharPoints = Currency::FromText("2.5");
  entry.Caption = "Below the mill, and back";
  entry.Notes = notes;
  c.Campaign.Log.push_back(entry);
}

void AddRichTraits(RecordWorld& world) {
  KVRCharacter& c = world.character;
  clsItem& mill =
      world.Put(kAds,
                ",page(B12),cost(5/10),oddtag#(1+2),name(Miller's Luck (great)),nameext(Früh & Spät),"
                "points(2),level(3),score(1.5),needscheck(-1),"
                "description(First line\r\n\r\n[Skills]\r\nidkey(9)|,name(No)\r\n[not a section]\r\nlast),"
                "notes(<CRLF> stays)");
  clsItem& child =
      world.Put(kSkills, ",default(DX-4 {with a brace),name(Grinding),type(DX/A),usernotes(100% | yes)");
  child.SetParentKey(mill.KeyText());
  mill.SetChildKeyList(child.KeyText());
  world.Put(kStats, ",symbol(DX),basevalue(10),name(DX),score(12.25)");
  clsMod& mod =
      world.PutMod(mill, "name(Unreliable),group(Luck),value(-10%),description(one\r\n[Mods]\r\ntwo)");
  world.PutMod(mod, "name(Only at noon),group(Luck),value(5%)");
  auto bonus = std::make_unique<clsBonus>();
  bonus->Owner = &mod;
  bonus->TargetPrefix = "SK";
  bonus->TargetName = "grinding";
  bonus->Bonus = "2";
  bonus->Affects = "level";
  bonus->Value = 2.5;
  bonus->BonusType = 2;
  bonus->TargetType = kSkills;
  bonus->FullBonusText = "x2 to {SK:Grinding}, when at a mill ";
  bonus->Notes = "at a mill ";
  auto conditional = std::make_unique<clsBonus>(*bonus);
  conditional->Owner = &mill;
  c.Bonuses.push_back(std::move(bonus));
  c.Conditionals.push_back(std::move(conditional));
  c.ChangeLog.push_back({"replace", 2, 1, "cost", "5, (was 6)", " new "});
}

void AddRichTexts(KVRCharacter& c) {
  c.Name = "Jörn \"of\" the Mill :)";
  c.Player = "A, (B)";
  c.Description = "One\n[Skills]\r\n\r\nfour";
  c.Notes = "[Notes]";
  c.PD[2] = "1";
  c.OtherDR = "3";
  c.CharTagList = "";
  c.CurrentLoadout = "On the road";
  c.ShieldFacingHexMask = "--x---";
  c.ShieldFacingDB[3] = 2;
  c.AllowHalfPointSpells = -1;
  c.RuleOf = 16;
  c.SetInPlayFieldOnly(true);
  AddLogEntry(c, "They update(d) the mill.\r\nIts date(s) were wrong.");
  AddLogEntry(c, "");
  AddLogEntry(c, "{\\rtf1\\b bold\\par\r\nplain\\\r\nend}");
}

void AddRichTables(KVRCharacter& c) {
  c.BasicDamageList.push_back({9, "1", "-2", "1", "-1"});
  c.DamageBreaks.push_back({4, 1, 3});
  auto type = std::make_unique<clsSkillCosts>();
  type->Name = "DX/A";
  type->Costs = "1/2/4";
  type->DefaultStat = "DX";
  type->BaseAdj = "-1";
  type->SubZero = true;
  type->CalcValues();
  c.SkillTypes.clear();
  c.SkillTypes.push_back(std::move(type));
  c.Body.Clear();
  clsBodyItem part;
  part.Name = "Left Wing";
  part.DR = "2+3";
  part.Group = "Wings, All";
  part.Display = true;
  part.PosX = -7;
  c.Body.Add(part);
  clsRefItem group{"Trades", "Grinding", "Fine", kSkills};
  c.Groups.Add(std::make_unique<clsRefItem>(group), clsSortedRefCollection::GroupKeyOf(group));
  clsCategory cat{"Mill Work", "MW", kSkills};
  c.Cats.Add(std::make_unique<clsCategory>(cat), clsSortedCatCollection::KeyOf(cat));
}

void MakeRich(RecordWorld& world) {
  AddRichTraits(world);
  AddRichTexts(world.character);
  AddRichTables(world.character);
}

TEST(CharacterFile, EverythingComesBackAndTheSecondSaveIsByteEqual) {
  RecordWorld world;
  MakeRich(world);
  const std::string first = world.character.FileText();
  auto read = ReadText(world, first);
  EXPECT_EQ(read->FileText(), first);
  EXPECT_EQ(world.Logged("lost its end"), 0);

  EXPECT_EQ(read->LastKey, world.character.LastKey);
  EXPECT_EQ(read->Name, "Jörn \"of\" the Mill :]");
  EXPECT_EQ(read->Description, "One\r\n[Skills]\r\n\r\nfour");
  EXPECT_EQ(read->Notes, "[Notes]");
  EXPECT_TRUE(read->InPlay());
  ASSERT_EQ(read->Campaign.Log.size(), 3u);
  EXPECT_EQ(read->Campaign.Log[0].Notes, "They update(d) the mill.\r\nIts date(s) were wrong.");
  EXPECT_EQ(read->Campaign.Log[0].CharPoints, Currency::FromText("2.5"));
  EXPECT_EQ(read->Campaign.Log[2].Notes, "{\\rtf1\\b bold\\par plain\\par end}");
  const clsItem* luck = read->ItemByKey(1);
  ASSERT_NE(luck, nullptr);
  EXPECT_EQ(luck->FullName(), "Miller's Luck (great) (Früh & Spät)");
  EXPECT_EQ(luck->Description(),
            "First line\r\n\r\n [Skills]\r\n idkey(9)|,name(No)\r\n[not a section]\r\nlast");
  EXPECT_EQ(luck->Notes(), "<CRLF> stays");
  ASSERT_EQ(luck->Mods.Count(), 1u);
  EXPECT_EQ(luck->Mods.Item(std::size_t{1}).TagItem("description"), "one\r\n[Mods]\r\ntwo");
  ASSERT_EQ(read->Bonuses.size(), 1u);
  EXPECT_EQ(read->Bonuses[0]->FullBonusText, "x2 to {SK:Grinding}, when at a mill ");
  EXPECT_EQ(read->Bonuses[0]->Owner, &luck->Mods.Item(std::size_t{1}));
  EXPECT_EQ(read->ChangeLog[0].NewValue, " new ");
  EXPECT_TRUE(read->Body.Part("Left Wing")->Freeze);
}

TEST(CharacterFile, NumbersAreWrittenWithAPoint) {
  RecordWorld world;
  world.Put(kAds, ",name(Keen),points(2),basepoints(1.5)");
  const std::string text = world.character.FileText();
  EXPECT_NE(text.find(",points(2.0)"), npos);
  EXPECT_NE(text.find(",basepoints(1.5)"), npos);
}

TEST(CharacterFile, UnmatchedParenthesesCostNoOtherTag) {
  struct Case {
    std::string value, expected;
  };
  const Case cases[] = {{"sad :(", "sad :["}, {"glad :)", "glad :]"}, {"x) y(z", "x"}, {"((", "[["}};
  for (const Case& row : cases) {
    RecordWorld world;
    clsItem& item = world.Put(kPerks, ",name(A)");
    item.SetTagItem("usernotes", row.value);
    item.SetTagItem("page", "B7");
    item.SetTagItem("description", ":(");
    item.SetTagItem("notes", ":)");
    auto read = ReadText(world, world.character.FileText());
    clsItem* back = read->ItemByKey(1);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->TagItem("usernotes"), row.expected);
    EXPECT_EQ(back->TagItem("page"), "B7") << row.value;
    EXPECT_EQ(back->Description(), ":[");
    EXPECT_EQ(back->Notes(), ":]");
    EXPECT_EQ(back->Name(), "A");
    EXPECT_GT(world.Logged("saved as a bracket"), 0);
    EXPECT_EQ(read->FileText(), world.character.FileText());
  }
}

// Earlier programs wrote such lists as they stood.
TEST(CharacterFile, ABrokenValueInTheFileSwallowsNothing) {
  RecordWorld world;
  auto read = ReadText(world, FileOf("[Perks]\r\nidkey(4)|,usernotes(sad :(),page(B7),name(A),points(3.0)\r\n"
                                     "[Mods]\r\nidkey(5),parentkey(4)|,cost((5%),name(M),group(G)\r\n"));
  clsItem* item = read->ItemByKey(4);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->FullName() + item->TagItem("page") + item->TagItem("points"), "AB73");
  ASSERT_EQ(item->Mods.Count(), 1u);
  EXPECT_EQ(item->Mods.Item(std::size_t{1}).FullName(), "M");
  EXPECT_EQ(ReadText(world, read->FileText())->FileText(), read->FileText());
}

// What stood inside a broken value in memory, and is a tag of its own once the value is repaired.
TEST(CharacterFile, BlanksBetweenAndBehindTagsAreNoDamage) {
  RecordWorld world;
  auto read = ReadText(world, FileOf("[Perks]\r\nidkey(4)|,usernotes(a), page(B7),name(A) \r\n"
                                     "idkey(5)|,usernotes(b :(), page(B8), name(B)\r\n    \r\n"));
  ASSERT_EQ(read->Items.Count(), 2U);
  EXPECT_EQ(read->Items.Item(1).TagItem("page") + read->Items.Item(2).TagItem("page"), "B7B8");
  EXPECT_EQ(read->Items.Item(1).FullName() + read->Items.Item(2).FullName(), "AB");
}

TEST(CharacterFile, ARepairedListIsWrittenAsItIsRead) {
  RecordWorld world;
  world.Put(kPerks, ",name(A),page(x(type(DX/E),points(4),display(yes)");
  const std::string first = world.character.FileText();
  EXPECT_EQ(ReadText(world, first)->FileText(), first);
}

TEST(CharacterFile, RichTextStaysOnOneLine) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"{\\rtf1 a\r\nb}", "{\\rtf1 ab}"},          {"{\\rtf1\r\nb}", "{\\rtf1 b}"},
      {"{\\rtf1\\fs-20\nb}", "{\\rtf1\\fs-20 b}"}, {"{\\rtf1 x\\\r\ny}", "{\\rtf1 x\\par y}"},
      {"{\\rtf1 x\\\\\r\ny}", "{\\rtf1 x\\\\y}"},  {"{\\rtf1 \\'e9\r\ny}", "{\\rtf1 \\'e9y}"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(savedText::RichTextOnOneLine(text), expected);
}

TEST(CharacterFile, RichTextIsSavedAsPlainTextOnRequest) {
  RecordWorld world;
  KVRCharacter& c = world.character;
  c.Description = "{\\rtf1\\b One\\b0\\par\r\n\\par Two\\par}";
  c.Notes = "{a note} \\par";
  AddLogEntry(c, "{\\rtf1 Their date\\'28s\\'29.}");
  EXPECT_EQ(ReadText(world, c.FileText())->Description, "{\\rtf1\\b One\\b0\\par \\par Two\\par}");
  world.env.Config.SaveRTFasPlainText = -1;
  EXPECT_NE(c.FileText().find("\r\nOne<CRLF><CRLF>Two\r\n"), npos);
  auto read = ReadText(world, c.FileText());
  EXPECT_EQ(read->Description, "One\r\n\r\nTwo");
  EXPECT_EQ(read->Notes, c.Notes);
  EXPECT_EQ(read->Campaign.Log[0].Notes, "Their date(s).");
}

TEST(CharacterFile, SectionsAreReadAsTheyStand) {
  RecordWorld world;
  auto read = ReadText(
      world, FileOf("[Powers]\r\nidkey(4)|,name(Old Perk)\r\n\r\n[Skills]\r\n[Settings]\r\nruleof(14)\r\n"
                    "[Description]\r\nab\r\n\r\nc<CRLF>d\r\n[Weather]\r\n"
                    "[LogEntry]\r\ndate(1/2/2026),caption(x)\r\nsome date(text\r\nrest\r\n"
                    "[ShieldArcs]\r\nfacing(9),db(5)\r\n"));
  EXPECT_EQ(read->Count(kPerks), 1);
  EXPECT_EQ(read->RuleOf, 14) << "a head directly behind a trait section begins no record";
  EXPECT_EQ(read->Description, "abc\r\nd[Weather]");
  ASSERT_EQ(read->Campaign.Log.size(), 2u) << "a line with a date begins an entry";
  EXPECT_EQ(read->Campaign.Log[1].Notes, "rest");
}

TEST(CharacterFile, TablesOfTheLibraryStayWhereTheFileHasNone) {
  RecordWorld world;
  auto character = std::make_unique<KVRCharacter>(world.env, world.system);
  character->DamageBreaks.push_back({7, 2, 7});
  character->BasicDamageList.push_back({1, "1", "0", "1", "0"});
  clsFileReader reader;
  reader.TextOpen(FileOf("[BasicDamageList]\r\n"), 0, TextEncoding::AlwaysUtf8);
  ASSERT_TRUE(character->ReadSections(reader));
  EXPECT_EQ(character->DamageBreaks.size(), 1u);
  EXPECT_TRUE(character->BasicDamageList.empty());
}

TEST(CharacterFile, BadRecordsAreLeftOutOrRenumbered) {
  RecordWorld world;
  auto read = ReadText(
      world,
      FileOf("[Perks]\r\nidkey(5)|,name(First)\r\nidkey(5)|,name(Second)\r\nidkey(7)\r\nidkey(6)|,name(Third)"
             "\r\n"
             "idkey(2147483647)|,name(Huge)\r\nidkey(8),parentkey(k99)|,name(Orphan)\r\n"
             "idkey(9),parentkey(k10)|,name(Ring)\r\nidkey(10),parentkey(k9)|,name(Rung)\r\n"
             "idkey(11),childkeylist(k12,k77)|,name(Parent)\r\nidkey(12),parentkey(K11)|,name(Child)\r\n"
             "idkey(13),parentkey(k11)|,name(Unlisted)\r\n"
             "[Mods]\r\nidkey(20),parentkey(5)|,name(M)\r\nidkey(21),parentkey(22)|,name(Early)\r\n"
             "idkey(22),parentkey(20)|,name(N)\r\nidkey(20),parentkey(6)|,name(Twin)\r\n"
             "[Bonuses]\r\nownerid(k22),fullbonustext(+1 to ST )\r\nownerid(99),fullbonustext(lost)\r\n"));
  EXPECT_EQ(read->Items.Count(), 10u);
  EXPECT_EQ(read->FindItem("First", kPerks)->IDKey, 5);
  EXPECT_EQ(read->FindItem("Third", kPerks)->IDKey, 6);
  EXPECT_GT(read->FindItem("Second", kPerks)->IDKey, 22);
  EXPECT_GT(read->FindItem("Huge", kPerks)->IDKey, 22);
  EXPECT_EQ(read->FindItem("Third", kPerks)->Mods.Count(), 1u);
  EXPECT_GE(read->LastKey, 25);
  EXPECT_LT(read->LastKey, 100);
  EXPECT_EQ(read->FindItem("Orphan", kPerks)->ParentKey(), "");
  EXPECT_TRUE(read->FindItem("Ring", kPerks)->ParentKey().empty() ||
              read->FindItem("Rung", kPerks)->ParentKey().empty());
  EXPECT_EQ(read->FindItem("Parent", kPerks)->ChildKeyList(), "k12,k13");
  EXPECT_EQ(read->FindItem("Child", kPerks)->ParentKey(), "k11") << "keys are compared as they are written";
  EXPECT_EQ(world.Logged("Error: Owning item not found for mod: Early"), 1);
  ASSERT_EQ(read->Bonuses.size(), 1u);
  EXPECT_EQ(read->Bonuses[0]->FullBonusText, "+1 to ST ");
}

TEST(CharacterFile, AnOldFormatIsRefused) {
  RecordWorld world;
  clsFileReader reader;
  reader.TextOpen("[System]\r\nversion(2.9)\r\n[Perks]\r\nidkey(1)|,name(P)\r\n");
  EXPECT_FALSE(world.character.ReadSections(reader));
  EXPECT_EQ(world.character.Items.Count(), 0u);
}

TEST(CharacterFile, BodiesOfEarlyVersionsAreRebuilt) {
  for (const auto& [version, rebuilt] : {std::pair{"4.0.314", true}, {"4.0.315", false}, {"4.x", false}}) {
    RecordWorld world;
    auto read = ReadText(world, FileOf(std::string("[Author]\r\nBRASK Kivera\r\n") + version +
                                       "\r\nnotice\r\n[Body]\r\nname(Odd)\r\n"));
    EXPECT_EQ(read->Body.Part("Odd") == nullptr, rebuilt) << version;
  }
}

TEST(CharacterFile, AFileCutAnywhereGivesWhatItHolds) {
  RecordWorld world;
  MakeRich(world);
  const std::string whole = world.character.FileText();
  const std::size_t begin = whole.find("[General]");
  std::size_t before = 0;
  // (Without its very last byte, half a line end, nothing is missing.)
  for (std::size_t size = begin; size + 1 < whole.size(); ++size) {
    world.env.log.Clear();
    auto read = ReadText(world, whole.substr(0, size));
    EXPECT_GE(read->Items.Count(), before > 0 ? before - 1 : 0) << size;
    before = read->Items.Count();
    EXPECT_EQ(world.Logged("lost its end"), 1) << size;
    // What was read is a sound character: it saves and loads.
    const std::string again = read->FileText();
    ASSERT_EQ(ReadText(world, again)->FileText(), again) << size;
  }
  EXPECT_EQ(before, world.character.Items.Count());
}

// Bytes of any kind, and a tree of modifiers too deep to be real.
TEST(CharacterFile, AnythingCanBeRead) {
  RecordWorld world;
  std::string noise = FileOf("[Skills]\r\n");
  for (unsigned i = 0, x = 7; i < 200000; ++i)
    noise += static_cast<char>((x = x * 1664525u + 1013904223u) >> 24);
  ReadText(world, noise);
  std::string deep = "[Perks]\r\nidkey(1)|,name(P)\r\n[Mods]\r\n";
  for (int i = 2; i < 5000; ++i) {
    deep += "idkey(" + std::to_string(i) + "),parentkey(" + std::to_string(i - 1) + ")|,name(M)\r\n";
  }
  auto read = ReadText(world, FileOf(deep));
  EXPECT_LT(read->FileText().size(), deep.size());
  ReadText(world, FileOf("[Perks]\r\nidkey(1)|,name(P),description(" + std::string(100000, '(') + "\r\n"));
}

class CharacterFileOnDisk : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() / ("kivera-file-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_);
    path_ = Files::PathText(folder_ / "mill.kvr4");
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path folder_;
  std::string path_;
  RecordWorld world_;
};

TEST_F(CharacterFileOnDisk, ReadingFinishesLinksAndSumsAndLeavesTheFileAlone) {
  MakeRich(world_);
  ASSERT_TRUE(world_.character.FileWrite(path_, true));
  const std::string bytes = *Files::ReadWhole(path_);
  KVRCharacter other(world_.env, world_.system);
  ASSERT_TRUE(other.FileRead(path_));
  EXPECT_FALSE(other.Dirty);
  EXPECT_EQ(other.Campaign.LoggedPoints, Currency::FromText("7.5"));
  EXPECT_EQ(*Files::ReadWhole(path_), bytes);
  EXPECT_FALSE(other.FileRead(path_ + "x"));
}

TEST_F(CharacterFileOnDisk, AFailedSaveKeepsTheOldFileAndTheMarkOfChange) {
  world_.character.Dirty = true;
  ASSERT_TRUE(world_.character.FileWrite(path_, false));
  EXPECT_TRUE(world_.character.Dirty);
  std::filesystem::create_directories(folder_ / "taken.kvr4");
  EXPECT_FALSE(world_.character.FileWrite(Files::PathText(folder_ / "taken.kvr4"), true));
  EXPECT_FALSE(world_.character.FileWrite(Files::PathText(folder_ / "nowhere" / "x.kvr4"), true));
  EXPECT_TRUE(world_.character.Dirty);
  ASSERT_TRUE(world_.character.FileWrite(path_, true));
  EXPECT_FALSE(world_.character.Dirty);
}

TEST_F(CharacterFileOnDisk, FormerVersionsAreKeptOnRequestOnly) {
  world_.env.Config.KeepVersions = 3;
  for (int i = 0; i < 6; ++i) {
    world_.character.Name = "Version " + std::to_string(i);
    ASSERT_TRUE(world_.character.FileWrite(path_, true));
  }
  for (int back = 1; back <= 3; ++back) {
    const std::string former = *Files::ReadWhole(path_ + ".bak" + std::to_string(back));
    EXPECT_NE(former.find("charname(Version " + std::to_string(5 - back) + ")"), npos);
  }
  EXPECT_FALSE(Files::FileExists(path_ + ".bak4"));
}

}  // namespace
}  // namespace kvr
