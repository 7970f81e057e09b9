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

// What a node of a mesh's history has to go by besides the mesh that it changes. Lengths are
// centimetres, angles degrees.
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

  // Of a deformer, the vertices that it may move, those below `count`; nothing for all of them.
  virtual std::optional<std::vector<int>> affectedVertices(int count) const = 0;
  // The index of the output that is made: that of the mesh among those that a deformer moves.
  virtual int outputIndex() const = 0;

  // Says something of the mesh that is not a reason not to make it, in words that follow the node's
  // name.
  virtual void note(const std::string& text) = 0;
  // Says that the mesh's UVs stay those from before this node.
  virtual void noteOlderUvs() = 0;
  virtual bool hasOlderUvs() const = 0;  // some node before this one said so
  // Says that UVs, which are where Maya has them, have other numbers.
  virtual void dropUvNumbers() = 0;
  virtual bool hasUvNumbers() const = 0;  // no node before this one said so

  // Says that of what the mesh has now, all but the first faces, points and edges come in another
  // order than in Maya. A node that names one of the others stops the mesh.
  virtual void keepNumbersOf(int faces, int points, int edges) = 0;
  // Says that no number is left that is Maya's, if some were not before this node.
  virtual void dropNumbers() = 0;
  // How many points have Maya's numbers.
  virtual int knownPoints() const = 0;

  double number(const ParameterName& name, double otherwise) const {
    return number(name).value_or(otherwise);
  }
  // A number or its default for what is not a finite number, between the two bounds.
  int whole(const ParameterName& name, int otherwise, int least, int most) const;
};

// A type of node in a mesh's history.
struct HistoryNodeType {
  const char* name;
  // Where the mesh that it changes is connected, spelt with short and with long names. "#" stands
  // for the index of the output that is asked for. Null: it makes a mesh of nothing.
  struct Input {
    const char* path;
    const char* longPath;
  };
  Input input;
  // Makes `mesh`, which is the input or empty, what the node hands on. Gives what is wrong, in
  // words that follow "but "; then `mesh` is worth nothing. Null: hands it on as it is.
  std::string (*evaluate)(HistoryParameters& node, MeshData& mesh);
};

// Null for a type that is not evaluated.
const HistoryNodeType* findHistoryNodeType(std::string_view name);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_HISTORYNODE_H_
