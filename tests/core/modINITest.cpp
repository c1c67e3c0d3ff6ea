#include "core/modINI.h"

#include "support/TestWorld.h"

namespace kvr {
namespace {

const char kFile[] =
    "stray=0\r\n"
    "; about this file\r\n"
    "[Main]\r\n"
    "Number = 12abc \r\n"
    ";Number=99\r\n"
    "number=7\r\n"
    "Empty=\r\n"
    "no equals sign\r\n"
    "Formula=a=b=c\r\n"
    "\r\n"
    "  [ other ] trailing\r\n"
    "Number=-5\r\n"
    "[MAIN]\r\n"
    "Late=1\r\n";

class modINITest : public testing::Test {
 protected:
  // Opens the section anew, as a second run of the program would.
  modINI& Section(const char* section, std::string_view file = "set.ini") {
    ini_ = std::make_unique<modINI>(world.env.log);
    ini_->IniSetContext(section, world.Path(file));
    return *ini_;
  }

  TestWorld world;

 private:
  std::unique_ptr<modINI> ini_;
};

TEST_F(modINITest, ReadsValues) {
  world.Write("set.ini", kFile);
  modINI& ini = Section(" main ");
  EXPECT_EQ(ini.IniGetInt("NUMBER", 3), 12) << "the first one, its leading integer";
  EXPECT_EQ(ini.IniGetInt("Empty", 3), 0);
  EXPECT_EQ(ini.IniGetInt("Missing", 3), 3);
  EXPECT_EQ(ini.IniGetInt("Formula", 3), 0);
  EXPECT_EQ(ini.IniGetInt("Late", 3), 3) << "a second section of the name is not looked at";
  EXPECT_EQ(ini.IniGetString("Formula", ""), "a=b=c");
  EXPECT_EQ(ini.IniGetString("Empty", "default"), "");
  EXPECT_EQ(ini.IniGetString("no equals sign", "default"), "default");
  using Entries = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(ini.IniGetSection(), (Entries{{"Number", "12abc"},
                                          {"number", "7"},
                                          {"Empty", ""},
                                          {"no equals sign", ""},
                                          {"Formula", "a=b=c"}}));
  EXPECT_EQ(Section("OTHER").IniGetInt("number", 0), -5);
  EXPECT_TRUE(Section("none").IniGetSection().empty());
}

TEST_F(modINITest, ReadsNumbersOfAnyForm) {
  const std::pair<const char*, int> cases[] = {{"-17", -17},
                                               {"+4", 4},
                                               {"+-4", 0},
                                               {"0x10", 0},
                                               {"- 3", 0},
                                               {"2.9", 2},
                                               {"2147483647", 2147483647},
                                               {"2147483648", 0},
                                               {"yes", 0},
                                               {"-2147483648x", INT32_MIN}};
  for (const auto& [text, number] : cases) {
    world.Write("set.ini", std::string("[S]\nk=") + text);
    EXPECT_EQ(Section("s").IniGetInt("K", 5), number) << text;
  }
}

TEST_F(modINITest, LimitsSingleValuesByCharacters) {
  std::string longText;
  for (int i = 0; i < 5000; ++i) longText += "ä";
  world.Write("set.ini", "[S]\nlong=" + longText + "\nnull={{null}}\n");
  modINI& ini = Section("S");
  EXPECT_EQ(ini.IniGetString("long", "").size(), 2 * 255u);
  EXPECT_EQ(ini.IniGetLongString("long", "").size(), 2 * 4096u);
  EXPECT_EQ(ini.IniGetText("long", ""), longText);
  EXPECT_EQ(ini.IniGetSection()[0].second, longText);
  EXPECT_EQ(ini.IniGetLongString("null", "default"), "");
  ini.IniPutLongString("long", "");
  EXPECT_EQ(ini.IniGetString("long", ""), "{{null}}");
}

TEST_F(modINITest, ChangesOnlyWhatIsWritten) {
  world.Write("set.ini", kFile);
  modINI& ini = Section("Main");
  ini.IniPutInt("number", 8);
  ini.IniPutString("New", "two\r\nlines \0and a NUL");
  ini.IniPutString("Formula", " a=b=c ");
  ini.IniSetContext("Other", world.Path("set.ini"));
  ini.IniAddString("Number", "6");
  ini.IniSetContext("Fresh", world.Path("set.ini"));
  ini.IniPutString("Key", "ü");
  EXPECT_EQ(world.Read("set.ini"), kFile) << "nothing is written before the flush";
  EXPECT_TRUE(ini.Flush());
  const std::string expected =
      "stray=0\r\n"
      "; about this file\r\n"
      "[Main]\r\n"
      "number=8\r\n"
      ";Number=99\r\n"
      "number=7\r\n"
      "Empty=\r\n"
      "no equals sign\r\n"
      "Formula=a=b=c\r\n"
      "New=two  lines\r\n"
      "\r\n"
      "  [ other ] trailing\r\n"
      "Number=-5\r\n"
      "Number=6\r\n"
      "[MAIN]\r\n"
      "Late=1\r\n"
      "\r\n"
      "[Fresh]\r\n"
      "Key=ü\r\n";
  EXPECT_EQ(world.Read("set.ini"), expected);
  EXPECT_EQ(Section("fresh").IniGetString("key", ""), "ü");

  modINI& again = Section("main");
  again.IniDeleteSection();
  EXPECT_EQ(again.IniGetInt("Late", 4), 4) << "every section of the name is gone";
  again.IniSetContext("OTHER", world.Path("set.ini"));
  EXPECT_EQ(again.IniGetInt("Number", 0), -5);
  EXPECT_TRUE(again.Flush());
  EXPECT_EQ(world.Read("set.ini"),
            "stray=0\r\n; about this file\r\n  [ other ] "
            "trailing\r\nNumber=-5\r\nNumber=6\r\n[Fresh]\r\nKey=ü\r\n");
}

TEST_F(modINITest, WithoutContextItShowsTheError) {
  modINI ini(world.env.log);
  EXPECT_EQ(ini.IniGetInt("Key", 3), 0);
  ini.IniSetContext("", "set.ini");
  ini.IniPutInt("Key", 3);
  EXPECT_TRUE(ini.Flush());
  const std::string line = "IniFile Logic Error: [Section] and FileName Not Registered in Private.Ini!\n";
  EXPECT_EQ(world.RedLog(), line + line);
}

TEST_F(modINITest, AFileThatCannotBeReadOrWrittenIsLeftAlone) {
  modINI& ini = Section("S", "missing folder\\set.ini");
  ini.IniPutInt("Key", 3);
  EXPECT_FALSE(ini.Flush());
  EXPECT_EQ(world.RedLog(), "Cannot write the settings file " + world.Path("missing folder\\set.ini") +
                                ": No such file or directory\n");
  Files::FolderExists(world.Path("missing folder\\"), true);
  EXPECT_TRUE(ini.Flush()) << "the change was not lost";
  EXPECT_EQ(world.Read("missing folder\\set.ini"), "[S]\r\nKey=3\r\n");
}

}  // namespace
}  // namespace kvr
