#include "host/file/SceneWriter.h"

#include <algorithm>
#include <unordered_set>

#include "host/file/NodeText.h"
#include "host/scene/Connections.h"
#include "host/scene/Dag.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Shading.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/text/Text.h"
#include "util/FileExtension.h"
#include "util/ReplaceFile.h"

namespace host {
namespace {

using NodeSet = std::unordered_set<const Node*>;

class Writer {
 public:
  // `only` null: everything.
  Writer(HostState& state, const NodeSet* only) : state_(state), only_(only) {
    setLengthUnit(units_, state_.info.lengthUnit);
    setAngleUnit(units_, state_.info.angleUnit);
  }

  // Replaces the scene file that was opened only while it is unchanged.
  morvane::Status write(const std::string& path) {
    // An opened Maya Binary scene must not be replaced by an ASCII file under its name.
    if (morvane::lowerExtension(path) == ".mb") {
      return {morvane::StatusCode::kBadArgument,
              "cannot write " + path + ": only Maya ASCII is written; give it a name with .ma"};
    }
    SceneInfo& info = state_.info;
    const bool isOwn = info.opened.known && morvane::isSamePlace(info.openedAs, path);
    if (isOwn) file_.expect(info.opened);
    const bool ok = file_.open(path.c_str()) && writeHeader() && writeNodes() && writeInstances() &&
                    writeConnections() && writeLoose() && writeRelationships() && writeMetadata() &&
                    file_.commit();
    if (ok && isOwn) info.opened = file_.written();
    return file_.status();
  }

 private:
  bool isWritten(const NodePtr& node) const {
    return !node->isReferenced && (only_ == nullptr || only_->count(node.get()) != 0);
  }

  bool put(const std::string& text) { return file_.append(text.data(), text.size()); }
  bool putAll(const std::vector<std::string>& statements) {
    return std::all_of(statements.begin(), statements.end(),
                       [this](const std::string& statement) { return put(statement + ";\n"); });
  }

  bool writeHeader() {
    const SceneInfo& info = state_.info;
    const std::vector<std::string> oldest{"requires maya \"2018\""};
    const std::string time = info.timeUnit.empty() ? "film" : info.timeUnit;
    const std::string length = info.lengthUnit.empty() ? "centimeter" : info.lengthUnit;
    const std::string angle = info.angleUnit.empty() ? "degree" : info.angleUnit;
    return put((info.firstLine.empty() ? "//Maya ASCII 2018 scene" : info.firstLine) +
               "\n//Name: scene\n//Codeset: UTF-8\n") &&
           putAll(info.references) &&
           putAll(info.requirements.empty() ? oldest : info.requirements) &&
           put("currentUnit -l " + length + " -a " + angle + " -t " + time + ";\n") &&
           putAll(info.fileInfo);
  }

  bool writeNode(const NodePtr& node) {
    if (!isWritten(node)) return true;
    std::string text;
    appendNode(text, node, units_, state_.project);
    return put(text);
  }

  // The DAG from the top down, each node below its first parent, so that children are made in their
  // order.
  bool writeNodes() {
    const Scene& scene = state_.scene;
    std::vector<NodePtr> waiting(scene.world()->children().rbegin(),
                                 scene.world()->children().rend());
    while (!waiting.empty()) {
      const NodePtr node = waiting.back();
      waiting.pop_back();
      if (!writeNode(node)) return false;
      const auto& children = node->children();
      for (auto child = children.rbegin(); child != children.rend(); ++child)
        if ((*child)->parents().front() == node.get()) waiting.push_back(*child);
    }
    for (const auto& [serial, node] : scene.nodes())
      if (!node->isDag() && !writeNode(node)) return false;
    return true;
  }

  bool writeInstances() {
    for (const auto& [serial, node] : state_.scene.nodes()) {
      if (!node->isDag() || node->parents().size() < 2 || !isWritten(node)) continue;
      const std::string name = firstPath(node).fullName();
      for (std::size_t i = 1; i < node->parents().size(); ++i) {
        const NodePtr parent = node->parents()[i]->pointer();
        if (isWritten(parent) && !put("parent -s -nc -r -add " + mel::quoted(name) + ' ' +
                                      mel::quoted(fileName(parent)) + ";\n")) {
          return false;
        }
      }
    }
    return true;
  }

  bool isConnectionWritten(const Connection& connection) const {
    const NodePtr& source = connection.source.node();
    const NodePtr& destination = connection.destination.node();
    const bool known = only_ == nullptr ||
                       (only_->count(source.get()) != 0 && only_->count(destination.get()) != 0);
    const bool isEveryScenes = source->isDefault && destination->isDefault &&
                               connection.serial <= state_.info.lastDefaultConnection;
    return known && !isEveryScenes &&
           (!(source->isReferenced && destination->isReferenced) ||
            state_.info.standIns.count(connection.serial) != 0);
  }

