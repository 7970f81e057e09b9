#ifndef MORVANE_HOST_SCENE_CONNECTIONS_H_
#define MORVANE_HOST_SCENE_CONNECTIONS_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/scene/Plug.h"

namespace host {

struct Connection {
  Plug source;
  Plug destination;
  std::uint64_t serial = 0;  // later connections have larger ones
};

using ConnectionPtr = std::shared_ptr<const Connection>;

// The connections that begin or end at one node.
class ConnectionTable {
 public:
  // In the order in which they were made. A connection of a node with itself occurs once.
  std::vector<ConnectionPtr> inOrder() const;
  bool hasInputs() const { return !inputs_.empty(); }
  bool isEmpty() const { return inputs_.empty() && outputs_.empty(); }

  ConnectionPtr into(const std::string& path) const;                // null when there is none
  std::vector<ConnectionPtr> outOf(const std::string& path) const;  // in order

  // All connections that end (begin) at the plug, its elements, or children written below it, in
  // order: "a" includes "a[2].b".
  std::vector<ConnectionPtr> intoAtOrBelow(const std::string& path) const;
  std::vector<ConnectionPtr> outOfAtOrBelow(const std::string& path) const;

  // One more than the largest index at which an element of the array was ever connected or counted.
  int nextIndex(const std::string& arrayPath) const;
  void countIndex(const std::string& arrayPath, int index);

 private:
  friend bool connect(const Plug&, const Plug&, bool, std::string*);
  friend void disconnect(const ConnectionPtr&);
  using Outputs = std::map<std::uint64_t, ConnectionPtr>;

  std::map<std::string, ConnectionPtr, std::less<>> inputs_;
  std::map<std::string, Outputs, std::less<>> outputs_;
  std::unordered_map<std::string, int> nextIndices_;
};

// Connects. A destination that is connected already is refused, unless `force`, which replaces its
// connection; the same connection twice is a success. Arrays as a whole are refused when only an
// element makes sense: pass `orFirstElement()` or `nextElement()`. On failure `error` says why.
bool connect(const Plug& source, const Plug& destination, bool force, std::string* error = nullptr);

// Takes a connection away; false when there is none.
bool disconnect(const Plug& source, const Plug& destination);
void disconnect(const ConnectionPtr& connection);
void disconnectAll(const NodePtr& node);

std::optional<Plug> sourceOf(const Plug& destination);
std::vector<Plug> destinationsOf(const Plug& source);
bool isConnected(const Plug& plug);  // at exactly this plug, either way

// The element after the last of an array plug that anything was ever connected to.
Plug nextElement(const Plug& array);

// Every connection at the plug, its elements and its children, in connection order.
std::vector<ConnectionPtr> connectionsAtOrBelow(const Plug& plug, bool asDestination,
                                                bool asSource);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_CONNECTIONS_H_
