#include <algorithm>
#include <cctype>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"

namespace host::mel {
namespace {

// "translateX" as the interface shows it: "Translate X".
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

Value::Strings namesOf(const std::vector<AttributePtr>& attributes) {
  Value::Strings names;
  for (const AttributePtr& attribute : attributes) names.push_back(attribute->longName());
  return names;
}

// One text: names with colons between, as addAttr took them.
Value::Strings enumOf(const Attribute& attribute) {
  std::string text;
  for (const std::string& name : attribute.enumNames) text += (text.empty() ? "" : ":") + name;
  return attribute.enumNames.empty() ? Value::Strings() : Value::Strings{text};
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
  const bool asksRange = arguments.has("r") || arguments.has("re");
  const bool hasRange = attribute.min && attribute.max;
  if (asksRange && arguments.has("re")) {
    result = CommandResult::success(Value::ofTruth(hasRange));
  } else if (asksRange) {
    result =
        hasRange
            ? CommandResult::success(Value::Floats{*attribute.min, *attribute.max})
            : CommandResult::failure("attributeQuery: '" + attribute.longName() + "' has no range");
  }
  return asksRange;
}

bool answerName(const Arguments& arguments, const Attribute& attribute, CommandResult& result) {
  const AttributePtr parent = attribute.parent();
  if (arguments.has("at")) {
    result = CommandResult::success(attribute.typeWord());
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
  return (arguments.has("k") && attribute.keyable) || (arguments.has("m") && attribute.isArray) ||
         (arguments.has("h") && attribute.hidden) || (arguments.has("w") && attribute.writable) ||
         (arguments.has("uac") && attribute.isColour) ||
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
  return CommandResult::success(Value::ofTruth(isTrue(arguments, *attribute)));
}

}  // namespace

void addAttributeQuery(CommandTable& table) {
  table.add(
      "attributeQuery",
      {{"n", "node", "s"},          {"typ", "type", "s"},           {"ex", "exists", ""},
       {"at", "attributeType", ""}, {"ln", "longName", ""},         {"sn", "shortName", ""},
       {"nn", "niceName", ""},      {"k", "keyable", ""},           {"m", "multi", ""},
       {"h", "hidden", ""},         {"w", "writable", ""},          {"uac", "usedAsColor", ""},
       {"e", "enum", ""},           {"msg", "message", ""},         {"lc", "listChildren", ""},
       {"lp", "listParent", ""},    {"nc", "numberOfChildren", ""}, {"le", "listEnum", ""},
       {"ld", "listDefault", ""},   {"min", "minimum", ""},         {"max", "maximum", ""},
       {"mne", "minExists", ""},    {"mxe", "maxExists", ""},       {"smn", "softMin", ""},
       {"smx", "softMax", ""},      {"sme", "softMinExists", ""},   {"sxe", "softMaxExists", ""},
       {"r", "range", ""},          {"re", "rangeExists", ""}},
      attributeQuery);
}

}  // namespace host::mel
