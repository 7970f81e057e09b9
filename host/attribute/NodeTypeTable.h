#ifndef MORVANE_HOST_ATTRIBUTE_NODETYPETABLE_H_
#define MORVANE_HOST_ATTRIBUTE_NODETYPETABLE_H_

#include <maya/MFn.h>

#include <vector>

#include "host/attribute/Attribute.h"

namespace host {

// A type of node as the tables spell it. `attributes` is a list of
//   longName:shortName:typeWord!+[]=default{children}
// separated by blanks, where "!" (what the node works out), "+" (keyable, the usual children too),
// "[]" (an array), "=default" (a number) and the children are optional.
// A numeric compound without children gets the usual ones: X Y Z, or R G B for the word "color" (a
// float3).
struct NodeTypeRow {
  const char* name;
  const char* base;  // empty for the topmost
  MFn::Type kind;
  const char* defaultName;  // empty: the type's own name
  const char* attributes;
};

// All types, bases before what builds on them.
const std::vector<NodeTypeRow>& nodeTypeRows();

// Reads such a list. The tables are part of the program: a list with an error gives the attributes
// before the error.
std::vector<AttributePtr> parseAttributeTable(const char* text);

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_NODETYPETABLE_H_
