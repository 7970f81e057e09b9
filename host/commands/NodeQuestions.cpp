#include <algorithm>
#include <unordered_set>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/mel/Pattern.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"

// What scripts ask about the attributes and connections of nodes.
namespace host::mel {
namespace {

// --- listAttr

bool isListed(const Arguments& arguments, const Plug& plug) {
  const Attribute& attribute = *plug.attribute();
  const auto only = [&arguments](std::string_view flag, bool holds) {
    return !arguments.has(flag) || holds;
  };
  const std::vector<std::string> patterns = arguments.texts("st");
  const bool isNamed =
      patterns.empty() || std::any_of(patterns.begin(), patterns.end(), [&](const auto& pattern) {
        return matchesGlob(attribute.longName(), pattern);
      });
  return isNamed && only("k", isKeyable(plug)) && only("ud", attribute.isDynamic) &&
         only("l", isLocked(plug)) && only("u", !isLocked(plug)) && only("v", !attribute.hidden) &&
         only("cb", isInChannelBox(plug)) && only("w", attribute.writable) &&
         only("m", attribute.isArray) &&
         only("se", !isLocked(plug) && sourceOf(plug) == std::nullopt);
}

void listFrom(const Arguments& arguments, const NodePtr& node, const AttributePtr& attribute,
              Value::Strings& names) {
  if (attribute->kind() == Attribute::Kind::kLoose) return;
  const Plug plug = Plug::ofAttribute(node, attribute);
  if (isListed(arguments, plug))
    names.push_back(arguments.has("sn") ? attribute->shortName() : attribute->longName());
  for (const AttributePtr& child : attribute->children()) listFrom(arguments, node, child, names);
}

CommandResult listAttr(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("listAttr: " + error);
  Value::Strings names;
  for (const SelectionItem& item : items) {
    std::vector<const NodeType*> types;
    for (const NodeType* type = &item.node->type(); type != nullptr; type = type->base())
      types.insert(types.begin(), type);
    for (const NodeType* type : types)
      for (const AttributePtr& attribute : type->ownAttributes())
        listFrom(arguments, item.node, attribute, names);
    for (const AttributePtr& attribute : item.node->dynamicAttributes())
      listFrom(arguments, item.node, attribute, names);
  }
  return CommandResult::success(std::move(names));
}

// --- listHistory

// The nodes before (behind) a node, breadth first, each once.
std::vector<NodePtr> reachedFrom(const NodePtr& start, bool forward, std::size_t levels) {
  std::vector<NodePtr> found{start};
  std::unordered_set<const Node*> seen{start.get()};
  std::size_t levelStart = 0;
  for (std::size_t level = 0; level < levels && levelStart < found.size(); ++level) {
    const std::size_t levelEnd = found.size();
    for (; levelStart < levelEnd; ++levelStart) {
      const NodePtr node = found[levelStart];
      for (const ConnectionPtr& connection : node->connections.inOrder()) {
        const NodePtr& near = (forward ? connection->source : connection->destination).node();
        const NodePtr& far = (forward ? connection->destination : connection->source).node();
        const bool carriesData =
            connection->source.attribute()->kind() != Attribute::Kind::kMessage && !far->isSet();
        if (near == node && carriesData && seen.insert(far.get()).second) found.push_back(far);
      }
    }
  }
  return found;
}

CommandResult listHistory(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("listHistory: " + error);
  const auto levels = arguments.has("lv") && arguments.number("lv") > 0
                          ? static_cast<std::size_t>(arguments.number("lv"))
                          : static_cast<std::size_t>(-1);
  Value::Strings names;
  std::unordered_set<const Node*> seen;
  for (const SelectionItem& item : items) {
    const auto shapes = item.node->isTransform() ? shapesBelow(*item.node) : std::vector<NodePtr>();
    const NodePtr start = shapes.empty() ? item.node : shapes.front();
    for (const NodePtr& node : reachedFrom(start, arguments.truth("f"), levels)) {
      const bool isShown = !arguments.truth("pdo") || (!node->isShape() && !node->isTransform());
      if (isShown && seen.insert(node.get()).second)
        names.push_back(context.host().scene.displayName(node));
    }
  }
  return CommandResult::success(std::move(names));
}

// --- connectionInfo, attributeExists

CommandResult connectionInfo(const Arguments& arguments, CommandContext& context) {
  std::string error = "needs one attribute";
  const Plug named = arguments.objects().size() == 1
                         ? findPlug(arguments.objects().front(), context, error)
                         : Plug();
  if (named.isNull()) return CommandResult::failure("connectionInfo: " + error);
  const Plug plug = named.orFirstElement();
  const auto source = sourceOf(plug);
  const std::vector<Plug> ends = destinationsOf(plug);
  if (arguments.has("sfd")) return CommandResult::success(source ? source->name() : std::string());
  if (arguments.has("dfs")) {
    Value::Strings names;
    for (const Plug& end : ends) names.push_back(end.name());
    return CommandResult::success(std::move(names));
  }
  if (arguments.has("ged") || arguments.has("ges")) {
    const bool isEnd = arguments.has("ged") ? source.has_value() : !ends.empty();
    return CommandResult::success(isEnd ? plug.name() : std::string());
  }
  const bool truth =
      (arguments.has("is") && !ends.empty()) || (arguments.has("id") && source.has_value()) ||
      (arguments.has("il") && isLocked(plug)) || (arguments.has("ied") && source.has_value()) ||
      (arguments.has("ies") && !ends.empty());
  return CommandResult::success(Value::ofTruth(truth));
}

CommandResult attributeExists(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 2)
    return CommandResult::failure("attributeExists: needs an attribute and a node");
  std::string error;
  const NodePtr node = findNode(arguments.objects()[1], context, error);
  const auto plug = node == nullptr ? std::nullopt : Plug::find(node, arguments.objects()[0]);
  return CommandResult::success(
      Value::ofTruth(plug && plug->attribute()->kind() != Attribute::Kind::kLoose));
}

// --- filterExpand

// Selection masks: 12 polygon meshes, 31 vertices, 32 edges, 34 faces; of the rest there are none.
bool passes(const SelectionItem& item, int mask) {
  if (item.component == nullptr) {
    const auto shapes = item.node->isTransform() ? shapesBelow(*item.node) : std::vector<NodePtr>();
    const NodePtr shape = shapes.empty() ? item.node : shapes.front();
    return mask == 12 && shape->mesh != nullptr;
  }
  const Component::Kind kind = item.component->kind();
  return (mask == 31 && kind == Component::Kind::kVertex) ||
         (mask == 32 && kind == Component::Kind::kEdge) ||
         (mask == 34 && kind == Component::Kind::kFace);
}

// "p.f[0:2]" as three names.
void addExpanded(const std::string& name, bool expands, std::size_t most, Value::Strings& names) {
  const auto range = expands ? splitRange(name) : std::nullopt;
  for (int i = range ? range->first : 0; i <= (range ? range->last : 0); ++i) {
    if (names.size() >= most) return;
    names.push_back(range ? std::string(range->stem) + "[" + std::to_string(i) + "]" : name);
  }
}

CommandResult filterExpand(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("filterExpand: " + error);
  Value::Strings names;
  const std::size_t most = context.interpreter->limits().arraySize;
  for (const SelectionItem& item : items) {
    for (const std::vector<double>& mask : arguments.allNumbers("sm")) {
      if (passes(item, static_cast<int>(mask.front()))) {
        for (const std::string& name : item.names())
          addExpanded(name, item.component != nullptr && arguments.truth("ex", true), most, names);
        break;
      }
    }
  }
  return CommandResult::success(std::move(names));
}

}  // namespace

