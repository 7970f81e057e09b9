#ifndef MORVANE_MAYA_MITDAG_H_
#define MORVANE_MAYA_MITDAG_H_

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <deque>

// Walks the DAG below a root, which is the whole scene's until `reset` names another. Children come
// in creation order, instances once for each path, intermediate objects too. After a `reset` the
// walk stands on its root, whatever the filter; `next` goes to the next node that the filter
// admits.
class MItDag {
 public:
  enum TraversalType { kInvalidType, kDepthFirst, kBreadthFirst };

  explicit MItDag(TraversalType traversal = kDepthFirst, MFn::Type filter = MFn::kInvalid,
                  MStatus* status = nullptr);

  // Back to the root, or to another root, traversal and filter.
  MStatus reset();
  MStatus reset(const MObject& root, TraversalType traversal = kDepthFirst,
                MFn::Type filter = MFn::kInvalid);
  MStatus reset(const MDagPath& root, TraversalType traversal = kDepthFirst,
                MFn::Type filter = MFn::kInvalid);

  bool isDone(MStatus* status = nullptr) const;
  MStatus next();
  MStatus prune();  // passes over what is below the current position

  MObject item(MStatus* status = nullptr) const;
  MObject currentItem(MStatus* status = nullptr) const { return item(status); }
  MStatus getPath(MDagPath& path) const;
  MString fullPathName(MStatus* status = nullptr) const;
  unsigned int depth(MStatus* status = nullptr) const;  // 0 at the root
  MObject root(MStatus* status = nullptr) const;

 private:
  struct Position {
    MDagPath path;
    unsigned int depth;
  };
  void enqueueChildren();

  MDagPath root_;
  TraversalType traversal_;
  MFn::Type filter_;
  std::deque<Position> pending_;  // the front is the current position
  bool pruned_ = false;
};

#endif  // MORVANE_MAYA_MITDAG_H_
