#ifndef MORVANE_HOST_STATE_VARIABLES_H_
#define MORVANE_HOST_STATE_VARIABLES_H_

#include <cstddef>
#include <string>

namespace host {

constexpr std::size_t kLongestExpanded = 4096;

// Replaces `$VAR` and `${VAR}` by variables of the environment; an unset one stays as written. What
// follows is left out once the text is longer than kLongestExpanded.
std::string withVariables(const std::string& text);

}  // namespace host

#endif  // MORVANE_HOST_STATE_VARIABLES_H_
