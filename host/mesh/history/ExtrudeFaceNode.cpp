#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "host/mesh/DisjointSets.h"
#include "host/mesh/MeshPrimitives.h"
#include "host/mesh/MeshTransform.h"
#include "host/mesh/history/FaceRebuild.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {
namespace {

constexpr double kFlat = 1e-6;     // how far the normals of a group may differ
constexpr double kNothing = 1e-9;  // how far a setting may be from its default
constexpr int kMostDivisions = 1000;

struct Setting {
  ParameterName name;
  double usual;
};

// What documentation tells in pictures alone.
constexpr Setting kUnknown[] = {
    {{"lr", "localRotate"}, 0.0}, {{"ls", "localScale"}, 1.0}, {{"ro", "rotate"}, 0.0},
    {{"r", "rotate"}, 0.0},       {{"off", "offset"}, 0.0},    {{"ran", "random"}, 0.0},
    {{"twt", "twist"}, 0.0},      {{"tp", "taper"}, 1.0},      {{"tpr", "taper"}, 1.0},
    {{"g", "gravity"}, 0.0},      {{"m", "magnet"}, 0.0}};

bool isUsual(double number, double usual) {
  return std::abs(number - usual) <= kNothing;
}

Vec3 triple(const HistoryParameters& node, const ParameterName& name, const Vec3& otherwise) {
  const std::vector<double> numbers = node.numbers(name);
  return numbers.size() == 3 ? Vec3{numbers[0], numbers[1], numbers[2]} : otherwise;
}

std::string unknownSetting(const HistoryParameters& node) {
  for (const Setting& setting : kUnknown)
    for (const double number : node.numbers(setting.name))
      if (!isUsual(number, setting.usual)) return setting.name.longName;
  const Vec3 local = triple(node, {"lt", "localTranslate"}, {});
  return isUsual(local.x, 0.0) && isUsual(local.y, 0.0) ? std::string() : "localTranslate";
}

// The move of points. With worldSpace it happens in the world, to which inputMatrix takes the mesh.
struct Motion {
  MMatrix toWorld;
  MMatrix back;
  Vec3 translate;
  Vec3 scale;
  Vec3 pivot;
  double outward = 0.0;  // along the faces' normal
  int divisions = 1;

  std::string read(const HistoryParameters& node) {
    const std::string unknown = unknownSetting(node);
    if (!unknown.empty()) return "its " + unknown + " is not evaluated";
    const std::vector<double> matrix = node.numbers({"ix", "inputMatrix"});
    std::string problem;
    if (!matrix.empty() && node.number({"ws", "worldSpace"}, 0.0) != 0.0)
      problem = readMatrix(matrix, toWorld);
    back = toWorld;
    if (problem.empty()) problem = invert(back);
    translate = triple(node, {"t", "translate"}, {});
    scale = triple(node, {"s", "scale"}, {1.0, 1.0, 1.0});
    pivot = triple(node, {"pvt", "pivot"}, {});
    outward = triple(node, {"lt", "localTranslate"}, {}).z + node.number({"tk", "thickness"}, 0.0);
    divisions = node.whole({"d", "divisions"}, 1, 1, kMostDivisions);
    const bool isSound = isFinite(translate) && isFinite(scale) && isFinite(pivot);
    if (problem.empty() && !(isSound && std::isfinite(outward))) return "it moves by no number";
    return problem;
  }

  // The point after `share` of the move; `normal` is the group's, in the world.
  Vec3 moved(const Vec3& point, const Vec3& normal, double share) const {
    const Vec3 from = transformed(point, toWorld);
    const Vec3 arm = from - pivot;
    const Vec3 to = pivot + Vec3{arm.x * scale.x, arm.y * scale.y, arm.z * scale.z} + translate +
                    normal * outward;
    return transformed(from + (to - from) * share, back);
  }
};

// A side of a chosen face.
struct Side {
  int from = 0;
  int to = 0;
  int face = 0;
  int fromCorner = 0;
  int toCorner = 0;

  std::pair<int, int> edge() const { return std::minmax(from, to); }
};

std::vector<Side> sidesOf(const MeshData& mesh, const std::vector<int>& chosen) {
  std::vector<Side> sides;
  for (const int face : chosen) {
    const int begin = mesh.faceStart(face);
    const int end = begin + mesh.cornerCount(face);
    for (int corner = begin; corner < end; ++corner) {
      const int next = corner + 1 < end ? corner + 1 : begin;
      sides.push_back({mesh.cornerVertices()[static_cast<std::size_t>(corner)],
                       mesh.cornerVertices()[static_cast<std::size_t>(next)], face, corner, next});
    }
  }
  return sides;
}

// The faces that move as one: each chosen face by the least face of its group.
class FaceGroups {
 public:
  FaceGroups(const MeshData& mesh, std::vector<Side> sides, bool together)
      : groups_(static_cast<std::size_t>(mesh.faceCount())) {
    std::stable_sort(sides.begin(), sides.end(),
                     [](const Side& a, const Side& b) { return a.edge() < b.edge(); });
    for (std::size_t i = 1; together && i < sides.size(); ++i)
      if (sides[i].edge() == sides[i - 1].edge()) groups_.join(sides[i - 1].face, sides[i].face);
    for (std::size_t i = 0, end = 0; i < sides.size(); i = end) {
      for (end = i; end < sides.size() && sides[end].edge() == sides[i].edge();) ++end;
      if (!together || end - i == 1)
        border_.insert(border_.end(), &sides[i], &sides[i] + (end - i));
    }
    std::stable_sort(border_.begin(), border_.end(),
                     [](const Side& a, const Side& b) { return a.fromCorner < b.fromCorner; });
  }

