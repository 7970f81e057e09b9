#include <algorithm>
#include <array>
#include <cmath>

#include "host/mesh/MeshPrimitiveShape.h"

namespace host {

namespace {

// A cube's grid of points; positions count subdivisions from the left, the bottom and the front.
class CubeGrid {
 public:
  CubeGrid(int x, int y, int z) : across(x), up(y), deep(z) {}

  int rows() const { return 2 * (up + deep); }
  // The rows of the ring: up the front, along the top, down the back, along the bottom. Row
  // `rows()` is row 0 again.
  std::array<int, 2> upAndDeepOfRow(int row) const {
    if (row <= up) return {row, 0};
    if (row <= up + deep) return {up, row - up};
    if (row <= 2 * up + deep) return {2 * up + deep - row, deep};
    return {0, rows() - row};
  }
  int pointInRow(int row, int x) const { return row % rows() * (across + 1) + x; }
  // The right side has x = across, the left one x = 0.
  int pointOnSide(int x, int y, int z) const {
    if (z == 0) return pointInRow(y, x);
    if (y == up) return pointInRow(up + z, x);
    if (z == deep) return pointInRow(2 * up + deep - y, x);
    if (y == 0) return pointInRow(rows() - z, x);
    const int inRow = deep - 1;
    const int base = rows() * (across + 1) + (x == 0 ? (up - 1) * inRow : 0);
    return base + (y - 1) * inRow + (x == 0 ? deep - 1 - z : z - 1);
  }

