#include "host/mesh/MeshIndex.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/mesh/MeshClosest.h"
#include "host/mesh/MeshTransform.h"

namespace host {

namespace {

constexpr double kTie = 1.0e-12;
// Embree compares squared single-precision distances. This much covers what they round away, and
// what a query point far outside loses; next to a box, the box's own rounding covers the query
// point's.
constexpr double kRadiusSlack = 1.0e-6;

struct ReleaseDevice {
  void operator()(RTCDevice device) const { rtcReleaseDevice(device); }
};
struct ReleaseScene {
  void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

RTCDevice device() {
  static const std::unique_ptr<RTCDeviceTy, ReleaseDevice> shared(rtcNewDevice(nullptr));
  return shared.get();
}

float roundedDown(double value) {
  return std::nextafter(static_cast<float>(value), -std::numeric_limits<float>::infinity());
}
float roundedUp(double value) {
  return std::nextafter(static_cast<float>(value), std::numeric_limits<float>::infinity());
}

}  // namespace

// Coordinates inside are relative to the surface's centre, in units of half its largest extent.
struct SurfaceIndex::Tree {
  Tree(const MeshData& mesh, const MMatrix& matrix)
      : triangles(mesh.triangles()), vertices(mesh.cornerVertices()), points(mesh.points()) {
    for (Vec3& point : points) point = transformed(point, matrix);
    selectFinite();
    measure();
    build();
  }

  const Vec3& corner(int triangle, int i) const {
    return points[vertices[triangles.list[triangle].corners[i]]];
  }
  Vec3 toUnit(const Vec3& point) const { return (point - centre) * scale; }
  int triangleOf(unsigned primitive) const { return usable[primitive]; }

  void selectFinite() {
    for (int i = 0; i < static_cast<int>(triangles.list.size()); ++i) {
      if (isFinite(corner(i, 0)) && isFinite(corner(i, 1)) && isFinite(corner(i, 2))) {
        usable.push_back(i);
      }
    }
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

  static void bounds(const RTCBoundsFunctionArguments* arguments) {
    const Tree& tree = *static_cast<const Tree*>(arguments->geometryUserPtr);
    const int triangle = tree.triangleOf(arguments->primID);
    const Vec3 a = tree.toUnit(tree.corner(triangle, 0));
    const Vec3 b = tree.toUnit(tree.corner(triangle, 1));
    const Vec3 c = tree.toUnit(tree.corner(triangle, 2));
    RTCBounds& box = *arguments->bounds_o;
    box.lower_x = roundedDown(std::min({a.x, b.x, c.x}));
    box.lower_y = roundedDown(std::min({a.y, b.y, c.y}));
    box.lower_z = roundedDown(std::min({a.z, b.z, c.z}));
    box.upper_x = roundedUp(std::max({a.x, b.x, c.x}));
    box.upper_y = roundedUp(std::max({a.y, b.y, c.y}));
    box.upper_z = roundedUp(std::max({a.z, b.z, c.z}));
  }

  void build() {
    if (usable.empty() || device() == nullptr) return;
    scene.reset(rtcNewScene(device()));
    RTCGeometry geometry = rtcNewGeometry(device(), RTC_GEOMETRY_TYPE_USER);
    rtcSetGeometryUserPrimitiveCount(geometry, static_cast<unsigned>(usable.size()));
    rtcSetGeometryUserData(geometry, this);
    rtcSetGeometryBoundsFunction(geometry, bounds, nullptr);
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene.get(), geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(scene.get());
  }

  const MeshTriangles& triangles;
  const std::vector<int>& vertices;
  std::vector<Vec3> points;
  std::vector<int> usable;  // the triangles in the tree
  Vec3 centre;
  double scale = 1.0;
  std::unique_ptr<RTCSceneTy, ReleaseScene> scene;
};

namespace {

// One query under way. `Tree` is private to SurfaceIndex, hence the parameter.
template <typename Tree>
struct Search {
  const Tree& tree;
  Vec3 from;  // in the tree's units
  int triangle = -1;
  double distance = HUGE_VAL;

  // Gives Embree the part of space in which a point may still be taken.
  void limit(RTCPointQuery& query) const {
    const double reach = distance * (1.0 + kRadiusSlack) + kTie;
    query.radius = roundedUp(reach);
  }

  static bool visit(RTCPointQueryFunctionArguments* arguments) {
    Search& search = *static_cast<Search*>(arguments->userPtr);
    const Tree& tree = search.tree;
    const int triangle = tree.triangleOf(arguments->primID);
    const double distance = closestOnTriangle(search.from, tree.toUnit(tree.corner(triangle, 0)),
                                              tree.toUnit(tree.corner(triangle, 1)),
                                              tree.toUnit(tree.corner(triangle, 2)))
                                .distance;
    if (search.triangle != -1) {
      const double tolerance = kTie * (1.0 + search.distance);
      const bool earlier = triangle < search.triangle;
      if (distance > search.distance + (earlier ? tolerance : -tolerance)) return false;
    }
    search.triangle = triangle;
    search.distance = distance;
    search.limit(*arguments->query);
    return true;
  }
};

}  // namespace

SurfaceIndex::SurfaceIndex(const MeshData& mesh, const MMatrix& matrix)
    : tree_(std::make_unique<Tree>(mesh, matrix)) {}

SurfaceIndex::~SurfaceIndex() = default;

std::optional<SurfacePoint> SurfaceIndex::closest(const Vec3& from) const {
  if (!tree_->scene || !isFinite(from)) return std::nullopt;
  const double farthest = std::numeric_limits<float>::max();
  const auto toFloat = [&](double x) {
    return static_cast<float>(std::clamp(x, -farthest, farthest));
  };
  Search<Tree> search{*tree_, tree_->toUnit(from)};
  RTCPointQuery query{};
  query.x = toFloat(search.from.x);
  query.y = toFloat(search.from.y);
  query.z = toFloat(search.from.z);
  query.radius = std::numeric_limits<float>::infinity();
  RTCPointQueryContext context;
  rtcInitPointQueryContext(&context);
  rtcPointQuery(tree_->scene.get(), &query, &context, Search<Tree>::visit, &search);
  if (search.triangle == -1) return std::nullopt;

  const TrianglePoint found =
      closestOnTriangle(from, tree_->corner(search.triangle, 0), tree_->corner(search.triangle, 1),
                        tree_->corner(search.triangle, 2));
  const std::vector<int>& firsts = tree_->triangles.firstOfFace;
  const auto after = std::upper_bound(firsts.begin(), firsts.end(), search.triangle);
  return SurfacePoint{static_cast<int>(after - firsts.begin()) - 1, search.triangle, found.point,
                      found.distance};
}

}  // namespace host
