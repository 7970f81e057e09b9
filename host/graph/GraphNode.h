#ifndef MORVANE_HOST_GRAPH_GRAPHNODE_H_
#define MORVANE_HOST_GRAPH_GRAPHNODE_H_

#include <maya/MMatrix.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/math/MeshVector.h"

namespace host {

// Access of a graph node to its inputs and outputs. Attributes go by their long names, with an
// index for elements: "input3D[2].input3Dx". Angles are in degrees when the attribute is an angle,
// and in radians when it is a plain number; lengths are in centimetres, times in frames.
class GraphNode {
 public:
  virtual ~GraphNode() = default;

  // The value that is set or arrives; 0 when it cannot be known.
  virtual double number(std::string_view path) const = 0;
  // The identity for what is not a matrix.
  virtual MMatrix matrix(std::string_view path) const = 0;
  // The indices of the elements that are set or connected, in ascending order.
  virtual std::vector<int> elements(std::string_view array) const = 0;
  // The numbers of an array that is kept as a scene file has it, by index, `width` numbers each.
  virtual std::map<int, std::vector<double>> kept(std::string_view shortName, int width) const = 0;
  virtual bool isConnected(std::string_view path) const = 0;

  // Whether every value asked for so far was known. An unknown value reads as 0, and the node is
  // run again later. So a node whose choice of inputs depends on a value checks this first.
  virtual bool isReady() const = 0;

  // The current time, and how long a second is, in frames.
  virtual double time() const = 0;
  virtual double framesPerSecond() const = 0;
  // Centimetres and degrees in a unit of the file that the kept numbers come from.
  virtual double keptLength() const = 0;
  virtual double keptAngle() const = 0;

  // The output that is asked for; a node may hand out others along with it.
  virtual std::string_view output() const = 0;
  virtual void give(std::string_view path, double value) = 0;
  virtual void give(std::string_view path, const MMatrix& value) = 0;
  // Hands on whatever is at an input, be it no number.
  virtual void handOn(std::string_view input) = 0;

  // A compound of three, by what its children are called before their X, Y and Z.
  Vec3 triple(std::string_view stem, std::string_view ends = "XYZ") const;
  void giveTriple(std::string_view stem, const Vec3& value, std::string_view ends = "XYZ");
  // 0 for what is not an index.
  int whole(std::string_view path) const;
};

// A type of node that works something out of numbers and matrices.
struct GraphNodeType {
  const char* name;
  const char* base;
  const char* attributes;  // as in NodeTypeTable.h
  // Gives the output that is asked for. Returns what is wrong, in words that follow "but "; the
  // output then counts as not evaluated. Null for an expression, which needs the language.
  std::string (*evaluate)(GraphNode& node);
};

// All of them; a type stands behind its base.
const std::vector<GraphNodeType>& graphNodeTypes();
const GraphNodeType* findGraphNodeType(std::string_view name);

}  // namespace host

#endif  // MORVANE_HOST_GRAPH_GRAPHNODE_H_
