#include "host/commands/dag/Pivots.h"

#include <maya/MMatrix.h>
#include <maya/MVector.h>

#include "host/scene/Dag.h"
#include "host/scene/Values.h"

// A transform turns and scales by x → (x − pivot) · linear + pivot + shift, where `linear` is its
// rotation or its scale with shear, and `shift` the pivot's translation. The scale comes first, and
// the translation last.
namespace host::mel {
namespace {

struct PivotNames {
  const char* point;
  const char* shift;
};

constexpr PivotNames namesOf(Pivot pivot) {
  return pivot == Pivot::kRotate ? PivotNames{"rotatePivot", "rotatePivotTranslate"}
                                 : PivotNames{"scalePivot", "scalePivotTranslate"};
}

MVector vectorOf(const NodePtr& node, const char* attribute) {
  const auto plug = Plug::find(node, attribute);
  const auto numbers = plug ? readNumbers(*plug) : std::nullopt;
  return numbers && numbers->size() == 3 ? MVector((*numbers)[0], (*numbers)[1], (*numbers)[2])
                                         : MVector();
}

bool canWrite(const NodePtr& node, const char* attribute, std::string& error) {
  const auto plug = Plug::find(node, attribute);
  if (!plug || isLocked(*plug)) {
    error = "'" + node->name() + "." + attribute + "' is locked or missing";
    return false;
  }
  return true;
}

void write(const NodePtr& node, const char* attribute, const MVector& v) {
  writeValue(*Plug::find(node, attribute), std::vector<double>{v.x, v.y, v.z});
}

MVector asVector(const MPoint& point) {
  return MVector(point.x, point.y, point.z);
}

MMatrix linearOf(const NodePtr& node, Pivot pivot) {
  return pivot == Pivot::kRotate ? rotationMatrix(node) : scaleShearMatrix(node);
}

// The matrix from the space in which the pivot turns or scales to the world.
MMatrix spaceAfter(const SelectionItem& item, Pivot pivot) {
  MMatrix after;
  if (pivot == Pivot::kRotate) {
    const MVector translate = vectorOf(item.node, "translate");
    for (unsigned i = 0; i < 3; ++i) after[3][i] = translate[i];
    return after * item.path.exclusiveMatrix();
  }
  // All parts but the scale: a point is turned about the rotate pivot, then moved.
  const MVector point = vectorOf(item.node, "rotatePivot");
  after = rotationMatrix(item.node);
  const MVector moved = point + vectorOf(item.node, "rotatePivotTranslate") +
                        vectorOf(item.node, "translate") - point * after;
  for (unsigned i = 0; i < 3; ++i) after[3][i] = moved[i];
  return after * item.path.exclusiveMatrix();
}

// The new point such that point + shift, after what preserving does to the shift, is `target`.
bool solve(const NodePtr& node, Pivot pivot, const MVector& target, bool preserves, MVector& point,
           std::string& error) {
  const PivotNames names = namesOf(pivot);
  const MVector oldPoint = vectorOf(node, names.point);
  const MVector oldShift = vectorOf(node, names.shift);
  if (!preserves) {
    point = target - oldShift;
    return true;
  }
  const MMatrix linear = linearOf(node, pivot);
  if (linear.isSingular()) {
    error = "the scale of '" + node->name() + "' is zero";
    return false;
  }
  point = oldPoint + (target - oldPoint - oldShift) * linear.inverse();
  return true;
}

}  // namespace

MPoint pivotOf(const SelectionItem& item, Pivot pivot, bool inWorld) {
  const PivotNames names = namesOf(pivot);
  const MVector point = vectorOf(item.node, names.point);
  if (!inWorld) return MPoint(point.x, point.y, point.z);
  const MVector fixed = point + vectorOf(item.node, names.shift);
  return MPoint(fixed.x, fixed.y, fixed.z) * spaceAfter(item, pivot);
}

bool setPivot(const SelectionItem& item, Pivot pivot, const MPoint& wanted,
              const PivotChange& change, std::string& error) {
  const PivotNames names = namesOf(pivot);
  if (!canWrite(item.node, names.point, error) ||
      (change.preserves && !canWrite(item.node, names.shift, error))) {
    return false;
  }
  const MVector oldPoint = vectorOf(item.node, names.point);
  MVector point = asVector(wanted);
  if (change.inWorld) {
    const MMatrix after = spaceAfter(item, pivot);
    if (after.isSingular()) {
      error = "a scale above '" + item.node->name() + "' is zero";
      return false;
    }
    if (!solve(item.node, pivot, asVector(wanted * after.inverse()), change.preserves, point,
               error)) {
      return false;
    }
  }
  if (change.preserves) {
    const MVector moved = oldPoint - point;
    write(item.node, names.shift,
          vectorOf(item.node, names.shift) + moved - moved * linearOf(item.node, pivot));
  }
  write(item.node, names.point, point);
  return true;
}

}  // namespace host::mel
