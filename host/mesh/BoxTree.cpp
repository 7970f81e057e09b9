#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "host/mesh/NearTree.h"

namespace host {

namespace {

constexpr unsigned kLeafBoxes = 4;

NearBox united(const NearBox& a, const NearBox& b) {
  NearBox box;
  for (int axis = 0; axis < 3; ++axis) {
    box.low[axis] = std::min(a.low[axis], b.low[axis]);
    box.high[axis] = std::max(a.high[axis], b.high[axis]);
  }
  return box;
}

// Twice the box's centre, in double precision so that the sum cannot overflow.
double middle(const NearBox& box, int axis) {
  return static_cast<double>(box.low[axis]) + box.high[axis];
}

// The square of the distance between a point and a box, 0 inside.
double squaredDistance(const NearBox& box, const float (&from)[3]) {
  double sum = 0;
  for (int axis = 0; axis < 3; ++axis) {
    const double below = static_cast<double>(box.low[axis]) - from[axis];
    const double above = static_cast<double>(from[axis]) - box.high[axis];
    const double away = std::max({below, above, 0.0});
    sum += away * away;
  }
  return sum;
}

// Halves the boxes at the median of the longest axis, so the depth is the logarithm of their number
// whatever they look like.
class BoxTree : public NearTree {
 public:
  explicit BoxTree(std::vector<NearBox> boxes) : boxes_(std::move(boxes)), order_(boxes_.size()) {
    std::iota(order_.begin(), order_.end(), 0U);
    build(0, static_cast<unsigned>(order_.size()));
  }

  void search(const float (&from)[3], NearSearch& search) const override {
    struct Waiting {
      unsigned node;
      double squared;
    };
    Waiting stack[kMostDepth];
    int waiting = 0;
    stack[waiting++] = {0, squaredDistance(nodes_[0].box, from)};
    double reach = std::numeric_limits<double>::infinity();
    while (waiting > 0) {
      const Waiting next = stack[--waiting];
      if (next.squared > reach * reach) continue;
      const Node& node = nodes_[next.node];
      if (node.right == 0) {
        reach = visitLeaf(node, from, reach, search);
        continue;
      }
      Waiting near = {next.node + 1, squaredDistance(nodes_[next.node + 1].box, from)};
      Waiting far = {node.right, squaredDistance(nodes_[node.right].box, from)};
      if (far.squared < near.squared) std::swap(near, far);
      stack[waiting++] = far;
      stack[waiting++] = near;
    }
  }

 private:
  // The left half follows its node; `right` is 0 in a leaf.
  struct Node {
    NearBox box;
    unsigned right = 0;
    unsigned first = 0;
    unsigned count = 0;
  };
  static constexpr int kMostDepth = 64;  // of 2^32 boxes, with a sibling waiting at each level

  double visitLeaf(const Node& leaf, const float (&from)[3], double reach,
                   NearSearch& search) const {
    for (unsigned i = leaf.first; i < leaf.first + leaf.count; ++i)
      if (squaredDistance(boxes_[order_[i]], from) <= reach * reach)
        reach = search.visit(order_[i]);
    return reach;
  }

  void build(unsigned first, unsigned count) {
    const std::size_t at = nodes_.size();
    nodes_.emplace_back();
    NearBox box = boxes_[order_[first]];
    for (unsigned i = first + 1; i < first + count; ++i) box = united(box, boxes_[order_[i]]);
    nodes_[at].box = box;
    nodes_[at].first = first;
    nodes_[at].count = count;
    if (count <= kLeafBoxes) return;
    const unsigned half = count / 2;
    halve(first, half, count);
    build(first, half);
    nodes_[at].right = static_cast<unsigned>(nodes_.size());
    build(first + half, count - half);
  }

  // Puts the boxes whose centres are lower along the axis of the largest spread into the first
  // half.
  void halve(unsigned first, unsigned half, unsigned count) {
    int longest = 0;
    double largest = -1;
    for (int axis = 0; axis < 3; ++axis) {
      double low = middle(boxes_[order_[first]], axis);
      double high = low;
      for (unsigned i = first; i < first + count; ++i) {
        low = std::min(low, middle(boxes_[order_[i]], axis));
        high = std::max(high, middle(boxes_[order_[i]], axis));
      }
      if (high - low > largest) {
        largest = high - low;
        longest = axis;
      }
    }
    std::nth_element(order_.begin() + first, order_.begin() + first + half,
                     order_.begin() + first + count, [&](unsigned a, unsigned b) {
                       return middle(boxes_[a], longest) < middle(boxes_[b], longest);
                     });
  }

  std::vector<NearBox> boxes_;
  std::vector<unsigned> order_;  // the boxes, each leaf's beside one another
  std::vector<Node> nodes_;
};

}  // namespace

std::unique_ptr<NearTree> makeBoxTree(std::vector<NearBox> boxes) {
  return std::make_unique<BoxTree>(std::move(boxes));
}

}  // namespace host
