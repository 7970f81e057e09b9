#include "util/SystemStatus.h"

#include <cerrno>

namespace morvane {
namespace {

StatusCode codeOf(const std::error_condition& condition, StatusCode otherwise) {
#ifdef EDQUOT
  if (condition == std::error_condition(EDQUOT, std::generic_category()))
    return StatusCode::kNoSpace;
#endif
  if (condition == std::errc::no_space_on_device) return StatusCode::kNoSpace;
  if (condition == std::errc::no_such_file_or_directory) return StatusCode::kNotFound;
  if (condition == std::errc::permission_denied) return StatusCode::kNotAllowed;
  if (condition == std::errc::operation_not_permitted) return StatusCode::kNotAllowed;
  if (condition == std::errc::read_only_file_system) return StatusCode::kNotAllowed;
  if (condition == std::errc::is_a_directory) return StatusCode::kNotAFile;
  if (condition == std::errc::file_too_large) return StatusCode::kTooLarge;
  if (condition == std::errc::not_enough_memory) return StatusCode::kOutOfMemory;
  return otherwise;
}

}  // namespace

Status systemStatus(const std::error_code& error, StatusCode otherwise) {
  return {codeOf(error.default_error_condition(), otherwise), error.message()};
}

Status errnoStatus(int error, StatusCode otherwise) {
  return systemStatus(std::error_code(error, std::generic_category()), otherwise);
}

}  // namespace morvane
