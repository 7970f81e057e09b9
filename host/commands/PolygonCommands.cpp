#include <algorithm>
#include <functional>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/commands/MeshObject.h"
#include "host/math/MeshVector.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"
#include "host/mesh/MeshPrimitives.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

// Polygon primitives, and what scripts count on meshes.
namespace host::mel {
namespace {

// --- Primitives

struct NumberFlag {
  const char* flag;
  const char* attribute;
  double otherwise = -1;  // what the command takes where it differs from the node's default
};

struct Primitive {
  const char* type;
  const char* object;  // "pCube" of "pCube1"
  std::vector<NumberFlag> flags;
};

const Primitive kPrimitives[] = {
    {"polyCube",
     "pCube",
     {{"w", "width"},
      {"h", "height"},
      {"d", "depth"},
      {"sx", "subdivisionsWidth"},
      {"sy", "subdivisionsHeight"},
      {"sz", "subdivisionsDepth"}}},
    {"polySphere",
     "pSphere",
     {{"r", "radius"}, {"sx", "subdivisionsAxis"}, {"sy", "subdivisionsHeight"}}},
    {"polyCylinder",
     "pCylinder",
     {{"r", "radius"},
      {"h", "height"},
      {"sx", "subdivisionsAxis"},
      {"sy", "subdivisionsHeight"},
      {"sz", "subdivisionsCaps", 1}}},
    {"polyPlane",
     "pPlane",
     {{"w", "width"}, {"h", "height"}, {"sx", "subdivisionsWidth"}, {"sy", "subdivisionsHeight"}}},
};

PrimitiveParameter parametersOf(const Primitive& primitive, const Arguments& arguments) {
  return [&primitive, &arguments](std::string_view, std::string_view longName) {
    std::optional<double> number;
    for (const NumberFlag& each : primitive.flags) {
      if (longName != each.attribute) continue;
      if (arguments.has(each.flag))
        number = arguments.number(each.flag);
      else if (each.otherwise >= 0)
        number = each.otherwise;
    }
    constexpr std::string_view kAxes[] = {"axisX", "axisY", "axisZ"};
    for (std::size_t i = 0; i < 3; ++i)
      if (longName == kAxes[i] && arguments.has("ax")) number = arguments.number("ax", i);
    if (longName == "createUVs" && arguments.has("cuv")) number = arguments.number("cuv");
    return number;
  };
}

// Makes the object without construction history: its shape is its own.
CommandResult makePrimitive(const Primitive& primitive, const Arguments& arguments) {
  const std::string command = primitive.type;
  MeshData mesh;
  std::string error = evaluatePrimitive(primitive.type, parametersOf(primitive, arguments), mesh);
  if (!error.empty()) return CommandResult::failure(command + ": " + error);
  const std::string name =
      arguments.has("n") ? arguments.text("n") : primitive.object + std::string("#");
  return addMeshObject(command, name, std::move(mesh));
}

template <std::size_t kIndex>
CommandResult primitiveCommand(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile || arguments.query() || arguments.has("e")) {
    return CommandResult::failure(std::string(kPrimitives[kIndex].type) +
                                  ": makes new objects only; it has no history to query or edit");
  }
  return makePrimitive(kPrimitives[kIndex], arguments);
}

template <std::size_t kIndex>
void addPrimitive(CommandTable& table) {
  std::vector<FlagSpec> flags = {{"n", "name", "s"},        {"ch", "constructionHistory", "b"},
                                 {"cuv", "createUVs", "i"}, {"ax", "axis", "nnn"},
                                 {"o", "object", "b"},      {"q", "query", ""},
                                 {"e", "edit", ""}};
  constexpr FlagSpec kNumbers[] = {{"w", "width", "n"},          {"h", "height", "n"},
                                   {"d", "depth", "n"},          {"r", "radius", "n"},
                                   {"sx", "subdivisionsX", "i"}, {"sy", "subdivisionsY", "i"},
                                   {"sz", "subdivisionsZ", "i"}};
  for (const NumberFlag& each : kPrimitives[kIndex].flags) {
    for (const FlagSpec& number : kNumbers)
      if (number.shortName == each.flag) flags.push_back(number);
  }
  table.add(kPrimitives[kIndex].type, std::move(flags), primitiveCommand<kIndex>);
}

// --- polyEvaluate

double areaOf(const MeshData& mesh, const MMatrix& matrix) {
  const auto placed = [&](int corner) {
    const int vertex = mesh.cornerVertices()[static_cast<std::size_t>(corner)];
    const Vec3& point = mesh.points()[static_cast<std::size_t>(vertex)];
    const MPoint there = MPoint(point.x, point.y, point.z) * matrix;
    return Vec3{there.x, there.y, there.z};
  };
  double area = 0;
  for (const MeshTriangle& triangle : mesh.triangles().list) {
    const Vec3 first = placed(triangle.corners[0]);
    area +=
        length(cross(placed(triangle.corners[1]) - first, placed(triangle.corners[2]) - first)) / 2;
  }
  return area;
}

// Groups of faces that hang together by vertices.
int shellCount(const MeshData& mesh) {
  std::vector<int> above(static_cast<std::size_t>(mesh.pointCount()));
  for (std::size_t i = 0; i < above.size(); ++i) above[i] = static_cast<int>(i);
  const auto top = [&above](int vertex) {
    while (above[static_cast<std::size_t>(vertex)] != vertex) {
      int& next = above[static_cast<std::size_t>(vertex)];
      next = above[static_cast<std::size_t>(next)];
      vertex = next;
    }
    return vertex;
  };
  int shells = 0;
  std::vector<bool> isUsed(above.size(), false);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    const int first = mesh.cornerVertices()[static_cast<std::size_t>(mesh.faceStart(face))];
    for (int i = 0; i < mesh.cornerCount(face); ++i) {
      const int vertex = mesh.cornerVertices()[static_cast<std::size_t>(mesh.faceStart(face) + i)];
      shells += isUsed[static_cast<std::size_t>(vertex)] ? 0 : 1;
      isUsed[static_cast<std::size_t>(vertex)] = true;
      const int a = top(first);
      const int b = top(vertex);
      shells -= a == b ? 0 : 1;
      above[static_cast<std::size_t>(b)] = a;
    }
  }
  return shells;
}

