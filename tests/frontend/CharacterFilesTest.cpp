// The open characters and their files: making, loading any version, saving, parties and backups.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "core/ScriptedPrompts.h"
#include "core/modFileIO.h"
#include "frontend/Application.h"
#include "frontend/TraitEditing.h"

namespace kvr {
namespace {

struct EventRecorder : FrontEndEvents {
  std::vector<std::string> texts;
  void StatusText(std::string_view text) override { texts.emplace_back(text); }
};

class CharacterFiles : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() / ("kivera-app-" + std::to_string(::getpid()));
    std::filesystem::remove_all(folder_);
    for (const char* sub : {"program", "appdata", "documents", "party"})
      std::filesystem::create_directories(folder_ / sub);
    env_.Folders.Set(Path("program"), Path("appdata"), Path("documents"));
    modFileIO::InitConfigDefaults(env_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return Files::PathText(folder_ / name); }
  std::string Write(const std::string& name, const std::string& text) const {
    EXPECT_TRUE(Files::WriteWhole(Path(name), text));
    return Path(name);
  }
  // A character on disk, closed again.
  std::string SavedCharacter(const std::string& file, const std::string& name) {
    KVRCharacter& character = app_.CreateNewCharacter();
    character.Name = name;
    const std::string path = Path(file);
    EXPECT_TRUE(app_.SaveCharacter(character, path));
    app_.CloseCharacter(app_.CurChar);
    return path;
  }
  bool Logged(std::string_view text) const {
    return std::any_of(env_.log.Lines().begin(), env_.log.Lines().end(),
                       [&](const LogEntry& line) { return line.text.find(text) != npos; });
  }

