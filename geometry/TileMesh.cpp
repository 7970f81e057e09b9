#include "geometry/TileMesh.h"

#include <algorithm>
#include <cmath>

#include "geometry/ExtractionErrors.h"

namespace morvane {
namespace {

std::uint32_t colourComponent(float component) {
  const float scaled = component * 255.0F;
  if (!(std::fabs(scaled) < 9.0e18F)) return 0;  // no 64-bit integer holds it, or not a number
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(scaled));
}

// Reserves at once the capacity to which appending `count` elements with `slack` would lead. A
// large mesh would otherwise be copied a hundred times on the way there.
template <typename T>
void reserveForAppends(GrowArray<T>& array, std::size_t count, std::uint32_t slack) {
  const std::size_t step = std::size_t{slack} + 1;
  const std::size_t capacity = (count + step - 1) / step * step;
  array.setCapacity(static_cast<std::int32_t>(capacity));
}

template <typename T>
void copyTable(const std::vector<T>& table, std::uint32_t slack, GrowArray<T>& copy) {
  reserveForAppends(copy, table.size(), slack);
  for (const T& element : table) copy.append(element, slack);
}

bool indexListsMatch(const PolygonRecord& polygon) {
  const std::size_t corners = polygon.positions.size();
  return polygon.normals.size() == corners && polygon.uvs.size() == corners &&
         polygon.colours.size() == corners;
}

void reportMismatch(std::size_t face, const PolygonRecord& polygon) {
  addExtractionError("face %d index mismatch.  v %d, n %d, uv %d, c %d\n", static_cast<int>(face),
                     static_cast<int>(polygon.positions.size()),
                     static_cast<int>(polygon.normals.size()), static_cast<int>(polygon.uvs.size()),
                     static_cast<int>(polygon.colours.size()));
}

TileTriangle triangleOf(const PolygonRecord& polygon, std::size_t second) {
  const std::array<std::size_t, 3> corners = {0, second, second + 1};
  TileTriangle triangle{};
  for (std::size_t i = 0; i < 3; ++i) {
    triangle.positions[i] = polygon.positions[corners[i]];
    triangle.uvs[i] = polygon.uvs[corners[i]];
    triangle.normals[i] = polygon.normals[corners[i]];
    triangle.colours[i] = polygon.colours[corners[i]];
  }
  triangle.materialId = polygon.materialId;
  return triangle;
}

std::size_t triangleCount(const std::vector<PolygonRecord>& polygons) {
  std::size_t count = 0;
  for (const PolygonRecord& polygon : polygons)
    count += std::max<std::size_t>(polygon.positions.size(), 2) - 2;
  return count;
}

}  // namespace

std::uint32_t packColour(float r, float g, float b, float a) {
  std::uint32_t packed = 0;
  for (const float component : {r, g, b, a}) packed = packed * 256 + colourComponent(component);
  return packed;
}

std::unique_ptr<TileMesh> buildTileMesh(const MeshTables& tables) {
  const auto slack =
      static_cast<std::uint32_t>(std::max<std::size_t>(10, tables.positions.size() / 100));
  auto mesh = std::make_unique<TileMesh>();
  copyTable(tables.positions, slack, mesh->positions);
  copyTable(tables.uvs, slack, mesh->uvs);
  copyTable(tables.colours, slack, mesh->colours);
  copyTable(tables.normals, slack, mesh->normals);
  reserveForAppends(mesh->triangles, triangleCount(tables.polygons), slack);
  for (std::size_t face = 0; face < tables.polygons.size(); ++face) {
    const PolygonRecord& polygon = tables.polygons[face];
    if (!indexListsMatch(polygon)) {
      reportMismatch(face, polygon);
      return nullptr;
    }
    for (std::size_t second = 1; second + 1 < polygon.positions.size(); ++second)
      mesh->triangles.append(triangleOf(polygon, second), slack);
  }
  return mesh;
}

}  // namespace morvane