NodePtr meshOf(const SelectionItem& item) {
  if (item.node->mesh != nullptr) return item.node;
  for (const NodePtr& shape : shapesBelow(*item.node))
    if (shape->mesh != nullptr) return shape;
  return nullptr;
}

struct Count {
  std::string_view flag;
  int (*of)(const MeshData& mesh);
};
constexpr Count kCounts[] = {
    {"v", [](const MeshData& mesh) { return mesh.pointCount(); }},
    {"e", [](const MeshData& mesh) { return static_cast<int>(mesh.edges().size()); }},
    {"f", [](const MeshData& mesh) { return mesh.faceCount(); }},
    {"t", [](const MeshData& mesh) { return static_cast<int>(mesh.triangles().list.size()); }},
    {"uv",
     [](const MeshData& mesh) {
       const MeshUvSet* set = mesh.findUvSet();
       return set == nullptr ? 0 : static_cast<int>(set->uvs.size());
     }},
    {"s", shellCount},
};

CommandResult polyEvaluate(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error = "needs a mesh";
  const bool found = findItems(arguments.objects(), context, items, error) && !items.empty();
  const NodePtr node = found ? meshOf(items.front()) : nullptr;
  if (node == nullptr || !node->mesh->problem().empty())
    return CommandResult::failure("polyEvaluate: " + error);
  if (arguments.has("a") || arguments.has("wa")) {
    const DagPath path =
        items.front().node == node ? items.front().path : items.front().path.extendedBy(node);
    return CommandResult::success(
        areaOf(*node->mesh, arguments.has("wa") ? path.inclusiveMatrix() : MMatrix()));
  }
  Value::Ints counts;
  for (const Count& count : kCounts)
    if (arguments.has(count.flag)) counts.push_back(count.of(*node->mesh));
  if (counts.empty()) {
    return CommandResult::failure(
        "polyEvaluate: needs -vertex, -edge, -face, -triangle, -uvcoord, -shell, -area or "
        "-worldArea");
  }
  return CommandResult::success(counts.size() == 1 ? Value(counts.front()) : Value(counts));
}

}  // namespace

void addPolygonCommands(CommandTable& table) {
  addPrimitive<0>(table);
  addPrimitive<1>(table);
  addPrimitive<2>(table);
  addPrimitive<3>(table);
  table.add("polyEvaluate",
            {{"v", "vertex", ""},
             {"e", "edge", ""},
             {"f", "face", ""},
             {"t", "triangle", ""},
             {"uv", "uvcoord", ""},
             {"s", "shell", ""},
             {"a", "area", ""},
             {"wa", "worldArea", ""}},
            polyEvaluate);
}

}  // namespace host::mel
