#ifndef MORVANE_UTIL_SYSTEMSTATUS_H_
#define MORVANE_UTIL_SYSTEMSTATUS_H_

#include <system_error>

#include "util/Status.h"

namespace morvane {

// What the system says of a call that failed, in its own words. `otherwise` is the code of an error
// that has none in StatusCode.
Status systemStatus(const std::error_code& error, StatusCode otherwise);

// The same of a value of errno.
Status errnoStatus(int error, StatusCode otherwise);

#ifdef _WIN32
// The same of a value of GetLastError(): in the words of errno where it has one for that.
Status windowsStatus(unsigned long error, StatusCode otherwise);
#endif

}  // namespace morvane

#endif  // MORVANE_UTIL_SYSTEMSTATUS_H_
