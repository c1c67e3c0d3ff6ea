// Walks once over the groups, control words and characters of an RTF document and keeps what is visible.
#include "richtext/PlainText.h"

#include <algorithm>
#include <vector>

#include "core/clsFileReader.h"

namespace kvr::richtext {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

struct WordText {
  std::string_view word, text;
};
constexpr WordText kVisibleWords[] = {
    {"par", kLineEnd},     {"line", kLineEnd}, {"sect", kLineEnd}, {"page", kLineEnd}, {"row", kLineEnd},
    {"nestrow", kLineEnd}, {"tab", "\t"},      {"cell", "\t"},     {"nestcell", "\t"}, {"emdash", "—"},
    {"endash", "–"},       {"bullet", "•"},    {"lquote", "‘"},    {"rquote", "’"},    {"ldblquote", "“"},
    {"rdblquote", "”"},    {"emspace", " "},   {"enspace", " "},
};

// Groups that begin with one of these words hold nothing to read.
constexpr std::string_view kHiddenGroups[] = {
    "fonttbl", "colortbl",  "stylesheet",        "info",    "pict",    "object",  "header",
    "headerl", "headerr",   "headerf",           "footer",  "footerl", "footerr", "footerf",
    "filetbl", "listtable", "listoverridetable", "fldinst",
};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

class Reader {
 public:
  explicit Reader(std::string_view rtf) : rtf_(rtf) {}
  std::string Read();

 private:
  struct Group {
    bool hidden = false;
    std::size_t fallback = 1;  // characters that stand for one given by its number
  };

  bool AtEnd() const { return pos_ >= rtf_.size(); }
  void ReadMark();
  void ReadHexByte();
  void ReadWord();
  void DoWord(std::string_view word, long number);
  void EnterGroup();
  void LeaveGroup();
  void PutUnit(long unit);
  void PutUnits();
  void PutCharacter(std::string_view character);
  void PutText(std::string_view text);

  std::string_view rtf_;
  std::size_t pos_ = 0;
  std::vector<Group> groups_{1};
  std::size_t toSkip_ = 0;  // characters of the fallback still to come
  std::string units_;       // UTF-16 units in a row, low byte first: two may make one character
  std::string text_;
};

std::string Reader::Read() {
  while (!AtEnd()) {
    const char c = rtf_[pos_++];
    if (c == '{') {
      EnterGroup();
    } else if (c == '}') {
      LeaveGroup();
      if (groups_.size() == 1) break;
    } else if (c == '\\') {
      ReadMark();
    } else if (c != '\r' && c != '\n' && c != '\0') {
      PutCharacter({&c, 1});
    }
  }
  PutUnits();
  if (text_.ends_with(kLineEnd)) text_.resize(text_.size() - kLineEnd.size());
  return std::move(text_);
}

void Reader::EnterGroup() {
  groups_.push_back(groups_.back());
  toSkip_ = 0;
}

void Reader::LeaveGroup() {
  if (groups_.size() > 1) groups_.pop_back();
  toSkip_ = 0;
}

// Behind a backslash.
void Reader::ReadMark() {
  if (AtEnd()) return;
  const char c = rtf_[pos_];
  if (IsLetter(c)) return ReadWord();
  ++pos_;
  switch (c) {
    case '\'':
      return ReadHexByte();
    case '\r':
    case '\n':
      return PutText(kLineEnd);
    case '~':
      return PutCharacter("\u00A0");
    case '_':
      return PutCharacter("\u2011");
    case '*':
      groups_.back().hidden = true;
      return;
    case '\\':
    case '{':
    case '}':
      return PutCharacter({&c, 1});
    default:
      return;
  }
}

void Reader::ReadHexByte() {
  if (rtf_.size() - pos_ < 2) return;
  const int high = HexDigit(rtf_[pos_]), low = HexDigit(rtf_[pos_ + 1]);
  if (high < 0 || low < 0) return;
  pos_ += 2;
  const std::string byte(1, static_cast<char>(high * 16 + low));
  PutCharacter(DecodeText(byte, TextEncoding::FileDecides));
}

// A word, its number, and one blank that ends it.
void Reader::ReadWord() {
  const std::size_t begin = pos_;
  while (!AtEnd() && IsLetter(rtf_[pos_])) ++pos_;
  const std::string_view word = rtf_.substr(begin, pos_ - begin);
  const bool negative = pos_ + 1 < rtf_.size() && rtf_[pos_] == '-' && IsDigit(rtf_[pos_ + 1]);
  if (negative) ++pos_;
  constexpr long kLargestNumber = 100'000'000;
  long number = 0;
  for (; !AtEnd() && IsDigit(rtf_[pos_]); ++pos_)
    number = std::min(number * 10 + (rtf_[pos_] - '0'), kLargestNumber);
  if (!AtEnd() && rtf_[pos_] == ' ') ++pos_;
  DoWord(word, negative ? -number : number);
}

void Reader::DoWord(std::string_view word, long number) {
  if (word == "u") return PutUnit(number);
  if (word == "uc") {
    groups_.back().fallback = static_cast<std::size_t>(std::max(number, 0L));
  } else if (word == "bin") {
    pos_ = std::min(pos_ + static_cast<std::size_t>(std::max(number, 0L)), rtf_.size());
  } else if (std::ranges::find(kHiddenGroups, word) != std::end(kHiddenGroups)) {
    groups_.back().hidden = true;
  } else if (const auto* row = std::ranges::find(kVisibleWords, word, &WordText::word);
             row != std::end(kVisibleWords)) {
    PutText(row->text);
  }
}

void Reader::PutUnit(long unit) {
  toSkip_ = groups_.back().fallback;
  if (groups_.back().hidden || unit == 0) return;
  units_ += static_cast<char>(unit & 0xFF);
  units_ += static_cast<char>((unit >> 8) & 0xFF);
}

void Reader::PutUnits() {
  if (units_.empty()) return;
  text_ += DecodeText("\xFF\xFE" + units_, TextEncoding::FileDecides);
  units_.clear();
}

void Reader::PutCharacter(std::string_view character) {
  if (toSkip_ > 0) {
    --toSkip_;
  } else {
    PutText(character);
  }
}

void Reader::PutText(std::string_view text) {
  if (groups_.back().hidden) return;
  PutUnits();
  text_ += text;
}

}  // namespace

std::string PlainText(std::string_view rtf) {
  return Reader(rtf).Read();
}

}  // namespace kvr::richtext
