#ifndef MORVANE_UTIL_ENVIRONMENT_H_
#define MORVANE_UTIL_ENVIRONMENT_H_

#include <optional>
#include <string>
#include <vector>

namespace morvane {

// The value of a variable of the environment, in UTF-8 on Windows; none where it is not set.
std::optional<std::string> environmentValue(const std::string& name);

// The names of all variables of the environment, in its order.
std::vector<std::string> environmentNames();

// The absolute folder that holds the running program; empty when the system does not tell.
std::string programFolder();

}  // namespace morvane

#endif  // MORVANE_UTIL_ENVIRONMENT_H_
