#ifndef MORVANE_HOST_MESH_HISTORY_HISTORYNODE_H_
#define MORVANE_HOST_MESH_HISTORY_HISTORYNODE_H_

#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// An attribute's name, short and long; a scene file may have either.
struct ParameterName {
  const char* shortName;
  const char* longName;

  bool is(std::string_view name) const { return name == shortName || name == longName; }
};

// One step of an attribute's path: "iti[6000]", "wl[0:99]". Without brackets `first` is -1.
struct ParameterPart {
  std::string_view name;
  int first = -1;
  int last = -1;
};
using ParameterPath = std::vector<ParameterPart>;

// Of knownPoints: all that there are.
constexpr int kAllKnown = std::numeric_limits<int>::max();

enum class ElementKind { kFace, kVertex, kEdge, kUv };

// The parameters of a history node, and what it can report. Lengths are centimetres, angles
// degrees.
class HistoryParameters {
 public:
  virtual ~HistoryParameters() = default;

  // A number that is set or connected; nothing for the type's default.
  virtual std::optional<double> number(const ParameterName& name) const = 0;
  // All that a compound, a matrix or a list of numbers holds; empty when it is not set.
  virtual std::vector<double> numbers(const ParameterName& name) const = 0;
  // The same for every element of an array that is set or connected, by index.
  virtual std::map<int, std::vector<double>> elements(const ParameterName& name) const = 0;
  virtual std::string text(const ParameterName& name) const = 0;
  // The elements that a component list names, in ascending order, those below `count` only. Nothing
  // when no list is set.
  virtual std::optional<std::vector<int>> components(const ParameterName& name, ElementKind kind,
                                                     int count) const = 0;

  // Every value set at or below the attribute, in written order, with its path from there on.
  using Visitor =
      std::function<void(const ParameterPath& path, const std::vector<double>& numbers)>;
  virtual void forEach(const ParameterName& name, const Visitor& visit) const = 0;
  // The elements that the component list beside a value of forEach names, in written order.
  virtual std::vector<int> componentsBeside(const ParameterPath& path, const ParameterName& name,
                                            ElementKind kind, int count) const = 0;
  // Every mesh connected at or below the attribute, by path. False when one of them cannot be made,
  // which the evaluation then reports; the node gives up.
  using MeshVisitor = std::function<void(const ParameterPath& path, const MeshData& mesh)>;
  virtual bool forEachMesh(const ParameterName& name, const MeshVisitor& visit) = 0;

  // The vertices below `count` that a deformer may move; nothing for all of them.
  virtual std::optional<std::vector<int>> affectedVertices(int count) const = 0;
  // The index of the output that is made, which a deformer has for each of its meshes.
  virtual int outputIndex() const = 0;

  // Adds a remark about a mesh that can be made all the same, in words that follow the node's name.
  virtual void note(const std::string& text) = 0;
  // Says that the mesh's UVs stay those from before this node.
  virtual void noteOlderUvs() = 0;
  virtual bool hasOlderUvs() const = 0;  // some node before this one said so
  // Says that UVs, which are where Maya has them, have other numbers.
  virtual void dropUvNumbers() = 0;
  virtual bool hasUvNumbers() const = 0;  // no node before this one said so

  // Says that only the first faces, points and edges of the current mesh are in Maya's order. A
  // later node that names one of the others stops the mesh.
  virtual void keepNumbersOf(int faces, int points, int edges) = 0;
  // Says that no number of the mesh is Maya's any more, if some were not before.
  virtual void dropNumbers() = 0;
  // How many points have Maya's numbers.
  virtual int knownPoints() const = 0;

  double number(const ParameterName& name, double otherwise) const {
    return number(name).value_or(otherwise);
  }
  // The number as an integer between the two bounds; the default when it is not finite.
  int whole(const ParameterName& name, int otherwise, int least, int most) const;
};

// A type of node in a mesh's history.
struct HistoryNodeType {
  const char* name;
  // The attribute by which the mesh comes in, spelt with short and with long names. "#" stands for
  // the index of the requested output. Null: the node makes a mesh of nothing.
  struct Input {
    const char* path;
    const char* longPath;
  };
  Input input;
  // Turns `mesh`, the input or an empty mesh, into the output. Returns what is wrong, in words that
  // follow "but "; `mesh` must not be used then. Null: the mesh is handed on unchanged.
  std::string (*evaluate)(HistoryParameters& node, MeshData& mesh);
};

// Null for a type that is not evaluated.
const HistoryNodeType* findHistoryNodeType(std::string_view name);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_HISTORYNODE_H_
