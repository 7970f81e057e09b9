#include "tools/model/GoblinObj.h"

#include <cstdio>
#include <set>

#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr std::size_t kTileVertices = 4;

void put(std::string& obj, const char* keyword, float a, float b) {
  char line[96];
  std::snprintf(line, sizeof line, "%s %.9g %.9g", keyword, static_cast<double>(a),
                static_cast<double>(b));
  obj += line;
}

void put(std::string& obj, const char* keyword, float a, float b, float c) {
  put(obj, keyword, a, b);
  char rest[48];
  std::snprintf(rest, sizeof rest, " %.9g\n", static_cast<double>(c));
  obj += rest;
}

void putTile(std::string& obj) {
  obj +=
      "o tile\n"
      "v 0 0 0\nv 0 0 1\nv 1 0 1\nv 1 0 0\n"
      "vt 0 1\nvt 0 0\nvt 1 0\nvt 1 1\n"
      "vn 0 1 0\n"
      "f 1/1/1 2/2/1 3/3/1 4/4/1\n";
}

void putPool(std::string& obj, const Goblins& goblins, bool tagged) {
  for (const auto& p : goblins.pool) put(obj, "v", p.x, p.y, tagged ? 1 - p.z : p.z);
  for (const auto& p : goblins.pool) {
    put(obj, "vt", p.u, tagged ? p.v : 1 - p.v);
    obj += '\n';
  }
  for (const auto& p : goblins.pool) put(obj, "vn", p.nx, p.ny, p.nz);
}

// One word that no reader takes for two or for a comment.
std::string objectName(const Goblin& goblin, std::size_t number, std::set<std::string>& taken) {
  std::string name = printable(goblin.name);
  for (char& c : name)
    if (c == ' ' || c == '#' || c == '\\') c = '_';
  if (name.empty()) name = "goblin" + std::to_string(number);
  std::string unique = name;
  for (int i = 2; !taken.insert(unique).second; ++i) unique = name + '_' + std::to_string(i);
  return unique;
}

void putFace(std::string& obj, const std::vector<std::int32_t>& face, bool tagged) {
  obj += 'f';
  for (std::size_t i = 0; i < face.size(); ++i) {
    const std::int32_t corner = tagged ? face[i] : face[face.size() - 1 - i];
    const std::size_t position = static_cast<std::size_t>(corner) + 1;
    char text[80];
    std::snprintf(text, sizeof text, " %zu/%zu/%zu", position + kTileVertices,
                  position + kTileVertices, position + 1);
    obj += text;
  }
  obj += '\n';
}

}  // namespace

std::string objMaterial(const std::string& picture) {
  const std::string colour = picture.empty() ? "Kd 0.6 0.6 0.6\n" : "Kd 1 1 1\n";
  return "newmtl picture\n" + colour + "Ks 0 0 0\nillum 1\n" +
         (picture.empty() ? "" : "map_Kd " + picture + '\n');
}

std::string goblinsToObj(const Goblins& goblins, const std::string& library) {
  const bool tagged = goblins.kind == morvane::GoblinBlobKind::kTagged;
  std::string obj;
  if (!library.empty()) obj += "mtllib " + library + "\nusemtl picture\n";
  putTile(obj);
  putPool(obj, goblins, tagged);
  std::set<std::string> taken = {"tile"};
  std::size_t number = 0;
  for (const Goblin& goblin : goblins.goblins) {
    obj += "o " + objectName(goblin, ++number, taken) + '\n';
    for (const auto& face : goblin.faces) putFace(obj, face, tagged);
  }
  return obj;
}

}  // namespace tools
