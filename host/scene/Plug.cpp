#include "host/scene/Plug.h"

#include <algorithm>
#include <charconv>

#include "host/scene/Node.h"
#include "host/scene/Scene.h"

namespace host {
namespace {

constexpr std::size_t kMaxParts = 32;

bool readIndex(std::string_view text, int& index) {
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, index);
  return !text.empty() && problem == std::errc() && stop == end && index >= 0;
}

// One step of a path text: "og[1]".
struct Part {
  std::string_view name;
  int index = -1;
};

std::optional<Part> readPart(std::string_view text) {
  Part part;
  const std::size_t bracket = text.find('[');
  part.name = text.substr(0, bracket);
  if (part.name.empty() || part.name.find(']') != std::string_view::npos) return std::nullopt;
  if (bracket == std::string_view::npos) return part;
  if (text.back() != ']') return std::nullopt;
  const std::string_view inside = text.substr(bracket + 1, text.size() - bracket - 2);
  return readIndex(inside, part.index) ? std::optional<Part>(part) : std::nullopt;
}

std::optional<std::vector<Part>> readParts(std::string_view text) {
  std::vector<Part> parts;
  while (parts.size() < kMaxParts) {
    const std::size_t dot = text.find('.');
    const auto part = readPart(text.substr(0, dot));
    if (!part) return std::nullopt;
    parts.push_back(*part);
    if (dot == std::string_view::npos) return parts;
    text.remove_prefix(dot + 1);
  }
  return std::nullopt;
}

struct NamedIndex {
  const Attribute* attribute;
  int index;  // -1: none was written
};

int indexOf(const std::vector<NamedIndex>& named, const Attribute* attribute) {
  for (const NamedIndex& entry : named)
    if (entry.attribute == attribute) return entry.index;
  return -1;
}

// The canonical text for `last`, with the indices that were written.
std::string canonicalPath(const AttributePtr& last, const std::vector<NamedIndex>& indices) {
  std::vector<AttributePtr> chain;
  for (AttributePtr a = last; a; a = a->parent()) chain.push_back(a);
  std::reverse(chain.begin(), chain.end());
  auto top = std::find_if(chain.begin(), chain.end() - 1,
                          [](const AttributePtr& a) { return a->isArray; });
  std::string path;
  for (; top != chain.end(); ++top) {
    const Attribute* attribute = top->get();
    if (!path.empty()) path += '.';
    path += attribute->longName();
    int index = indexOf(indices, attribute);
    if (index < 0 && attribute->isArray && attribute != last.get()) index = 0;
    if (index >= 0) path += "[" + std::to_string(index) + "]";
  }
  return path;
}

// Reads a path text as far as the host knows the node's attributes.
struct Resolved {
  AttributePtr attribute;  // the last that is known; null for none
  std::vector<NamedIndex> indices;
  std::size_t known = 0;  // how many parts are
};

// Finds an attribute by its name alone, even when compounds that are not arrays lie between.
AttributePtr findBelow(const AttributePtr& attribute, std::string_view name) {
  std::vector<AttributePtr> compounds = {attribute};
  for (std::size_t i = 0; i < compounds.size(); ++i) {
    const AttributePtr compound = compounds[i];
    if (AttributePtr child = compound->findChild(name)) return child;
    for (const AttributePtr& child : compound->children())
      if (!child->isArray && !child->children().empty()) compounds.push_back(child);
  }
  return nullptr;
}

Resolved resolve(const NodePtr& node, const std::vector<Part>& parts) {
  Resolved resolved;
  for (const Part& part : parts) {
    const AttributePtr next = resolved.attribute == nullptr
                                  ? node->findAttribute(part.name)
                                  : findBelow(resolved.attribute, part.name);
    if (next == nullptr || (part.index >= 0 && !next->isArray)) break;
    resolved.attribute = next;
    resolved.indices.push_back({next.get(), part.index});
    ++resolved.known;
  }
  return resolved;
}

// The path of a plug that is known only in part: canonical as far as it is, and then as written.
std::string partlyKnownPath(const Resolved& resolved, const std::vector<Part>& parts) {
  std::string path = resolved.attribute == nullptr
                         ? std::string()
                         : canonicalPath(resolved.attribute, resolved.indices);
  for (std::size_t i = resolved.known; i < parts.size(); ++i) {
    path += (path.empty() ? "" : ".") + std::string(parts[i].name);
    path += parts[i].index < 0 ? "" : "[" + std::to_string(parts[i].index) + "]";
  }
  return path;
}

// The name under which a node keeps the loose attribute of such a path: no other begins so.
std::string looseName(std::string_view path) {
  std::string name = ".";
  bool inside = false;
  for (const char c : path) {
    inside = c == '[' || (inside && c != ']');
    if (!inside && c != ']') name += c;
  }
  return name;
}

}  // namespace

