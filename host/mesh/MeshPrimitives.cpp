#include "host/mesh/MeshPrimitives.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/mesh/MeshPrimitiveShape.h"

namespace host {

namespace {

std::string makePlane(const PrimitiveParameters& get, PrimitiveShape& shape) {
  const double width = get.size("w", "width", 1.0);
  const double height = get.size("h", "height", 1.0);
  const int across = get.subdivisions("sw", "subdivisionsWidth", 10, 1);
  const int along = get.subdivisions("sh", "subdivisionsHeight", 10, 1);
  std::string problem = checkPointCount((across + 1.0) * (along + 1.0));
  if (!problem.empty()) return problem;
  for (int row = 0; row <= along; ++row) {
    for (int i = 0; i <= across; ++i) {
      const double u = static_cast<double>(i) / across;
      const double v = static_cast<double>(row) / along;
      shape.addPoint((u - 0.5) * width, 0.0, (0.5 - v) * height);
      shape.addUv(u, v);
    }
  }
  const int stride = across + 1;
  // As scene files number them: from each point to the right, then upwards.
  for (int row = 0; row <= along; ++row) {
    for (int i = 0; i <= across; ++i) {
      const int p = row * stride + i;
      if (i < across) shape.edges.push_back({p, p + 1, 1});
      if (row < along) shape.edges.push_back({p, p + stride, 1});
    }
  }
  for (int row = 0; row < along; ++row) {
    for (int i = 0; i < across; ++i) {
      const int p = row * stride + i;
      shape.addFace(
          {{p, p}, {p + 1, p + 1}, {p + stride + 1, p + stride + 1}, {p + stride, p + stride}});
    }
  }
  shape.isHard = [=](int a, int b) {
    const int rows[] = {a / stride, b / stride};
    const int columns[] = {a % stride, b % stride};
    const auto onEnd = [](const int(&x)[2], int end) {
      return x[0] == x[1] && (x[0] == 0 || x[0] == end);
    };
    return onEnd(rows, along) || onEnd(columns, across);
  };
  return {};
}

// Turns the shape so that +y becomes `axis`, the shortest way.
void turnTo(Vec3 axis, std::vector<Vec3>& points) {
  axis = normalized(axis);
  if (axis == Vec3() || axis == Vec3{0.0, 1.0, 0.0}) return;
  if (axis.y <= -1.0) {
    for (Vec3& p : points) p = {p.x, -p.y, -p.z};
    return;
  }
  const Vec3 around = {axis.z, 0.0, -axis.x};  // y × axis: as long as the angle's sine
  for (Vec3& p : points)
    p = p * axis.y + cross(around, p) + around * (dot(around, p) / (1.0 + axis.y));
}

std::string makeShape(std::string_view typeName, const PrimitiveParameters& get, int createUvs,
                      PrimitiveShape& shape) {
  if (typeName == "polyPlane") return makePlane(get, shape);
  if (typeName == "polyCube") return makeCube(get, createUvs, shape);
  if (typeName == "polySphere") return makeSphere(get, shape);
  if (typeName == "polyCylinder") return makeCylinder(get, shape);
  if (typeName == "polyCone") return makeCone(get, shape);
  if (typeName == "polyPyramid") return makePyramid(get, shape);
  if (typeName == "polyTorus") return makeTorus(get, shape);
  return std::string(typeName) + " is not a primitive";
}

void carryOver(const MeshData& from, MeshData& to) {
  for (const MeshTweak& tweak : from.tweaks())
    to.setTweaks(static_cast<std::size_t>(tweak.vertex), &tweak.offset.x, 1);
  to.uvSet(0)->name = from.uvSets().empty() ? "map1" : from.uvSets().front().name;
  to.setCurrentUvSetName(from.currentUvSetName().empty() ? to.uvSet(0)->name
                                                         : from.currentUvSetName());
}

}  // namespace

double PrimitiveParameters::size(const char* shortName, const char* longName,
                                 double otherwise) const {
  const double value = get_(shortName, longName).value_or(otherwise);
  return std::isfinite(value) ? value : otherwise;
}

int PrimitiveParameters::subdivisions(const char* shortName, const char* longName, int otherwise,
                                      int least) const {
  const double value = size(shortName, longName, otherwise);
  // What asks for too many still does.
  return static_cast<int>(
      std::clamp(value, static_cast<double>(least), 1.0 + kMostPrimitivePoints));
}

std::string checkPointCount(double points) {
  return points > kMostPrimitivePoints ? "its subdivisions ask for too many points" : std::string();
}

bool isPrimitive(std::string_view typeName) {
  constexpr std::string_view kTypes[] = {"polyPlane", "polyCube",    "polySphere", "polyCylinder",
                                         "polyCone",  "polyPyramid", "polyTorus"};
  return std::find(std::begin(kTypes), std::end(kTypes), typeName) != std::end(kTypes);
}

std::string evaluatePrimitive(std::string_view typeName, const PrimitiveParameter& parameter,
                              MeshData& mesh) {
  const PrimitiveParameters get(parameter);
  const int createUvs = static_cast<int>(std::clamp(get.size("cuv", "createUVs", 2.0), 0.0, 4.0));
  PrimitiveShape shape;
  std::string problem = makeShape(typeName, get, createUvs, shape);
  if (!problem.empty()) return problem;
  // At -1 the shape stands on the plane, at 1 it hangs below it.
  const double lift = -0.5 * shape.height * get.size("hbl", "heightBaseline", 0.0);
  for (Vec3& p : shape.polygons.points) p.y += lift;
  turnTo(
      {get.size("axx", "axisX", 0.0), get.size("axy", "axisY", 1.0), get.size("axz", "axisZ", 0.0)},
      shape.polygons.points);
  MeshData made;
  problem = buildMesh(shape.polygons, made, shape.isHard, shape.edges);
  if (!problem.empty()) return problem;
  carryOver(mesh, made);
  if (createUvs != 0) {
    made.uvSet(0)->uvs = std::move(shape.uvs);
    made.uvSet(0)->ids = std::move(shape.uvIds);
  }
  mesh = std::move(made);
  return {};
}

}  // namespace host
