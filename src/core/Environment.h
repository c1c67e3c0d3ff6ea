// What every layer may use, made once in `app` (or by a test) and passed by reference. Two worlds can live
// side by side.
#pragma once

#include <string>
#include <string_view>

#include "core/Config.h"
#include "core/EnginePrompts.h"
#include "core/Folders.h"
#include "core/FrontEndEvents.h"
#include "core/modINI.h"
#include "core/modLogging.h"

namespace kvr {

inline constexpr std::string_view kProgramTitle = "BRASK Kivera";
// The program's version, "4.0.400".
std::string_view ProgramVersion();
// Dotted numbers, missing parts 0, parts that are no numbers by Val: below 0, 0 or above 0.
int CompareVersions(std::string_view a, std::string_view b);

struct Environment {
  Environment(EnginePrompts& enginePrompts, FrontEndEvents& frontEndEvents)
      : prompts(enginePrompts), events(frontEndEvents), ini(log) {}
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  EnginePrompts& prompts;
  FrontEndEvents& events;
  kvr::Config Config;  // in force
  DataSetOptions
      UserOptions;  // the user's own values of what a data set may set; these are written to the file
  kvr::Folders Folders;
  ActivityLog log;
  modINI ini;
};

}  // namespace kvr
