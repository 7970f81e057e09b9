#include "host/scene/Values.h"

#include <algorithm>

#include "host/scene/ComputedValues.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

namespace host {
namespace {

using Kind = Attribute::Kind;
using Flag = AttributeState::Flag;

const AttributeState* stateOf(const Plug& plug) {
  return plug.node()->values.find(plug.path());
}

// The compound or array element that the plug is directly below; null when there is none.
std::optional<Plug> above(const Plug& plug) {
  const std::size_t dot = plug.path().rfind('.');
  if (dot != std::string::npos) return Plug::find(plug.node(), plug.path().substr(0, dot));
  const AttributePtr parent = plug.attribute()->parent();
  if (!parent || parent->isArray) return std::nullopt;
  return Plug::ofAttribute(plug.node(), parent);
}

bool isSet(const AttributeState* state) {
  return state && !std::holds_alternative<std::monostate>(state->value);
}

bool isOutput(const Attribute& attribute) {
  if (!attribute.writable && !attribute.isDynamic) return true;
  const AttributePtr parent = attribute.parent();
  return parent && isOutput(*parent);
}

// What a plug without children holds.
AttributeValue readSingle(const Plug& plug) {
  if (plug.node()->connections.hasInputs() || isOutput(*plug.attribute())) {
    const Scene* const scene = plug.node()->scene();
    AttributeValue flowing =
        scene && scene->flowing ? scene->flowing->valueOf(plug) : AttributeValue();
    if (!std::holds_alternative<std::monostate>(flowing)) return flowing;
  }
  AttributeValue computed = computedValue(plug);
  return std::holds_alternative<std::monostate>(computed) ? storedValue(plug) : computed;
}

double asNumber(const AttributeValue& value) {
  const double* number = std::get_if<double>(&value);
  return number ? *number : 0.0;
}

bool writeNumbers(const Plug& plug, const std::vector<double>& numbers) {
  const std::vector<Plug> children = plug.children();
  if (children.empty() || numbers.size() != children.size()) return false;
  for (std::size_t i = 0; i < children.size(); ++i)
    plug.node()->values.at(children[i].path()).value = numbers[i];
  return true;
}

bool suits(const Attribute& attribute, const AttributeValue& value) {
  switch (attribute.kind()) {
    case Kind::kNumber:
      return std::holds_alternative<double>(value);
    case Kind::kText:
      return std::holds_alternative<std::string>(value);
    case Kind::kData:
    case Kind::kLoose:
      return true;
    case Kind::kMessage:
    case Kind::kCompound:
      break;
  }
  return false;
}

bool isOn(const Plug& plug, Flag AttributeState::*flag) {
  const AttributeState* state = stateOf(plug);
  return state && state->*flag == Flag::kOn;
}

void setFlag(const Plug& plug, Flag AttributeState::*flag, bool on) {
  if (!plug.isNull()) plug.node()->values.at(plug.path()).*flag = on ? Flag::kOn : Flag::kOff;
}

constexpr Flag AttributeState::*kFlags[] = {&AttributeState::locked, &AttributeState::keyable,
                                            &AttributeState::channelBox, &AttributeState::caching,
                                            &AttributeState::altered};

void takeFlags(AttributeState& state, const AttributeState& flags) {
  for (const auto flag : kFlags)
    if (flags.*flag != Flag::kUnset) state.*flag = flags.*flag;
}

bool isLockedFromAbove(const Plug& plug) {
  for (auto up = above(plug); up; up = above(*up))
    if (isOn(*up, &AttributeState::locked)) return true;
  return false;
}

}  // namespace

std::optional<Feed> feedOf(const Plug& plug) {
  if (auto source = sourceOf(plug)) return Feed{std::move(*source), std::nullopt};
  const auto parent = above(plug);
  auto source = parent ? sourceOf(*parent) : std::nullopt;
  if (!source) return std::nullopt;
  const auto& siblings = parent->attribute()->children();
  const auto position = std::find(siblings.begin(), siblings.end(), plug.attribute());
  const auto index = static_cast<std::size_t>(position - siblings.begin());
  const std::vector<Plug> candidates = source->children();
  if (candidates.empty()) return Feed{std::move(*source), index};
  return index < candidates.size() ? std::optional<Feed>(Feed{candidates[index], std::nullopt})
                                   : std::nullopt;
}

bool isOutput(const Plug& plug) {
  return isOutput(*plug.attribute());
}

bool hasStoredValue(const Plug& plug) {
  return isSet(stateOf(plug));
}

AttributeValue storedValue(const Plug& plug) {
  const AttributeState* state = stateOf(plug);
  return isSet(state) ? state->value : plug.attribute()->defaultValue;
}

std::optional<double> readNumber(const Plug& plug) {
  if (plug.isNull() || plug.attribute()->kind() != Kind::kNumber) return std::nullopt;
  return asNumber(readSingle(plug));
}

std::optional<std::string> readText(const Plug& plug) {
  if (plug.isNull() || plug.attribute()->kind() != Kind::kText) return std::nullopt;
  const AttributeValue value = readSingle(plug);
  const auto* text = std::get_if<std::string>(&value);
  return text ? *text : std::string();
}

std::optional<std::vector<double>> readNumbers(const Plug& plug) {
  if (plug.isNull()) return std::nullopt;
  AttributeValue value = readValue(plug);
  auto* numbers = std::get_if<std::vector<double>>(&value);
  return numbers ? std::optional<std::vector<double>>(std::move(*numbers)) : std::nullopt;
}

AttributeValue readValue(const Plug& plug) {
  if (plug.isNull() || plug.isArray()) return {};
  if (plug.attribute()->kind() != Kind::kCompound) return readSingle(plug);
  if (!plug.attribute()->isNumericCompound()) return {};
  std::vector<double> numbers;
  for (const Plug& child : plug.children()) numbers.push_back(asNumber(readSingle(child)));
  return numbers;
}

double numberOf(const NodePtr& node, std::string_view pathText, double otherwise) {
  const auto plug = Plug::find(node, pathText);
  return plug ? readNumber(*plug).value_or(otherwise) : otherwise;
}

bool truthOf(const NodePtr& node, std::string_view pathText) {
  return numberOf(node, pathText) != 0.0;
}

bool writeValue(const Plug& plug, AttributeValue value) {
  if (plug.isNull() || plug.isArray()) return false;
  plug.node()->noteChange();
  const auto* numbers = std::get_if<std::vector<double>>(&value);
  if (numbers && plug.attribute()->kind() == Kind::kCompound) return writeNumbers(plug, *numbers);
  if (!suits(*plug.attribute(), value)) return false;
  plug.node()->values.at(plug.path()).value = std::move(value);
  return true;
}

void keepAsWritten(const NodePtr& node, std::string_view pathText, KeptWords value,
                   const AttributeState& flags) {
  node->findOrKeepLoose(pathText.substr(0, pathText.find_first_of(".[")));
  AttributeState& state = node->values.at(pathText);
  state.value = std::move(value);
  takeFlags(state, flags);
  node->noteChange();
}

void disconnectKeepingValue(const ConnectionPtr& connection) {
  const Plug destination = connection->destination;
  AttributeValue value = readValue(destination);
  disconnect(connection);
  const bool isPlain = std::holds_alternative<double>(value) ||
                       std::holds_alternative<std::string>(value) ||
                       destination.attribute()->isNumericCompound();
  if (isPlain) writeValue(destination, std::move(value));
}

void forgetValues(const Plug& plug) {
  if (plug.isNull()) return;
  for (const Plug& child : plug.children()) forgetValues(child);
  plug.node()->values.erase(plug.path());
}

bool isLocked(const Plug& plug) {
  if (plug.isNull()) return false;
  if (isOn(plug, &AttributeState::locked) || isLockedFromAbove(plug)) return true;
  const std::vector<Plug> children = plug.children();
  return !children.empty() && std::all_of(children.begin(), children.end(), [](const Plug& child) {
    return isOn(child, &AttributeState::locked);
  });
}

void setLocked(const Plug& plug, bool locked) {
  setFlag(plug, &AttributeState::locked, locked);
  if (locked || plug.isNull()) return;
  for (const Plug& child : plug.children())
    if (isOn(child, &AttributeState::locked)) setLocked(child, false);
}

bool isKeyable(const Plug& plug) {
  const AttributeState* state = plug.isNull() ? nullptr : stateOf(plug);
  if (state && state->keyable != Flag::kUnset) return state->keyable == Flag::kOn;
  return !plug.isNull() && plug.attribute()->keyable;
}

void setKeyable(const Plug& plug, bool keyable) {
  setFlag(plug, &AttributeState::keyable, keyable);
}

bool isInChannelBox(const Plug& plug) {
  return !plug.isNull() && isOn(plug, &AttributeState::channelBox);
}

void setInChannelBox(const Plug& plug, bool shown) {
  setFlag(plug, &AttributeState::channelBox, shown);
}

bool saysAnything(const AttributeState& flags) {
  return std::any_of(std::begin(kFlags), std::end(kFlags),
                     [&flags](const auto flag) { return flags.*flag != Flag::kUnset; });
}

void setFlags(const Plug& plug, const AttributeState& flags) {
  if (!plug.isNull()) takeFlags(plug.node()->values.at(plug.path()), flags);
}

}  // namespace host
