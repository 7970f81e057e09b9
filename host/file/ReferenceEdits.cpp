#include "host/file/ReferenceEdits.h"

#include <algorithm>
#include <utility>

#include "host/binary/ReferenceEdits.h"
#include "host/file/StatementReader.h"
#include "host/scene/Connections.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

bool isApplied(int kind) {
  return (kind >= ReferenceEdit::kParent && kind <= ReferenceEdit::kDisconnectAttr) ||
         kind == ReferenceEdit::kConnectAttr;
}

class EditParser {
 public:
  explicit EditParser(const mel::Words& words) : words_(words) {
    while (at_ < words_.size() && words_[at_].text != kReferenceEditsType) ++at_;
    ++at_;
  }

  std::vector<ReferenceEdit> parse() {
    std::vector<ReferenceEdit> edits;
    while (at_ < words_.size()) {
      if (words_[at_].quoted) {
        reference_ = words_[at_++].text;  // and, where edits follow, how many
        at_ += isNumber() ? 1 : 0;
      } else if (!parseEdit(edits)) {
        break;
      }
    }
    return edits;
  }

 private:
  // Names may stand without quotes.
  bool isNumber() const {
    return at_ < words_.size() && !words_[at_].quoted && mel::parseInteger(words_[at_].text);
  }

  bool takeNumber(int& number) {
    const bool isOne = isNumber();
    number = isOne ? *mel::parseInteger(words_[at_].text) : 0;
    at_ += isOne ? 1 : 0;
    return isOne;
  }

  bool parseEdit(std::vector<ReferenceEdit>& edits) {
    ReferenceEdit edit;
    edit.reference = reference_;
    if (!takeNumber(edit.kind) ||
        (edit.kind == ReferenceEdit::kConnectAttr && !takeNumber(edit.end))) {
      return false;
    }
    // An edit of an unknown kind has all texts up to the next number.
    const auto count = static_cast<std::size_t>(editOperandCount(edit.kind, edit.end));
    while (at_ < words_.size() && !isNumber() && (count == 0 || edit.operands.size() < count))
      edit.operands.push_back(words_[at_++].text);
    if (count > 0 && edit.operands.size() == count && isApplied(edit.kind))
      edits.push_back(std::move(edit));
    return true;
  }

  const mel::Words& words_;
  std::size_t at_ = 0;
  std::string reference_;
};

class EditApplier {
 public:
  explicit EditApplier(mel::CommandContext& context) : context_(context) {}

  // Gives why it was not applied; empty when it was.
  std::string apply(const ReferenceEdit& edit) {
    const std::vector<std::string>& o = edit.operands;
    switch (edit.kind) {
      case ReferenceEdit::kParent:
        return applyParent(edit);
      case ReferenceEdit::kAddAttr:
        return run("addAttr -ln " + mel::quoted(o[1]) + " -sn " + mel::quoted(o[2]) + ' ' + o[3] +
                   ' ' + mel::quoted(nameOf(o[0])));
      case ReferenceEdit::kSetAttr:
        return run("setAttr " + mel::quoted(nameOf(o[0]) + "." + o[1]) + ' ' + o[2]);
      case ReferenceEdit::kDisconnectAttr:
        return applyDisconnect(edit);
      default:
        return connectEnds(edit);
    }
  }

  std::vector<NodePtr> nodesOf(const ReferenceEdit& edit) const {
    std::vector<NodePtr> nodes;
    for (const std::string& name : namesOf(edit)) {
      const NodePtr node = nearestNode(name);
      if (node != nullptr) nodes.push_back(node);
    }
    return nodes;
  }

 private:
  // The nodes whose look an edit changes. A shading group looks the same whatever it shades, and a
  // node without a mesh is not missed.
  std::vector<std::string> namesOf(const ReferenceEdit& edit) const {
    const std::vector<std::string>& o = edit.operands;
    switch (edit.kind) {
      case ReferenceEdit::kParent: {
        const NodePtr child = nodeNamed(nameOf(o[0]));
        if (child != nullptr && !holdsMesh(child)) return {};
        return {o[0], o[1]};
      }
      case ReferenceEdit::kSetAttr:
        return {o[0]};
      case ReferenceEdit::kDisconnectAttr:
        return {isMembership(o[1]) ? o[0] : o[1]};
      case ReferenceEdit::kConnectAttr: {
        const bool isOneEnd = edit.end != ReferenceEdit::kIsBoth || isMembership(o[2]);
        const std::string& changed = o[isOneEnd ? 1 : 2];
        return {isMembership(changed) ? "" : changed, o[0]};
      }
      default:
        return {};
    }
  }

  static bool holdsMesh(const NodePtr& node) {
    return !visitBelow(node, [](const NodePtr& next) { return next->mesh == nullptr; });
  }

  static bool isMembership(const std::string& plug) {
    return plug.find(".dagSetMembers") != plug.npos || plug.find(".dsm") != plug.npos;
  }

  NodePtr nearestNode(const std::string& text) const {
    std::string name = nameOf(text);
    name.resize(std::min(name.find('.'), name.size()));
    while (!name.empty()) {
      NodePtr node = nodeNamed(name);
      if (node != nullptr) return node;
      const std::size_t bar = name.rfind('|');
      name.resize(bar == name.npos ? 0 : bar);
    }
    return nullptr;
  }

