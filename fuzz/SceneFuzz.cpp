// A scene file of any text: it is opened, what cannot be used is warned of, and the scene saves as
// a file that opens as the same scene.
#include <string>

#include "fuzz/HostFuzz.h"
#include "host/file/SceneReader.h"

using namespace morvane::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string scene(data, data + size);
  if (!host::isSceneFileStart(scene)) scene.insert(0, "//Maya ASCII 2018 scene\n");
  openAndSave("scene.ma", scene);
  return 0;
}
