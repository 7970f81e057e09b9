#include "host/commands/Builtin.h"

#include <algorithm>
#include <cmath>

#include "host/commands/Lookup.h"
#include "host/evaluation/Quantity.h"
#include "host/mel/Command.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"

namespace host::mel {
namespace {

// A scene file may connect attributes that the host does not know.
Plug endOf(const std::string& text, CommandContext& context, std::string& error) {
  PlugName name;
  if (!splitPlugName(text, context, name, error)) return Plug();
  const auto plug = context.inSceneFile ? Plug::findOrKeep(name.node, name.path)
                                        : Plug::find(name.node, name.path);
  if (!plug) {
    error = "no attribute '" + name.path + "' on '" + name.node->name() + "'";
    return Plug();
  }
  return *plug;
}

// Every scene starts with its default nodes connected: a file need not repeat that.
bool feedsAnElement(const Plug& source, const Plug& array) {
  for (const Plug& end : destinationsOf(source)) {
    const auto range = splitRange(end.path());
    if (end.node() == array.node() && range && range->stem == array.path()) return true;
  }
  return false;
}

SceneInfo::LooseConnection::End looseEnd(const std::string& text, const CommandContext& context) {
  PlugName name;
  std::string ignored;
  if (!splitPlugName(text, context, name, ignored)) return {false, {}, text};
  return {true, name.node, name.path};
}

// What names an attribute of no node would name one of another node in the saved scene.
bool isOfNoNode(const SceneInfo::LooseConnection::End& end) {
  return !end.isKnown && end.text.compare(0, 1, ".") == 0;
}

// Sound scenes connect nodes that were never saved, or that are in missing files.
CommandResult keepLoose(const Arguments& arguments, const CommandContext& context,
                        const std::string& error) {
  if (context.keepsInfo) {
    SceneInfo::LooseConnection connection;
    connection.source = looseEnd(arguments.objects()[0], context);
    connection.destination = looseEnd(arguments.objects()[1], context);
    connection.isNext = arguments.has("na");
    if (!isOfNoNode(connection.source) && !isOfNoNode(connection.destination))
      context.host().info.looseConnections.push_back(std::move(connection));
  }
  return CommandResult::failure("connectAttr: " + error);
}

// The next element of an unknown attribute, which only the node itself could tell.
bool isNextOfUnknown(const Arguments& arguments, const CommandContext& context,
                     const Plug& destination) {
  return context.keepsInfo && arguments.has("na") &&
         destination.attribute()->kind() == Attribute::Kind::kLoose;
}

// What a number is to be multiplied by so that it arrives as it was sent: angles and times flow
// into other kinds in radians and ticks.
double conversionFactor(double rate, const Plug& source, const Plug& destination) {
  const Quantity from = quantityOf(*source.attribute());
  const Quantity to = quantityOf(*destination.attribute());
  if (from == to) return 1.0;
  const double plain = converted(1.0, from, Quantity::kPlain, rate);
  return 1.0 / converted(plain, Quantity::kPlain, to, rate);
}

// By way of a node that converts, as Maya puts one there.
bool connectByConversion(const Plug& source, const Plug& destination, double factor, bool force,
                         std::string& error) {
  Scene& scene = *source.node()->scene();
  const NodePtr node = scene.createNode(*NodeType::find("unitConversion"), "", nullptr, &error);
  const auto plugOf = [&node](const char* name) { return *Plug::find(node, name); };
  if (node == nullptr) return false;
  writeValue(plugOf("conversionFactor"), factor);
  if (!connect(plugOf("output"), destination, force, &error)) {
    scene.deleteNode(node);
    return false;
  }
  return connect(source, plugOf("input"), false, &error);
}

// What a script connects, in a scene of `rate` frames a second. Compounds whose kinds differ are
// connected child by child.
bool connectConverted(double rate, const Plug& source, const Plug& destination, bool force,
                      std::string& error) {
  constexpr double kRounding = 1e-12;
  const auto kind = [](const Plug& plug) { return plug.attribute()->kind(); };
  if (kind(source) == Attribute::Kind::kNumber && kind(destination) == Attribute::Kind::kNumber) {
    const double factor = conversionFactor(rate, source, destination);
    return std::fabs(factor - 1.0) <= kRounding
               ? connect(source, destination, force, &error)
               : connectByConversion(source, destination, factor, force, error);
  }
  const std::vector<Plug> from = source.children();
  const std::vector<Plug> to = destination.children();
  bool differs = false;
  for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i)
    differs = differs || std::fabs(conversionFactor(rate, from[i], to[i]) - 1.0) > kRounding;
  if (!differs || from.size() != to.size() || !source.attribute()->isNumericCompound() ||
      !destination.attribute()->isNumericCompound()) {
    return connect(source, destination, force, &error);
  }
  for (std::size_t i = 0; i < from.size(); ++i)
    if (!connectConverted(rate, from[i], to[i], force, error)) return false;
  return true;
}

CommandResult connectAttr(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 2)
    return CommandResult::malformed("connectAttr: needs a source and a destination");
  std::string error;
  Plug source = endOf(arguments.objects()[0], context, error);
  Plug destination = source.isNull() ? Plug() : endOf(arguments.objects()[1], context, error);
  if (source.isNull() || destination.isNull()) return keepLoose(arguments, context, error);
  if (isNextOfUnknown(arguments, context, destination)) {
    keepLoose(arguments, context, "");
    return CommandResult::success();
  }
  source = source.orFirstElement();
  if (arguments.has("na") && destination.isArray()) {
    if (context.inSceneFile && feedsAnElement(source, destination)) return CommandResult::success();
    destination = nextElement(destination);
  }
  destination = destination.orFirstElement();
  if (!context.inSceneFile && isLocked(destination))
    return CommandResult::failure("connectAttr: '" + destination.name() + "' is locked");
  const bool isConnected = context.inSceneFile
                               ? connect(source, destination, true, &error)
                               : connectConverted(ratesOf(context.host().info).framesPerSecond,
                                                  source, destination, arguments.has("f"), error);
  if (!isConnected) return keepLoose(arguments, context, error);
  if (arguments.has("l")) setLocked(destination, arguments.truth("l"));
  return CommandResult::success("Connected " + source.name() + " to " + destination.name() + ".");
}

