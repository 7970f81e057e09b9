#include "host/commands/Builtin.h"

#include <algorithm>
#include <optional>

#include "host/attribute/Attribute.h"
#include "host/commands/AttributeNames.h"
#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host::mel {
namespace {

std::vector<std::string> splitEnum(const std::string& text) {
  std::vector<std::string> names;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find(':', at), text.size());
    names.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return names;
}

std::optional<double> limit(const Arguments& arguments, std::string_view flag) {
  return arguments.has(flag) ? std::optional<double>(arguments.number(flag)) : std::nullopt;
}

AttributePtr makeAttribute(const Arguments& arguments) {
  const std::string longName = arguments.has("ln") ? arguments.text("ln") : arguments.text("sn");
  const std::string shortName = arguments.has("sn") ? arguments.text("sn") : longName;
  const std::string type = arguments.has("at") ? arguments.text("at") : "double";
  AttributePtr attribute = arguments.has("dt")
                               ? Attribute::makeData(longName, shortName, arguments.text("dt"))
                               : std::make_shared<Attribute>(longName, shortName, type);
  attribute->isDynamic = true;
  attribute->isArray = arguments.has("m");
  attribute->keyable = arguments.truth("k");
  attribute->hidden = arguments.truth("h");
  attribute->writable = arguments.truth("w", true);
  attribute->isColour = arguments.has("uac");
  attribute->niceName = arguments.text("nn");
  attribute->enumNames = splitEnum(arguments.text("en"));
  attribute->min = limit(arguments, "min");
  attribute->max = limit(arguments, "max");
  attribute->softMin = limit(arguments, "smn");
  attribute->softMax = limit(arguments, "smx");
  if (arguments.has("dv")) attribute->defaultValue = arguments.number("dv");
  attribute->declaration = arguments.flagsAsWritten();
  return attribute;
}

bool addToNode(const NodePtr& node, const AttributePtr& attribute, const std::string& parentName,
               std::string& error) {
  if (parentName.empty()) {
    error = "a name of '" + attribute->longName() + "' is taken on '" + node->name() + "'";
    return node->addAttribute(attribute);
  }
  const AttributePtr parent = node->findAttribute(parentName);
  if (parent == nullptr || !parent->isDynamic || parent->kind() != Attribute::Kind::kCompound) {
    error = "no compound '" + parentName + "' was added to '" + node->name() + "'";
    return false;
  }
  error = "'" + parentName + "' cannot take '" + attribute->longName() + "'";
  return node->addChildAttribute(parent, attribute);
}

void keepDeclaration(Node& node, const Arguments& arguments) {
  node.keptDeclarations.push_back(asStatement("addAttr", arguments.words()));
}

CommandResult addTo(const NodePtr& node, const Arguments& arguments,
                    const CommandContext& context) {
  const AttributePtr attribute = makeAttribute(arguments);
  const std::string& name = attribute->longName();
  if (!isLegalName(name) || !isLegalName(attribute->shortName()))
    return CommandResult::malformed("addAttr: '" + name + "' is not a name for an attribute");
  const AttributePtr taken = node->findAttribute(name);
  // Other versions and plug-ins add attributes that nodes have here from the start.
  if (context.inSceneFile && taken != nullptr && !taken->isDynamic &&
      taken->kind() != Attribute::Kind::kLoose) {
    keepDeclaration(*node, arguments);
    return CommandResult::success();
  }
  if (taken != nullptr && taken->kind() != Attribute::Kind::kLoose) {
    return CommandResult::failure("addAttr: '" + node->name() + "' has an attribute '" + name +
                                  "' already");
  }
  std::string error;
  if (addToNode(node, attribute, arguments.text("p"), error)) return CommandResult::success();
  if (context.inSceneFile) keepDeclaration(*node, arguments);
  return CommandResult::failure("addAttr: " + error);
}

