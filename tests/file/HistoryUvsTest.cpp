#include <algorithm>

#include "tests/file/HistoryScenes.h"

namespace host {
namespace {

void growBy(MeshBox& box, const MeshUv& uv) {
  const Vec3 p = {uv.u, uv.v, 0};
  box.min = box.empty ? p : Vec3{std::min(box.min.x, p.x), std::min(box.min.y, p.y), 0};
  box.max = box.empty ? p : Vec3{std::max(box.max.x, p.x), std::max(box.max.y, p.y), 0};
  box.empty = false;
}
void expectWholePicture(const MeshBox& box) {
  EXPECT_NEAR(box.min.x, 0, 1e-6);
  EXPECT_NEAR(box.min.y, 0, 1e-6);
  EXPECT_NEAR(box.max.x, 1, 1e-6);
  EXPECT_NEAR(box.max.y, 1, 1e-6);
}

TEST_F(History, UvsAreMovedUnlessTheyAreOlder) {
  const std::string kTweak =
      modifier("polyTweakUV", "\tsetAttr -s 2 \".uvtk[2:3]\" -type \"float2\" 0.5 0 0 -0.25;\n");
  EXPECT_EQ(make(kTweak), "");
  ASSERT_EQ(mesh().uvSets().size(), 1u);
  EXPECT_EQ(mesh().uvSets()[0].uvs[2].u, 0.5f);
  EXPECT_EQ(mesh().uvSets()[0].uvs[3].v, 0.75f);
  const std::string warnings =
      make(kTweak + "createNode polyMapSew -n \"sew\";\n" + connected("plane.out", "sew.ip") +
           "connectAttr -f \"sew.out\" \"last.ip\";\n");
  EXPECT_NE(
      warnings.find("mesh 'm': 'sew' (polyMapSew) changes UVs in a way that is not evaluated"),
      std::string::npos)
      << warnings;
  EXPECT_EQ(mesh().uvSets()[0].uvs[3].v, 1.0f);
  EXPECT_EQ(mesh().faceCount(), 1);
}

// From above onto a rectangle of 4 by 2 around (1, 0, 0); v runs against z.
TEST_F(History, UvsAreProjectedFromAPlane) {
  const std::string kFromAbove =
      "\tsetAttr \".pc\" -type \"double3\" 1 0 0;\n\tsetAttr \".ro\" -type \"double3\" -90 0 0;\n"
      "\tsetAttr \".ps\" -type \"double2\" 4 2;\n";
  const std::string kTwice =
      "\tsetAttr \".ix\" -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1;\n";
  const struct {
    std::string settings;
    std::vector<float> uvs;  // of the points (-1, 0, 1) and (1, 0, -1)
    bool isOlder;
  } kCases[] = {
      {kFromAbove, {0, 0, 0.5, 1}, false},
      {kFromAbove + kTwice, {0, 0, 0.5, 1}, false},
      {kFromAbove + kTwice + "\tsetAttr \".ws\" yes;\n", {-0.25, -0.5, 0.75, 1.5}, false},
      {kFromAbove + "\tsetAttr \".ics\" -type \"componentList\" 0;\n", {0, 0, 1, 1}, false},
      {kFromAbove + "\tsetAttr \".ra\" 30;\n", {0, 0, 1, 1}, true},
      {"", {0, 0, 1, 1}, true}};
  for (const auto& c : kCases) {
    const std::string warnings = make(modifier("polyPlanarProj", c.settings));
    EXPECT_EQ(warnings.find("is not evaluated") != std::string::npos, c.isOlder) << warnings;
    const MeshUvSet& set = mesh().uvSets().at(0);
    for (int corner = 0; corner < 4; ++corner) {
      const int vertex = mesh().cornerVertices().at(static_cast<std::size_t>(corner));
      if (vertex != 0 && vertex != 3) continue;
      const MeshUv& uv = set.uvs.at(static_cast<std::size_t>(MeshData::uvAt(set, corner)));
      EXPECT_NEAR(uv.u, c.uvs[vertex == 0 ? 0 : 2], 1e-6) << c.settings;
      EXPECT_NEAR(uv.v, c.uvs[vertex == 0 ? 1 : 3], 1e-6) << c.settings;
    }
  }
  EXPECT_EQ(make(modifier("polyMapCut", "")), "");
  EXPECT_NE(make("createNode polyMapCut -n \"cut\";\n" +
                 modifier("polyTweakUV", "\tsetAttr \".uvtk[0]\" -type \"float2\" 5 5;\n") +
                 connected("plane.out", "cut.ip") + "connectAttr -f \"cut.out\" \"last.ip\";\n")
                .find("'last' (polyTweakUV) changes UVs in a way that is not evaluated"),
            std::string::npos);
}

// Five meshes in one rectangle, then each in one of its own, which the artist's Maya fitted to
// them.
TEST_F(History, AnArtistsProjectionsFillTheirPicture) {
  const auto scenes = corpusScenes();
  const auto scene = std::find_if(scenes.begin(), scenes.end(), [](const fs::path& path) {
    return path.filename() == "MinionRig.ma";
  });
  if (scene == scenes.end()) GTEST_SKIP();
  openPath(scene->string());
  run("createNode mesh -n probe");
  MeshBox together;
  for (int i = 1; i <= 10; ++i) {
    run("connectAttr -f polyPlanarProj" + std::to_string(i) + ".out probe.i");
    MeshBox box;
    const MeshUvSet& set = *node("probe")->mesh->findUvSet();
    for (std::size_t corner = 0; corner < set.ids.size(); ++corner) {
      const auto id = static_cast<std::size_t>(MeshData::uvAt(set, static_cast<int>(corner)));
      growBy(box, set.uvs.at(id));
      if (i <= 5) growBy(together, set.uvs.at(id));
    }
    if (i > 5) expectWholePicture(box);
  }
  expectWholePicture(together);
}

TEST_F(History, ColoursAreSetByVertexAndByCorner) {
  make(modifier("polyColorPerVertex",
                "\tsetAttr \".vclr[0].vrgb\" -type \"float3\" 1 0 0;\n"
                "\tsetAttr \".vclr[1].vrgb\" -type \"float3\" 0 1 0;\n"
                "\tsetAttr \".vclr[1].vfcl[0].frgb\" -type \"float3\" 0 0 1;\n"
                "\tsetAttr \".vclr[1].vfcl[0].vfal\" 0.5;\n"));
  const MeshColourSet* set = mesh().findColourSet();
  ASSERT_NE(set, nullptr);
  const auto colourOf = [&](int corner) {
    return set->colours.at(static_cast<std::size_t>(MeshData::colourAt(*set, corner)));
  };
  EXPECT_EQ(colourOf(0).r, 1.0f);
  EXPECT_EQ(colourOf(1).b, 1.0f);
  EXPECT_EQ(colourOf(1).g, 0.0f);
  EXPECT_EQ(colourOf(1).a, 0.5f);
  EXPECT_EQ(MeshData::colourAt(*set, 2), -1);
}

}  // namespace
}  // namespace host
