#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <map>
#include <numeric>

#include "host/attribute/Component.h"
#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/commands/MeshObject.h"
#include "host/math/MeshVector.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"
#include "host/mesh/MeshPrimitives.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"

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
    {"polyCone",
     "pCone",
     {{"r", "radius"}, {"h", "height"}, {"sx", "subdivisionsAxis"}, {"sy", "subdivisionsHeight"}}},
    {"polyTorus",
     "pTorus",
     {{"r", "radius"},
      {"sr", "sectionRadius"},
      {"tw", "twist"},
      {"sx", "subdivisionsAxis"},
      {"sy", "subdivisionsHeight"}}},
    {"polyPyramid",
     "pPyramid",
     {{"w", "sideLength"}, {"ns", "numberOfSides"}, {"sh", "subdivisionsHeight"}}},
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

NodePtr meshOf(const SelectionItem& item) {
  if (item.node->mesh != nullptr) return item.node;
  for (const NodePtr& shape : shapesBelow(*item.node))
    if (shape->mesh != nullptr) return shape;
  return nullptr;
}

// The node that makes the mesh, set as the command's flags say.
NodePtr addMaker(Scene& scene, const Primitive& primitive, const Arguments& arguments) {
  const NodePtr maker = scene.createNode(*NodeType::find(primitive.type));
  const PrimitiveParameter given = parametersOf(primitive, arguments);
  constexpr const char* kShared[] = {"axisX", "axisY", "axisZ", "createUVs"};
  const auto set = [&](const char* attribute) {
    const auto plug = Plug::find(maker, attribute);
    const auto number = given("", attribute);
    if (plug && number) writeValue(*plug, *number);
  };
  for (const NumberFlag& each : primitive.flags) set(each.attribute);
  for (const char* const attribute : kShared) set(attribute);
  return maker;
}

// Unless told otherwise the node that makes the shape stays in front of it, and is named too.
CommandResult makePrimitive(const CommandContext& context, const Primitive& primitive,
                            const Arguments& arguments) {
  const std::string command = primitive.type;
  MeshData mesh;
  std::string error = evaluatePrimitive(primitive.type, parametersOf(primitive, arguments), mesh);
  if (!error.empty()) return CommandResult::failure(command + ": " + error);
  const std::string name =
      arguments.has("n") ? arguments.text("n") : primitive.object + std::string("#");
  const bool hasHistory = arguments.truth("ch", true);
  CommandResult made =
      addMeshObject(context, command, name, hasHistory ? MeshData() : std::move(mesh));
  if (!made.ok || !hasHistory) return made;
  const NodePtr maker = addMaker(context.host().scene, primitive, arguments);
  const auto output = Plug::find(maker, "output");
  const NodePtr shape = meshOf(context.host().scene.selection.items().front());
  const auto input = Plug::find(shape, "inMesh");
  if (!output || !input || !connect(*output, *input, false, &error))
    return CommandResult::failure(command + ": " + error);
  Value::Strings names = *made.value.strings();
  names.push_back(maker->displayName());
  made.value = Value(std::move(names));
  return made;
}

template <std::size_t kIndex>
CommandResult primitiveCommand(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile || arguments.query() || arguments.has("e")) {
    return CommandResult::failure(std::string(kPrimitives[kIndex].type) +
                                  ": makes new objects only; it has no history to query or edit");
  }
  return makePrimitive(context, kPrimitives[kIndex], arguments);
}

