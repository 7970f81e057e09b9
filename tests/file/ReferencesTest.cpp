#include <cstdint>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "tests/file/BinaryTwin.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

// How much this process has read so far; 0 where the system does not tell.
std::int64_t bytesRead() {
  std::ifstream io("/proc/self/io");
  std::string name;
  std::int64_t value = 0;
  return io >> name >> value && name == "rchar:" ? value : 0;
}

class References : public SceneFiles {
 protected:
  // Two triangles at the height 5 with a material, and a padding of `bytes`.
  static std::string prop(std::size_t bytes) {
    return "//Maya ASCII 2018 scene\ncurrentUnit -l meter;\nfileInfo \"padding\" \"" +
           std::string(bytes, 'x') +
           "\";\ncreateNode transform -n \"prop\";\nsetAttr \".ty\" 0.02;\n"
           "createNode mesh -n \"propShape\" -p \"prop\";\n"
           "setAttr \".vt[0:3]\" 0 0.05 0 1 0.05 0 1 0.05 1 0 0.05 1;\n"
           "setAttr \".pt[2].px\" 1;\nsetAttr -k off \".v\";\n"
           "setAttr \".ed[0:4]\" 0 1 0 1 2 0 2 3 0 3 0 0 0 2 0;\n"
           "setAttr \".fc[0:1]\" -type \"polyFaces\" f 3 0 1 -5 f 3 4 2 3;\n"
           "createNode lambert -n \"paint\";\n";
  }
  static std::string refersTo(const std::string& file, int times, bool declares) {
    std::string declared;
    std::string loaded;
    for (int i = 0; i < times; ++i) {
      const std::string name = "p" + std::to_string(i);
      const std::string rest = " -ns \"" + name + "\" -rfn \"" + name + "RN\" \"" + file + "\";\n";
      if (declares) declared += "file -rdi 1" + rest;
      loaded += "file -r" + rest;
    }
    return declared + loaded;
  }
};

// Twenty references to a file take what one takes, and each has a mesh of its own.
TEST_F(References, AFileIsReadOnceHoweverOftenItIsReferredTo) {
  constexpr int kTimes = 20;
  constexpr std::size_t kSize = 300000;
  writeText("prop.ma", prop(kSize));
  ASSERT_EQ(openPath(pathOf("prop.ma")), "");
  writeText("prop.mb", twin::sceneFile({}) + std::string(kSize, '\0'));
  writeText("middle.ma",
            "//Maya ASCII 2018 scene\nfile -r -ns \"in\" -rfn \"inRN\" \"prop.ma\";\n");
  const struct {
    const char* file;
    const char* inner;
    bool declares;
  } kCases[] = {{"prop.ma", "", false},
                {"prop.ma", "", true},
                {"prop.mb", "", true},
                {"middle.ma", "in:", false}};
  for (const auto& c : kCases) {
    const std::int64_t before = bytesRead();
    const std::string warnings =
        open(refersTo(c.file, kTimes, c.declares) + "setAttr \"p3:" + c.inner +
             "propShape.pt[0]\" -type \"float3\" 0 7 0;\n");
    // The first block of a binary file is read twice: it tells the kind.
    EXPECT_LT(bytesRead() - before, static_cast<std::int64_t>(3 * kSize)) << c.file;
    EXPECT_EQ(run("size(`ls -type mesh`)"), std::to_string(kTimes));
    EXPECT_EQ(HostState::current().problems.damages, 0u) << warnings;
    for (int i = 0; i < kTimes; ++i) {
      const std::string name = "p" + std::to_string(i) + ":" + c.inner;
      ASSERT_NE(node(name + "propShape"), nullptr) << c.file << name;
      const MeshData& mesh = *node(name + "propShape")->mesh;
      EXPECT_EQ(mesh.faceCount(), 2);
      EXPECT_EQ(mesh.points()[0].y, i == 3 ? 5.0 + 7.0 : 5.0) << name;
      EXPECT_EQ(mesh.points()[2].x, 200.0);
      EXPECT_EQ(run("getAttr \"" + name + "prop.ty\""), "2");
      EXPECT_EQ(run("nodeType \"" + name + "paint\""), "lambert");
    }
  }
}

TEST_F(References, DamageOfAFileIsToldOnce) {
  writeText("prop.ma", prop(0) + "createNode mesh -n \"bad\";\nsetAttr \".ed[0:4]\" 0 1;\n");
  const std::string warnings = open(refersTo("prop.ma", 3, true));
  EXPECT_EQ(HostState::current().problems.damages, 1u) << warnings;
  EXPECT_EQ(run("size(`ls -type mesh`)"), "6");
}

}  // namespace
}  // namespace host
