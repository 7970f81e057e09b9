#include "host/history/NodeParameters.h"

#include <algorithm>

#include "host/attribute/Component.h"
#include "host/evaluation/ArrayElements.h"
#include "host/evaluation/CurrentTime.h"
#include "host/evaluation/GraphEvaluation.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {
namespace {

constexpr int kFirstIndex = 0;

// Splits "wl[0:9].w" into its steps, up to the first that is malformed.
ParameterPath splitPath(std::string_view text) {
  ParameterPath path;
  while (!text.empty()) {
    const std::size_t dot = text.find('.');
    const std::string_view step = text.substr(0, dot);
    const auto range = splitRange(step);
    path.push_back(range ? ParameterPart{range->stem, range->first, range->last}
                         : ParameterPart{step, -1, -1});
    text = dot == text.npos ? std::string_view() : text.substr(dot + 1);
  }
  return path;
}

std::string withoutQuotes(const std::string& word) {
  const bool quoted = word.size() > 1 && word.front() == '"' && word.back() == '"';
  return quoted ? word.substr(1, word.size() - 2) : word;
}

std::vector<std::string> textsOf(const AttributeValue& value) {
  std::vector<std::string> texts;
  if (const auto* list = std::get_if<std::vector<std::string>>(&value))
    texts = *list;
  else if (const auto* text = std::get_if<std::string>(&value))
    texts.push_back(*text);
  else if (const auto* kept = std::get_if<KeptWords>(&value))
    for (const std::string& word : kept->words) texts.push_back(withoutQuotes(word));
  return texts;
}

Component::Kind kindOf(ElementKind kind) {
  switch (kind) {
    case ElementKind::kFace:
      return Component::Kind::kFace;
    case ElementKind::kVertex:
      return Component::Kind::kVertex;
    case ElementKind::kEdge:
      return Component::Kind::kEdge;
    case ElementKind::kUv:
      break;
  }
  return Component::Kind::kUv;
}

std::vector<double> numbersAt(const Plug& plug) {
  if (const auto number = readNumber(plug)) return {*number};
  return readNumbers(plug).value_or(std::vector<double>());
}

bool isSet(const NodePtr& node, const Plug& plug) {
  const AttributeState* state = node->values.find(plug.path());
  return state != nullptr && !std::holds_alternative<std::monostate>(state->value);
}

}  // namespace

NodeParameters::NodeParameters(const Plug& output, MakeMesh makeMesh, MeshHistory& history)
    : output_(output), node_(output.node()), makeMesh_(std::move(makeMesh)), history_(history) {}

int NodeParameters::outputIndex() const {
  return std::max(output_.index(), kFirstIndex);
}

void NodeParameters::note(const std::string& text) {
  history_.notes.push_back("'" + node_->name() + "' (" + node_->type().name() + ") " + text);
}

void NodeParameters::noteOlderUvs() {
  history_.hasOlderUvs = true;
  note("changes UVs in a way that is not evaluated; its UVs are those from before");
}

void NodeParameters::keepNumbersOf(int faces, int points, int edges) {
  history_.knownFaces = std::min(history_.knownFaces, faces);
  history_.knownPoints = std::min(history_.knownPoints, points);
  history_.knownEdges = std::min(history_.knownEdges, edges);
}

void NodeParameters::dropNumbers() {
  if (history_.knownPoints != kAllKnown) keepNumbersOf(0, 0, 0);
}

// UVs are told of by noteOlderUvs.
void NodeParameters::checkNumbers(ElementKind kind, const std::vector<int>& elements) const {
  const int known = kind == ElementKind::kFace     ? history_.knownFaces
                    : kind == ElementKind::kVertex ? history_.knownPoints
                    : kind == ElementKind::kEdge   ? history_.knownEdges
                                                   : kAllKnown;
  history_.namesUnknown |= !elements.empty() && elements.back() >= known;
}

