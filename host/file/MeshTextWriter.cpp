#include <algorithm>

#include "host/file/NodeText.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

using mel::appendNumber;
using mel::quoted;

// Elements in one statement: few enough for the line buffer of any reader.
constexpr std::size_t kChunk = 500;

// setAttr ".vt[0:499]" v v v ...: `append(i)` adds element i with a blank before each number.
template <class Append>
void appendChunks(std::string& out, const std::string& name, const std::string& type,
                  std::size_t count, Append append) {
  for (std::size_t first = 0; first < count; first += kChunk) {
    const std::size_t last = std::min(count, first + kChunk) - 1;
    out += "\tsetAttr";
    if (first == 0) out += " -s " + std::to_string(count);
    out += " \"." + name + '[' + std::to_string(first);
    if (last > first) out += ':' + std::to_string(last);
    out += "]\"" + type;
    for (std::size_t i = first; i <= last; ++i) {
      if (i != first && (i - first) % 8 == 0) out += "\n\t\t";
      append(i);
    }
    out += ";\n";
  }
}

template <class Number>
void add(std::string& out, Number number) {
  out += ' ';
  appendNumber(out, number);
}

void addPoint(std::string& out, const Vec3& point, double length) {
  add(out, dividedBy(point.x, length));
  add(out, dividedBy(point.y, length));
  add(out, dividedBy(point.z, length));
}

void appendUvSets(std::string& out, const MeshData& mesh) {
  for (const MeshUvSet& set : mesh.uvSets()) {
    const std::string path = "uvst[" + std::to_string(set.index) + "].";
    out += "\tsetAttr \"." + path + "uvsn\" -type \"string\" " + quoted(set.name) + ";\n";
    appendChunks(out, path + "uvsp", " -type \"float2\"", set.uvs.size(), [&](std::size_t i) {
      add(out, set.uvs[i].u);
      add(out, set.uvs[i].v);
    });
  }
  if (!mesh.currentUvSetName().empty())
    out += "\tsetAttr \".cuvs\" -type \"string\" " + quoted(mesh.currentUvSetName()) + ";\n";
}

void appendColourSets(std::string& out, const MeshData& mesh) {
  for (const MeshColourSet& set : mesh.colourSets()) {
    const std::string path = "clst[" + std::to_string(set.index) + "].";
    out += "\tsetAttr \"." + path + "clsn\" -type \"string\" " + quoted(set.name) + ";\n";
    if (set.components != 4)
      out += "\tsetAttr \"." + path + "rprt\" " + std::to_string(set.components) + ";\n";
    appendChunks(out, path + "clsp", "", set.colours.size(), [&](std::size_t i) {
      const MeshColour& colour = set.colours[i];
      if (set.components != 1) {
        add(out, colour.r);
        add(out, colour.g);
        add(out, colour.b);
      }
      if (set.components != 3) add(out, colour.a);
    });
  }
  if (!mesh.currentColourSetName().empty())
    out += "\tsetAttr \".ccls\" -type \"string\" " + quoted(mesh.currentColourSetName()) + ";\n";
}

// " mu 0 4 0 1 3 2" for a loop's corners; nothing when none of them has an id.
void appendIds(std::string& out, const char* kind, int set, const std::vector<int>& ids,
               std::size_t first, std::size_t last) {
  const auto idAt = [&](std::size_t corner) { return corner < ids.size() ? ids[corner] : -1; };
  bool any = false;
  for (std::size_t corner = first; corner < last; ++corner) any = any || idAt(corner) >= 0;
  if (!any) return;
  out += "\n\t\t";
  out += kind;
  add(out, set);
  add(out, static_cast<int>(last - first));
  for (std::size_t corner = first; corner < last; ++corner) add(out, idAt(corner));
}

void appendLoop(std::string& out, const MeshData& mesh, const char* kind, std::size_t first,
                std::size_t last) {
  out += "\n\t\t";
  out += kind;
  add(out, static_cast<int>(last - first));
  for (std::size_t corner = first; corner < last; ++corner)
    add(out, mesh.storedLoopEdges()[corner]);
  for (const MeshUvSet& set : mesh.uvSets()) appendIds(out, "mu", set.index, set.ids, first, last);
  for (const MeshColourSet& set : mesh.colourSets())
    appendIds(out, "mc", set.index, set.ids, first, last);
}

void appendFaces(std::string& out, const MeshData& mesh) {
  const std::vector<int>& starts = mesh.storedFaceStarts();
  std::size_t hole = 0;
  appendChunks(out, "fc", " -type \"polyFaces\"", starts.size() - 1, [&](std::size_t face) {
    auto first = static_cast<std::size_t>(starts[face]);
    const auto end = static_cast<std::size_t>(starts[face + 1]);
    const char* kind = "f";
    while (hole < mesh.holes().size() &&
           static_cast<std::size_t>(mesh.holes()[hole].face) == face) {
      const auto next = static_cast<std::size_t>(mesh.holes()[hole++].firstCorner);
      appendLoop(out, mesh, kind, first, next);
      kind = "h";
      first = next;
    }
    appendLoop(out, mesh, kind, first, end);
  });
}

// Tweaks have gaps: each run of consecutive vertices is a statement.
void appendTweaks(std::string& out, const std::vector<MeshTweak>& tweaks, double length) {
  std::size_t first = 0;
  while (first < tweaks.size()) {
    std::size_t last = first;
    while (last + 1 < tweaks.size() && last - first + 1 < kChunk &&
           tweaks[last + 1].vertex == tweaks[last].vertex + 1) {
      ++last;
    }
    out += "\tsetAttr \".pt[" + std::to_string(tweaks[first].vertex);
    out += (last > first ? ':' + std::to_string(tweaks[last].vertex) : std::string()) +
           "]\" -type \"float3\"";
    for (std::size_t i = first; i <= last; ++i) addPoint(out, tweaks[i].offset, length);
    out += ";\n";
    first = last + 1;
  }
}

}  // namespace

// In the order in which a reader needs them: sets before the faces that refer to them.
void appendMesh(std::string& out, const MeshData& mesh, double length) {
  appendUvSets(out, mesh);
  appendColourSets(out, mesh);
  appendTweaks(out, mesh.tweaks(), length);
  appendChunks(out, "vt", "", mesh.storedPoints().size(),
               [&](std::size_t i) { addPoint(out, mesh.storedPoints()[i], length); });
  appendChunks(out, "ed", "", mesh.edges().size(), [&](std::size_t i) {
    const MeshEdge& edge = mesh.edges()[i];
    add(out, edge.start);
    add(out, edge.end);
    add(out, edge.flag);
  });
  appendChunks(out, "n", " -type \"float3\"", mesh.storedNormals().size(), [&](std::size_t i) {
    const MeshNormal& normal = mesh.storedNormals()[i];
    add(out, normal.x);
    add(out, normal.y);
    add(out, normal.z);
  });
  appendFaces(out, mesh);
}

}  // namespace host
