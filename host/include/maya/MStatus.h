#ifndef MORVANE_MAYA_MSTATUS_H_
#define MORVANE_MAYA_MSTATUS_H_

#include <maya/MString.h>

#include <ostream>

// How a call ended. As a truth value, and printed, it is 1 for success and 0 for every failure.
class MStatus {
 public:
  enum MStatusCode {
    kSuccess = 0,
    kFailure = 1,
    kInsufficientMemory = 2,
    kInvalidParameter = 3,
    kLicenseFailure = 4,
    kUnknownParameter = 5,
    kNotImplemented = 6,
    kNotFound = 7,
    kEndOfFile = 8,
  };

  MStatus() = default;
  MStatus(MStatusCode code) : code_(code) {}

  explicit operator bool() const { return code_ == kSuccess; }
  bool error() const { return code_ != kSuccess; }
  MStatusCode statusCode() const { return code_; }
  void clear() { code_ = kSuccess; }

  bool operator==(const MStatus& other) const { return code_ == other.code_; }
  bool operator!=(const MStatus& other) const { return code_ != other.code_; }
  bool operator==(MStatusCode code) const { return code_ == code; }
  bool operator!=(MStatusCode code) const { return code_ != code; }

  // The code in words, such as "(kFailure): Unexpected Internal Failure".
  MString errorString() const;

  // On a failure, prints `text`, a colon and the code in words on standard error.
  void perror(const char* text) const;
  void perror(const MString& text) const { perror(text.asChar()); }

 private:
  MStatusCode code_ = kSuccess;
};

using MS = MStatus;

inline bool operator==(MStatus::MStatusCode code, const MStatus& status) {
  return status == code;
}
inline bool operator!=(MStatus::MStatusCode code, const MStatus& status) {
  return status != code;
}
std::ostream& operator<<(std::ostream& out, const MStatus& status);

#endif  // MORVANE_MAYA_MSTATUS_H_
