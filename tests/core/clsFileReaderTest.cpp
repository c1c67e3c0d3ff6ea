#include "core/clsFileReader.h"

#include <random>

#include "core/clsFileWriter.h"
#include "support/TestWorld.h"

namespace kvr {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

Lines AllLines(clsFileReader& reader) {
  Lines lines;
  while (!reader.FileEOF()) lines.emplace_back(reader.FileNextLine());
  return lines;
}

TEST(clsFileReaderTest, DecodesByTheMarksOfTheFile) {
  const auto decides = TextEncoding::FileDecides, always = TextEncoding::AlwaysUtf8;
  const std::string odd =
      std::string(61, 'a');  // so that the odd bytes stand across the words of the quick check
  const struct {
    std::string bytes;
    TextEncoding encoding;
    std::string text;
  } cases[] = {
      {"", decides, ""},
      {"plain", decides, "plain"},
      {"\xEF\xBB\xBF"
       "ab",
       decides, "ab"},
      {"\xEF\xBB\xBF", decides, ""},
      {"eNCODING=utf-8\r\nx", decides, "\r\nx"},
      {"\xEF\xBB\xBF"
       "Encoding=UTF-8\nx",
       decides, "\nx"},
      {"caf\xC3\xA9", decides, "café"},                      // valid UTF-8 without a mark
      {"caf\xE9 \x80\x81\x9F", decides, "café €\xC2\x81Ÿ"},  // Windows-1252
      {odd + "\xE9" + odd, decides, odd + "é" + odd},
      {"Encoding=UTF-8caf\xE9!", decides, "caf\xEF\xBF\xBD!"},
      {"caf\xE9", always, "caf\xEF\xBF\xBD"},
      {odd + "\xF0\x9F\x98" + odd + "\xC0\xAF", always, odd + "\uFFFD\uFFFD\uFFFD" + odd + "\uFFFD\uFFFD"},
      {"\xED\xA0\x80", always, "\uFFFD\uFFFD\uFFFD"},  // half of a surrogate pair
      {"\xFF\xFE"
       "a\0\xE9\0=\xD8\0\xDE"s,
       decides, "aé😀"},
      {"\xFE\xFF\0a\0\xE9\xD8=\xDE\0"s, always, "aé😀"},
      {"\xFF\xFE"
       "a\0=\xD8"
       "b\0c"s,
       decides, "a\uFFFDb\uFFFD"},  // a half pair and an odd byte
      {"a\0b\xE9"s, decides, "a\0bé"s},
  };
  for (const auto& one : cases)
    EXPECT_EQ(DecodeText(one.bytes, one.encoding), one.text) << testing::PrintToString(one.bytes);
}

TEST(clsFileReaderTest, HandsOutLines) {
  const struct {
    std::string text;
    Lines lines;
  } cases[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\r\n", {"a", ""}},
      {"a\rb\nc\r\nd", {"a", "b", "c", "d"}},
      {"\r\r\n\n\r", {"", "", "", "", ""}},
      {"a\0b\n"s, {"a\0b"s, ""}},
      {"\xEF\xBB\xBF"
       "Encoding=UTF-8\r\nx",
       {"", "x"}},
  };
  for (const auto& one : cases) {
    clsFileReader reader;
    reader.TextOpen(one.text);
    EXPECT_EQ(AllLines(reader), one.lines) << testing::PrintToString(one.text);
    EXPECT_EQ(reader.LineNumber(), one.lines.size());
    EXPECT_EQ(reader.FileNextLine(), "");
    EXPECT_EQ(reader.LineNumber(), one.lines.size()) << "nothing is delivered past the end";
  }
}

// Every text is split as by turning its line ends into line feeds first.
TEST(clsFileReaderTest, SplitsLikeReplacingLineEnds) {
  std::minstd_rand random(7);
  for (int round = 0; round < 2000; ++round) {
    std::string text, plain;
    for (auto n = random() % 12; n > 0; --n) text += "\r\na\xC3"[random() % 4];
    text = DecodeText(text, TextEncoding::AlwaysUtf8);
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '\n' || i == 0 || text[i - 1] != '\r') plain += text[i] == '\r' ? '\n' : text[i];
    }
    Lines expected;
    for (std::size_t from = 0; !text.empty() && from != npos;) {
      const std::size_t feed = plain.find('\n', from);
      expected.push_back(plain.substr(from, feed - from));
      from = feed == npos ? npos : feed + 1;
    }
    clsFileReader reader;
    reader.TextOpen(text);
    ASSERT_EQ(AllLines(reader), expected) << testing::PrintToString(text);
  }
}

TEST(clsFileReaderTest, OpensFiles) {
  TestWorld world;
  clsFileReader reader;
  EXPECT_FALSE(reader.FileOpen(world.Path("missing.kdf")));
  EXPECT_TRUE(reader.FileEOF());
  EXPECT_EQ(reader.Error(), "No such file or directory");
  world.Write("short.kdf",
              "\xEF\xBB\xBF"
              "äöü\nnext");
  EXPECT_TRUE(reader.FileOpen(world.Path("short.kdf"), 5, TextEncoding::AlwaysUtf8));
  EXPECT_EQ(AllLines(reader), (Lines{"äöü", "n"})) << "characters are counted, not bytes";
  EXPECT_TRUE(reader.FileOpen(world.Path("short.kdf"), 2));
  EXPECT_EQ(AllLines(reader), (Lines{"äö"}));
  EXPECT_EQ(reader.Error(), "");
}

// One line of 10 MB, a million lone carriage returns and a million empty lines: each is one walk over the
// text.
TEST(clsFileReaderTest, LargeTextsTakeOneWalk) {
  for (const std::string& text :
       {std::string(10'000'000, 'x'), std::string(1'000'000, '\r'), std::string(1'000'000, '\n')}) {
    clsFileReader reader;
    reader.TextOpen(text);
    const TimerScope timer;
    std::size_t total = 0, lines = 0;
    for (; !reader.FileEOF(); ++lines) total += reader.FileNextLine().size();
    EXPECT_EQ(total + lines - 1, text.size());
    EXPECT_LT(timer.Seconds(), 2.0);
  }
}

TEST(clsFileWriterTest, WritesAtTheClosingAndAppends) {
  TestWorld world;
  const std::string path = world.Path("out.kdf");
  clsFileWriter writer;
  writer.FileOpen(path);
  writer.FilePrint("Encoding=UTF-8");
  writer.FilePrint("");
  EXPECT_FALSE(Files::FileExists(path));
  EXPECT_TRUE(writer.FileClose());
  EXPECT_EQ(world.Read(path), "Encoding=UTF-8\r\n\r\n");

  const struct {
    std::string before, after;
  } cases[] = {
      {"", "näher\r\n"},
      {"Encoding=UTF-8\r\na", "Encoding=UTF-8\r\na\r\nnäher\r\n"},
      {"a\n", "a\nnäher\r\n"},
      {"caf\xE9\r\n", "café\r\nnäher\r\n"},
      {"\xFF\xFE"
       "a\0"s,
       "a\r\nnäher\r\n"},
      {"\xFF\xFE", "näher\r\n"},
  };
  for (const auto& one : cases) {
    world.Write(path, one.before);
    writer.FileOpenAppend(path);
    writer.FilePrint("näher");
    EXPECT_TRUE(writer.FileClose());
    EXPECT_EQ(world.Read(path), one.after);
  }
  EXPECT_FALSE(writer.FileClose()) << "nothing is open";
}

}  // namespace
}  // namespace kvr
