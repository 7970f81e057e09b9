#include "tests/file/BinaryTwin.h"

#include <cstring>
#include <map>
#include <set>

#include "host/attribute/Component.h"
#include "host/scene/Connections.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/SceneUnits.h"

namespace host::twin {
namespace {

// Tags of the types that need no plug-in.
const std::map<std::string, std::string> kTags = {
    {"transform", "XFRM"}, {"mesh", "DMSH"},           {"camera", "DCAM"},    {"lambert", "RLAM"},
    {"blinn", "RBLN"},     {"shadingEngine", "SHAD"},  {"file", "RTFT"},      {"groupId", "GPID"},
    {"joint", "JOIN"},     {"place2dTexture", "RPL2"}, {"objectSet", "OBST"}, {"polyCube", "PCUB"}};

template <class Number>
std::string bigEndian(Number value) {
  std::string bytes;
  for (int shift = 8 * (static_cast<int>(sizeof value) - 1); shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

// Each word of four bytes from its end.
std::string uuidBytes(const std::string& uuid) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < uuid.size();) {
    if (uuid[i] == '-') {
      ++i;
      continue;
    }
    bytes += static_cast<char>(std::stoi(uuid.substr(i, 2), nullptr, 16));
    i += 2;
  }
  bytes.resize(16);
  std::string turned;
  for (std::size_t i = 0; i < 16; ++i) turned += bytes[i / 4 * 4 + 3 - i % 4];
  return turned;
}

std::string pathOf(const NodePtr& node) {
  return node->isDag() ? firstPath(node).fullName() : node->name();
}

// Writes what is open.
class SceneTwin {
 public:
  explicit SceneTwin(const Layout& layout) : layout_(layout) {}

  std::string file() {
    std::string nodes;
    for (const auto& [serial, node] : Scene::current().nodes()) nodes += nodeChunks(node);
    return layout_.file(headChunks() + nodes + connectionChunks());
  }

 private:
  std::string chunk(const std::string& tag, const std::string& content) const {
    return layout_.chunk(tag, content);
  }

  // Types without a tag of their own are a plug-in's.
  std::string tagOf(const std::string& type) {
    const auto known = kTags.find(type);
    if (known != kTags.end()) return known->second;
    const auto [made, isNew] = pluginTags_.emplace(type, word(0x00100000));
    if (isNew) made->second = word(0x00100000 + static_cast<std::uint32_t>(pluginTags_.size()));
    return made->second;
  }

  std::string headChunks() const {
    std::string plugin = text("shapes") + text("1.0") + text("");
    for (const auto& [type, tag] : pluginTags_) plugin += text(type) + tag;
    return layout_.container("HEAD", chunk("VERS", "2018") + chunk("LUNI", "m") +
                                         chunk("TUNI", "film") + chunk("AUNI", "deg") +
                                         chunk("PLUG", plugin));
  }

  std::string nodeChunks(const NodePtr& node) {
    if (node->isDefault && node->values.inWrittenOrder().empty()) return std::string();
    const std::string begin =
        node->isDefault ? chunk("SLCT", ':' + node->name()) : chunk("CREA", creationOf(node));
    const std::string form = node->isDefault ? "SLCT" : tagOf(node->type().name());
    std::string content = begin;
    for (const AttributePtr& attribute : node->dynamicAttributes())
      content += declaration(*attribute);
    for (const AttributeState& state : node->values.inWrittenOrder())
      content += valueChunk(node, state);
    return layout_.container(form,
                             content + (node->mesh == nullptr ? "" : meshChunks(*node->mesh)));
  }

  std::string creationOf(const NodePtr& node) const {
    const bool isBelow = node->isDag() && firstPath(node).nodes().size() > 1;
    std::string content(1, static_cast<char>((node->isShared ? 1 : 0) | (isBelow ? 0 : 0x80)));
    content += text(node->name());
    if (isBelow) content += text(firstPath(node).parent().fullName());
    return layout_.isWide && !node->uuid.empty() ? content + uuidBytes(node->uuid) : content;
  }

  std::string declaration(const Attribute& attribute) const {
    const bool isText = attribute.typeWord() == "string";
    const std::uint32_t flags = attribute.keyable ? 0x4040 : 0x40;
    return chunk("ATTR", (isText ? "aTYP" : "aDBL") +
                             (layout_.isWide ? word(flags) : word(flags).substr(2)) + word(1) +
                             (isText ? "STR " : word(0)) + text(attribute.longName()) +
                             text(attribute.shortName()) + word(0));
  }

