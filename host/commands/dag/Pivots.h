#ifndef MORVANE_HOST_COMMANDS_DAG_PIVOTS_H_
#define MORVANE_HOST_COMMANDS_DAG_PIVOTS_H_

#include <maya/MPoint.h>

#include <string>

#include "host/scene/Selection.h"

namespace host::mel {

enum class Pivot { kRotate, kScale };

// How a pivot is set.
struct PivotChange {
  bool inWorld = false;   // the point is in the world's space, not the transform's own
  bool preserves = true;  // the pivot's translation makes up for it, so that nothing moves
};

// Where the pivot of a transform's path is: as stored, or the point of the world about which it
// turns (scales).
MPoint pivotOf(const SelectionItem& transform, Pivot pivot, bool inWorld);

// A failure, with nothing changed, when an attribute is locked or a space has no inverse.
bool setPivot(const SelectionItem& transform, Pivot pivot, const MPoint& point,
              const PivotChange& change, std::string& error);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_DAG_PIVOTS_H_
