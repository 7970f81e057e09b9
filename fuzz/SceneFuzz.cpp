// A scene file of any text: it is opened, what cannot be used is warned of, and the scene saves as
// a file that opens as the same scene.
#include <string>

#include "fuzz/FuzzTools.h"
#include "fuzz/HostFuzz.h"
#include "host/Host.h"
#include "host/file/SceneReader.h"

using namespace morvane::fuzz;

namespace {

// Host.h, openScene().
constexpr std::size_t kOpenMultiple = 400;
constexpr std::size_t kOpenConstant = std::size_t{1} << 30;

void saveScene(const std::string& name) {
  require(host::saveScene(scratchPath(name)).ok(), "a scene cannot be saved");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  freshHost();
  std::string scene(data, data + size);
  if (!host::isSceneFileStart(scene)) scene.insert(0, "//Maya ASCII 2018 scene\n");
  const std::string path = writeScratch("scene.ma", scene);
  const MemoryWatch watch;
  require(host::openScene(path).ok(), "a scene file is refused as a whole");
  watch.requireAtMost(kOpenMultiple, scene.size(), kOpenConstant);
  saveScene("first.ma");
  require(host::openScene(scratchPath("first.ma")).ok(), "a scene that was saved cannot be opened");
  saveScene("second.ma");
  require(readScratch("first.ma") == readScratch("second.ma"),
          "a scene that was saved and opened saves as another");
  return 0;
}