void addNodeQuestions(CommandTable& table) {
  table.add("listAttr",
            {{"k", "keyable", ""},
             {"ud", "userDefined", ""},
             {"l", "locked", ""},
             {"u", "unlocked", ""},
             {"v", "visible", ""},
             {"cb", "channelBox", ""},
             {"w", "write", ""},
             {"m", "multi", ""},
             {"se", "settable", ""},
             {"sn", "shortNames", ""},
             {"st", "string", "s"}},
            listAttr);
  table.add("listHistory",
            {{"f", "future", "b"}, {"lv", "levels", "i"}, {"pdo", "pruneDagObjects", "b"}},
            listHistory);
  table.add("connectionInfo",
            {{"sfd", "sourceFromDestination", ""},
             {"dfs", "destinationFromSource", ""},
             {"is", "isSource", ""},
             {"id", "isDestination", ""},
             {"il", "isLocked", ""},
             {"ged", "getExactDestination", ""},
             {"ges", "getExactSource", ""},
             {"ied", "isExactDestination", ""},
             {"ies", "isExactSource", ""}},
            connectionInfo);
  table.add("attributeExists", {}, attributeExists);
  table.add("filterExpand", {{"sm", "selectionMask", "i"}, {"ex", "expand", "b"}}, filterExpand);
}

}  // namespace host::mel
