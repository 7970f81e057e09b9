#ifndef MORVANE_TESTS_MESH_MESHFIXTURES_H_
#define MORVANE_TESTS_MESH_MESHFIXTURES_H_

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "host/mesh/MeshBuild.h"
#include "host/mesh/MeshPrimitives.h"

namespace host {

using Polygons = std::vector<std::vector<int>>;

inline MeshData meshOf(const std::vector<Vec3>& points, const Polygons& polygons,
                       const std::function<bool(int, int)>& isHard = nullptr) {
  MeshPolygons input;
  input.points = points;
  for (const std::vector<int>& polygon : polygons) {
    input.counts.push_back(static_cast<int>(polygon.size()));
    input.connects.insert(input.connects.end(), polygon.begin(), polygon.end());
  }
  MeshData mesh;
  EXPECT_EQ(buildMesh(input, mesh, isHard), "");
  return mesh;
}

// One face with holes, each loop a list of points.
inline MeshData faceWithHoles(const std::vector<std::vector<Vec3>>& loops) {
  MeshData mesh;
  mesh.beginFaces(0);
  int first = 0;
  for (const std::vector<Vec3>& loop : loops) {
    const int count = static_cast<int>(loop.size());
    std::vector<int> edges;
    std::vector<int> ids;
    for (int i = 0; i < count; ++i) {
      edges.insert(edges.end(), {first + i, first + (i + 1) % count, 0});
      ids.push_back(first + i);
    }
    EXPECT_EQ(mesh.setPoints(static_cast<std::size_t>(first), &loop.front().x, loop.size()), "");
    EXPECT_EQ(mesh.setEdges(static_cast<std::size_t>(first), edges.data(), loop.size()), "");
    EXPECT_EQ(
        first == 0 ? mesh.addFace(ids.data(), loop.size()) : mesh.addHole(ids.data(), loop.size()),
        "");
    first += count;
  }
  return mesh;
}

inline MeshData primitive(const char* type,
                          const std::vector<std::pair<std::string, double>>& values = {}) {
  MeshData mesh;
  const auto get = [&](std::string_view shortName, std::string_view) -> std::optional<double> {
    for (const auto& [name, value] : values)
      if (name == shortName) return value;
    return std::nullopt;
  };
  EXPECT_EQ(evaluatePrimitive(type, get, mesh), "");
  EXPECT_EQ(mesh.problem(), "");
  return mesh;
}

inline Vec3 cornerPoint(const MeshData& mesh, int corner) {
  return mesh
      .points()[static_cast<std::size_t>(mesh.cornerVertices()[static_cast<std::size_t>(corner)])];
}

}  // namespace host

#endif  // MORVANE_TESTS_MESH_MESHFIXTURES_H_
