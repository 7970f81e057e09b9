#ifndef MORVANE_TILE_SAVEFAILURE_H_
#define MORVANE_TILE_SAVEFAILURE_H_

#include <string>
#include <string_view>

#include "util/Status.h"

// The line on the host's error channel that explains why a tile was not saved. The plug-in writes
// it and the program reads it, both by these functions.
namespace morvane {

// "cannot write FILE: REASON", of a save that failed with `status`.
std::string saveFailureLine(const std::string& file, const Status& status);

// The same when nothing was tried, because the file is another person's.
std::string notReplacedLine(const std::string& file, const std::string& obstacle);

// The status that such a line about `file` stands for; its text is the whole line: kChanged,
// kNoSpace, kReadOnly, kNotAllowed, kOtherKind (another person's file), else kCannotWrite. A
// success for any other line.
Status readSaveFailure(const std::string& file, std::string_view line);

}  // namespace morvane

#endif  // MORVANE_TILE_SAVEFAILURE_H_
