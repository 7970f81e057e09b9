#ifndef MORVANE_TOOLS_SCENE_TILECANDIDATES_H_
#define MORVANE_TOOLS_SCENE_TILECANDIDATES_H_

#include <maya/MDagPath.h>

#include <string>
#include <vector>

namespace tools {

// A node of the open scene that is, or might be, exported.
struct TileCandidate {
  std::string path;     // the mere name, without a '|' before it, for what is not in the DAG
  std::string texture;  // the file that its colour comes from, as the scene names it; or empty
  std::string textureNode{};  // the file texture that names it; empty: there is none
  MDagPath dagPath{};         // invalid for what is not in the DAG
};

// What an export without names takes, in the order of the scene: also what may be a tile, but lacks
// the shading that would tell.
std::vector<TileCandidate> texturedTiles();

// What is selected, in order.
std::vector<TileCandidate> selectedCandidates();

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_TILECANDIDATES_H_
