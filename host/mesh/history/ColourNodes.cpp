#include <map>
#include <utility>

#include "host/mesh/history/HistoryNodes.h"

namespace host {
namespace {

struct Paint {
  bool hasColour = false;
  bool hasOpacity = false;
  MeshColour colour;

  void setColour(const std::vector<double>& rgb) {
    hasColour = rgb.size() >= 3;
    if (hasColour) {
      colour.r = static_cast<float>(rgb[0]);
      colour.g = static_cast<float>(rgb[1]);
      colour.b = static_cast<float>(rgb[2]);
    }
  }
  void setOpacity(const std::vector<double>& alpha) {
    hasOpacity = !alpha.empty();
    if (hasOpacity) colour.a = static_cast<float>(alpha.front());
  }
};

// Colours by vertex, and by vertex and face, which come first.
class Paints {
 public:
  explicit Paints(const HistoryParameters& node) {
    node.forEach({"vclr", "vertexColor"},
                 [this](const ParameterPath& path, const std::vector<double>& numbers) {
                   read(path, numbers);
                 });
  }

  const Paint* at(int vertex, int face) const {
    const auto corner = corners_.find({vertex, face});
    const auto whole = vertices_.find(vertex);
    if (corner != corners_.end() && corner->second.hasColour) return &corner->second;
    return whole != vertices_.end() && whole->second.hasColour ? &whole->second : nullptr;
  }

 private:
  void read(const ParameterPath& path, const std::vector<double>& numbers) {
    const int vertex = path.size() < 2 ? -1 : path[0].first;
    if (vertex < 0) return;
    const std::string_view name = path.back().name;
    if (path.size() == 2 && (name == "vrgb" || name == "vertexColorRGB"))
      vertices_[vertex].setColour(numbers);
    else if (path.size() == 2 && (name == "vxal" || name == "vertexAlpha"))
      vertices_[vertex].setOpacity(numbers);
    else if (path.size() == 3 && (name == "frgb" || name == "vertexFaceColorRGB"))
      corners_[{vertex, path[1].first}].setColour(numbers);
    else if (path.size() == 3 && (name == "vfal" || name == "vertexFaceAlpha"))
      corners_[{vertex, path[1].first}].setOpacity(numbers);
  }

  std::map<int, Paint> vertices_;
  std::map<std::pair<int, int>, Paint> corners_;
};

MeshColourSet* paintedSet(const std::string& name, MeshData& mesh) {
  if (const MeshColourSet* known = mesh.findColourSet(name.empty() ? nullptr : &name))
    return mesh.colourSet(known->index);
  const int index = mesh.colourSets().empty() ? 0 : mesh.colourSets().back().index + 1;
  MeshColourSet* set = mesh.colourSet(index);
  if (set != nullptr) {
    set->name = name.empty() ? "colorSet1" : name;
    if (mesh.currentColourSetName().empty()) mesh.setCurrentColourSetName(set->name);
  }
  return set;
}

}  // namespace

std::string polyColorPerVertex(HistoryParameters& node, MeshData& mesh) {
  if (node.number({"rel", "relative"}, 0.0) != 0.0) {
    node.note("adds to colours, which is not evaluated; its colours are those from before");
    return {};
  }
  const Paints paints(node);
  MeshColourSet* set = paintedSet(node.text({"cn", "colorSetName"}), mesh);
  if (set == nullptr) return "the mesh has too many colour sets";
  const std::vector<int>& vertices = mesh.cornerVertices();
  set->ids.resize(vertices.size(), -1);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    for (int corner = mesh.faceStart(face); corner < mesh.faceStart(face) + mesh.cornerCount(face);
         ++corner) {
      const auto index = static_cast<std::size_t>(corner);
      if (const Paint* paint = paints.at(vertices[index], face)) {
        set->ids[index] = static_cast<int>(set->colours.size());
        set->colours.push_back(paint->colour);
      }
    }
  }
  return {};
}

}  // namespace host
