#ifndef MORVANE_HOST_COMMANDS_TRANSFORMVALUES_H_
#define MORVANE_HOST_COMMANDS_TRANSFORMVALUES_H_

#include <maya/MMatrix.h>

#include <string>
#include <vector>

#include "host/scene/Selection.h"

namespace host::mel {

// What a matrix for row vectors is made of: scale, then shear (xy, xz, yz), then rotation in
// degrees by the given order, then translation.
struct TransformParts {
  double translate[3] = {0, 0, 0};
  double rotate[3] = {0, 0, 0};
  double scale[3] = {1, 1, 1};
  double shear[3] = {0, 0, 0};
};
TransformParts decompose(const MMatrix& matrix, int rotateOrder);

// 0 to 5: xyz, yzx, zxy, xzy, yxz, zyx.
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

#endif  // MORVANE_HOST_COMMANDS_TRANSFORMVALUES_H_
