#ifndef MORVANE_HOST_MESH_MESHPRIMITIVESHAPE_H_
#define MORVANE_HOST_MESH_MESHPRIMITIVESHAPE_H_

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "host/mesh/MeshBuild.h"
#include "host/mesh/MeshPrimitives.h"

// Shared by the files that make primitives; all others include MeshPrimitives.h.
namespace host {

struct PrimitiveShape {
  MeshPolygons polygons;
  std::vector<MeshUv> uvs;
  std::vector<int> uvIds;
  std::function<bool(int, int)> isHard;
  double height = 0.0;          // where the node has one, for its baseline
  std::vector<MeshEdge> edges;  // the first ones, where their order is another than that of faces

  int addPoint(double x, double y, double z) {
    polygons.points.push_back({x, y, z});
    return static_cast<int>(polygons.points.size()) - 1;
  }
  int addUv(double u, double v) {
    uvs.push_back({static_cast<float>(u), static_cast<float>(v)});
    return static_cast<int>(uvs.size()) - 1;
  }
  // A point and a UV for each corner.
  void addFace(std::initializer_list<std::pair<int, int>> corners) {
    polygons.counts.push_back(static_cast<int>(corners.size()));
    for (const auto& [point, uv] : corners) {
      polygons.connects.push_back(point);
      uvIds.push_back(uv);
    }
  }
};

// Reads a node's parameters.
class PrimitiveParameters {
 public:
  explicit PrimitiveParameters(const PrimitiveParameter& get) : get_(get) {}

  // A value that is not a finite number counts as the default.
  double size(const char* shortName, const char* longName, double otherwise) const;
  int subdivisions(const char* shortName, const char* longName, int otherwise, int least) const;

 private:
  const PrimitiveParameter& get_;
};

// The error for a primitive of this many points; empty when it may have them.
std::string checkPointCount(double points);

// All with Y as the axis. `createUvs` is the node's attribute: 1 no normalisation, 3 fill the unit
// square, else fit it in proportion.
std::string makeCube(const PrimitiveParameters& get, int createUvs, PrimitiveShape& shape);
std::string makeSphere(const PrimitiveParameters& get, PrimitiveShape& shape);
std::string makeCylinder(const PrimitiveParameters& get, PrimitiveShape& shape);
std::string makeCone(const PrimitiveParameters& get, PrimitiveShape& shape);
std::string makePyramid(const PrimitiveParameters& get, PrimitiveShape& shape);
std::string makeTorus(const PrimitiveParameters& get, PrimitiveShape& shape);

// The point of a ring around the axis. Rings start one step from +x towards -z.
Vec3 pointOnRing(int step, int steps, double radius, double y);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHPRIMITIVESHAPE_H_
