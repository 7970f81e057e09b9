#ifndef MORVANE_FUZZ_HOSTFUZZ_H_
#define MORVANE_FUZZ_HOSTFUZZ_H_

#include <string>

#include "host/mel/Interpreter.h"

namespace morvane::fuzz {

// A script of any text gets this far.
inline host::mel::Limits scriptLimits() {
  host::mel::Limits limits;
  limits.steps = 1000;
  limits.textSize = 1 << 12;
  limits.arraySize = 1 << 10;
  return limits;
}

// A host that has run nothing yet: an empty scene, no variables, no procedures. Its files are this
// process's scratch folder's; commands cannot name any others, nor load plug-ins.
void freshHost();

// Opens a scene file of these bytes, in a fresh host and without more memory than Host.h says, and
// requires that it saves as a file that opens and saves as itself.
void openAndSave(const std::string& name, const std::string& bytes);

}  // namespace morvane::fuzz

#endif  // MORVANE_FUZZ_HOSTFUZZ_H_
