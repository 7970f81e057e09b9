#include "tools/scene/TileCandidates.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <utility>

#include "tile/TileSearch.h"
#include "tools/scene/SceneEvaluation.h"

namespace tools {
namespace {

TileCandidate candidateAt(const MDagPath& path) {
  const morvane::TileTextureNode texture = morvane::textureOfTile(path);
  return {path.fullPathName().asChar(), texture.file, texture.name, path};
}

}  // namespace

std::vector<TileCandidate> texturedTiles() {
  std::vector<TileCandidate> candidates;
  for (const MDagPath& path : morvane::topTransforms()) {
    TileCandidate candidate = candidateAt(path);
    if (!candidate.textureNode.empty() || lacksShading(path))
      candidates.push_back(std::move(candidate));
  }
  return candidates;
}

std::vector<TileCandidate> selectedCandidates() {
  std::vector<TileCandidate> candidates;
  MSelectionList selection;
  MGlobal::getActiveSelectionList(selection);
  for (unsigned int i = 0; i < selection.length(); ++i) {
    MDagPath path;
    MObject node;
    if (selection.getDagPath(i, path) == MStatus::kSuccess)
      candidates.push_back(candidateAt(path));
    else if (selection.getDependNode(i, node) == MStatus::kSuccess)
      candidates.push_back({MFnDependencyNode(node).name().asChar(), "", "", MDagPath()});
  }
  return candidates;
}

}  // namespace tools
