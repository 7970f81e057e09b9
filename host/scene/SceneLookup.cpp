// What names and patterns find.

#include <algorithm>

#include "host/scene/Scene.h"

namespace host {
namespace {

bool hasWildcard(std::string_view text) {
  return text.find_first_of("*?") != text.npos;
}

// `*` stands for any number of characters and `?` for one, none of them a colon.
bool matches(std::string_view name, std::string_view pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  std::size_t starAt = pattern.npos;
  std::size_t starName = 0;
  while (n < name.size()) {
    const bool isWild = p < pattern.size() && pattern[p] == '?' && name[n] != ':';
    if (p < pattern.size() && pattern[p] == '*') {
      starAt = p++;
      starName = n;
    } else if (isWild || (p < pattern.size() && pattern[p] == name[n])) {
      ++n;
      ++p;
    } else if (starAt != pattern.npos && name[starName] != ':') {
      p = starAt + 1;
      n = ++starName;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

std::string_view withoutNamespaces(std::string_view name) {
  const std::size_t colon = name.rfind(':');
  return colon == name.npos ? name : name.substr(colon + 1);
}

std::string_view withoutLeadingColon(std::string_view name) {
  if (!name.empty() && name.front() == ':') name.remove_prefix(1);
  return name;
}

// The names of "a|b", and of "a->|b" or "a->b", in which b stands below a shape.
std::vector<std::string_view> splitPath(std::string_view path) {
  constexpr std::string_view kArrow = "->";
  std::vector<std::string_view> names;
  for (;;) {
    const std::size_t arrow = path.find(kArrow);
    const std::size_t bar = std::min(path.find('|'), arrow);
    names.push_back(withoutLeadingColon(path.substr(0, bar)));
    if (bar == path.npos) return names;
    path.remove_prefix(bar + (bar == arrow ? kArrow.size() : 1));
    if (bar == arrow && path.substr(0, 1) == "|") path.remove_prefix(1);
  }
}

bool isPathText(std::string_view text) {
  return text.find('|') != text.npos || text.find("->") != text.npos;
}

bool endsIn(const DagPath& path, const std::vector<std::string_view>& patterns, bool absolute) {
  const auto& nodes = path.nodes();
  if (nodes.size() < patterns.size() || (absolute && nodes.size() != patterns.size())) return false;
  return std::equal(patterns.rbegin(), patterns.rend(), nodes.rbegin(),
                    [](std::string_view p, const NodePtr& n) { return matches(n->name(), p); });
}

bool comesBefore(const DagPath& a, const DagPath& b) {
  if (a.node() != b.node()) return a.node()->serial() < b.node()->serial();
  return a.instanceNumber() < b.instanceNumber();
}

}  // namespace

std::vector<NodePtr> Scene::nodesMatching(std::string_view pattern, bool inNamespaces) const {
  if (!hasWildcard(pattern) && !inNamespaces) return nodesNamed(pattern);
  std::vector<NodePtr> found;
  for (const auto& [serial, node] : nodes_) {
    const std::string& name = node->name();
    const bool isInside = inNamespaces && matches(withoutNamespaces(name), pattern);
    if (isInside || matches(name, pattern)) found.push_back(node);
  }
  return found;
}

// Steps from every path to its children of that name. It looks through the children or through all
// nodes of that name, whichever are fewer.
void Scene::stepDown(std::vector<DagPath>& paths, std::string_view name) const {
  std::vector<DagPath> below;
  const auto entry = byName_.find(std::string(name));
  if (entry != byName_.end()) {
    const auto& namesakes = entry->second.dag;
    for (const DagPath& path : paths) {
      const Node* parent = path.isEmpty() ? world_.get() : path.node().get();
      if (parent->children().size() < namesakes.size()) {
        for (const NodePtr& child : parent->children())
          if (child->name() == name) below.push_back(path.extendedBy(child));
      } else {
        for (const auto& [serial, node] : namesakes) {
          const auto& parents = node->parents();
          const bool isChild = std::find(parents.begin(), parents.end(), parent) != parents.end();
          if (isChild) below.push_back(path.extendedBy(node));
        }
      }
    }
  }
  paths = std::move(below);
}

// The paths that a text with `|` and without wildcards names.
std::vector<DagPath> Scene::literalPaths(std::string_view text) const {
  const bool absolute = text.front() == '|';
  const auto names = splitPath(absolute ? text.substr(1) : text);
  std::vector<DagPath> paths;
  if (absolute) {
    paths.emplace_back();
    stepDown(paths, names.front());
  } else {
    for (const NodePtr& node : nodesNamed(names.front()))
      for (DagPath& path : allPaths(node)) paths.push_back(std::move(path));
  }
  for (std::size_t i = 1; i < names.size() && !paths.empty(); ++i) stepDown(paths, names[i]);
  std::sort(paths.begin(), paths.end(), comesBefore);
  return paths;
}

std::vector<SelectionItem> Scene::matchObjects(std::string_view text, bool inNamespaces) const {
  std::vector<SelectionItem> items;
  if (text.empty() || text == "|") return items;
  const bool isPath = isPathText(text);
  if (isPath && !hasWildcard(text)) {
    for (const DagPath& path : literalPaths(text)) items.push_back(SelectionItem::of(path));
    return items;
  }
  const bool absolute = text.front() == '|';
  const auto patterns = splitPath(absolute ? text.substr(1) : text);
  for (const NodePtr& node : nodesMatching(patterns.back(), inNamespaces)) {
    if (!isPath) {
      items.push_back(SelectionItem::of(node));
    } else if (node->isDag()) {
      for (const DagPath& path : allPaths(node))
        if (endsIn(path, patterns, absolute)) items.push_back(SelectionItem::of(path));
    }
  }
  return items;
}

std::vector<SelectionItem> Scene::match(std::string_view text, bool inNamespaces) const {
  const std::size_t dot = text.find('.');
  if (dot == text.npos) return matchObjects(text, inNamespaces);
  const ComponentPtr component = Component::parse(text.substr(dot + 1));
  if (!component) return {};
  std::vector<SelectionItem> items;
  for (SelectionItem& item : matchObjects(text.substr(0, dot), inNamespaces)) {
    if (!item.node->isDag()) continue;
    const auto shapes = shapesBelow(*item.node);
    const bool isOwner = item.node->isTransform() && shapes.size() == 1;
    const DagPath path = isOwner ? item.path.extendedBy(shapes.front()) : item.path;
    items.push_back(SelectionItem::of(path, component));
  }
  return items;
}

NodePtr Scene::findNode(std::string_view text, std::string* error) const {
  const std::vector<SelectionItem> items = matchObjects(text, false);
  const bool isOne = !items.empty() && std::all_of(items.begin(), items.end(), [&](const auto& i) {
    return i.node == items.front().node;
  });
  if (isOne) return items.front().node;
  if (error) {
    *error = items.empty() ? "No object matches name: " : "More than one object matches name: ";
    error->append(text);
  }
  return nullptr;
}

DagPath Scene::findPath(std::string_view text, std::string* error) const {
  const NodePtr node = findNode(text, error);
  if (!node) return DagPath();
  if (node->isDag()) return matchObjects(text, false).front().path;
  if (error) *error = "'" + std::string(text) + "' is not a DAG node";
  return DagPath();
}

Plug Scene::findPlug(std::string_view text, std::string* error) const {
  const std::size_t dot = text.find('.');
  if (dot == text.npos) {
    if (error) *error = "'" + std::string(text) + "' names no attribute";
    return Plug();
  }
  const NodePtr node = findNode(text.substr(0, dot), error);
  if (!node) return Plug();
  const auto plug = Plug::find(node, text.substr(dot + 1));
  if (!plug && error) *error = "No object matches name: " + std::string(text);
  return plug.value_or(Plug());
}

bool Scene::isOnlyPath(std::string_view partialPath) const {
  if (isPathText(partialPath)) return literalPaths(partialPath).size() == 1;
  const auto found = byName_.find(std::string(partialPath));
  if (found == byName_.end()) return false;
  const Namesakes& namesakes = found->second;
  if (namesakes.dag.size() != 1 || !namesakes.others.empty()) return false;
  return namesakes.dag.begin()->second->pathCount() == 1;
}

std::string Scene::displayName(const NodePtr& node) const {
  if (!node) return {};
  const auto found = byName_.find(node->name());
  if (found == byName_.end() || !node->isDag()) return node->name();
  if (found->second.dag.size() + found->second.others.size() == 1) return node->name();
  return firstPath(node).partialName();
}

}  // namespace host
