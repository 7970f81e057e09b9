#include "host/file/MeshText.h"

#include <algorithm>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/scene/Plug.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"
#include "host/text/TextScanner.h"

namespace host {
namespace {

struct MeshPath {
  std::string_view name;   // "vt", "uvst"
  std::string_view child;  // "uvsp" of "uvst[0].uvsp[4:9]"
  int set = 0;             // 0 of "uvst[0].uvsp[4:9]"
  int first = 0;
  int last = 0;
  bool isRange = false;  // [first:last] or [first] was given
};

std::optional<MeshPath> splitPath(std::string_view text) {
  MeshPath path;
  std::string_view head = text;
  const std::size_t dot = text.find('.');
  if (dot != std::string_view::npos) {
    head = text.substr(0, dot);
    path.child = text.substr(dot + 1);
    if (const auto range = splitRange(path.child)) {
      path.child = range->stem;
      path.first = range->first;
      path.last = range->last;
      path.isRange = true;
    }
  }
  path.name = head;
  if (const auto range = splitRange(head)) {
    path.name = range->stem;
    path.set = range->first;
    if (dot == std::string_view::npos) {
      path.first = range->first;
      path.last = range->last;
      path.isRange = true;
    }
  }
  const bool closed = path.name.find_first_of("[]") == path.name.npos &&
                      path.child.find_first_of("[].") == path.child.npos;
  return closed ? std::optional<MeshPath>(path) : std::nullopt;
}

template <class Number>
std::vector<Number>& scratch() {
  static thread_local std::vector<Number> numbers;
  numbers.clear();
  return numbers;
}

// A number that from_chars refuses: infinite, not a number, or beyond a float's range.
bool readSpecial(std::string_view word, float& number) {
  const auto special = mel::parseNumber(word);
  number = static_cast<float>(special.value_or(0.0));
  return special.has_value();
}
bool readSpecial(std::string_view word, double& number) {
  const auto special = mel::parseNumber(word);
  number = special.value_or(0.0);
  return special.has_value();
}
bool readSpecial(std::string_view, int&) {
  return false;
}

// All numbers up to the end. False when anything else stands among them.
template <class Number>
bool readNumbers(TextScanner& in, std::vector<Number>& numbers) {
  Number number = 0;
  while (!in.atEnd()) {
    if (!in.number(number) && !readSpecial(in.word(), number)) return false;
    numbers.push_back(number);
  }
  return true;
}

// Compares the length that a statement promises with what it has.
std::string countProblem(const MeshPath& path, std::size_t held) {
  const std::size_t named = static_cast<std::size_t>(path.last - path.first) + 1;
  if (!path.isRange || held == named) return std::string();
  return "names " + std::to_string(named) + " elements and holds " + std::to_string(held);
}

// The source of a statement's numbers, be it text or binary.
struct TextNumbers {
  TextScanner& in;
  template <class Number>
  bool read(std::vector<Number>& numbers) const {
    return readNumbers(in, numbers);
  }
};
struct GivenNumbers {
  const std::vector<double>& given;
  template <class Number>
  bool read(std::vector<Number>& numbers) const {
    for (const double number : given)
      if constexpr (std::is_same_v<Number, int>)
        numbers.push_back(mel::toInteger(number));
      else
        numbers.push_back(static_cast<Number>(number));
    return true;
  }
};

template <class Number, class Source, class Set>
std::string setTuples(const MeshPath& path, const Source& source, std::size_t width, Set set) {
  std::vector<Number>& numbers = scratch<Number>();
  if (!source.read(numbers)) return "holds something that is not a number";
  if (numbers.size() % width != 0) return "holds an element with too few numbers";
  const std::size_t count = numbers.size() / width;
  std::string problem = set(static_cast<std::size_t>(path.first), numbers, count);
  return problem.empty() ? countProblem(path, count) : problem;
}

void scale(std::vector<double>& numbers, double factor) {
  if (factor != 1.0)
    for (double& number : numbers) number *= factor;
}

std::string quotedText(TextScanner& in) {
  const std::string_view rest = in.rest();
  const std::size_t close =
      rest.empty() || rest.front() != '"' ? rest.npos : mel::findClosingQuote(rest, 0);
  std::string text;
  if (close == rest.npos)
    text = rest;
  else
    mel::appendUnescaped(text, rest.substr(1, close - 1));
  return text;
}

// --- Faces

// "f 4 0 1 2 -4": takes the count and as many numbers.
bool readIds(TextScanner& in, std::vector<int>& ids) {
  int count = 0;
  ids.clear();
  if (!in.number(count) || count < 0) return false;
  int id = 0;
  for (int i = 0; i < count; ++i) {
    if (!in.number(id)) return false;
    ids.push_back(id);
  }
  return true;
}

std::string addFacePart(MeshData& mesh, std::string_view kind, TextScanner& in,
                        std::vector<int>& ids) {
  const bool inSet = kind == "mu" || kind == "mc";
  int set = 0;
  if ((inSet && !in.number(set)) || !readIds(in, ids))
    return "'" + std::string(kind) + "' lacks numbers";
  if (kind == "f") return mesh.addFace(ids.data(), ids.size());
  if (kind == "h") return mesh.addHole(ids.data(), ids.size());
  if (kind == "mu") return mesh.setLoopUvs(set, ids.data(), ids.size());
  if (kind == "mc") return mesh.setLoopColours(set, ids.data(), ids.size());
  if (kind == "mf") return mesh.setFaceUvs(ids.data(), ids.size());
  if (kind == "mh") return mesh.setHoleUvs(ids.data(), ids.size());
  if (kind == "fc") return mesh.setFaceColours(ids.data(), ids.size());
  return "does not know '" + std::string(kind.substr(0, 20)) + "' in a face";
}

std::string setFaces(MeshData& mesh, const MeshPath& path, TextScanner& in) {
  std::string problem = mesh.beginFaces(static_cast<std::size_t>(path.first));
  std::vector<int>& ids = scratch<int>();
  std::size_t faces = 0;
  while (problem.empty() && !in.atEnd()) {
    const std::string_view kind = in.word();
    faces += kind == "f" ? 1 : 0;
    problem = addFacePart(mesh, kind, in, ids);
    if (!problem.empty())
      return "face " + std::to_string(static_cast<std::size_t>(path.first) + faces) + " " + problem;
  }
  return problem.empty() ? countProblem(path, faces) : problem;
}

// --- Sets of UVs and colours

bool isOneOf(std::string_view name, std::string_view shortName, std::string_view longName) {
  return name == shortName || name == longName;
}

bool isUvSetName(const MeshPath& path) {
  return isOneOf(path.name, "uvst", "uvSet") && isOneOf(path.child, "uvsn", "uvSetName");
}
bool isColourSetName(const MeshPath& path) {
  return isOneOf(path.name, "clst", "colorSet") && isOneOf(path.child, "clsn", "colorName");
}
bool isCurrentUvSet(const MeshPath& path) {
  return isOneOf(path.name, "cuvs", "currentUVSet");
}
bool isCurrentColourSet(const MeshPath& path) {
  return isOneOf(path.name, "ccls", "currentColorSet");
}

constexpr char kTooManyUvSets[] = "is one UV set too many";
constexpr char kTooManyColourSets[] = "is one colour set too many";

template <class Source>
std::string setUvs(MeshData& mesh, const MeshPath& path, const Source& source) {
  if (mesh.uvSet(path.set) == nullptr) return kTooManyUvSets;
  return setTuples<float>(path, source, 2,
                          [&](std::size_t first, const std::vector<float>& uv, std::size_t count) {
                            return mesh.setUvs(path.set, first, uv.data(), count);
                          });
}

template <class Source>
std::string setColours(MeshData& mesh, const MeshPath& path, const Source& source) {
  MeshColourSet* set = mesh.colourSet(path.set);
  if (set == nullptr) return kTooManyColourSets;
  if (isOneOf(path.child, "rprt", "representation")) {
    std::vector<int>& numbers = scratch<int>();
    const int components = source.read(numbers) && numbers.size() == 1 ? numbers.front() : 0;
    if (components != 1 && components != 3 && components != 4)
      return "is not a representation of colours";
    set->components = components;
    return std::string();
  }
  const auto width = static_cast<std::size_t>(set->components);
  return setTuples<float>(path, source, width,
                          [&](std::size_t first, const std::vector<float>& colours, std::size_t) {
                            return mesh.setColours(path.set, first, colours.data(), colours.size());
                          });
}

// The part of a tweak that a path such as "pt[3].py" names, 1 for y; -1 for any other path.
int tweakAxis(const MeshPath& path) {
  constexpr std::pair<std::string_view, std::string_view> kAxes[] = {
      {"px", "pntx"}, {"py", "pnty"}, {"pz", "pntz"}};
  if (!isOneOf(path.name, "pt", "pnts") || path.isRange) return -1;
  for (int axis = 0; axis < 3; ++axis)
    if (isOneOf(path.child, kAxes[axis].first, kAxes[axis].second)) return axis;
  return -1;
}

template <class Source>
std::string setTweakPart(MeshData& mesh, const MeshPath& path, int axis, const Source& source,
                         double lengthFactor) {
  std::vector<double>& numbers = scratch<double>();
  if (!source.read(numbers) || numbers.size() != 1) return "needs one number";
  double xyz[3] = {};
  for (const MeshTweak& tweak : mesh.tweaks())
    if (tweak.vertex == path.set) std::copy_n(&tweak.offset.x, 3, xyz);
  xyz[axis] = numbers.front() * lengthFactor;
  return mesh.setTweaks(static_cast<std::size_t>(path.set), xyz, 1);
}

bool isSetPart(const MeshPath& path) {
  if (isOneOf(path.name, "uvst", "uvSet"))
    return isOneOf(path.child, "uvsn", "uvSetName") || isOneOf(path.child, "uvsp", "uvSetPoints");
  return isOneOf(path.name, "clst", "colorSet") && (isOneOf(path.child, "clsn", "colorName") ||
                                                    isOneOf(path.child, "rprt", "representation") ||
                                                    isOneOf(path.child, "clsp", "colorSetPoints"));
}

}  // namespace

bool isMeshData(std::string_view text) {
  const auto path = splitPath(text);
  if (!path) return false;
  if (!path->child.empty()) return isSetPart(*path) || tweakAxis(*path) >= 0;
  return isOneOf(path->name, "vt", "vrts") || isOneOf(path->name, "ed", "edge") ||
         isOneOf(path->name, "fc", "face") || isOneOf(path->name, "n", "normals") ||
         isOneOf(path->name, "pt", "pnts") || isOneOf(path->name, "cuvs", "currentUVSet") ||
         isOneOf(path->name, "ccls", "currentColorSet");
}

namespace {

bool isName(const MeshPath& path) {
  return isUvSetName(path) || isColourSetName(path) || isCurrentUvSet(path) ||
         isCurrentColourSet(path);
}

std::string setName(MeshData& mesh, const MeshPath& path, std::string value) {
  if (isUvSetName(path)) {
    MeshUvSet* const set = mesh.uvSet(path.set);
    if (set == nullptr) return kTooManyUvSets;
    set->name = std::move(value);
  } else if (isColourSetName(path)) {
    MeshColourSet* const set = mesh.colourSet(path.set);
    if (set == nullptr) return kTooManyColourSets;
    set->name = std::move(value);
  } else if (isCurrentUvSet(path)) {
    mesh.setCurrentUvSetName(std::move(value));
  } else {
    mesh.setCurrentColourSetName(std::move(value));
  }
  return std::string();
}

template <class Source>
std::string setNumbers(MeshData& mesh, const MeshPath& path, const Source& source,
                       double lengthFactor) {
  const auto points = [&](auto set) {
    return setTuples<double>(path, source, 3,
                             [&](std::size_t first, std::vector<double>& xyz, std::size_t count) {
                               scale(xyz, lengthFactor);
                               return (mesh.*set)(first, xyz.data(), count);
                             });
  };
  const int axis = tweakAxis(path);
  if (axis >= 0) return setTweakPart(mesh, path, axis, source, lengthFactor);
  if (isOneOf(path.name, "uvst", "uvSet")) return setUvs(mesh, path, source);
  if (isOneOf(path.name, "clst", "colorSet")) return setColours(mesh, path, source);
  if (isOneOf(path.name, "vt", "vrts")) return points(&MeshData::setPoints);
  if (isOneOf(path.name, "pt", "pnts")) return points(&MeshData::setTweaks);
  if (isOneOf(path.name, "ed", "edge")) {
    return setTuples<int>(path, source, 3,
                          [&](std::size_t first, const std::vector<int>& ints, std::size_t count) {
                            return mesh.setEdges(first, ints.data(), count);
                          });
  }
  return setTuples<float>(path, source, 3,
                          [&](std::size_t first, const std::vector<float>& xyz, std::size_t count) {
                            return mesh.setNormals(first, xyz.data(), count);
                          });
}

}  // namespace

std::string setMeshData(MeshData& mesh, std::string_view text, std::string_view rest,
                        double lengthFactor) {
  const MeshPath path = splitPath(text).value_or(MeshPath());
  TextScanner in(rest);
  if (in.rest().substr(0, 5) == "-type") {
    in.word();
    in.word();
  }
  if (in.atEnd()) return std::string();  // announces a size only
  if (isName(path)) return setName(mesh, path, quotedText(in));
  if (isOneOf(path.name, "fc", "face")) return setFaces(mesh, path, in);
  return setNumbers(mesh, path, TextNumbers{in}, lengthFactor);
}

bool isMeshText(std::string_view text) {
  return isName(splitPath(text).value_or(MeshPath()));
}

std::string setMeshText(MeshData& mesh, std::string_view text, std::string value) {
  return setName(mesh, splitPath(text).value_or(MeshPath()), std::move(value));
}

std::string setMeshNumbers(MeshData& mesh, std::string_view text,
                           const std::vector<double>& numbers) {
  const MeshPath path = splitPath(text).value_or(MeshPath());
  if (isName(path) || isOneOf(path.name, "fc", "face")) return "holds numbers where none belong";
  return setNumbers(mesh, path, GivenNumbers{numbers}, 1.0);
}

}  // namespace host
