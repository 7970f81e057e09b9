#ifndef MORVANE_HOST_API_STATUS_H_
#define MORVANE_HOST_API_STATUS_H_

#include <maya/MStatus.h>

namespace host {

// How an API call ended, for a caller who may not want to know (null). True for a success.
inline bool report(MStatus* status, MStatus::MStatusCode code) {
  if (status != nullptr) *status = code;
  return code == MStatus::kSuccess;
}

inline bool report(MStatus* status, bool ok) {
  return report(status, ok ? MStatus::kSuccess : MStatus::kFailure);
}

}  // namespace host

#endif  // MORVANE_HOST_API_STATUS_H_