  int of(int face) { return groups_.leastOf(face); }
  // The sides that no other face of their group has.
  const std::vector<Side>& border() const { return border_; }

 private:
  DisjointSets groups_;
  std::vector<Side> border_;
};

Vec3 normalOf(const MeshData& mesh, int face, const MMatrix& toWorld) {
  Vec3 sum;
  const auto [begin, end] = mesh.loops(face).front();
  const auto at = [&](int corner) {
    const int vertex = mesh.cornerVertices()[static_cast<std::size_t>(corner)];
    return transformed(mesh.points()[static_cast<std::size_t>(vertex)], toWorld);
  };
  const Vec3 origin = at(begin);
  for (int corner = begin + 1; corner + 1 < end; ++corner)
    sum = sum + cross(at(corner) - origin, at(corner + 1) - origin);
  return normalized(sum);
}

// The normal of each group, in the world. False when a group is to move along its normal and its
// faces look in different directions.
bool readNormals(const MeshData& mesh, const std::vector<int>& chosen, const Motion& motion,
                 FaceGroups& groups, std::map<int, Vec3>& normals) {
  for (const int face : chosen) {
    const Vec3 own = normalOf(mesh, face, motion.toWorld);
    const auto [known, isNew] = normals.emplace(groups.of(face), own);
    const Vec3 apart = own - known->second;
    if (motion.outward != 0.0 && !isNew && length(apart) > kFlat) return false;
  }
  return true;
}

// The faces after the move: the chosen ones, moved, and walls between their old and new positions.
class Extrusion {
 public:
  Extrusion(const MeshData& mesh, const Motion& motion, FaceGroups& groups,
            const std::map<int, Vec3>& normals)
      : faces(FaceRebuild::withPointsOf(mesh)),
        mesh_(mesh),
        motion_(motion),
        groups_(groups),
        normals_(normals) {
    for (const Side& side : groups.border())
      for (const int vertex : {side.from, side.to}) addRings(groups.of(side.face), vertex);
  }

  void addChosen(int face) {
    const int group = groups_.of(face);
    faces.addFace(mesh_, face);
    const auto begin = faces.corners.end() - mesh_.cornerCount(face);
    for (auto corner = begin; corner != faces.corners.end(); ++corner)
      corner->vertex = onTop(group, corner->vertex);
  }

  void addWalls() {
    for (const Side& side : groups_.border()) {
      const int group = groups_.of(side.face);
      for (int ring = 0; ring < motion_.divisions; ++ring) {
        faces.counts.push_back(4);
        faces.corners.push_back({onRing(group, side.from, ring), side.fromCorner});
        faces.corners.push_back({onRing(group, side.to, ring), side.toCorner});
        faces.corners.push_back({onRing(group, side.to, ring + 1), side.toCorner});
        faces.corners.push_back({onRing(group, side.from, ring + 1), side.fromCorner});
      }
    }
  }

  FaceRebuild faces;

 private:
  using Key = std::pair<int, int>;  // group, vertex

  Vec3 movedPoint(int group, int vertex, double share) const {
    return motion_.moved(mesh_.points()[static_cast<std::size_t>(vertex)], normals_.at(group),
                         share);
  }
  void addRings(int group, int vertex) {
    if (!firstOf_.emplace(Key{group, vertex}, static_cast<int>(faces.points.size())).second) return;
    for (int ring = 1; ring <= motion_.divisions; ++ring)
      faces.points.push_back(movedPoint(group, vertex, 1.0 * ring / motion_.divisions));
  }
  int onRing(int group, int vertex, int ring) const {
    return ring == 0 ? vertex : firstOf_.at(Key{group, vertex}) + ring - 1;
  }
  // The number of the moved point for each point inside a group.
  int onTop(int group, int vertex) {
    if (firstOf_.count(Key{group, vertex}) != 0) return onRing(group, vertex, motion_.divisions);
    faces.points[static_cast<std::size_t>(vertex)] = movedPoint(group, vertex, 1.0);
    return vertex;
  }

  const MeshData& mesh_;
  const Motion& motion_;
  FaceGroups& groups_;
  const std::map<int, Vec3>& normals_;
  std::map<Key, int> firstOf_;  // of the points above one on a border
};

}  // namespace

std::string polyExtrudeFace(HistoryParameters& node, MeshData& mesh) {
  const std::vector<int> chosen =
      node.components({"ics", "inputComponents"}, ElementKind::kFace, mesh.faceCount())
          .value_or(std::vector<int>());
  if (chosen.empty()) return {};
  Motion motion;
  const std::string problem = motion.read(node);
  if (!problem.empty()) return problem;
  const bool together = node.number({"kft", "keepFacesTogether"}, 1.0) != 0.0;
  FaceGroups groups(mesh, sidesOf(mesh, chosen), together);
  std::map<int, Vec3> normals;
  if (!readNormals(mesh, chosen, motion, groups, normals))
    return "it moves faces along their normals that look different ways, which is not evaluated";
  if (groups.border().size() * static_cast<std::size_t>(motion.divisions) > kMostPrimitivePoints)
    return "its divisions ask for too many points";
  const int faceCount = mesh.faceCount();
  const int pointCount = mesh.pointCount();
  Extrusion extrusion(mesh, motion, groups, normals);
  auto next = chosen.begin();
  for (int face = 0; face < faceCount; ++face) {
    const bool isChosen = next != chosen.end() && *next == face;
    isChosen ? extrusion.addChosen(face) : extrusion.faces.addFace(mesh, face);
    next += isChosen ? 1 : 0;
  }
  extrusion.addWalls();
  node.keepNumbersOf(faceCount, pointCount, 0);
  node.noteOlderUvs();
  return rebuild(extrusion.faces, mesh);
}

}  // namespace host
