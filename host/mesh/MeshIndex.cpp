#include "host/mesh/MeshIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/mesh/MeshClosest.h"
#include "host/mesh/MeshTransform.h"

namespace host {

namespace {

constexpr double kTie = 1.0e-12;
// Trees compare squared distances in single precision. This margin covers their rounding, and the
// digits that a query point far outside loses. Next to a box, the rounding of the box itself covers
// the query point.
constexpr double kRadiusSlack = 1.0e-6;

float roundedDown(double value) {
  return std::nextafter(static_cast<float>(value), -std::numeric_limits<float>::infinity());
}
float roundedUp(double value) {
  return std::nextafter(static_cast<float>(value), std::numeric_limits<float>::infinity());
}

}  // namespace

// Coordinates inside are relative to the surface's centre, in units of half its largest extent.
struct SurfaceIndex::Tree {
  Tree(const MeshData& mesh, const MMatrix& matrix, MakeTree makeTree)
      : triangles(mesh.triangles()), vertices(mesh.cornerVertices()), points(mesh.points()) {
    for (Vec3& point : points) point = transformed(point, matrix);
    selectFinite();
    measure();
    if (!usable.empty()) boxes = makeTree(triangleBoxes());
  }

  const Vec3& corner(int triangle, int i) const {
    return points[vertices[triangles.list[triangle].corners[i]]];
  }
  Vec3 toUnit(const Vec3& point) const { return (point - centre) * scale; }
  int triangleOf(unsigned primitive) const { return usable[primitive]; }

  void selectFinite() {
    for (int i = 0; i < static_cast<int>(triangles.list.size()); ++i)
      if (isFinite(corner(i, 0)) && isFinite(corner(i, 1)) && isFinite(corner(i, 2)))
        usable.push_back(i);
  }

  void measure() {
    if (usable.empty()) return;
    Vec3 low = corner(usable.front(), 0);
    Vec3 high = low;
    for (const int triangle : usable) {
      for (int i = 0; i < 3; ++i) {
        const Vec3& p = corner(triangle, i);
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
      }
    }
    centre = low * 0.5 + high * 0.5;
    const Vec3 half = high * 0.5 - low * 0.5;
    const double size = std::max({half.x, half.y, half.z});
    scale = size > 1.0e-300 ? 1.0 / size : 1.0;
  }

  std::vector<NearBox> triangleBoxes() const {
    std::vector<NearBox> result(usable.size());
    for (std::size_t i = 0; i < usable.size(); ++i) {
      const Vec3 a = toUnit(corner(usable[i], 0));
      const Vec3 b = toUnit(corner(usable[i], 1));
      const Vec3 c = toUnit(corner(usable[i], 2));
      result[i] = {{roundedDown(std::min({a.x, b.x, c.x})), roundedDown(std::min({a.y, b.y, c.y})),
                    roundedDown(std::min({a.z, b.z, c.z}))},
                   {roundedUp(std::max({a.x, b.x, c.x})), roundedUp(std::max({a.y, b.y, c.y})),
                    roundedUp(std::max({a.z, b.z, c.z}))}};
    }
    return result;
  }

  const MeshTriangles& triangles;
  const std::vector<int>& vertices;
  std::vector<Vec3> points;
  std::vector<int> usable;  // the triangles in the tree
  Vec3 centre;
  double scale = 1.0;
  std::unique_ptr<NearTree> boxes;
};

namespace {

// `Tree` is private to SurfaceIndex, so its type is a template parameter.
template <typename Tree>
class NearestTriangle : public NearSearch {
 public:
  NearestTriangle(const Tree& tree, const Vec3& from) : tree_(tree), from_(from) {}

  int triangle() const { return triangle_; }

  float visit(unsigned box) override {
    const int triangle = tree_.triangleOf(box);
    const double distance = closestOnTriangle(from_, tree_.toUnit(tree_.corner(triangle, 0)),
                                              tree_.toUnit(tree_.corner(triangle, 1)),
                                              tree_.toUnit(tree_.corner(triangle, 2)))
                                .distance;
    if (triangle_ == -1 || isBetter(triangle, distance)) {
      triangle_ = triangle;
      distance_ = distance;
    }
    return roundedUp(distance_ * (1.0 + kRadiusSlack) + kTie);
  }

 private:
  bool isBetter(int triangle, double distance) const {
    const double tolerance = kTie * (1.0 + distance_);
    return distance <= distance_ + (triangle < triangle_ ? tolerance : -tolerance);
  }

  const Tree& tree_;
  Vec3 from_;  // in the tree's units
  int triangle_ = -1;
  double distance_ = HUGE_VAL;
};

}  // namespace

SurfaceIndex::SurfaceIndex(const MeshData& mesh, const MMatrix& matrix, MakeTree makeTree)
    : tree_(std::make_unique<Tree>(mesh, matrix, makeTree)) {}

SurfaceIndex::~SurfaceIndex() = default;

std::optional<SurfacePoint> SurfaceIndex::closest(const Vec3& from) const {
  if (!tree_->boxes || !isFinite(from)) return std::nullopt;
  const double farthest = std::numeric_limits<float>::max();
  const auto toFloat = [&](double x) {
    return static_cast<float>(std::clamp(x, -farthest, farthest));
  };
  const Vec3 origin = tree_->toUnit(from);
  NearestTriangle<Tree> nearest(*tree_, origin);
  tree_->boxes->search({toFloat(origin.x), toFloat(origin.y), toFloat(origin.z)}, nearest);
  if (nearest.triangle() == -1) return std::nullopt;

  const TrianglePoint found =
      closestOnTriangle(from, tree_->corner(nearest.triangle(), 0),
                        tree_->corner(nearest.triangle(), 1), tree_->corner(nearest.triangle(), 2));
  const std::vector<int>& firsts = tree_->triangles.firstOfFace;
  const auto after = std::upper_bound(firsts.begin(), firsts.end(), nearest.triangle());
  return SurfacePoint{static_cast<int>(after - firsts.begin()) - 1, nearest.triangle(), found.point,
                      found.distance};
}

}  // namespace host
