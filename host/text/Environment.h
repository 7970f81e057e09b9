#ifndef MORVANE_HOST_TEXT_ENVIRONMENT_H_
#define MORVANE_HOST_TEXT_ENVIRONMENT_H_

#include <string>
#include <vector>

namespace host::mel {

// The names of all variables of the environment, in its order.
std::vector<std::string> environmentNames();

}  // namespace host::mel

#endif  // MORVANE_HOST_TEXT_ENVIRONMENT_H_