// The set of a deformer is connected to the groupParts node in front of the deformer.
std::optional<std::vector<int>> NodeParameters::affectedVertices(int count) const {
  const std::string index = "[" + std::to_string(outputIndex()) + "].";
  const auto source = historySource(node_, "ip" + index + "ig", "input" + index + "inputGeometry");
  if (!source || !source->node()->type().isA("groupParts")) return std::nullopt;
  MeshHistory unused;
  return NodeParameters(*source, nullptr, unused)
      .components({"ic", "inputComponents"}, ElementKind::kVertex, count);
}

std::optional<Plug> historySource(const NodePtr& node, std::string_view path,
                                  std::string_view longPath) {
  for (const std::string_view spelling : {path, longPath}) {
    const auto plug = Plug::find(node, spelling);
    const auto source = plug ? sourceOf(*plug) : std::nullopt;
    if (source) return source;
  }
  return std::nullopt;
}

const AttributeValue* NodeParameters::find(const ParameterName& name) const {
  for (const char* spelling : {name.shortName, name.longName}) {
    const auto plug = Plug::find(node_, spelling);
    if (plug && isSet(node_, *plug)) return &node_->values.find(plug->path())->value;
  }
  return nullptr;
}

// A joint's matrix depends on all nodes above it, and on all that drives these.
void NodeParameters::noteInput(const NodePtr& node) const {
  std::vector<const Node*> waiting = {node.get()};
  while (!waiting.empty()) {
    const Node* const next = waiting.back();
    waiting.pop_back();
    if (!noted_.insert(next).second) continue;
    history_.inputs.push_back(next->serial());
    waiting.insert(waiting.end(), next->parents().begin(), next->parents().end());
    for (const ConnectionPtr& connection : next->connections.inOrder())
      waiting.push_back(connection->source.node().get());
    const NodePtr time = isDrivenByTime(*next) ? timeNode(*next->scene()) : nullptr;
    if (time) waiting.push_back(time.get());
  }
}

std::vector<double> NodeParameters::numbersInto(const Plug& destination, const Plug& source) const {
  noteInput(source.node());
  const auto trouble = node_->scene()->flowing->troubleOf(destination);
  if (trouble && history_.isMade()) {
    history_.stopNode = node_->name();
    history_.stopType = node_->type().name();
    history_.stopReason =
        "it is driven by '" + trouble->node->name() + "' (" + trouble->node->type().name() + "), " +
        (trouble->reason.empty() ? "which is not evaluated" : "but " + trouble->reason);
    history_.stopAdvice = "delete the mesh's history in Maya";
  }
  return numbersAt(source);
}

std::optional<double> NodeParameters::number(const ParameterName& name) const {
  const std::vector<double> all = numbers(name);
  return all.empty() ? std::nullopt : std::optional<double>(all.front());
}

std::vector<double> NodeParameters::numbers(const ParameterName& name) const {
  std::vector<double> result;
  for (const char* spelling : {name.shortName, name.longName}) {
    const auto plug = result.empty() ? Plug::find(node_, spelling) : std::nullopt;
    const auto source = plug ? sourceOf(*plug) : std::nullopt;
    if (source) result = numbersInto(*plug, *source);
  }
  const AttributeValue* value = result.empty() ? find(name) : nullptr;
  if (value != nullptr) {
    readNumbersOf(*value, result);
    return result;
  }
  const auto plug = result.empty() ? Plug::find(node_, name.longName) : std::nullopt;
  if (plug && plug->attribute()->isNumericCompound()) {
    bool any = false;
    for (const Plug& child : plug->children()) any = any || isSet(node_, child);
    result = any ? numbersAt(*plug) : result;
  }
  return result;
}

