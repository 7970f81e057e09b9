#include <algorithm>
#include <cctype>

#include "host/commands/AttributeNames.h"
#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"
#include "host/scene/Plug.h"
#include "host/scene/Values.h"
#include "host/state/SceneUnits.h"
#include "host/text/Numbers.h"

namespace host::mel {
namespace {

Value::Strings namesOf(const std::vector<AttributePtr>& attributes) {
  Value::Strings names;
  for (const AttributePtr& attribute : attributes) names.push_back(attribute->longName());
  return names;
}

Value::Strings enumOf(const Attribute& attribute) {
  return attribute.enumNames.empty() ? Value::Strings() : Value::Strings{joinedEnum(attribute)};
}

Value::Floats defaultsOf(const Attribute& attribute) {
  if (attribute.children().empty()) {
    const double* number = std::get_if<double>(&attribute.defaultValue);
    return attribute.kind() == Attribute::Kind::kNumber
               ? Value::Floats{number == nullptr ? 0.0 : *number}
               : Value::Floats();
  }
  Value::Floats all;
  for (const AttributePtr& child : attribute.children()) {
    const Value::Floats own = defaultsOf(*child);
    all.insert(all.end(), own.begin(), own.end());
  }
  return all;
}

struct LimitFlag {
  std::string_view flag;
  std::string_view existsFlag;
  std::optional<double> Attribute::*limit;
};
constexpr LimitFlag kLimits[] = {{"min", "mne", &Attribute::min},
                                 {"max", "mxe", &Attribute::max},
                                 {"smn", "sme", &Attribute::softMin},
                                 {"smx", "sxe", &Attribute::softMax}};

bool answerRange(const Arguments& arguments, std::string_view flag, std::string_view existsFlag,
                 const std::optional<double>& min, const std::optional<double>& max,
                 const Attribute& attribute, CommandResult& result) {
  if (!arguments.has(flag) && !arguments.has(existsFlag)) return false;
  if (arguments.has(existsFlag))
    result = CommandResult::success(Value::ofTruth(min && max));
  else if (min && max)
    result = CommandResult::success(Value::Floats{*min, *max});
  else
    result = CommandResult::failure("attributeQuery: '" + attribute.longName() + "' has no range");
  return true;
}

bool answerLimit(const Arguments& arguments, const Attribute& attribute, CommandResult& result) {
  for (const LimitFlag& each : kLimits) {
    const auto& limit = attribute.*each.limit;
    if (arguments.has(each.existsFlag)) {
      result = CommandResult::success(Value::ofTruth(limit.has_value()));
      return true;
    }
    if (arguments.has(each.flag)) {
      result = limit ? CommandResult::success(Value::Floats{*limit})
                     : CommandResult::failure("attributeQuery: '" + attribute.longName() +
                                              "' has no such limit");
      return true;
    }
  }
  return answerRange(arguments, "r", "re", attribute.min, attribute.max, attribute, result) ||
         answerRange(arguments, "s", "sre", attribute.softMin, attribute.softMax, attribute,
                     result);
}

// Long names of what stands beside it in a compound.
Value::Strings siblingsOf(const Attribute& attribute) {
  const AttributePtr parent = attribute.parent();
  Value::Strings names = parent == nullptr ? Value::Strings() : namesOf(parent->children());
  names.erase(std::remove(names.begin(), names.end(), attribute.longName()), names.end());
  return names;
}

// What follows a flag where the attribute was added: "-ct", its short name.
Value::Strings declared(const Attribute& attribute, std::string_view flag) {
  Value::Strings found;
  const auto& words = attribute.declaration;
  for (std::size_t i = 0; i + 1 < words.size(); ++i)
    if (words[i] == flag) found.push_back(words[i + 1]);
  return found;
}

Value::Strings categoriesOf(const Attribute& attribute) {
  Value::Strings names = declared(attribute, "-ct");
  for (std::string& name : names)
    if (name.size() > 1 && name.front() == '"') name = name.substr(1, name.size() - 2);
  return names;
}

bool isDeclared(const Attribute& attribute, std::string_view flag, bool otherwise) {
  const Value::Strings words = declared(attribute, flag);
  return words.empty() ? otherwise : parseTruth(words.back()).value_or(otherwise);
}

bool isKeyableByType(const Attribute& attribute) {
  const auto& children = attribute.children();
  return attribute.keyable || (!children.empty() && std::all_of(children.begin(), children.end(),
                                                                [](const AttributePtr& child) {
                                                                  return child->keyable;
                                                                }));
}

bool answerName(const Arguments& arguments, const Attribute& attribute, CommandResult& result) {
  const AttributePtr parent = attribute.parent();
  if (arguments.has("at")) {
    result = CommandResult::success(shownType(attribute));
  } else if (arguments.has("ln")) {
    result = CommandResult::success(attribute.longName());
  } else if (arguments.has("sn")) {
    result = CommandResult::success(attribute.shortName());
  } else if (arguments.has("nn")) {
    result = CommandResult::success(niceNameOf(attribute));
  } else if (arguments.has("lc")) {
    result = CommandResult::success(namesOf(attribute.children()));
  } else if (arguments.has("lp")) {
    result = CommandResult::success(parent == nullptr ? Value::Strings()
                                                      : Value::Strings{parent->longName()});
  } else if (arguments.has("ls")) {
    result = CommandResult::success(siblingsOf(attribute));
  } else if (arguments.has("ct")) {
    result = CommandResult::success(categoriesOf(attribute));
  } else if (arguments.has("nc")) {
    result = CommandResult::success(Value::Ints{static_cast<int>(attribute.children().size())});
  } else if (arguments.has("le")) {
    result = CommandResult::success(enumOf(attribute));
  } else if (arguments.has("ld")) {
    result = CommandResult::success(defaultsOf(attribute));
  } else {
    return false;
  }
  return true;
}

bool isTrue(const Arguments& arguments, const Attribute& attribute) {
  return (arguments.has("k") && isKeyableByType(attribute)) ||
         (arguments.has("m") && attribute.isArray) || (arguments.has("h") && attribute.hidden) ||
         (arguments.has("w") && attribute.writable) ||
         (arguments.has("uac") && attribute.isColour) ||
         (arguments.has("uaf") && isDeclared(attribute, "-uaf", false)) ||
         (arguments.has("st") && isDeclared(attribute, "-s", true)) ||
         (arguments.has("rd") && isDeclared(attribute, "-r", true)) ||
         (arguments.has("im") && isDeclared(attribute, "-im", true)) ||
         (arguments.has("c") && attribute.kind() != Attribute::Kind::kLoose) ||
         (arguments.has("e") && attribute.typeWord() == "enum") ||
         (arguments.has("msg") && attribute.kind() == Attribute::Kind::kMessage);
}

CommandResult attributeQuery(const Arguments& arguments, CommandContext& context) {
  std::string error = "there is no type '" + arguments.text("typ") + "'";
  const NodeType* type = arguments.has("typ") ? NodeType::find(arguments.text("typ")) : nullptr;
  const NodePtr node =
      arguments.has("typ") ? nullptr : findNode(arguments.text("n"), context, error);
  if (node == nullptr && type == nullptr) return CommandResult::failure("attributeQuery: " + error);
  if (arguments.objects().size() != 1)
    return CommandResult::failure("attributeQuery: needs one attribute");
  const std::string& name = arguments.objects().front();
  const AttributePtr attribute =
      node != nullptr ? node->findAttribute(name) : type->findAttribute(name);
  const bool exists = attribute != nullptr && attribute->kind() != Attribute::Kind::kLoose;
  if (arguments.has("ex")) return CommandResult::success(Value::ofTruth(exists));
  if (!exists) {
    return CommandResult::failure("attributeQuery: no attribute '" + name + "' on '" +
                                  (node != nullptr ? node->name() : type->name()) + "'");
  }
  CommandResult result;
  if (answerName(arguments, *attribute, result) || answerLimit(arguments, *attribute, result))
    return result;
  if (arguments.has("ch")) {
    const auto plug = node != nullptr ? Plug::find(node, name) : std::nullopt;
    return CommandResult::success(Value::ofTruth(plug && isInChannelBox(*plug)));
  }
  return CommandResult::success(Value::ofTruth(isTrue(arguments, *attribute)));
}

}  // namespace

std::string niceNameOf(const Attribute& attribute) {
  if (!attribute.niceName.empty()) return attribute.niceName;
  std::string name;
  for (const char c : attribute.longName()) {
    const bool isUpper = c >= 'A' && c <= 'Z';
    const bool startsWord = name.empty() || name.back() == ' ';
    if (isUpper && !startsWord && !(name.back() >= 'A' && name.back() <= 'Z')) name += ' ';
    name += c == '_' ? ' ' : startsWord && c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  }
  return name;
}

std::string joinedEnum(const Attribute& attribute) {
  std::string text;
  for (const std::string& name : attribute.enumNames) text += (text.empty() ? "" : ":") + name;
  return text;
}

std::string shownType(const Attribute& attribute) {
  const double factor = unitFactor(SceneUnits{2.0, 3.0, 24.0}, attribute);
  const bool isPlain = attribute.typeWord() == "double";
  return isPlain && factor == 2.0   ? "doubleLinear"
         : isPlain && factor == 3.0 ? "doubleAngle"
                                    : attribute.typeWord();
}

void addAttributeQuery(CommandTable& table) {
  table.add("attributeQuery",
            {{"n", "node", "s"},
             {"typ", "type", "s"},
             {"ex", "exists", ""},
             {"at", "attributeType", ""},
             {"ln", "longName", ""},
             {"sn", "shortName", ""},
             {"nn", "niceName", ""},
             {"k", "keyable", ""},
             {"m", "multi", ""},
             {"h", "hidden", ""},
             {"w", "writable", ""},
             {"uac", "usedAsColor", ""},
             {"e", "enum", ""},
             {"msg", "message", ""},
             {"lc", "listChildren", ""},
             {"lp", "listParent", ""},
             {"nc", "numberOfChildren", ""},
             {"le", "listEnum", ""},
             {"ld", "listDefault", ""},
             {"min", "minimum", ""},
             {"max", "maximum", ""},
             {"mne", "minExists", ""},
             {"mxe", "maxExists", ""},
             {"smn", "softMin", ""},
             {"smx", "softMax", ""},
             {"sme", "softMinExists", ""},
             {"sxe", "softMaxExists", ""},
             {"r", "range", ""},
             {"re", "rangeExists", ""},
             {"s", "softRange", ""},
             {"sre", "softRangeExists", ""},
             {"ls", "listSiblings", ""},
             {"ct", "categories", ""},
             {"uaf", "usedAsFilename", ""},
             {"st", "storable", ""},
             {"rd", "readable", ""},
             {"im", "indexMatters", ""},
             {"c", "connectable", ""},
             {"ch", "channelBox", ""}},
            attributeQuery);
}

}  // namespace host::mel
