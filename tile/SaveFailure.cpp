#include "tile/SaveFailure.h"

#include <cerrno>

#include "util/ReplaceFile.h"
#include "util/SystemStatus.h"

namespace morvane {
namespace {

constexpr std::string_view kCannotWriteFile = "cannot write ";
constexpr std::string_view kSomebodys = "somebody's ";
constexpr std::string_view kChangedMeanwhile = "changed while it was exported; export again";

constexpr int kSystemReasons[] = {
    ENOSPC,
#ifdef EDQUOT
    EDQUOT,
#endif
    EROFS,  EACCES, EPERM,
};

std::string beginningFor(const std::string& file) {
  return std::string(kCannotWriteFile) + file + ": ";
}

StatusCode codeOf(std::string_view reason) {
  if (reason == kChangedMeanwhile) return StatusCode::kChanged;
  if (reason == FileReplacer::kReadOnlyReason) return StatusCode::kReadOnly;
  if (reason.substr(0, kSomebodys.size()) == kSomebodys) return StatusCode::kOtherKind;
  for (const int error : kSystemReasons) {
    const Status status = errnoStatus(error, StatusCode::kCannotWrite);
    if (reason == status.text()) return status.code();
  }
  return StatusCode::kCannotWrite;
}

}  // namespace

std::string saveFailureLine(const std::string& file, const Status& status) {
  return status.code() == StatusCode::kChanged ? beginningFor(file) + std::string(kChangedMeanwhile)
                                               : status.text();
}

std::string notReplacedLine(const std::string& file, const std::string& obstacle) {
  return beginningFor(file) + std::string(kSomebodys) + obstacle;
}

Status readSaveFailure(const std::string& file, std::string_view line) {
  const std::string beginning = beginningFor(file);
  if (line.substr(0, beginning.size()) != beginning) return {};
  return {codeOf(line.substr(beginning.size())), std::string(line)};
}

}  // namespace morvane
