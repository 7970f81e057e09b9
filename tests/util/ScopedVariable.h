#ifndef MORVANE_TESTS_UTIL_SCOPEDVARIABLE_H_
#define MORVANE_TESTS_UTIL_SCOPEDVARIABLE_H_

#include <stdlib.h>

namespace morvane {

// Sets a variable of the environment while it lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) { set(value); }
  ~ScopedVariable() { set(nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void set(const char* value) {
#ifdef _WIN32
    ::_putenv_s(name_, value == nullptr ? "" : value);
#else
    value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1);
#endif
  }

  const char* name_;
};

}  // namespace morvane

#endif  // MORVANE_TESTS_UTIL_SCOPEDVARIABLE_H_
