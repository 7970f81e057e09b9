// A Maya Binary file of any bytes: it is opened, what cannot be used is told of with its place, and
// the scene saves as text that opens as the same scene.
#include <string>

#include "fuzz/FuzzTools.h"
#include "fuzz/HostFuzz.h"
#include "host/Host.h"
#include "host/binary/ChunkWalker.h"

using namespace morvane::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string scene(data, data + size);
  if (!host::isBinarySceneStart(scene)) return 0;
  openAndSave("scene.mb", scene);
  return 0;
}