  // A list of messages gets its elements by the order of the statements, since numbers would clash
  // with those of the default nodes.
  std::string statementOf(const Connection& connection) const {
    const auto& standIns = state_.info.standIns;
    const auto known = standIns.find(connection.serial);
    const SceneInfo::StandIn standIn =
        known == standIns.end() ? SceneInfo::StandIn() : known->second;
    const Plug& source = standIn.source.isNull() ? connection.source : standIn.source;
    const Plug& destination =
        standIn.destination.isNull() ? connection.destination : standIn.destination;
    std::string path = destination.path();
    const auto range = splitRange(path);
    const bool next = range && destination.attribute()->kind() == Attribute::Kind::kMessage;
    if (next) path = std::string(range->stem);
    return "connectAttr " + mel::quoted(fileName(source.node()) + "." + source.path()) + ' ' +
           mel::quoted(fileName(destination.node()) + "." + path) + (next ? " -na;\n" : ";\n");
  }

  bool writeConnections() {
    std::vector<ConnectionPtr> connections;
    for (const auto& [serial, node] : state_.scene.nodes()) {
      for (const ConnectionPtr& connection : node->connections.inOrder())
        if (connection->destination.node() == node && isConnectionWritten(*connection))
          connections.push_back(connection);
    }
    std::sort(connections.begin(), connections.end(),
              [](const ConnectionPtr& a, const ConnectionPtr& b) { return a->serial < b->serial; });
    return std::all_of(
        connections.begin(), connections.end(),
        [this](const ConnectionPtr& connection) { return put(statementOf(*connection)); });
  }

  // The name of an end of a loose connection; empty when it is not to be written.
  std::string looseName(const SceneInfo::LooseConnection::End& end) const {
    const NodePtr node = end.node.lock();
    // A node that came after the connection was not connected, and would be in the saved scene.
    if (!end.isKnown && state_.scene.findNode(end.text.substr(0, end.text.find('.'))) != nullptr)
      return std::string();
    if (!end.isKnown) return end.text;
    const bool isThere =
        node != nullptr && node->isAlive() && (only_ == nullptr || only_->count(node.get()) != 0);
    return isThere ? fileName(node) + "." + end.text : std::string();
  }

  // Statements of the scene file about nodes that are missing here.
  bool writeLoose() {
    const SceneInfo& info = state_.info;
    for (const SceneInfo::LooseConnection& connection : info.looseConnections) {
      const std::string source = looseName(connection.source);
      const std::string destination = looseName(connection.destination);
      if (!source.empty() && !destination.empty() &&
          !put("connectAttr " + mel::quoted(source) + ' ' + mel::quoted(destination) +
               (connection.isNext ? " -na;\n" : ";\n"))) {
        return false;
      }
    }
    return only_ != nullptr || putAll(info.strayStatements);
  }

  // Light links: those that were read, and for new shading groups those of the default lights.
  bool writeRelationships() {
    const Scene& scene = state_.scene;
    NodeSet mentioned;
    for (const SceneInfo::Relationship& relationship : state_.info.relationships) {
      const NodePtr node = scene.findNode(relationship.node);
      if ((node != nullptr || !relationship.isKnown) && !put(relationship.statement + ";\n"))
        return false;
      mentioned.insert(node.get());
    }
    if (scene.nodesNamed("lightLinker1").empty()) return true;
    for (const auto& [serial, node] : scene.nodes()) {
      const bool isNew =
          node->type().isA("shadingEngine") && !node->isDefault && mentioned.count(node.get()) == 0;
      for (const char* kind : {"link", "shadowLink"}) {
        if (isNew && isWritten(node) &&
            !put(std::string("relationship \"") + kind + "\" \":lightLinker1\" " +
                 mel::quoted(fileName(node) + ".message") + " \":defaultLightSet.message\";\n")) {
          return false;
        }
      }
    }
    return true;
  }

  bool writeMetadata() { return putAll(state_.info.metadata) && put("// End of scene\n"); }

  HostState& state_;
  const NodeSet* only_;
  SceneUnits units_;
  morvane::FileReplacer file_;
};

void addBelow(const NodePtr& node, NodeSet& nodes) {
  visitBelow(node, [&](const NodePtr& next) {
    nodes.insert(next.get());
    return true;
  });
}

void addAbove(const NodePtr& node, NodeSet& nodes) {
  for (const DagPath& path : allPaths(node))
    for (const NodePtr& above : path.nodes()) nodes.insert(above.get());
}

// Adds the shading groups of the nodes, and all nodes that lead into these.
void addShading(const Scene& scene, NodeSet& nodes) {
  std::vector<NodePtr> waiting;
  for (const auto& [serial, node] : scene.nodes()) {
    if (nodes.count(node.get()) != 0)
      for (const NodePtr& set : setsHolding(node)) waiting.push_back(set);
  }
  while (!waiting.empty()) {
    const NodePtr node = waiting.back();
    waiting.pop_back();
    if (!nodes.insert(node.get()).second) continue;
    for (const ConnectionPtr& connection : node->connections.inOrder())
      if (connection->destination.node() == node && !connection->source.node()->isDag())
        waiting.push_back(connection->source.node());
  }
}

}  // namespace

morvane::Status writeScene(HostState& state, const std::string& path) {
  return Writer(state, nullptr).write(path);
}

morvane::Status writeNodes(HostState& state, const std::string& path,
                           const std::vector<NodePtr>& roots) {
  NodeSet nodes;
  for (const NodePtr& node : roots) {
    addBelow(node, nodes);
    addAbove(node, nodes);
  }
  addShading(state.scene, nodes);
  return Writer(state, &nodes).write(path);
}

}  // namespace host
