#include "host/mesh/history/HistoryNodes.h"

namespace host {

std::string keepOlderUvs(HistoryParameters& node, MeshData&) {
  node.noteOlderUvs();
  return {};
}

std::string cutUvs(HistoryParameters& node, MeshData&) {
  node.dropUvNumbers();
  return {};
}

std::string polyTweakUv(HistoryParameters& node, MeshData& mesh) {
  if (node.hasOlderUvs() || !node.hasUvNumbers()) return keepOlderUvs(node, mesh);
  const std::string name = node.text({"uvs", "uvSetName"});
  MeshUvSet* set = mesh.findUvSet(name.empty() ? nullptr : &name);
  if (set == nullptr) return {};
  node.forEach({"uvtk", "uvTweak"}, [&](const ParameterPath& path, const std::vector<double>& uv) {
    const std::size_t first =
        path[0].first < 0 ? set->uvs.size() : static_cast<std::size_t>(path[0].first);
    for (std::size_t i = 0; 2 * i + 1 < uv.size() && first + i < set->uvs.size(); ++i) {
      set->uvs[first + i].u += static_cast<float>(uv[2 * i]);
      set->uvs[first + i].v += static_cast<float>(uv[2 * i + 1]);
    }
  });
  return {};
}

}  // namespace host
