#include <algorithm>
#include <cstdlib>
#include <string>

#include "bench/BenchHost.h"
#include "bench/Comparison.h"
#include "bench/SceneText.h"
#include "host/Host.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

// Opening a scene of a mesh of a million vertices that a history of two nodes moves, beside the
// same scene without the history.
namespace bench {
namespace {

constexpr GridMesh kMesh = {999, 100};
constexpr int kVerticesInStatement = 500;

// Two joints, of which every vertex has half of each.
std::string weightsText() {
  std::string text;
  for (int first = 0; first < kMesh.vertices(); first += kVerticesInStatement) {
    const int last = std::min(first + kVerticesInStatement, kMesh.vertices()) - 1;
    text += "\tsetAttr \".wl[" + std::to_string(first) + ":" + std::to_string(last) + "].w\"";
    for (int vertex = first; vertex <= last; ++vertex) text += "\n\t\t2 0 0.5 1 0.5";
    text += ";\n";
  }
  return text;
}

std::string historyText() {
  return "createNode joint -n \"j0\";\ncreateNode joint -n \"j1\";\n\tsetAttr \".ty\" 2;\n"
         "createNode transformGeometry -n \"moved\";\n"
         "\tsetAttr \".txf\" -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 1 2 3 1;\n"
         "createNode skinCluster -n \"skin\";\n" +
         weightsText() +
         "createNode transform -n \"made\";\ncreateNode mesh -n \"madeShape\" -p \"made\";\n"
         "connectAttr \"groundShape.w\" \"moved.ig\";\n"
         "connectAttr \"moved.og\" \"skin.ip[0].ig\";\n"
         "connectAttr \"j0.wm\" \"skin.ma[0]\";\nconnectAttr \"j1.wm\" \"skin.ma[1]\";\n"
         "connectAttr \"skin.og[0]\" \"madeShape.i\";\n";
}

void openOrAbort(const std::string& path, const char* shape) {
  if (!host::openScene(path).ok()) std::abort();
  const host::NodePtr node = host::Scene::current().findNode(shape);
  if (node == nullptr || node->mesh->pointCount() != kMesh.vertices()) std::abort();
}

Comparison openWithHistory() {
  const std::string plain = "//Maya ASCII 2018 scene\n" + sceneText(kMesh, "ground", "", 0, 0);
  const std::string plainPath = scratchFolder() + "/plain.ma";
  const std::string madePath = scratchFolder() + "/made.ma";
  writeFile(plainPath, plain);
  writeFile(madePath, plain + historyText());
  Comparison it;
  it.peerName = "the same without the history";
  it.target = atMost(2);
  it.rounds = 5;
  it.ours = [madePath] { openOrAbort(madePath, "madeShape"); };
  it.peer = [plainPath] { openOrAbort(plainPath, "groundShape"); };
  it.prepare = [] { host::newScene(); };
  if (!startHost()) it.problem = "no host";
  return it;
}

const bool declared =
    declare("open a scene of 1 million vertices, moved and skinned", openWithHistory);

}  // namespace
}  // namespace bench
