#include <filesystem>
#include <string>
#include <vector>

#include "host/Host.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "tests/file/BinaryTwin.h"
#include "tests/plugin/HostFixture.h"
#include "tile/TileSearch.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

class BinaryTwins : public HostFixture {
 protected:
  // What the export of every tile of the scene leaves in the textures of the folder.
  std::string exported(const std::string& folder, const std::string& scene) const {
    EXPECT_TRUE(host::openScene(path(folder + "/" + scene)).ok());
    for (const MDagPath& tile : texturedTiles())
      run("select \"" + std::string(tile.fullPathName().asChar()) + "\"; exportTile");
    std::string bytes;
    for (const char* name : {"hill", "path", "pond", "field"})
      bytes += read(folder + "/textures/" + name + ".psd");
    return bytes;
  }
};

// Binary files hold points as floats.
void roundPoints() {
  for (const auto& [serial, node] : host::Scene::current().nodes()) {
    if (node->mesh == nullptr) continue;
    std::vector<double> xyz;
    for (const host::Vec3& point : node->mesh->storedPoints())
      for (const double number : {point.x, point.y, point.z})
        xyz.push_back(double{static_cast<float>(number)});
    node->mesh->setPoints(0, xyz.data(), xyz.size() / 3);
  }
}

TEST_F(BinaryTwins, ExportTheSameBytesAsTheirTextForms) {
  const fs::path meadow = fs::path(MORVANE_SOURCE_DIR) / "examples/meadow";
  for (const char* folder : {"text", "wide", "narrow"})
    fs::copy(meadow, path(folder), fs::copy_options::recursive);
  ASSERT_TRUE(host::openScene(path("text/meadow.ma")).ok());
  roundPoints();
  ASSERT_TRUE(host::saveScene(path("text/rounded.ma")).ok());
  for (const bool isWide : {true, false})
    write(isWide ? "wide/meadow.mb" : "narrow/meadow.mb", host::twin::sceneFile({isWide}));
  const std::string expected = exported("text", "rounded.ma");
  ASSERT_GT(expected.size(), 100000u);
  EXPECT_TRUE(exported("wide", "meadow.mb") == expected);
  EXPECT_TRUE(exported("narrow", "meadow.mb") == expected);
}

}  // namespace
}  // namespace morvane