  // The name by which a node or plug is looked for: its path may be out of date.
  std::string nameOf(const std::string& text) const {
    const std::string node = text.substr(0, text.find('.'));
    const std::size_t bar = node.rfind('|');
    if (bar == node.npos || nodeNamed(node) != nullptr ||
        nodeNamed(node.substr(bar + 1)) == nullptr) {
      return text;
    }
    return text.substr(bar + 1);
  }

  NodePtr nodeNamed(std::string_view name, std::string* error = nullptr) const {
    std::string qualified;
    while (!name.empty()) {
      const std::size_t end = std::min(name.find('|'), name.size());
      qualified += (end == 0 ? "" : context_.nameSpace) + std::string(name.substr(0, end));
      qualified += end < name.size() ? "|" : "";
      name.remove_prefix(std::min(end + 1, name.size()));
    }
    return context_.host().scene.findNode(qualified, error);
  }

  std::string run(const std::string& statement) {
    std::string name;
    mel::Words words;
    std::string error;
    if (!splitStatement(statement, name, words, error)) return error;
    const mel::CommandResult result = mel::runCommand(name, words, context_);
    return result.ok ? std::string() : result.error;
  }

  // A node of the scene itself stays below its foster parent, where a saved scene has it.
  std::string applyParent(const ReferenceEdit& edit) {
    const std::string child = nameOf(edit.operands[0]);
    const std::string& above = edit.operands[1];
    std::string error;
    const NodePtr node = nodeNamed(child, &error);
    if (node == nullptr) return error;
    if (!node->isReferenced)
      return "'" + node->name() + "' stays where it is, below no node of another file";
    return run("parent " + edit.operands[2] + ' ' +
               (above.empty() ? "-w " + mel::quoted(child)
                              : mel::quoted(child) + ' ' + mel::quoted(nameOf(above))));
  }

  std::string applyDisconnect(const ReferenceEdit& edit) {
    const std::vector<std::string>& o = edit.operands;
    std::string error;
    if (plugNamed(o[0], error).isNull() || plugNamed(o[1], error).isNull()) return error;
    run("disconnectAttr " + o[2] + ' ' + mel::quoted(nameOf(o[0])) + ' ' +
        mel::quoted(nameOf(o[1])));
    return std::string();
  }

  Plug plugNamed(const std::string& text, std::string& error) const {
    const std::string name = nameOf(text);
    const std::size_t dot = name.find('.');
    const NodePtr node = nodeNamed(name.substr(0, dot), &error);
    if (node == nullptr || dot == name.npos) return Plug();
    return Plug::findOrKeep(node, name.substr(dot + 1)).value_or(Plug());
  }

  std::string connectEnds(const ReferenceEdit& edit) const {
    std::string error;
    const Plug plug = plugNamed(edit.operands[1], error);
    const Plug other = plugNamed(edit.operands[2], error);
    if (plug.isNull() || other.isNull()) return error;
    if (edit.end == ReferenceEdit::kIsSource) {
      for (const ConnectionPtr& connection : other.node()->connections.outOf(other.path()))
        replace(connection, plug.orFirstElement(), connection->destination, error);
    } else if (edit.end == ReferenceEdit::kIsDestination) {
      if (const ConnectionPtr connection = other.node()->connections.into(other.path()))
        replace(connection, connection->source, nextElement(plug).orFirstElement(), error);
    } else {
      connect(plug.orFirstElement(), nextElement(other), true, &error);
    }
    return error;
  }

  // Puts the ends themselves in the place of a connection with a place holder.
  void replace(const ConnectionPtr& old, const Plug& source, const Plug& destination,
               std::string& error) const {
    auto& standIns = context_.host().info.standIns;
    SceneInfo::StandIn standIn;
    const auto known = standIns.find(old->serial);
    if (known != standIns.end()) standIn = known->second;
    if (source != old->source && standIn.source.isNull()) standIn.source = old->source;
    if (destination != old->destination && standIn.destination.isNull())
      standIn.destination = old->destination;
    disconnect(old);
    if (connect(source, destination, true, &error)) {
      const ConnectionPtr made = destination.node()->connections.into(destination.path());
      standIns[made->serial] = standIn;
    } else {
      connect(old->source, old->destination, true);
    }
  }

  mel::CommandContext& context_;
};

}  // namespace

std::vector<ReferenceEdit> parseReferenceEdits(const mel::Words& words) {
  return EditParser(words).parse();
}

std::vector<UnappliedEdit> applyReferenceEdits(const std::vector<ReferenceEdit>& edits,
                                               mel::CommandContext& context) {
  // The reference node has the edits already; they belong to no node of the file itself.
  const bool keepsInfo = std::exchange(context.keepsInfo, false);
  const NodePtr currentNode = context.currentNode;
  std::vector<UnappliedEdit> problems;
  EditApplier applier(context);
  for (const ReferenceEdit& edit : edits) {
    std::string problem = applier.apply(edit);
    if (!problem.empty()) problems.push_back({&edit, std::move(problem)});
  }
  context.keepsInfo = keepsInfo;
  context.currentNode = currentNode;
  return problems;
}

std::vector<NodePtr> nodesOf(const ReferenceEdit& edit, const mel::CommandContext& context) {
  mel::CommandContext copy = context;
  return EditApplier(copy).nodesOf(edit);
}

}  // namespace host
