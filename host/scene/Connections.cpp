#include "host/scene/Connections.h"

#include <algorithm>
#include <limits>

#include "host/scene/Node.h"

namespace host {
namespace {

std::uint64_t nextSerial() {
  static std::uint64_t serial = 0;
  return ++serial;
}

void sortBySerial(std::vector<ConnectionPtr>& connections) {
  std::sort(connections.begin(), connections.end(),
            [](const ConnectionPtr& a, const ConnectionPtr& b) { return a->serial < b->serial; });
  connections.erase(std::unique(connections.begin(), connections.end()), connections.end());
}

// Calls `use` with every entry of the map whose path is `top` or is written below it.
template <typename Map, typename Use>
void forEachAtOrBelow(const Map& map, const std::string& top, Use use) {
  for (auto entry = map.lower_bound(top); entry != map.end(); ++entry) {
    const std::string& path = entry->first;
    if (path.compare(0, top.size(), top) != 0) return;
    const char after = path.size() == top.size() ? '[' : path[top.size()];
    if (after == '[' || after == '.') use(entry->second);
  }
}

bool fail(std::string* error, std::string text) {
  if (error) *error = std::move(text);
  return false;
}

// Whether values of one can go into the other, as far as the host can tell.
bool areCompatible(const Attribute& source, const Attribute& destination) {
  using Kind = Attribute::Kind;
  const auto isPlain = [](Kind kind) { return kind == Kind::kNumber || kind == Kind::kText; };
  if (source.kind() == Kind::kMessage) return !isPlain(destination.kind());
  if (isPlain(source.kind()) && isPlain(destination.kind()))
    return source.kind() == destination.kind();
  return true;
}

}  // namespace

std::vector<ConnectionPtr> ConnectionTable::inOrder() const {
  std::vector<ConnectionPtr> all;
  for (const auto& entry : inputs_) all.push_back(entry.second);
  for (const auto& entry : outputs_)
    for (const auto& output : entry.second) all.push_back(output.second);
  sortBySerial(all);
  return all;
}

ConnectionPtr ConnectionTable::into(const std::string& path) const {
  const auto found = inputs_.find(path);
  return found == inputs_.end() ? nullptr : found->second;
}

std::vector<ConnectionPtr> ConnectionTable::outOf(const std::string& path) const {
  std::vector<ConnectionPtr> found;
  const auto outputs = outputs_.find(path);
  if (outputs == outputs_.end()) return found;
  for (const auto& output : outputs->second) found.push_back(output.second);
  return found;
}

std::vector<ConnectionPtr> ConnectionTable::intoAtOrBelow(const std::string& path) const {
  std::vector<ConnectionPtr> found;
  forEachAtOrBelow(inputs_, path, [&found](const ConnectionPtr& c) { found.push_back(c); });
  sortBySerial(found);
  return found;
}

std::vector<ConnectionPtr> ConnectionTable::outOfAtOrBelow(const std::string& path) const {
  std::vector<ConnectionPtr> found;
  forEachAtOrBelow(outputs_, path, [&found](const Outputs& outputs) {
    for (const auto& output : outputs) found.push_back(output.second);
  });
  sortBySerial(found);
  return found;
}

int ConnectionTable::nextIndex(const std::string& arrayPath) const {
  const auto found = nextIndices_.find(arrayPath);
  return found == nextIndices_.end() ? 0 : found->second;
}

void ConnectionTable::countIndex(const std::string& arrayPath, int index) {
  int& next = nextIndices_[arrayPath];
  if (index < next || index == std::numeric_limits<int>::max()) return;
  next = index + 1;
}

bool connect(const Plug& source, const Plug& destination, bool force, std::string* error) {
  if (source.isNull() || destination.isNull()) return fail(error, "nothing to connect");
  if (!areCompatible(*source.attribute(), *destination.attribute())) {
    return fail(error, "The attributes '" + source.name() + "' and '" + destination.name() +
                           "' are not compatible");
  }
  const ConnectionPtr existing = destination.node()->connections.into(destination.path());
  if (existing) {
    if (existing->source == source) return true;
    if (!force) {
      return fail(error, "The destination attribute '" + destination.name() +
                             "' already has an incoming connection from '" +
                             existing->source.name() + "'");
    }
    disconnect(existing);
  }
  destination.node()->noteChange();
  const auto made =
      std::make_shared<const Connection>(Connection{source, destination, nextSerial()});
  destination.node()->connections.inputs_[destination.path()] = made;
  source.node()->connections.outputs_[source.path()][made->serial] = made;
  for (const Plug* end : {&source, &destination}) {
    const auto range = splitRange(end->path());
    if (range) end->node()->connections.countIndex(std::string(range->stem), range->first);
  }
  return true;
}

bool disconnect(const Plug& source, const Plug& destination) {
  if (source.isNull() || destination.isNull()) return false;
  const ConnectionPtr existing = destination.node()->connections.into(destination.path());
  if (!existing || existing->source != source) return false;
  disconnect(existing);
  return true;
}

void disconnect(const ConnectionPtr& connection) {
  connection->destination.node()->noteChange();
  const Plug& source = connection->source;
  ConnectionTable& from = source.node()->connections;
  const auto outputs = from.outputs_.find(source.path());
  if (outputs != from.outputs_.end()) {
    outputs->second.erase(connection->serial);
    if (outputs->second.empty()) from.outputs_.erase(outputs);
  }
  connection->destination.node()->connections.inputs_.erase(connection->destination.path());
}

void disconnectAll(const NodePtr& node) {
  for (const ConnectionPtr& connection : node->connections.inOrder()) disconnect(connection);
}

std::optional<Plug> sourceOf(const Plug& destination) {
  if (destination.isNull()) return std::nullopt;
  const ConnectionPtr connection = destination.node()->connections.into(destination.path());
  return connection ? std::optional<Plug>(connection->source) : std::nullopt;
}

std::vector<Plug> destinationsOf(const Plug& source) {
  std::vector<Plug> plugs;
  if (source.isNull()) return plugs;
  for (const ConnectionPtr& connection : source.node()->connections.outOf(source.path()))
    plugs.push_back(connection->destination);
  return plugs;
}

bool isConnected(const Plug& plug) {
  return sourceOf(plug) || !destinationsOf(plug).empty();
}

Plug nextElement(const Plug& array) {
  if (!array.isArray()) return array;
  return array.element(array.node()->connections.nextIndex(array.path()));
}

std::vector<ConnectionPtr> connectionsAtOrBelow(const Plug& plug, bool asDestination,
                                                bool asSource) {
  std::vector<ConnectionPtr> found;
  if (plug.isNull()) return found;
  const auto append = [&found](const std::vector<ConnectionPtr>& more) {
    found.insert(found.end(), more.begin(), more.end());
  };
  const ConnectionTable& table = plug.node()->connections;
  if (asDestination) append(table.intoAtOrBelow(plug.path()));
  if (asSource) append(table.outOfAtOrBelow(plug.path()));
  for (const Plug& child : plug.children())
    append(connectionsAtOrBelow(child, asDestination, asSource));
  sortBySerial(found);
  return found;
}

}  // namespace host
