// Any text as a script, in an empty scene; what the scene then is must save, and open again.
#include <string>

#include "fuzz/FuzzTools.h"
#include "fuzz/HostFuzz.h"
#include "host/Host.h"

using namespace morvane::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  freshHost();
  const std::string script(data, data + size);
  host::execute(script, "fuzz");
  if (size % 4 != 0) return 0;  // most inputs fail early and leave an empty scene
  require(host::saveScene(scratchPath("mel.ma")).ok(),
          "a scene that a script made cannot be saved");
  require(host::openScene(scratchPath("mel.ma")).ok(), "a scene that was saved cannot be opened");
  return 0;
}
