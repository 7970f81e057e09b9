#ifndef MORVANE_TESTS_MEL_SCRIPT_H_
#define MORVANE_TESTS_MEL_SCRIPT_H_

#include <gtest/gtest.h>

#include <string>

#include "host/Host.h"
#include "host/mel/Interpreter.h"

namespace host::mel {

// A script's value, array elements with blanks between; or "failed: " and why.
inline std::string run(const std::string& script) {
  const Outcome outcome = Interpreter::current().execute(script, "s");
  std::string shown;
  for (const std::string& word : outcome.value.toWords())
    shown += (shown.empty() ? "" : " ") + word;
  return outcome.ok ? shown : "failed: " + outcome.failure.text;
}

}  // namespace host::mel

#endif  // MORVANE_TESTS_MEL_SCRIPT_H_