  std::filesystem::path folder_;
  std::vector<std::string> notices_;
  ScriptedPrompts prompts_{[this](const std::string& notice) { notices_.push_back(notice); }};
  EventRecorder events_;
  Environment env_{prompts_, events_};
  Application app_{env_};
};

TEST_F(CharacterFiles, ANewCharacterHasANameAnAttributeAndALogEntry) {
  env_.Config.DefaultPlayerName = "Ilse";
  app_.CreateNewCharacter();
  KVRCharacter& second = app_.CreateNewCharacter();
  EXPECT_EQ(app_.Current(), &second);
  EXPECT_EQ(second.Name, "Character 2");
  EXPECT_EQ(second.Player, "Ilse");
  EXPECT_EQ(second.Count(kStats), 1);
  ASSERT_EQ(second.Campaign.Log.size(), 1u);
  EXPECT_EQ(second.Campaign.Log[0].Notes, "Character created using BRASK Kivera 4");
  EXPECT_EQ(events_.texts.back(), "The new character is ready.");
  app_.CloseCharacter(2);
  EXPECT_EQ(app_.CurChar, 1u);
  app_.CloseCharacter(1);
  EXPECT_EQ(app_.Current(), nullptr);
}

TEST_F(CharacterFiles, TheVersionIsReadTolerantly) {
  const std::pair<std::string, double> cases[] = {
      {"Encoding=UTF-8\r\n[System]\r\nlastkey(2)\r\nversion(3)\r\n", 3},
      {"[SYSTEM]\nversion(2.9)", 2.9},
      {"version(3)\r\n[System]\r\n", 0},
      {"[System]\r\nversion(three)\r\n", 0},
      {"[System]\r\nversion(3", 3},
      {"", 0},
  };
  for (const auto& [text, version] : cases) {
    EXPECT_EQ(Application::GetCharacterFileVersion(Write("v.kvr4", text)), version) << text;
  }
  EXPECT_EQ(Application::GetCharacterFileVersion(Path("missing.kvr4")), 0);
}

TEST_F(CharacterFiles, WhatLoadingMakesOfTheNameDependsOnTheRoad) {
  struct Case {
    std::string file;
    bool doNotUseFilename, usingParty;
    bool named, recent, dirty;
  };
  const Case cases[] = {
      {"plain.kvr4", false, false, true, true, false},
      {"member.kvr4", false, true, true, false, false},
      {"backup.tmp", true, false, false, false, true},
      {"start.KVR4Base", false, false, false, true, false},
  };
  for (const Case& row : cases) {
    const std::string path = SavedCharacter(row.file, "Maren");
    env_.Config.MRUFiles = {};
    env_.Config.CharDir = "before";
    events_.texts.clear();
    ASSERT_TRUE(app_.LoadTheCharacter(path, row.doNotUseFilename, row.usingParty)) << row.file;
    EXPECT_EQ(app_.Current()->Name, "Maren");
    EXPECT_EQ(app_.Current()->FileName, row.named ? path : "") << row.file;
    EXPECT_EQ(env_.Config.MRUFiles[0], row.recent ? path : "") << row.file;
    EXPECT_EQ(env_.Config.CharDir, row.doNotUseFilename ? "before" : Path("")) << row.file;
    EXPECT_EQ(app_.Current()->Dirty, row.dirty) << row.file;
    EXPECT_EQ(events_.texts.front(), "'" + row.file + "' is being prepared as character #1...");
    EXPECT_EQ(events_.texts.back(), "'" + row.file + "' is now ready.");
    app_.CloseCharacter(1);
  }
}

TEST_F(CharacterFiles, ALoadedCharacterIsWrittenAsItWasRead) {
  const std::string path = SavedCharacter("maren.kvr4", "Maren");
  const std::string bytes = *Files::ReadWhole(path);
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  EXPECT_EQ(app_.Current()->FileText(), bytes);
  ASSERT_TRUE(app_.SaveCharacter(*app_.Current(), path));
  EXPECT_EQ(*Files::ReadWhole(path), bytes);
}

TEST_F(CharacterFiles, AFailedLoadLeavesNoCharacterAndTheFileAlone) {
  app_.CreateNewCharacter();
  EXPECT_FALSE(app_.LoadTheCharacter(Path("missing.kvr4")));
  const std::string text = "Just a shopping list\r\n";
  const std::string path = Write("list.txt", text);
  EXPECT_FALSE(app_.LoadTheCharacter(path));
  EXPECT_EQ(app_.Chars.size(), 1u);
  EXPECT_EQ(notices_.size(), 1u) << "the first question of the old format, cancelled";
  EXPECT_TRUE(Logged("was not loaded: its file has format 0"));
  EXPECT_EQ(*Files::ReadWhole(path), text);
}

TEST_F(CharacterFiles, AFailedSaveLeavesEverythingAsItWas) {
  KVRCharacter& character = app_.CreateNewCharacter();
  character.Dirty = true;
  EXPECT_FALSE(app_.SaveCharacter(character, Path("nowhere") + "\\x.kvr4"));
  EXPECT_TRUE(character.Dirty);
  EXPECT_EQ(character.FileName, "");
  EXPECT_EQ(env_.Config.MRUFiles[0], "");
}

TEST_F(CharacterFiles, ACharacterWithAFailingFormulaOpensAndCanBeMended) {
  const std::string path =
      Write("bad.kvr4",
            "[System]\r\nversion(3)\r\n[Stats]\r\nidkey(1)|,basevalue(@sqr(0-4)),score(7.0),name(Bad)\r\n"
            "idkey(2)|,basevalue(4),name(Good)\r\n\r\n[ChangeLog]\r\n\r\n");
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  KVRCharacter& c = *app_.Current();
  EXPECT_EQ(c.FindItem("Bad", kStats)->Score(), 7);
  EXPECT_EQ(c.FindItem("Good", kStats)->Score(), 4);
  EXPECT_TRUE(TraitEditing::SetTag(*c.FindItem("Bad", kStats), "basevalue", "@sqr(4)"));
  EXPECT_EQ(c.FindItem("Bad", kStats)->Score(), 2);
  EXPECT_NO_THROW(c.RecalculateAll());
}

TEST_F(CharacterFiles, LoadedTraitsAreLinkedAgain) {
  const std::string path = Write("linked.kvr4",
                                 "[System]\r\nversion(3)\r\n[Stats]\r\nidkey(1)|,basevalue(10),name(Wit)\r\n"
                                 "idkey(2)|,basevalue(ST:Wit),name(Will)\r\n\r\n[ChangeLog]\r\n\r\n");
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  KVRCharacter& c = *app_.Current();
  EXPECT_EQ(c.FindItem("Will", kStats)->Score(), 10);
  clsItem& wit = *c.FindItem("Wit", kStats);
  wit.SetTagItem("basevalue", "12");
  c.ClearTokensForItem(wit);
  wit.Calculate();
  c.TrickleRecalcItems();
  EXPECT_EQ(c.FindItem("Will", kStats)->Score(), 12);
}

constexpr std::string_view kFormat2 =
    "[System]\r\nversion(2)\r\ndatafile(old "
    "rules.kdf)\r\n[SystemNotes]\r\nfree\r\n[General]\r\ncharname(Otto)\r\n"
    "playername(Ilse)\r\nnotes(one<CRLF>two)\r\n[Stats]\r\nname(ST),levels(2),up(10),down(8),doubleinplay(1)"
    "\r\n"
    "[PD/DR]\r\nname(arms),pd(1),dr(2)\r\notherdr(4)\r\n[Advantages]\r\n"
    "name(Bright),basecost(5),costcnt(3),level(2),currentmods(name(Dim),basemod(-10%),modcnt(-5%),count(2),"
    "curmod(x)|"
    "name(Loud),basemod(20%),roundup(1))\r\nno name here\r\n[Powers]\r\nname(Glow),display(0)\r\n"
    "[Spells]\r\nname(Light),type(M/H),college(Fire)\r\n[PackageItems]\r\nname(Bright)\r\n";

TEST_F(CharacterFiles, Format2TakesTheLeadingNumberOfADamagedOne) {
  const std::string path =
      Write("damaged.kvr",
            "[System]\r\nversion(2)\r\n[Advantages]\r\n"
            "name(Bright),basecost(5),costcnt(3),level(2a),currentmods(name(Dim),basemod(-10%))\r\n");
  prompts_.QueueAnswer("ok");
  prompts_.QueueAnswer("ok");
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  clsItem* bright = app_.Current()->FindItem("Bright", kAds);
  ASSERT_NE(bright, nullptr);
  EXPECT_EQ(bright->BaseLevel(), 2);
  EXPECT_EQ(bright->Mods.Count(), 1u);
  EXPECT_EQ(bright->TagItem("currentmods"), "");
}

TEST_F(CharacterFiles, TheNumberOfADroppedModifierIsNotGivenAgain) {
  const std::string path =
      Write("orphan.kvr4",
            "[System]\r\nversion(3)\r\nlastkey(1)\r\n[Stats]\r\nidkey(1)|,name(Wit)\r\n\r\n"
            "[Mods]\r\nidkey(40),parentkey(99)|,name(Lost)\r\n\r\n[ChangeLog]\r\n\r\n");
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  EXPECT_EQ(app_.Current()->NewKey(), 41);
}

TEST_F(CharacterFiles, Format2BecomesANewCharacter) {
  const std::string path = Write("otto.kvr", std::string(kFormat2));
  EXPECT_EQ(Application::GetCharacterKVR2DataFilesUsed(path), std::vector<std::string>{"old rules.kdf"});
  prompts_.QueueAnswer("ok");
  prompts_.QueueAnswer("ok");
  ASSERT_TRUE(app_.LoadTheCharacter(path));
  KVRCharacter& c = *app_.Current();
  EXPECT_EQ(c.Name, "Otto");
  EXPECT_EQ(c.Notes, "one\r\ntwo");
  EXPECT_TRUE(c.Dirty);
  EXPECT_EQ(c.FileName, "") << "so that the old file is not overwritten";
  EXPECT_EQ(env_.Config.MRUFiles[0], path);
  EXPECT_EQ(c.DR[2], "2");
  EXPECT_EQ(c.Body.Part("Arms")->DB, "1");
  EXPECT_EQ(c.OtherDR, "4");
  clsItem* st = c.FindItem("ST", kStats);
  ASSERT_NE(st, nullptr);
  EXPECT_EQ(st->Level(), 2);
  EXPECT_EQ(st->TagItem("inplaymult"), "2");
  clsItem* bright = c.FindItem("Bright", kAds);
  ASSERT_NE(bright, nullptr);
  EXPECT_EQ(bright->TagItem("cost"), "5/3");
  EXPECT_EQ(bright->BaseLevel(), 2);
  EXPECT_EQ(bright->TagItem("currentmods"), "");
  ASSERT_EQ(bright->Mods.Count(), 2u);
  clsMod& dim = bright->Mods.Item(std::size_t{1});
  EXPECT_EQ(dim.TagItem("cost"), "-10%/-5%");
  EXPECT_EQ(dim.TagItem("level"), "2");
  EXPECT_EQ(dim.TagItem("curmod"), "");
  EXPECT_EQ(c.FindItem("Glow", kPerks)->TagItem("display"), "no");
  EXPECT_EQ(c.FindItem("Light", kSpells)->TagItem("cat"), "Fire");
  EXPECT_TRUE(Logged("should probably do a Resynchronize also."));
}

TEST_F(CharacterFiles, CancellingEitherQuestionOfFormat2EndsTheLoad) {
  const std::string path = Write("otto.kvr", std::string(kFormat2));
  for (int oks : {0, 1}) {
    for (int i = 0; i < oks; ++i) prompts_.QueueAnswer("ok");
    EXPECT_FALSE(app_.LoadTheCharacter(path));
    EXPECT_TRUE(app_.Chars.empty());
  }
}

TEST_F(CharacterFiles, APartyLoadsItsMembersFromAnywhere) {
  const std::string one = SavedCharacter("one.kvr4", "One");
  SavedCharacter("party/two.kvr4", "Two");
  const std::string party = Write(
      "party/all.KVR4party", "Encoding=UTF-8\r\n" + one + "\r\n\r\ntwo.kvr4\r\nall.KVR4party\r\ngone.kvr4");
  env_.Config.MRUFiles = {};
  ASSERT_TRUE(app_.LoadTheCharacter(party));
  ASSERT_EQ(app_.Chars.size(), 2u);
  EXPECT_EQ(app_.Chars[0]->Name, "One");
  EXPECT_EQ(app_.Chars[1]->Name, "Two");
  EXPECT_TRUE(Logged("Party character not found: gone.kvr4"));
  EXPECT_TRUE(Logged("A party list inside a party list is not followed: all.KVR4party"));
  EXPECT_EQ(env_.Config.MRUFiles[0], party);
  EXPECT_EQ(env_.Config.MRUFiles[1], "");
  EXPECT_EQ(events_.texts.back(), "Party loaded.");
}

TEST_F(CharacterFiles, APartyIsSavedOnceAllItsMembersAre) {
  KVRCharacter& character = app_.CreateNewCharacter();
  EXPECT_EQ(app_.PartySaveAs(), "");
  ASSERT_EQ(notices_.size(), 1u);
  EXPECT_NE(notices_[0].find("Save Party Members: Please save all the loaded characters"), npos);
  ASSERT_TRUE(app_.SaveCharacter(character, Path("one.kvr4")));
  const std::string party = Path("party/p.KVR4party");
  prompts_.QueueAnswer(Path("party/p"));
  EXPECT_EQ(app_.PartySaveAs(), party);
  EXPECT_EQ(*Files::ReadWhole(party), Path("one.kvr4") + "\r\n");
  // Not overwritten without a yes.
  ASSERT_TRUE(Files::WriteWhole(party, "old"));
  prompts_.QueueAnswer(party);
  prompts_.QueueAnswer("no");
  EXPECT_EQ(app_.PartySaveAs(), "");
  EXPECT_EQ(*Files::ReadWhole(party), "old");
}

TEST_F(CharacterFiles, BackupsAreListedUntilTheCharacterCloses) {
  app_.CreateNewCharacter().Name = "[A]=b";
  KVRCharacter& second = app_.CreateNewCharacter();
  second.Dirty = true;
  const std::vector<std::string> paths = app_.WriteTempBackups();
  ASSERT_EQ(paths.size(), 2u);
  EXPECT_EQ(app_.WriteTempBackups(), paths);
  EXPECT_TRUE(second.Dirty);
  EXPECT_EQ(second.FileName, "");
  auto listed = modFileIO::IniReadTempFiles(env_);
  ASSERT_EQ(listed.size(), 2u);
  EXPECT_EQ(listed[0].second, paths[0]);
  app_.CloseCharacter(1);
  EXPECT_FALSE(Files::FileExists(paths[0]));
  listed = modFileIO::IniReadTempFiles(env_);
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0].second, paths[1]);

  const std::string backup = *Files::ReadWhole(paths[1]);
  Application other(env_);
  ASSERT_TRUE(other.LoadTheCharacter(paths[1], true));
  EXPECT_EQ(other.Current()->FileText(), backup);
}

}  // namespace
}  // namespace kvr