template <std::size_t kIndex>
void addPrimitive(CommandTable& table) {
  std::vector<FlagSpec> flags = {{"n", "name", "s"},        {"ch", "constructionHistory", "b"},
                                 {"cuv", "createUVs", "i"}, {"ax", "axis", "nnn"},
                                 {"o", "object", "b"},      {"q", "query", ""},
                                 {"e", "edit", ""}};
  constexpr FlagSpec kNumbers[] = {{"w", "width", "n"},
                                   {"h", "height", "n"},
                                   {"d", "depth", "n"},
                                   {"r", "radius", "n"},
                                   {"sx", "subdivisionsX", "i"},
                                   {"sy", "subdivisionsY", "i"},
                                   {"sz", "subdivisionsZ", "i"},
                                   {"sr", "sectionRadius", "n"},
                                   {"tw", "twist", "n"},
                                   {"ns", "numberOfSides", "i"},
                                   {"sh", "subdivisionsHeight", "i"}};
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

// The least and the greatest u, then v, of the UVs that corners have; zeros when none has any.
Value::Floats uvBoxOf(const MeshData& mesh) {
  const MeshUvSet* const set = mesh.findUvSet();
  Value::Floats box(4, 0.0);
  bool isFirst = true;
  for (std::size_t corner = 0; set != nullptr && corner < set->ids.size(); ++corner) {
    const int id = MeshData::uvAt(*set, static_cast<int>(corner));
    if (id < 0) continue;
    const MeshUv& uv = set->uvs[static_cast<std::size_t>(id)];
    box = {isFirst ? uv.u : std::min<double>(box[0], uv.u),
           isFirst ? uv.u : std::max<double>(box[1], uv.u),
           isFirst ? uv.v : std::min<double>(box[2], uv.v),
           isFirst ? uv.v : std::max<double>(box[3], uv.v)};
    isFirst = false;
  }
  return box;
}

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
  if (arguments.has("b2")) return CommandResult::success(uvBoxOf(*node->mesh));
  Value::Ints counts;
  for (const Count& count : kCounts)
    if (arguments.has(count.flag)) counts.push_back(count.of(*node->mesh));
  if (counts.empty()) {
    return CommandResult::failure(
        "polyEvaluate: needs -vertex, -edge, -face, -triangle, -uvcoord, -shell, -area, "
        "-worldArea or -boundingBox2d");
  }
  return CommandResult::success(counts.size() == 1 ? Value(counts.front()) : Value(counts));
}

// --- polyInfo: one line an element, "FACE      0:      0      1      3      2 "

std::string lineStart(const char* kind, int element) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s %6d:", kind, element);
  return text.data();
}

void appendIndex(std::string& line, int index) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), " %6d", index);
  line += text.data();
}

int edgeOfLoop(int signedEdge) {
  return signedEdge >= 0 ? signedEdge : -(signedEdge + 1);
}

// A corner's entry: its vertex, or the edge that begins there.
int atCorner(const MeshData& mesh, int corner, bool asEdge) {
  const auto index = static_cast<std::size_t>(corner);
  return asEdge ? edgeOfLoop(mesh.storedLoopEdges()[index]) : mesh.cornerVertices()[index];
}

Value::Strings facesWith(const MeshData& mesh, const std::vector<int>& faces, bool asEdges) {
  Value::Strings lines;
  for (const int face : faces) {
    std::string line = lineStart("FACE", face);
    for (int i = 0; i < mesh.cornerCount(face); ++i)
      appendIndex(line, atCorner(mesh, mesh.faceStart(face) + i, asEdges));
    lines.push_back(line + " \n");
  }
  return lines;
}

// The faces around vertices or edges.
Value::Strings facesAround(const MeshData& mesh, const std::vector<int>& elements, bool edges) {
  std::map<int, std::vector<int>> faces;
  for (int face = 0; face < mesh.faceCount(); ++face)
    for (int i = 0; i < mesh.cornerCount(face); ++i)
      faces[atCorner(mesh, mesh.faceStart(face) + i, edges)].push_back(face);
  Value::Strings lines;
  for (const int element : elements) {
    std::string line = lineStart(edges ? "EDGE" : "VERTEX", element);
    for (const int face : faces[element]) appendIndex(line, face);
    lines.push_back(line + " \n");
  }
  return lines;
}

Value::Strings verticesOfEdges(const MeshData& mesh, const std::vector<int>& elements) {
  Value::Strings lines;
  for (const int element : elements) {
    const MeshEdge& edge = mesh.edges()[static_cast<std::size_t>(element)];
    std::string line = lineStart("EDGE", element);
    appendIndex(line, edge.start);
    appendIndex(line, edge.end);
    lines.push_back(line + (edge.smooth() ? "  Smooth\n" : "  Hard\n"));
  }
  return lines;
}

