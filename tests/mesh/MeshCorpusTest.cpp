// What real scenes hold, made by the real host, against what is computed here.

#include <cmath>

#include "host/Host.h"
#include "host/scene/Scene.h"
#include "tests/mesh/MeshFixtures.h"
#include "tests/util/Corpus.h"

namespace host {
namespace {

class MeshCorpus : public testing::Test {
 protected:
  void SetUp() override {
    if (morvane::corpusScenes().empty()) GTEST_SKIP() << "no corpus";
  }
  // Opens the corpus's scene of this file name.
  bool open(const std::string& fileName) {
    for (const auto& scene : morvane::corpusScenes())
      if (scene.filename() == fileName) return openScene(scene.string()).ok();
    return false;
  }
  const MeshData& mesh(const char* name) { return *Scene::current().findNode(name)->mesh; }

  // Single precision, and rounding in how the real host turns around the axis.
  void expectSameShape(const MeshData& made, const MeshData& real) {
    ASSERT_EQ(made.pointCount(), real.pointCount());
    for (std::size_t i = 0; i < made.storedPoints().size(); ++i)
      EXPECT_LT(length(made.storedPoints()[i] - real.storedPoints()[i]), 2e-6) << i;
    EXPECT_EQ(made.cornerVertices(), real.cornerVertices());
    EXPECT_EQ(made.uvSets()[0].ids, real.uvSets()[0].ids);
    ASSERT_EQ(made.uvSets()[0].uvs.size(), real.uvSets()[0].uvs.size());
    for (std::size_t i = 0; i < made.uvSets()[0].uvs.size(); ++i) {
      EXPECT_NEAR(made.uvSets()[0].uvs[i].u, real.uvSets()[0].uvs[i].u, 1e-6) << i;
      EXPECT_NEAR(made.uvSets()[0].uvs[i].v, real.uvSets()[0].uvs[i].v, 1e-6) << i;
    }
  }
};

TEST_F(MeshCorpus, SpheresAndPlanesAreTheRealHosts) {
  ASSERT_TRUE(open("CubeNormalBakingTest.ma"));
  expectSameShape(primitive("polySphere"), mesh("pSphereShape1"));
  ASSERT_TRUE(open("batch_render.ma"));
  expectSameShape(primitive("polyPlane", {{"w", 17}, {"h", 17}}), mesh("pPlaneShape1"));
}

// A bumpy plane with one stored normal a vertex, its vertices in no order: read in the wrong order,
// neighbouring normals differ by up to 0.2 from what the surface has. How faces were weighted
// hardly shows on it.
TEST_F(MeshCorpus, ShorterNormalListsGoByFirstAppearance) {
  ASSERT_TRUE(open("normalMap.ma"));
  MeshData& plane = *Scene::current().findNode("planeShape")->mesh;
  const MeshNormals stored = plane.normals();
  const std::vector<float> unlocked(3 * plane.storedNormals().size(), kUnlockedNormal);
  plane.setNormals(0, unlocked.data(), unlocked.size() / 3);
  const MeshNormals& computed = plane.normals();
  ASSERT_EQ(stored.ids, computed.ids);
  for (std::size_t i = 0; i < stored.list.size(); ++i) {
    const MeshNormal& a = stored.list[i];
    const MeshNormal& b = computed.list[i];
    EXPECT_LT(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z), 1.0e-3) << i;
  }
}

}  // namespace
}  // namespace host
