#include "geometry/ExtractionErrors.h"

#include <cstdarg>
#include <cstdio>

namespace morvane {
namespace {

struct ErrorLog {
  std::string text;
  bool raised = false;
};

ErrorLog& errorLog() {
  static ErrorLog log;
  return log;
}

}  // namespace

void addExtractionError(const char* format, ...) {
  char message[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  errorLog().text += message;
  errorLog().raised = true;
}

bool hasExtractionError() {
  return errorLog().raised;
}

const std::string& extractionErrorText() {
  return errorLog().text;
}

void clearExtractionErrors() {
  errorLog() = ErrorLog();
}

}  // namespace morvane
