#ifndef MORVANE_HOST_GRAPH_GRAPHNODES_H_
#define MORVANE_HOST_GRAPH_GRAPHNODES_H_

#include "host/graph/GraphNode.h"

namespace host {

// One file each.
extern const GraphNodeType kAimConstraint;
extern const GraphNodeType kBlendWeighted;
extern const GraphNodeType kChoice;
extern const GraphNodeType kCondition;
extern const GraphNodeType kMultiplyDivide;
extern const GraphNodeType kOrientConstraint;
extern const GraphNodeType kPairBlend;
extern const GraphNodeType kParentConstraint;
extern const GraphNodeType kPlusMinusAverage;
extern const GraphNodeType kPointConstraint;
extern const GraphNodeType kReverse;
extern const GraphNodeType kScaleConstraint;
extern const GraphNodeType kSetRange;
extern const GraphNodeType kUnitConversion;

// Of a family.
extern const GraphNodeType kAnimCurves[8];
extern const GraphNodeType kAdditiveBlends[3];
extern const GraphNodeType kDoubleLinears[2];
extern const GraphNodeType kMatrixNodes[3];

}  // namespace host

#endif  // MORVANE_HOST_GRAPH_GRAPHNODES_H_