Value::Strings edgesAround(const MeshData& mesh, const std::vector<int>& elements) {
  std::map<int, std::vector<int>> edges;
  for (std::size_t i = 0; i < mesh.edges().size(); ++i)
    for (const int vertex : {mesh.edges()[i].start, mesh.edges()[i].end})
      edges[vertex].push_back(static_cast<int>(i));
  Value::Strings lines;
  for (const int element : elements) {
    std::string line = lineStart("VERTEX", element);
    for (const int edge : edges[element]) appendIndex(line, edge);
    lines.push_back(line + " \n");
  }
  return lines;
}

Value::Strings normalsOfFaces(const MeshData& mesh, const std::vector<int>& elements) {
  Value::Strings lines;
  for (const int face : elements) {
    Vec3 sum;
    const auto [begin, end] = mesh.loops(face).front();
    const auto at = [&](int corner) {
      return mesh.points()[static_cast<std::size_t>(atCorner(mesh, corner, false))];
    };
    for (int corner = begin + 1; corner + 1 < end; ++corner)
      sum = sum + cross(at(corner) - at(begin), at(corner + 1) - at(begin));
    const Vec3 normal = normalized(sum);
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), " %f %f %f\n", normal.x, normal.y, normal.z);
    lines.push_back(lineStart("FACE_NORMAL", face) + text.data());
  }
  return lines;
}

// The elements that a component names, or all.
std::vector<int> elementsOf(const SelectionItem& item, Component::Kind kind, int count) {
  std::vector<int> all(static_cast<std::size_t>(count));
  std::iota(all.begin(), all.end(), 0);
  if (item.component == nullptr) return all;
  return item.component->kind() == kind ? item.component->elements().toIndices(count)
                                        : std::vector<int>();
}

CommandResult polyInfo(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error = "needs a mesh";
  const bool found = findItems(arguments.objects(), context, items, error) && !items.empty();
  const NodePtr node = found ? meshOf(items.front()) : nullptr;
  if (node == nullptr || !node->mesh->problem().empty())
    return CommandResult::failure("polyInfo: " + error);
  const MeshData& mesh = *node->mesh;
  const auto faces = [&] {
    return elementsOf(items.front(), Component::Kind::kFace, mesh.faceCount());
  };
  const auto edges = [&] {
    return elementsOf(items.front(), Component::Kind::kEdge, static_cast<int>(mesh.edges().size()));
  };
  const auto vertices = [&] {
    return elementsOf(items.front(), Component::Kind::kVertex, mesh.pointCount());
  };
  if (arguments.has("fv")) return CommandResult::success(facesWith(mesh, faces(), false));
  if (arguments.has("fe")) return CommandResult::success(facesWith(mesh, faces(), true));
  if (arguments.has("fn")) return CommandResult::success(normalsOfFaces(mesh, faces()));
  if (arguments.has("vf")) return CommandResult::success(facesAround(mesh, vertices(), false));
  if (arguments.has("ve")) return CommandResult::success(edgesAround(mesh, vertices()));
  if (arguments.has("ef")) return CommandResult::success(facesAround(mesh, edges(), true));
  if (arguments.has("ev")) return CommandResult::success(verticesOfEdges(mesh, edges()));
  return CommandResult::failure(
      "polyInfo: needs -faceToVertex, -faceToEdge, -faceNormals, -vertexToFace, -vertexToEdge, "
      "-edgeToFace or -edgeToVertex");
}

}  // namespace

void addPolygonCommands(CommandTable& table) {
  addPrimitive<0>(table);
  addPrimitive<1>(table);
  addPrimitive<2>(table);
  addPrimitive<3>(table);
  addPrimitive<4>(table);
  addPrimitive<5>(table);
  addPrimitive<6>(table);
  table.add("polyEvaluate",
            {{"v", "vertex", ""},
             {"e", "edge", ""},
             {"f", "face", ""},
             {"t", "triangle", ""},
             {"uv", "uvcoord", ""},
             {"s", "shell", ""},
             {"a", "area", ""},
             {"wa", "worldArea", ""},
             {"b2", "boundingBox2d", ""}},
            polyEvaluate);
  table.add("polyInfo",
            {{"fv", "faceToVertex", ""},
             {"fe", "faceToEdge", ""},
             {"fn", "faceNormals", ""},
             {"vf", "vertexToFace", ""},
             {"ve", "vertexToEdge", ""},
             {"ef", "edgeToFace", ""},
             {"ev", "edgeToVertex", ""}},
            polyInfo);
}

}  // namespace host::mel
