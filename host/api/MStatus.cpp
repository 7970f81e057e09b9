#include <maya/MStatus.h>

#include <iostream>

MString MStatus::errorString() const {
  switch (code_) {
    case kSuccess:
      return "(kSuccess): Success";
    case kFailure:
      return "(kFailure): Unexpected Internal Failure";
    case kInsufficientMemory:
      return "(kInsufficientMemory): Insufficient memory to complete this method";
    case kInvalidParameter:
      return "(kInvalidParameter): Object is incompatible with this method";
    case kLicenseFailure:
      return "(kLicenseFailure): Application is not licensed for the attempted operation";
    case kUnknownParameter:
      return "(kUnknownParameter): An unknown parameter was given";
    case kNotImplemented:
      return "(kNotImplemented): This method is not implemented";
    case kNotFound:
      return "(kNotFound): The item requested does not exist";
    case kEndOfFile:
      return "(kEndOfFile): The end of the file was reached";
  }
  return "(unknown status code)";
}

void MStatus::perror(const char* text) const {
  if (!error()) return;
  std::cerr << (text ? text : "") << ": " << errorString() << '\n';
}

std::ostream& operator<<(std::ostream& out, const MStatus& status) {
  return out << (status.error() ? 0 : 1);
}
