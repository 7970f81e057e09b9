#ifndef MORVANE_HOST_ATTRIBUTE_ATTRIBUTE_H_
#define MORVANE_HOST_ATTRIBUTE_ATTRIBUTE_H_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute/AttributeValue.h"
#include "host/attribute/Object.h"

namespace host {

class Attribute;
using AttributePtr = std::shared_ptr<Attribute>;

// Describes an attribute: its names, its kind, its place in a compound. Nodes of a type share the
// type's attributes; an added attribute belongs to one node.
class Attribute : public Object {
 public:
  enum class Kind {
    kNumber,   // bool, byte, short, long, enum, float, double, doubleAngle, doubleLinear, time
    kText,     // string
    kData,     // matrix, doubleArray, componentList, mesh and so on: one value that is not a number
    kMessage,  // only to be connected
    kCompound,  // children, numeric ones such as double3 included
    kLoose,  // met in a scene file and not known: whatever stands after its name is kept as written
  };

  Attribute(std::string longName, std::string shortName, std::string typeWord);

  const std::string& longName() const { return longName_; }
  const std::string& shortName() const { return shortName_; }
  // The type as the command language names it: "bool", "double3", "string", "TdataCompound"...
  const std::string& typeWord() const { return typeWord_; }
  Kind kind() const { return kind_; }
  bool isNumericCompound() const;  // float2, double3, long2 and so on

  const std::vector<AttributePtr>& children() const { return children_; }
  AttributePtr parent() const { return parent_.lock(); }
  AttributePtr findChild(std::string_view longOrShortName) const;  // direct children only

  // Makes `child` the last child of `parent`.
  static void adopt(const AttributePtr& parent, const AttributePtr& child);

  MFn::Type apiType() const override;

  bool isArray = false;    // elements are plugs of their own: name[0], name[7]
  bool isDynamic = false;  // added to one node
  bool keyable = false;
  bool hidden = false;
  bool writable = true;
  bool isColour = false;
  AttributeValue defaultValue;  // monostate: 0, the empty text
  std::optional<double> min, max, softMin, softMax;
  std::vector<std::string> enumNames;
  std::string niceName;
  // The flags of the addAttr that made it, as written, for a saved scene to repeat; may be empty.
  std::vector<std::string> declaration;

  // An attribute of kind kLoose.
  static AttributePtr makeLoose(const std::string& name);

  // An attribute that holds its value whole, even when its type word is a compound's: "float3"
  // without children.
  static AttributePtr makeData(std::string longName, std::string shortName, std::string typeWord);

 private:
  std::string longName_;
  std::string shortName_;
  std::string typeWord_;
  Kind kind_;
  std::vector<AttributePtr> children_;
  std::weak_ptr<Attribute> parent_;
};

// How many numbers a numeric compound type word has ("float2": 2, "double3": 3); 0 for any other.
int numericCompoundSize(std::string_view typeWord);

// The type of such a compound's children: "float" for "float3"; empty for any other word.
std::string_view numericCompoundElement(std::string_view typeWord);

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_ATTRIBUTE_H_