  // What the host's own attributes are if nothing is said matters of channels only, which are.
  static bool isKeyable(const std::optional<Plug>& plug, const AttributeState& state) {
    if (state.keyable != AttributeState::Flag::kUnset)
      return state.keyable == AttributeState::Flag::kOn;
    return !plug || !plug->attribute()->isDynamic || plug->attribute()->keyable;
  }

  std::string valueChunk(const NodePtr& node, const AttributeState& state) const {
    const auto plug = Plug::find(node, state.path);
    const auto bit = [](AttributeState::Flag flag, int value) {
      return flag == AttributeState::Flag::kOn ? value : 0;
    };
    const int flags = 0x20 | bit(state.locked, 1) | bit(state.altered, 2) |
                      (isKeyable(plug, state) ? 4 : 0) | bit(state.channelBox, 0x10);
    const std::string begin = head(state.path, static_cast<std::uint8_t>(flags));
    if (const auto* const number = std::get_if<double>(&state.value)) {
      SceneUnits radians;
      radians.angle = 57.295779513082320876798;
      const double factor = plug ? unitFactor(radians, *plug->attribute()) : 1.0;
      return chunk("DBLE", begin + real(*number / factor));
    }
    if (const auto* const value = std::get_if<std::string>(&state.value))
      return chunk("STR ", begin + text(*value));
    if (const auto* const texts = std::get_if<std::vector<std::string>>(&state.value))
      return chunk("CMP#", begin + components(*texts));
    return std::holds_alternative<std::monostate>(state.value) && saysAnything(state)
               ? chunk("FLGS", begin)
               : std::string();
  }

  static std::string components(const std::vector<std::string>& texts) {
    const IndexSet faces = parseFaces(texts);
    std::string content =
        word(1) + "CMDF" + word(static_cast<std::uint32_t>(faces.ranges().size()));
    for (const IndexRange& range : faces.ranges()) {
      content += word(static_cast<std::uint32_t>(range.first)) +
                 word(static_cast<std::uint32_t>(range.last));
    }
    return content;
  }

  std::string meshChunks(const MeshData& mesh) const {
    std::string chunks;
    for (const MeshTweak& tweak : mesh.tweaks()) {
      chunks +=
          chunk("FLT3", head("pt[" + std::to_string(tweak.vertex) + "]") + single(tweak.offset.x) +
                            single(tweak.offset.y) + single(tweak.offset.z));
    }
    chunks += chunk("STR ", head("cuvs") + text(mesh.currentUvSetName()));
    return mesh.edges().empty() ? chunks : chunks + chunk("MESH", head("o") + meshTables(mesh));
  }

  std::string connectionChunks() const {
    std::string instances;
    std::map<std::uint64_t, std::string> connections;
    for (const auto& [serial, node] : Scene::current().nodes()) {
      for (std::size_t i = 1; i < node->parents().size(); ++i) {
        instances += chunk("PRNT", std::string(1, 2) + text(firstPath(node).fullName()) +
                                       text(pathOf(node->parents()[i]->pointer())));
      }
      for (const ConnectionPtr& each : node->connections.inOrder())
        if (!each->source.node()->isDefault || !each->destination.node()->isDefault)
          connections[each->serial] = connection(*each);
    }
    std::string all;
    for (const auto& [serial, content] : connections) all += chunk("CWFL", content);
    return (instances.empty() ? "" : layout_.container("PING", instances)) +
           layout_.list("CONS", layout_.container("CONN", all));
  }

  // Elements of lists of messages come in order, as those of the default nodes have some already.
  static std::string connection(const Connection& it) {
    std::string end = it.destination.path();
    const bool isNext = it.destination.isElement() &&
                        it.destination.attribute()->kind() == Attribute::Kind::kMessage;
    if (isNext) end.resize(end.rfind('['));
    return std::string(1, isNext ? 1 : 0) +
           text(pathOf(it.source.node()) + '.' + it.source.path()) +
           text(pathOf(it.destination.node()) + '.' + end);
  }