std::map<int, std::vector<double>> NodeParameters::elements(const ParameterName& name) const {
  std::map<int, std::vector<double>> result;
  forEach(name, [&](const ParameterPath& path, const std::vector<double>& numbers) {
    if (path.size() != 1 || numbers.empty()) return;
    const int first = std::max(path.front().first, kFirstIndex);
    const int last = std::max(path.front().last, kFirstIndex);
    const std::size_t count = static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1;
    const std::size_t width = numbers.size() / count;
    for (std::size_t i = 0; width > 0 && i < count; ++i) {
      const auto begin = numbers.begin() + static_cast<std::ptrdiff_t>(i * width);
      result[first + static_cast<int>(i)].assign(begin, begin + static_cast<std::ptrdiff_t>(width));
    }
  });
  for (const char* spelling : {name.shortName, name.longName}) {
    for (const ConnectionPtr& connection : node_->connections.intoAtOrBelow(spelling)) {
      const ParameterPath path = splitPath(connection->destination.path());
      std::vector<double> numbers = numbersInto(connection->destination, connection->source);
      if (path.size() == 1 && !numbers.empty())
        result[std::max(path.front().first, kFirstIndex)] = std::move(numbers);
    }
  }
  return result;
}

std::string NodeParameters::text(const ParameterName& name) const {
  const AttributeValue* value = find(name);
  const std::vector<std::string> texts =
      value == nullptr ? std::vector<std::string>() : textsOf(*value);
  return texts.empty() ? std::string() : texts.front();
}

std::optional<std::vector<int>> NodeParameters::components(const ParameterName& name,
                                                           ElementKind kind, int count) const {
  const AttributeValue* value = find(name);
  if (value == nullptr) return std::nullopt;
  std::vector<IndexRange> ranges;
  for (const std::string& text : textsOf(*value)) {
    const ComponentPtr component = Component::parse(text);
    if (component != nullptr && component->kind() == kindOf(kind)) {
      const auto& own = component->elements().ranges();
      ranges.insert(ranges.end(), own.begin(), own.end());
    }
  }
  std::vector<int> elements = IndexSet(std::move(ranges)).toIndices(count);
  // Who names all of them means no numbers.
  if (static_cast<int>(elements.size()) < count) checkNumbers(kind, elements);
  return elements;
}

void NodeParameters::forEach(const ParameterName& name, const Visitor& visit) const {
  std::vector<double> numbers;
  for (const AttributeState& state : node_->values.inWrittenOrder()) {
    if (name.is(headOf(state.path))) {
      readNumbersOf(state.value, numbers);
      visit(splitPath(state.path), numbers);
    }
  }
}

std::vector<int> NodeParameters::componentsBeside(const ParameterPath& path,
                                                  const ParameterName& name, ElementKind kind,
                                                  int count) const {
  std::string stem;
  for (std::size_t i = 0; i + 1 < path.size(); ++i) {
    stem += std::string(path[i].name) +
            (path[i].first < 0 ? "" : "[" + std::to_string(path[i].first) + "]") + ".";
  }
  std::vector<int> elements;
  for (const char* spelling : {name.shortName, name.longName}) {
    const AttributeState* state = node_->values.find(stem + spelling);
    for (const std::string& text :
         state == nullptr ? std::vector<std::string>() : textsOf(state->value)) {
      const ComponentPtr component = Component::parse(text);
      if (component != nullptr && component->kind() == kindOf(kind)) {
        const std::vector<int> own = component->elements().toIndices(count);
        elements.insert(elements.end(), own.begin(), own.end());
      }
    }
  }
  return elements;
}

bool NodeParameters::forEachMesh(const ParameterName& name, const MeshVisitor& visit) {
  for (const char* spelling : {name.shortName, name.longName}) {
    for (const ConnectionPtr& connection : node_->connections.intoAtOrBelow(spelling)) {
      const MeshData* mesh = makeMesh_(connection->source);
      if (mesh == nullptr) return false;
      visit(splitPath(connection->destination.path()), *mesh);
    }
  }
  return true;
}

}  // namespace host
