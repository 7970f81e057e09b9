#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>

#include "host/math/TransformParts.h"
#include "host/mesh/history/FaceRebuild.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {
namespace {

// A rectangle in the mesh's space, of which the picture covers the whole.
struct Projection {
  MMatrix intoPlane;  // to where the rectangle's middle is the origin, and x and y are along it
  double width = 0.0;
  double height = 0.0;

  MeshUv uvOf(const Vec3& point) const {
    const Vec3 p = pointThrough(point, intoPlane);
    return {static_cast<float>(p.x / width + 0.5), static_cast<float>(p.y / height + 0.5)};
  }
};

bool isDefault(const std::vector<double>& numbers, const std::vector<double>& expected) {
  return numbers.empty() || numbers == expected;
}

// Only what the documentation of the command says unmistakably: no picture that is moved, scaled or
// turned within the rectangle, and no perspective.
bool isPlain(const HistoryParameters& node) {
  return isDefault(node.numbers({"is", "imageScale"}), {1.0, 1.0}) &&
         isDefault(node.numbers({"ic", "imageCenter"}), {0.5, 0.5}) &&
         node.number({"ra", "rotationAngle"}, 0.0) == 0.0 &&
         node.number({"per", "perspective"}, 0.0) == 0.0;
}

Vec3 vectorOf(const std::vector<double>& numbers) {
  return numbers.size() == 3 ? Vec3{numbers[0], numbers[1], numbers[2]} : Vec3();
}

bool isFinite(const Projection& projection) {
  const double* const numbers = &projection.intoPlane.matrix[0][0];
  return std::all_of(numbers, numbers + 16, [](double n) { return std::isfinite(n); }) &&
         std::isfinite(1.0 / projection.width) && std::isfinite(1.0 / projection.height);
}

bool readProjection(const HistoryParameters& node, Projection& projection) {
  const std::vector<double> size = node.numbers({"ps", "projectionScale"});
  if (size.size() != 2 || !isPlain(node)) return false;
  projection.width = size[0];
  projection.height = size[1];
  MMatrix world;
  const std::vector<double> matrix = node.numbers({"ix", "inputMatrix"});
  const bool inWorld = node.number({"ws", "worldSpace"}, 0.0) != 0.0;
  if (inWorld && !matrix.empty() && !readMatrix(matrix, world).empty()) return false;
  const Vec3 centre = vectorOf(node.numbers({"pc", "projectionCenter"}));
  const Vec3 angles = vectorOf(node.numbers({"ro", "rotate"}));
  projection.intoPlane =
      world * translationMatrix(centre * -1.0) * rotationMatrix(angles, 0).transpose();
  return isFinite(projection);
}

}  // namespace

std::string polyPlanarProj(HistoryParameters& node, MeshData& mesh) {
  Projection projection;
  if (!readProjection(node, projection)) return keepOlderUvs(node, mesh);
  const auto chosen =
      node.components({"ics", "inputComponents"}, ElementKind::kFace, mesh.faceCount());
  const std::string name = node.text({"uvs", "uvSetName"});
  MeshUvSet* set = mesh.findUvSet(name.empty() ? nullptr : &name);
  if (set == nullptr && !name.empty()) return keepOlderUvs(node, mesh);
  if (set == nullptr) set = mesh.uvSet(0);
  set->ids.resize(mesh.cornerVertices().size(), -1);
  std::vector<int> uvOf(static_cast<std::size_t>(mesh.pointCount()), -1);
  const auto project = [&](int face) {
    for (int i = mesh.faceStart(face); i < mesh.faceStart(face) + mesh.cornerCount(face); ++i) {
      const auto corner = static_cast<std::size_t>(i);
      const auto vertex = static_cast<std::size_t>(mesh.cornerVertices()[corner]);
      if (uvOf[vertex] < 0) {
        uvOf[vertex] = static_cast<int>(set->uvs.size());
        set->uvs.push_back(projection.uvOf(mesh.points()[vertex]));
      }
      set->ids[corner] = uvOf[vertex];
    }
  };
  for (int face = 0; !chosen && face < mesh.faceCount(); ++face) project(face);
  for (const int face : chosen.value_or(std::vector<int>())) project(face);
  dropUnusedUvs(mesh);
  node.dropUvNumbers();
  return {};
}

}  // namespace host
