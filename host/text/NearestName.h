#ifndef MORVANE_HOST_TEXT_NEARESTNAME_H_
#define MORVANE_HOST_TEXT_NEARESTNAME_H_

#include <string>
#include <vector>

namespace host {

// The one of `names` that was probably meant by `name`: it differs in the case of letters, or in
// two letters at most and in fewer than half of them. Empty when there is none. Bytes are compared;
// long names and what comes after some ten thousand names are left out.
std::string nearestName(const std::string& name, const std::vector<std::string>& names);

}  // namespace host

#endif  // MORVANE_HOST_TEXT_NEARESTNAME_H_
