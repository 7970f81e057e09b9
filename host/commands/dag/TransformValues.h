#ifndef MORVANE_HOST_COMMANDS_DAG_TRANSFORMVALUES_H_
#define MORVANE_HOST_COMMANDS_DAG_TRANSFORMVALUES_H_

#include <maya/MMatrix.h>

#include <string>
#include <vector>

#include "host/math/TransformParts.h"
#include "host/scene/Selection.h"

namespace host::mel {

// See host/math/TransformParts.h.
int rotateOrderOf(const NodePtr& transform);

// Sets scale, shear, rotation and translation such that the transform's matrix becomes this one;
// its pivots stay. A failure, with nothing changed, when one of these is locked or the transform
// has a rotate axis.
bool setLocalMatrix(const NodePtr& transform, const MMatrix& matrix, std::string& error);

bool setWorldTranslation(const SelectionItem& item, const std::vector<double>& xyz, bool relative,
                         std::string& error);

// Three numbers for each vertex that the components name or touch.
std::vector<double> componentPositions(const SelectionItem& item, bool inWorld);

// Smallest x, y, z, then largest.
std::vector<double> boxNumbers(const SelectionItem& item, bool inWorld);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_DAG_TRANSFORMVALUES_H_