bool targets(const Arguments& arguments, const CommandContext& context, std::vector<NodePtr>& nodes,
             std::string& error) {
  if (context.inSceneFile && arguments.objects().empty()) {
    if (context.currentNode == nullptr) {
      error = "there is no node";
      return false;
    }
    nodes.push_back(context.currentNode);
    return true;
  }
  std::vector<SelectionItem> items;
  if (!findItems(arguments.objects(), context, items, error)) return false;
  for (const SelectionItem& item : items) nodes.push_back(item.node);
  error = nodes.empty() ? "nothing is named or selected" : "";
  return !nodes.empty();
}

// What was said of an attribute that was added.
CommandResult queryAdded(const Arguments& arguments, const Plug& plug) {
  const Attribute& attribute = *plug.attribute();
  const std::pair<std::string_view, std::optional<double>> kNumbers[] = {
      {"min", attribute.min},
      {"max", attribute.max},
      {"smn", attribute.softMin},
      {"smx", attribute.softMax}};
  const std::pair<std::string_view, bool> kTruths[] = {{"hnv", attribute.min.has_value()},
                                                       {"hxv", attribute.max.has_value()},
                                                       {"hsn", attribute.softMin.has_value()},
                                                       {"hsx", attribute.softMax.has_value()},
                                                       {"k", isKeyable(plug)},
                                                       {"h", attribute.hidden},
                                                       {"w", attribute.writable},
                                                       {"m", attribute.isArray},
                                                       {"uac", attribute.isColour},
                                                       {"ex", true}};
  for (const auto& [flag, number] : kNumbers)
    if (arguments.has(flag)) return CommandResult::success(number.value_or(0.0));
  for (const auto& [flag, truth] : kTruths)
    if (arguments.has(flag)) return CommandResult::success(Value::ofTruth(truth));
  if (arguments.has("ln")) return CommandResult::success(attribute.longName());
  if (arguments.has("sn")) return CommandResult::success(attribute.shortName());
  if (arguments.has("nn")) return CommandResult::success(niceNameOf(attribute));
  if (arguments.has("at") || arguments.has("dt"))
    return CommandResult::success(shownType(attribute));
  if (arguments.has("en")) return CommandResult::success(joinedEnum(attribute));
  if (arguments.has("nc"))
    return CommandResult::success(static_cast<int>(attribute.children().size()));
  if (arguments.has("p")) {
    const AttributePtr parent = attribute.parent();
    return CommandResult::success(parent ? parent->longName() : attribute.longName());
  }
  const double* const number = std::get_if<double>(&attribute.defaultValue);
  if (arguments.has("dv")) return CommandResult::success(number == nullptr ? 0.0 : *number);
  return CommandResult::failure("addAttr: names nothing that can be queried");
}

// The flags that a saved scene has of the attribute, with the values that these arguments give.
void redeclare(const Arguments& arguments, Attribute& attribute) {
  std::vector<std::string> kept;
  const std::vector<std::string> given = arguments.flagsAsWritten();
  const auto isGiven = [&arguments](const std::string& word) {
    return word.size() > 1 && word[0] == '-' && arguments.has(std::string_view(word).substr(1));
  };
  for (std::size_t i = 0; i < attribute.declaration.size(); ++i)
    if (isGiven(attribute.declaration[i]))
      ++i;
    else
      kept.push_back(attribute.declaration[i]);
  for (const std::string& word : given)
    if (word != "-e") kept.push_back(word);
  attribute.declaration = std::move(kept);
}

CommandResult editAdded(const Arguments& arguments, const Plug& plug) {
  Attribute& attribute = *plug.attribute();
  for (const std::string_view flag : {"ln", "sn", "at", "dt", "p", "m"})
    if (arguments.has(flag))
      return CommandResult::failure(
          "addAttr: -edit changes limits, the default, names of an enumeration, the nice name, "
          "-keyable and -hidden");
  const std::pair<std::string_view, std::optional<double>*> kLimits[] = {
      {"min", &attribute.min},
      {"max", &attribute.max},
      {"smn", &attribute.softMin},
      {"smx", &attribute.softMax}};
  for (const auto& [flag, limit] : kLimits)
    if (arguments.has(flag)) *limit = arguments.number(flag);
  if (arguments.has("dv")) attribute.defaultValue = arguments.number("dv");
  if (arguments.has("en")) attribute.enumNames = splitEnum(arguments.text("en"));
  if (arguments.has("nn")) attribute.niceName = arguments.text("nn");
  if (arguments.has("k")) attribute.keyable = arguments.truth("k");
  if (arguments.has("h")) attribute.hidden = arguments.truth("h");
  redeclare(arguments, attribute);
  plug.node()->noteChange();
  return CommandResult::success();
}

