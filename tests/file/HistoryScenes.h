#ifndef MORVANE_TESTS_FILE_HISTORYSCENES_H_
#define MORVANE_TESTS_FILE_HISTORYSCENES_H_

#include <string>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "tests/file/SceneText.h"

namespace host {

// Scenes whose mesh "m" is made by the nodes before it.
class History : public SceneFiles {
 protected:
  // `nodes` ends in a node "last"; `output` is its plug. Gives the warnings.
  std::string make(const std::string& nodes, const std::string& output = "last.out") {
    return open(nodes + "createNode mesh -n \"m\";\nconnectAttr \"" + output + "\" \"m.i\";\n");
  }
  const MeshData& mesh() { return *node("m")->mesh; }

  // A square of side 2 around the origin, at y = 0: points 0 and 1 at +z, 0 and 2 at -x.
  static constexpr char kPlane[] =
      "createNode polyPlane -n \"plane\";\n\tsetAttr \".w\" 2;\n\tsetAttr \".h\" 2;\n"
      "\tsetAttr \".sw\" 1;\n\tsetAttr \".sh\" 1;\n";

  static std::string connected(const std::string& source, const std::string& destination) {
    return "connectAttr \"" + source + "\" \"" + destination + "\";\n";
  }

  static void expectPoint(const MeshData& mesh, int point, const Vec3& expected) {
    const Vec3 p = mesh.points().at(static_cast<std::size_t>(point));
    EXPECT_NEAR(p.x, expected.x, 1e-9) << point;
    EXPECT_NEAR(p.y, expected.y, 1e-9) << point;
    EXPECT_NEAR(p.z, expected.z, 1e-9) << point;
  }

  // "last", a deformer of that type, with the plane as its mesh.
  static std::string deformer(const std::string& type, const std::string& settings) {
    return std::string(kPlane) + "createNode " + type + " -n \"last\";\n" + settings +
           connected("plane.out", "last.ip[0].ig");
  }
  // The same for what changes polygons.
  static std::string modifier(const std::string& type, const std::string& settings) {
    return std::string(kPlane) + "createNode " + type + " -n \"last\";\n" + settings +
           connected("plane.out", "last.ip");
  }

  // An extrusion of faces of a cube, with one more setting.
  static std::string extrude(const std::string& faces, const std::string& setting) {
    return "createNode polyExtrudeFace -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
           "\"f[" +
           faces + "]\";\n\tsetAttr " + setting + ";\n";
  }
  // The same, connected to its cube, and a node "after" it.
  static std::string extruded(const std::string& faces, const std::string& setting,
                              const std::string& after) {
    return "createNode polyCube -n \"cube\";\n" + extrude(faces, setting) +
           connected("cube.out", "last.ip") + after + connected("last.out", "after.ip") +
           connected("last.out", "after.ig") + connected("last.out", "after.ip[0].ig");
  }

  // Two joints at the origin, of which the second is turned by 90 degrees around y.
  static std::string skin(const std::string& settings) {
    return "createNode joint -n \"j0\";\ncreateNode joint -n \"j1\";\n\tsetAttr \".r\" -type "
           "\"double3\" 0 90 0;\n" +
           deformer("skinCluster", settings) + connected("j0.wm", "last.ma[0]") +
           connected("j1.wm", "last.ma[1]");
  }

  // A cube of which points of the top merge, with one more setting.
  static std::string merged(const std::string& vertices, const std::string& setting) {
    return "createNode polyMergeVert -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
           "\"vtx[" +
           vertices + "]\";\n\tsetAttr " + setting + ";\n";
  }

  // A cluster of the plane, with its handle moved by 0 4 0.
  static std::string clustered(const std::string& settings) {
    return "createNode transform -n \"handle\";\n\tsetAttr \".ty\" 4;\n" +
           deformer("cluster", settings) + connected("handle.wm", "last.ma");
  }
};

}  // namespace host

#endif  // MORVANE_TESTS_FILE_HISTORYSCENES_H_
