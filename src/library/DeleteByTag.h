// The command that deletes every trait whose tag passes a test:
//
//   #deletebytag TYPE, COMPARISON [unless [num |# |$ ]COMPARISON] [, KIND] [, ignoreempty]
//
// A comparison is "tag OPERATOR value", "tag hasinlist value", "tag contains value", or a tag with "isempty",
// "isnotempty", "isnumeric" or "isnotnumeric". KIND is num, number, numeric or #, else text, string or $ (the
// default). With the word echolog every step is logged, with echologshort only what was deleted or saved.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/KVRSystem.h"

namespace kvr {

class DeleteByTag {
 public:
  DeleteByTag(KVRSystem& system, std::string_view line) : system_(system), line_(line) {}
  // False when the text is no such command; nothing is deleted then.
  bool Run(std::string_view argument);

 private:
  enum class Test : std::uint8_t {
    LessOrEqual,
    GreaterOrEqual,
    Unequal,
    Greater,
    Less,
    Equal,
    IsEmpty,
    IsNotEmpty,
    IsNumeric,
    IsNotNumeric,
    HasInList,
    Contains
  };
  struct Comparison {
    std::string tag, value;
    Test test = Test::Equal;
    bool byNumber = false;
    std::string words;  // the test as the log shows it
  };
  enum class Echo : std::uint8_t { None, Short, Full };

  void TakeEchoWord(std::string& text);
  bool ReadFields(std::string_view text);
  bool ReadOption(std::string_view field);
  bool ReadComparisons(std::string_view text);
  static std::string_view CutUnlessKind(std::string_view text, bool& byNumber);
  // `label` begins the names in the log.
  std::optional<Comparison> ReadComparison(std::string_view text, bool byNumber, std::string_view label);
  static std::optional<Comparison> GetAbsoluteComparisonValues(std::string_view text);
  static std::optional<Comparison> DoSpecialCaseFlags(std::string_view text);
  bool ValueChecking(const clsSystemItem& item, const Comparison& comparison, bool isMain);
  static bool Holds(const Comparison& comparison, std::string_view value);
  void LogStep(const std::string& text, Echo from = Echo::Full);

  KVRSystem& system_;
  std::string_view line_;
  Echo echo_ = Echo::None;
  ItemType type_ = kNoType;  // 0 for all
  bool byNumber_ = false;
  bool ignoreEmpty_ = false;
  Comparison main_;
  std::optional<Comparison> unless_;
  std::string unlessText_;
};

}  // namespace kvr
