#include "bench/SceneText.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace bench {
namespace {

constexpr int kElementsInStatement = 166;
constexpr int kFacesInStatement = 500;

template <typename... Values>
void append(std::string& text, const char* format, Values... values) {
  char line[256];
  text.append(line, static_cast<std::size_t>(std::snprintf(line, sizeof line, format, values...)));
}

std::array<double, 3> pointOf(const GridMesh& mesh, int number) {
  const double step = mesh.size / mesh.side;
  const double x = number % (mesh.side + 1) * step - mesh.size / 2;
  const double z = number / (mesh.side + 1) * step - mesh.size / 2;
  return {x, 0.1 * mesh.size * std::sin(7.3 * x + 0.4) * std::cos(5.1 * z), z};
}

std::array<double, 2> uvOf(const GridMesh& mesh, int number) {
  return {static_cast<double>(number % (mesh.side + 1)) / mesh.side,
          static_cast<double>(number / (mesh.side + 1)) / mesh.side};
}

// First the edges along the rows, then those between them.
int alongRow(const GridMesh& mesh, int x, int z) {
  return z * mesh.side + x;
}
int betweenRows(const GridMesh& mesh, int x, int z) {
  return mesh.side * (mesh.side + 1) + z * (mesh.side + 1) + x;
}

std::array<int, 2> edgeOf(const GridMesh& mesh, int number) {
  const int row = mesh.side + 1;
  const int between = number - mesh.side * row;
  if (between >= 0) return {between, between + row};
  const int start = number / mesh.side * row + number % mesh.side;
  return {start, start + 1};
}

std::array<int, 4> cornersOf(const GridMesh& mesh, int face) {
  const int row = mesh.side + 1;
  const int start = face / mesh.side * row + face % mesh.side;
  return {start, start + row, start + row + 1, start + 1};
}

void appendFace(std::string& text, const GridMesh& mesh, int face) {
  const int x = face % mesh.side;
  const int z = face / mesh.side;
  append(text, "\tf 4 %d %d %d %d\n", betweenRows(mesh, x, z), alongRow(mesh, x, z + 1),
         -betweenRows(mesh, x + 1, z) - 1, -alongRow(mesh, x, z) - 1);
  const auto corners = cornersOf(mesh, face);
  append(text, "\tmu 0 4 %d %d %d %d\n", corners[0], corners[1], corners[2], corners[3]);
}

// setAttr statements of `count` elements of an array attribute, `inStatement` in each.
template <typename AppendElement>
void appendArray(std::string& text, const char* attribute, const char* type, int count,
                 int inStatement, AppendElement element) {
  for (int first = 0; first < count; first += inStatement) {
    const int end = first + inStatement < count ? first + inStatement : count;
    text += "\tsetAttr ";
    if (first == 0) append(text, "-s %d ", count);
    append(text, "\".%s[%d:%d]\"%s", attribute, first, end - 1, type);
    for (int i = first; i < end; ++i) {
      if ((i - first) % 6 == 0) text += "\n\t\t";
      element(i);
    }
    text += ";\n";
  }
}

}  // namespace

std::string sceneText(const GridMesh& mesh, const std::string& name, const std::string& parent,
                      double x, double z) {
  std::string text = "createNode transform -n \"" + name + "\"";
  if (!parent.empty()) text += " -p \"" + parent + "\"";
  append(text, ";\n\tsetAttr \".t\" -type \"double3\" %.8g 0 %.8g ;\n", x, z);
  text +=
      "createNode mesh -n \"" + name + "Shape\" -p \"" + name + "\";\n\tsetAttr -k off \".v\";\n";
  appendArray(text, "uvst[0].uvsp", " -type \"float2\"", mesh.vertices(), kElementsInStatement,
              [&](int i) {
                const auto uv = uvOf(mesh, i);
                append(text, " %.8g %.8g", uv[0], uv[1]);
              });
  appendArray(text, "vt", "", mesh.vertices(), kElementsInStatement, [&](int i) {
    const auto point = pointOf(mesh, i);
    append(text, " %.8g %.8g %.8g", point[0], point[1], point[2]);
  });
  appendArray(text, "ed", "", 2 * mesh.side * (mesh.side + 1), kElementsInStatement, [&](int i) {
    const auto edge = edgeOf(mesh, i);
    append(text, " %d %d 1", edge[0], edge[1]);
  });
  appendArray(text, "fc", " -type \"polyFaces\"", mesh.side * mesh.side, kFacesInStatement,
              [&](int i) { appendFace(text, mesh, i); });
  return text;
}

std::string objText(const GridMesh& mesh) {
  std::string text = "o grid\n";
  for (int i = 0; i < mesh.vertices(); ++i) {
    const auto point = pointOf(mesh, i);
    append(text, "v %.8g %.8g %.8g\n", point[0], point[1], point[2]);
  }
  for (int i = 0; i < mesh.vertices(); ++i) {
    const auto uv = uvOf(mesh, i);
    append(text, "vt %.8g %.8g\n", uv[0], uv[1]);
  }
  for (int face = 0; face < mesh.side * mesh.side; ++face) {
    text += "f";
    for (const int corner : cornersOf(mesh, face)) append(text, " %d/%d", corner + 1, corner + 1);
    text += "\n";
  }
  return text;
}

}  // namespace bench