  const Layout layout_;
  std::map<std::string, std::string> pluginTags_;
};

}  // namespace

std::string word(std::uint32_t value) {
  return bigEndian(value);
}
std::string longWord(std::uint64_t value) {
  return bigEndian(value);
}
std::string real(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bigEndian(bits);
}
std::string single(double value) {
  const float rounded = static_cast<float>(value);
  std::uint32_t bits;
  std::memcpy(&bits, &rounded, sizeof bits);
  return bigEndian(bits);
}
std::string text(const std::string& value) {
  return value + '\0';
}

std::string Layout::header(const std::string& tag, std::uint64_t length) const {
  return isWide ? tag + word(0) + longWord(length) : tag + word(static_cast<std::uint32_t>(length));
}
std::string Layout::chunk(const std::string& tag, const std::string& content) const {
  const std::size_t unit = isWide ? 8 : 4;
  return header(tag, content.size()) + content +
         std::string((unit - content.size() % unit) % unit, '\0');
}
std::string Layout::container(const std::string& form, const std::string& content) const {
  return header(isWide ? "FOR8" : "FOR4", content.size() + 4) + form + content;
}
std::string Layout::list(const std::string& form, const std::string& content) const {
  return header(isWide ? "LIS8" : "LIS4", content.size() + 4) + form + content;
}

std::string head(const std::string& attribute, std::uint8_t flags) {
  return text(attribute) + static_cast<char>(flags);
}

std::string creation(const std::string& name, const std::string& parent) {
  return parent.empty() ? '\x80' + text(name) : '\x04' + text(name) + text(parent);
}

std::string meshTables(const MeshData& mesh) {
  const auto count = [](std::size_t size) { return word(static_cast<std::uint32_t>(size)); };
  std::string tables = count(3 * mesh.storedPoints().size());
  for (const Vec3& point : mesh.storedPoints())
    tables += single(point.x) + single(point.y) + single(point.z);
  tables += count(2 * mesh.edges().size());
  for (const MeshEdge& edge : mesh.edges()) {
    tables += word(static_cast<std::uint32_t>(edge.start) | (edge.smooth() ? 0 : 0x80000000)) +
              word(static_cast<std::uint32_t>(edge.end));
  }
  std::set<std::size_t> loopEnds;
  for (const MeshHole& hole : mesh.holes())
    loopEnds.insert(static_cast<std::size_t>(hole.firstCorner) - 1);
  const std::set<int> faceEnds(mesh.storedFaceStarts().begin() + 1, mesh.storedFaceStarts().end());
  tables += count(mesh.storedLoopEdges().size());
  for (std::size_t i = 0; i < mesh.storedLoopEdges().size(); ++i) {
    const int edge = mesh.storedLoopEdges()[i];
    const bool isLast = faceEnds.count(static_cast<int>(i) + 1) != 0;
    tables +=
        word(static_cast<std::uint32_t>(edge < 0 ? -edge - 1 : edge) | (edge < 0 ? 0x80000000 : 0) |
             (isLast                   ? 0x60000000
              : loopEnds.count(i) != 0 ? 0x20000000
                                       : 0));
  }
  tables += count(3 * mesh.storedNormals().size());
  for (const MeshNormal& normal : mesh.storedNormals())
    tables += single(normal.x) + single(normal.y) + single(normal.z);
  tables += (mesh.storedNormals().empty() ? "" : word(0)) + count(mesh.uvSets().size());
  for (const MeshUvSet& set : mesh.uvSets()) {
    tables +=
        count(static_cast<std::size_t>(set.index)) + text(set.name) + count(2 * set.uvs.size());
    for (const MeshUv& uv : set.uvs) tables += single(uv.u) + single(uv.v);
    tables += count(set.ids.size());
    for (const int id : set.ids) tables += word(static_cast<std::uint32_t>(id));
  }
  tables += count(mesh.colourSets().size());
  for (const MeshColourSet& set : mesh.colourSets()) {
    tables += count(static_cast<std::size_t>(set.index)) + text(set.name) + word(4) +
              count(4 * set.colours.size());
    for (const MeshColour& colour : set.colours)
      tables += single(colour.r) + single(colour.g) + single(colour.b) + single(colour.a);
    tables += count(set.ids.size());
    for (const int id : set.ids) tables += word(static_cast<std::uint32_t>(id));
  }
  return tables + std::string(16, '\0');
}

std::string sceneFile(const Layout& layout) {
  return SceneTwin(layout).file();
}

}  // namespace host::twin