Plug::Plug(NodePtr node, AttributePtr attribute, std::string path)
    : node_(std::move(node)), attribute_(std::move(attribute)), path_(std::move(path)) {}

std::optional<Plug> Plug::find(const NodePtr& node, std::string_view pathText) {
  const auto parts = readParts(pathText);
  if (!parts || !node) return std::nullopt;
  const AttributePtr first = node->findAttribute(parts->front().name);
  if (!first) return std::nullopt;
  if (first->kind() == Attribute::Kind::kLoose) return Plug(node, first, std::string(pathText));
  const Resolved resolved = resolve(node, *parts);
  if (resolved.known == parts->size())
    return Plug(node, resolved.attribute, canonicalPath(resolved.attribute, resolved.indices));
  std::string path = partlyKnownPath(resolved, *parts);
  const AttributePtr loose = node->findAttribute(looseName(path));
  return loose == nullptr ? std::nullopt : std::optional<Plug>(Plug(node, loose, std::move(path)));
}

std::optional<Plug> Plug::findOrKeep(const NodePtr& node, std::string_view pathText) {
  if (auto plug = find(node, pathText)) return plug;
  const auto parts = readParts(pathText);
  if (!parts || !node) return std::nullopt;
  if (node->findAttribute(parts->front().name) != nullptr)
    node->findOrKeepLoose(looseName(partlyKnownPath(resolve(node, *parts), *parts)));
  else
    node->findOrKeepLoose(parts->front().name);
  return find(node, pathText);
}

Plug Plug::ofAttribute(const NodePtr& node, const AttributePtr& attribute) {
  return Plug(node, attribute, canonicalPath(attribute, {}));
}

std::string Plug::name() const {
  return isNull() ? std::string() : node_->displayName() + "." + path_;
}

bool Plug::isArray() const {
  return attribute_ && attribute_->isArray && !isElement();
}

bool Plug::isElement() const {
  return !path_.empty() && path_.back() == ']';
}

int Plug::index() const {
  const auto range = splitRange(path_);
  return range ? range->first : -1;
}

Plug Plug::element(int index) const {
  if (!isArray()) return *this;
  return Plug(node_, attribute_, path_ + "[" + std::to_string(index) + "]");
}

Plug Plug::child(const AttributePtr& child) const {
  const Plug above = orFirstElement();
  const bool belowArray = above.path_.find('[') != std::string::npos;
  return Plug(node_, child, (belowArray ? above.path_ + "." : std::string()) + child->longName());
}

std::vector<Plug> Plug::children() const {
  std::vector<Plug> plugs;
  if (isNull() || isArray()) return plugs;
  for (const AttributePtr& each : attribute_->children()) plugs.push_back(child(each));
  return plugs;
}

std::optional<PathRange> splitRange(std::string_view pathText) {
  const std::size_t bracket = pathText.rfind('[');
  if (bracket == std::string_view::npos || pathText.back() != ']') return std::nullopt;
  PathRange range;
  range.stem = pathText.substr(0, bracket);
  const std::string_view inside = pathText.substr(bracket + 1, pathText.size() - bracket - 2);
  const std::size_t colon = inside.find(':');
  if (!readIndex(inside.substr(0, colon), range.first)) return std::nullopt;
  range.last = range.first;
  if (colon == std::string_view::npos) return range;
  if (!readIndex(inside.substr(colon + 1), range.last)) return std::nullopt;
  return range.last >= range.first ? std::optional<PathRange>(range) : std::nullopt;
}

}  // namespace host