  const int across;
  const int up;
  const int deep;
};

// Where the unfolded cube's UVs go: the ring of front, top, back and bottom as a column, the right
// and the left side on either side of the front.
struct CubeUnfolding {
  CubeUnfolding(double width, double height, double depth, int createUvs) {
    const double across = width + 2.0 * depth;
    const double along = 2.0 * (height + depth);
    const double fit = std::max(across, along);
    scaleU = createUvs == 1 ? 1.0 : 1.0 / (createUvs == 3 ? across : fit);
    scaleV = createUvs == 1 ? 1.0 : 1.0 / (createUvs == 3 ? along : fit);
    if (!std::isfinite(scaleU) || !std::isfinite(scaleV)) scaleU = scaleV = 0.0;
    offsetU = createUvs == 1 ? 0.0 : 0.5 - 0.5 * across * scaleU;
  }
  double scaleU;
  double scaleV;
  double offsetU;
};

void addCubePoints(const CubeGrid& grid, const Vec3& size, PrimitiveShape& shape,
                   std::vector<std::array<int, 3>>& places) {
  const auto add = [&](int x, int y, int z) {
    places.push_back({x, y, z});
    shape.addPoint((static_cast<double>(x) / grid.across - 0.5) * size.x,
                   (static_cast<double>(y) / grid.up - 0.5) * size.y,
                   (0.5 - static_cast<double>(z) / grid.deep) * size.z);
  };
  for (int row = 0; row < grid.rows(); ++row) {
    const auto [y, z] = grid.upAndDeepOfRow(row);
    for (int x = 0; x <= grid.across; ++x) add(x, y, z);
  }
  for (int y = 1; y < grid.up; ++y)
    for (int z = 1; z < grid.deep; ++z) add(grid.across, y, z);
  for (int y = 1; y < grid.up; ++y)
    for (int z = grid.deep - 1; z > 0; --z) add(0, y, z);
}

void addCubeRing(const CubeGrid& grid, const Vec3& size, const CubeUnfolding& unfold,
                 PrimitiveShape& shape) {
  for (int row = 0; row <= grid.rows(); ++row) {
    const int ups = std::min(row, grid.up) + std::clamp(row - grid.up - grid.deep, 0, grid.up);
    const double v = ups * size.y / grid.up + (row - ups) * size.z / grid.deep;
    for (int x = 0; x <= grid.across; ++x) {
      const double u = size.z + x * size.x / grid.across;
      shape.addUv(unfold.offsetU + u * unfold.scaleU, v * unfold.scaleV);
    }
  }
  const int stride = grid.across + 1;
  for (int row = 0; row < grid.rows(); ++row) {
    for (int x = 0; x < grid.across; ++x) {
      const int uv = row * stride + x;
      shape.addFace({{grid.pointInRow(row, x), uv},
                     {grid.pointInRow(row, x + 1), uv + 1},
                     {grid.pointInRow(row + 1, x + 1), uv + stride + 1},
                     {grid.pointInRow(row + 1, x), uv + stride}});
    }
  }
}

// The side at x = across, from front to back, or at x = 0, from back to front; either way from
// below.
void addCubeSide(const CubeGrid& grid, const Vec3& size, const CubeUnfolding& unfold, bool right,
                 PrimitiveShape& shape) {
  const int x = right ? grid.across : 0;
  const int sharedStep = right ? 0 : grid.deep;  // where the side meets the front
  const int firstUv = static_cast<int>(shape.uvs.size());
  const auto uvAt = [&](int y, int step) {
    if (step == sharedStep) return y * (grid.across + 1) + x;
    return firstUv + y * grid.deep + (right ? step - 1 : step);
  };
  for (int y = 0; y <= grid.up; ++y) {
    for (int step = 0; step <= grid.deep; ++step) {
      if (step == sharedStep) continue;
      const double u = step * size.z / grid.deep + (right ? size.z + size.x : 0.0);
      shape.addUv(unfold.offsetU + u * unfold.scaleU, y * size.y / grid.up * unfold.scaleV);
    }
  }
  const auto corner = [&](int y, int step) {
    return std::pair<int, int>(grid.pointOnSide(x, y, right ? step : grid.deep - step),
                               uvAt(y, step));
  };
  for (int y = 0; y < grid.up; ++y) {
    for (int step = 0; step < grid.deep; ++step) {
      shape.addFace(
          {corner(y, step), corner(y, step + 1), corner(y + 1, step + 1), corner(y + 1, step)});
    }
  }
}

// In the order of scene files: along the rows of the ring, from row to row, and across the sides
// from back to front. The order within sides that are several steps deep is not known: those edges
// follow as the faces come.
void addCubeEdges(const CubeGrid& grid, PrimitiveShape& shape) {
  const auto add = [&shape](int a, int b) {
    shape.edges.push_back({a, b, shape.isHard(a, b) ? 0 : 1});
  };
  for (int row = 0; row < grid.rows(); ++row)
    for (int x = 0; x < grid.across; ++x) add(grid.pointInRow(row, x), grid.pointInRow(row, x + 1));
  for (int row = 0; row < grid.rows(); ++row)
    for (int x = 0; x <= grid.across; ++x)
      add(grid.pointInRow(row, x), grid.pointInRow(row + 1, x));
  if (grid.deep > 1) return;
  for (const int x : {grid.across, 0})
    for (int y = 1; y < grid.up; ++y) add(grid.pointOnSide(x, y, 1), grid.pointOnSide(x, y, 0));
}

}  // namespace

std::string makeCube(const PrimitiveParameters& get, int createUvs, PrimitiveShape& shape) {
  const Vec3 size = {get.size("w", "width", 1.0), get.size("h", "height", 1.0),
                     get.size("d", "depth", 1.0)};
  const CubeGrid grid(get.subdivisions("sw", "subdivisionsWidth", 1, 1),
                      get.subdivisions("sh", "subdivisionsHeight", 1, 1),
                      get.subdivisions("sd", "subdivisionsDepth", 1, 1));
  std::string problem = checkPointCount(2.0 * (grid.up + grid.deep) * (grid.across + 1.0) +
                                        2.0 * grid.up * static_cast<double>(grid.deep));
  if (!problem.empty()) return problem;
  shape.height = size.y;
  std::vector<std::array<int, 3>> places;
  addCubePoints(grid, size, shape, places);
  const CubeUnfolding unfold(size.x, size.y, size.z, createUvs);
  addCubeRing(grid, size, unfold, shape);
  addCubeSide(grid, size, unfold, true, shape);
  addCubeSide(grid, size, unfold, false, shape);
  const std::array<int, 3> ends = {grid.across, grid.up, grid.deep};
  shape.isHard = [places = std::move(places), ends](int a, int b) {
    int shared = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const int place = places[a][axis];
      if (place == places[b][axis] && (place == 0 || place == ends[axis])) ++shared;
    }
    return shared == 2;
  };
  addCubeEdges(grid, shape);
  return {};
}

}  // namespace host
