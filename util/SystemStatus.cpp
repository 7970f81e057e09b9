#include "util/SystemStatus.h"

#include <cerrno>

#ifdef _WIN32
#include <windows.h>

#include "util/Path.h"
#endif

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

#ifdef _WIN32
// In English, as are all others.
std::string windowsText(DWORD error) {
  wchar_t text[512];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
                                      text, static_cast<DWORD>(std::size(text)), nullptr);
  std::string utf8 = toUtf8(std::wstring(text, length));
  utf8.erase(utf8.find_last_not_of(". \r\n") + 1);
  return utf8.empty() ? "error " + std::to_string(error) : utf8;
}
#endif

}  // namespace

Status systemStatus(const std::error_code& error, StatusCode otherwise) {
#ifdef _WIN32
  if (error.category() == std::system_category())
    return windowsStatus(static_cast<DWORD>(error.value()), otherwise);
#endif
  return {codeOf(error.default_error_condition(), otherwise), error.message()};
}

#ifdef _WIN32
Status windowsStatus(unsigned long error, StatusCode otherwise) {
  const std::error_code code(static_cast<int>(error), std::system_category());
  const std::error_condition condition = code.default_error_condition();
  if (condition.category() == std::generic_category())
    return errnoStatus(condition.value(), otherwise);
  return {otherwise, windowsText(error)};
}
#endif

Status errnoStatus(int error, StatusCode otherwise) {
  return systemStatus(std::error_code(error, std::generic_category()), otherwise);
}

}  // namespace morvane
