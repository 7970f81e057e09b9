#ifndef MORVANE_HOST_API_STATUS_H_
#define MORVANE_HOST_API_STATUS_H_

#include <maya/MStatus.h>

namespace host {

// For API calls, whose status argument may be null.
inline void report(MStatus* status, MStatus::MStatusCode code) {
  if (status) *status = code;
}

inline void report(MStatus* status, bool ok) {
  report(status, ok ? MStatus::kSuccess : MStatus::kFailure);
}

}  // namespace host

#endif  // MORVANE_HOST_API_STATUS_H_
