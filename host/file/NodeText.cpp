#include "host/file/NodeText.h"

#include "host/scene/Plug.h"
#include "host/scene/Scene.h"
#include "host/state/KeptLengths.h"
#include "host/state/SceneProject.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

using mel::appendNumber;
using mel::quoted;
using Flag = AttributeState::Flag;

void appendNumbers(std::string& out, const std::vector<double>& numbers) {
  for (const double number : numbers) {
    out += ' ';
    appendNumber(out, number);
  }
}

std::string flags(const AttributeState& state) {
  std::string text;
  const auto add = [&text](Flag flag, const char* name) {
    if (flag != Flag::kUnset)
      text += std::string(" -") + name + (flag == Flag::kOn ? " on" : " off");
  };
  add(state.locked, "l");
  add(state.keyable, "k");
  add(state.channelBox, "cb");
  add(state.caching, "ca");
  text += state.altered == Flag::kOn ? " -av" : "";
  return text;
}

// Follows the attribute's name: the type where one is needed, and the value.
struct ValueText {
  const Attribute* attribute;  // null when the node has none of that name
  double factor;               // of the file's unit
  std::string& out;

  void operator()(std::monostate) const {}

  void operator()(double number) const {
    out += ' ';
    if (attribute != nullptr && attribute->typeWord() == "bool" && (number == 0 || number == 1))
      out += number == 1 ? "yes" : "no";
    else
      appendNumber(out, dividedBy(number, factor));
  }

  void operator()(const std::string& text) const { out += " -type \"string\" " + quoted(text); }

  void operator()(const std::vector<double>& numbers) const {
    const std::string type = attribute == nullptr ? "doubleArray" : attribute->typeWord();
    out += " -type " + quoted(type);
    if (numericCompoundSize(type) == 0 && type != "matrix") {
      const std::size_t width = type == "vectorArray" ? 3 : type == "pointArray" ? 4 : 1;
      out += ' ' + std::to_string(numbers.size() / width);
    }
    appendNumbers(out, numbers);
  }

  void operator()(const std::vector<std::string>& texts) const {
    const std::string type = attribute == nullptr ? "stringArray" : attribute->typeWord();
    out += " -type " + quoted(type) + ' ' + std::to_string(texts.size());
    for (const std::string& text : texts) out += ' ' + quoted(text);
  }

  void operator()(const KeptWords& kept) const {
    if (!kept.type.empty()) out += " -type " + quoted(kept.type);
    for (const std::string& word : kept.words) out += ' ' + word;
  }
};

bool isNothing(const AttributeValue& value) {
  const auto* const kept = std::get_if<KeptWords>(&value);
  return std::holds_alternative<std::monostate>(value) || (kept != nullptr && kept->words.empty());
}

void appendState(std::string& out, const NodePtr& node, const AttributeState& state,
                 const SceneUnits& units, const SceneProject& project) {
  const std::string options = flags(state);
  if (options.empty() && isNothing(state.value)) return;
  const auto plug = Plug::find(node, state.path);
  out += "\tsetAttr" + options + ' ' + quoted("." + state.path);
  const Attribute* attribute = plug ? plug->attribute().get() : nullptr;
  const double factor = attribute == nullptr ? 1.0 : unitFactor(units, *attribute);
  const auto* const text = std::get_if<std::string>(&state.value);
  const auto* const kept = std::get_if<KeptWords>(&state.value);
  const ValueText value{attribute, factor, out};
  if (text != nullptr && node->hasFn(MFn::kFileTexture))
    value(project.writtenName(node->serial(), *text));
  else if (kept != nullptr && units.length != 1.0 && isKeptLength(*node, state.path)) {
    KeptWords inUnit = *kept;
    turnFromCentimetres(inUnit, units.length);
    value(inUnit);
  } else {
    std::visit(value, state.value);
  }
  out += ";\n";
}

void appendDeclaration(std::string& out, const Attribute& attribute) {
  out += "\taddAttr";
  for (const std::string& word : attribute.declaration) out += ' ' + word;
  if (attribute.declaration.empty()) {
    const bool isData =
        attribute.kind() == Attribute::Kind::kText || attribute.kind() == Attribute::Kind::kData;
    out += " -ci true -sn " + quoted(attribute.shortName()) + " -ln " +
           quoted(attribute.longName()) + (isData ? " -dt " : " -at ") +
           quoted(attribute.typeWord());
  }
  out += ";\n";
  for (const AttributePtr& child : attribute.children()) appendDeclaration(out, *child);
}

std::string parentOption(const NodePtr& node) {
  const Scene& scene = *node->scene();
  if (node->parents().empty() || node->parents().front() == scene.world().get())
    return std::string();
  return " -p " + quoted(scene.displayName(node->parents().front()->pointer()));
}

void appendMaker(std::string& out, const NodePtr& node) {
  if (node->isDefault && !node->isDag()) {
    out += "select -ne " + fileName(node) + ";\n";
    return;
  }
  out += "createNode " + node->type().name() + (node->isShared || node->isDefault ? " -s" : "") +
         " -n " + quoted(node->name()) + parentOption(node) + ";\n";
}

}  // namespace

std::string fileName(const NodePtr& node) {
  const std::string name = node->scene()->displayName(node);
  return node->isDefault && !node->isDag() ? ":" + name : name;
}

void appendNode(std::string& out, const NodePtr& node, const SceneUnits& units,
                const SceneProject& project) {
  std::string body;
  if (!node->uuid.empty() && (!node->isDefault || node->isDag()))
    body += "\trename -uid " + quoted(node->uuid) + ";\n";
  for (const AttributePtr& attribute : node->dynamicAttributes())
    if (attribute->kind() != Attribute::Kind::kLoose && attribute->parent() == nullptr)
      appendDeclaration(body, *attribute);
  for (const std::string& declaration : node->keptDeclarations) body += '\t' + declaration + ";\n";
  for (const AttributeState& state : node->values.inWrittenOrder())
    appendState(body, node, state, units, project);
  if (node->mesh != nullptr) appendMesh(body, *node->mesh, units.length);
  if (node->isLocked || !node->lockFlags.empty())
    body += std::string("\tlockNode -l ") + (node->isLocked ? "1" : "0") + node->lockFlags + " ;\n";
  if (!node->isDefault || !body.empty()) {
    appendMaker(out, node);
    out += body;
  }
}

}  // namespace host