CommandResult disconnectAttr(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 2)
    return CommandResult::failure("disconnectAttr: needs a source and a destination");
  std::string error;
  const Plug source = findPlug(arguments.objects()[0], context, error).orFirstElement();
  if (source.isNull()) return CommandResult::failure("disconnectAttr: " + error);
  Plug destination = findPlug(arguments.objects()[1], context, error);
  if (destination.isNull()) return CommandResult::failure("disconnectAttr: " + error);
  if (arguments.has("na") || destination.isArray()) {
    for (const Plug& end : destinationsOf(source)) {
      if (end.node() == destination.node() &&
          end.path().compare(0, destination.path().size(), destination.path()) == 0) {
        destination = end;
        break;
      }
    }
  }
  const ConnectionPtr existing = destination.node()->connections.into(destination.path());
  if (existing == nullptr || existing->source != source) {
    return CommandResult::failure("disconnectAttr: '" + source.name() + "' is not connected to '" +
                                  destination.name() + "'");
  }
  disconnectKeepingValue(existing);
  return CommandResult::success();
}

bool hasType(const NodePtr& node, const std::string& type, bool exactly) {
  return type.empty() || (exactly ? node->type().name() == type : node->type().isA(type));
}

// A plug lists its own connections; a node lists all.
std::vector<ConnectionPtr> connectionsOf(const std::string& text, const CommandContext& context,
                                         NodePtr& node, bool asDestination, bool asSource,
                                         std::string& error) {
  if (text.find('.') != std::string::npos) {
    const Plug plug = findPlug(text, context, error);
    if (plug.isNull()) return {};
    node = plug.node();
    return connectionsAtOrBelow(plug, asDestination, asSource);
  }
  node = findNode(text, context, error);
  std::vector<ConnectionPtr> connections;
  if (node == nullptr) return connections;
  for (const ConnectionPtr& connection : node->connections.inOrder()) {
    const bool incoming = connection->destination.node() == node;
    if ((incoming && asDestination) || (connection->source.node() == node && asSource))
      connections.push_back(connection);
  }
  return connections;
}

CommandResult listConnections(const Arguments& arguments, CommandContext& context) {
  std::vector<std::string> names = arguments.objects();
  if (names.empty())
    for (const SelectionItem& item : context.host().scene.selection.items())
      names.push_back(shownName(context, item));
  const bool sources = arguments.truth("s", true);
  const bool destinations = arguments.truth("d", true);
  Value::Strings result;
  for (const std::string& name : names) {
    NodePtr node;
    std::string error;
    const auto connections = connectionsOf(name, context, node, sources, destinations, error);
    if (node == nullptr) return CommandResult::failure("listConnections: " + error);
    for (const ConnectionPtr& connection : connections) {
      const bool incoming = connection->destination.node() == node && sources;
      const Plug& near = incoming ? connection->destination : connection->source;
      const Plug& far = incoming ? connection->source : connection->destination;
      if (!hasType(far.node(), arguments.text("t"), arguments.truth("et"))) continue;
      if (arguments.truth("c")) result.push_back(near.name());
      result.push_back(arguments.truth("p") ? far.name()
                                            : context.host().scene.displayName(far.node()));
    }
  }
  return CommandResult::success(std::move(result));
}

CommandResult isConnectedCommand(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 2)
    return CommandResult::failure("isConnected: needs a source and a destination");
  std::string error;
  const Plug source = findPlug(arguments.objects()[0], context, error);
  const Plug destination =
      source.isNull() ? Plug() : findPlug(arguments.objects()[1], context, error);
  if (destination.isNull()) return CommandResult::failure("isConnected: " + error);
  const auto from = sourceOf(destination.orFirstElement());
  return CommandResult::success(Value::ofTruth(from && *from == source.orFirstElement()));
}

}  // namespace

void addConnectionCommands(CommandTable& table) {
  table.add("connectAttr",
            {{"f", "force", ""},
             {"na", "nextAvailable", ""},
             {"l", "lock", "b"},
             {"rd", "referenceDest", "s"}},
            connectAttr);
  table.add("disconnectAttr", {{"na", "nextAvailable", ""}}, disconnectAttr);
  table.add("listConnections",
            {{"s", "source", "b"},
             {"d", "destination", "b"},
             {"p", "plugs", "b"},
             {"c", "connections", "b"},
             {"t", "type", "s"},
             {"et", "exactType", "b"},
             {"scn", "skipConversionNodes", "b"},
             {"sh", "shapes", "b"}},
            listConnections);
  table.add("isConnected", {}, isConnectedCommand);
}

}  // namespace host::mel