CommandResult askOrEdit(const Arguments& arguments, const CommandContext& context) {
  if (arguments.objects().size() != 1)
    return CommandResult::failure("addAttr: -query and -edit need one attribute");
  std::string error;
  const Plug plug = findPlug(arguments.objects().front(), context, error);
  if (plug.isNull()) return CommandResult::failure("addAttr: " + error);
  if (!plug.attribute()->isDynamic)
    return CommandResult::failure("addAttr: '" + plug.name() + "' was not added by addAttr");
  return arguments.query() ? queryAdded(arguments, plug) : editAdded(arguments, plug);
}

CommandResult addAttr(const Arguments& arguments, CommandContext& context) {
  if (arguments.query() || arguments.edit()) return askOrEdit(arguments, context);
  if (!arguments.has("ln") && !arguments.has("sn"))
    return CommandResult::malformed("addAttr: -ln is missing");
  std::vector<NodePtr> nodes;
  std::string error;
  if (!targets(arguments, context, nodes, error))
    return CommandResult::failure("addAttr: " + error);
  for (const NodePtr& node : nodes) {
    CommandResult result = addTo(node, arguments, context);
    if (!result.ok) return result;
  }
  return CommandResult::success();
}

CommandResult deleteAttr(const Arguments& arguments, CommandContext& context) {
  for (std::string text : arguments.objects()) {
    if (arguments.has("at")) text += "." + arguments.text("at");
    std::string error;
    const Plug plug = findPlug(text, context, error);
    if (plug.isNull()) return CommandResult::failure("deleteAttr: " + error);
    if (isLocked(plug))
      return CommandResult::failure("deleteAttr: '" + plug.name() + "' is locked");
    if (!plug.node()->removeAttribute(plug.attribute()))
      return CommandResult::failure("deleteAttr: '" + plug.name() + "' was not added by addAttr");
  }
  return CommandResult::success();
}

}  // namespace

void addDynamicAttributeCommands(CommandTable& table) {
  table.add("addAttr",
            {{"q", "query", ""},
             {"e", "edit", ""},
             {"ln", "longName", "s"},
             {"sn", "shortName", "s"},
             {"nn", "niceName", "s"},
             {"at", "attributeType", "s"},
             {"dt", "dataType", "s"},
             {"dv", "defaultValue", "n"},
             {"min", "minValue", "n"},
             {"max", "maxValue", "n"},
             {"smn", "softMinValue", "n"},
             {"smx", "softMaxValue", "n"},
             {"hnv", "hasMinValue", "b"},
             {"hxv", "hasMaxValue", "b"},
             {"hsn", "hasSoftMinValue", "b"},
             {"hsx", "hasSoftMaxValue", "b"},
             {"dcb", "disconnectBehaviour", "i"},
             {"ex", "exists", ""},
             {"fp", "fromPlugin", ""},
             {"k", "keyable", "b"},
             {"h", "hidden", "b"},
             {"p", "parent", "s"},
             {"nc", "numberOfChildren", "i"},
             {"ci", "cachedInternally", "b"},
             {"is", "internalSet", "b"},
             {"r", "readable", "b"},
             {"w", "writable", "b"},
             {"s", "storable", "b"},
             {"m", "multi", ""},
             {"im", "indexMatters", "b"},
             {"en", "enumName", "s"},
             {"uac", "usedAsColor", ""},
             {"uaf", "usedAsFilename", ""},
             {"uap", "usedAsProxy", ""},
             {"ct", "category", "s"},
             {"bt", "binaryTag", "s"},
             {"pxy", "proxy", "s"}},
            addAttr);
  table.add("deleteAttr", {{"at", "attribute", "s"}}, deleteAttr);
}

}  // namespace host::mel
