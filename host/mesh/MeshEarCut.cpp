#include <algorithm>
#include <cmath>

#include "host/mesh/MeshTriangulation.h"

namespace host {

namespace {

// Twice the area of the triangle, positive when it turns counter-clockwise.
double turn(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool same(const PlanePoint& a, const PlanePoint& b) {
  return a.x == b.x && a.y == b.y;
}

// Whether the point is in the triangle or on its edge; the triangle turns counter-clockwise.
bool isInside(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c, const PlanePoint& p) {
  return turn(a, b, p) >= 0.0 && turn(b, c, p) >= 0.0 && turn(c, a, p) >= 0.0;
}

// A closed chain of corners, which shrinks as ears are cut off. A corner at which a hole was joined
// occurs twice.
class Ring {
 public:
  struct Node {
    int corner;
    int previous;
    int next;
    bool reflex = false;  // listed in `reflex_`
    bool cut = false;
  };

  Ring(const std::vector<PlanePoint>& points, long long& budget)
      : points_(points), budget_(budget) {}

  void addOuter(int begin, int end) { first_ = addLoop(begin, end, false); }

  // Joins a hole, by a pair of edges that coincide, to a corner of the chain that sees it. Holes
  // must come by the largest x first.
  void joinHole(int begin, int end) {
    double area = 0.0;
    for (int i = begin; i < end; ++i)
      area += turn(points_[begin], points_[i], points_[i + 1 < end ? i + 1 : begin]);
    const int loop = addLoop(begin, end, area > 0.0);
    int rightmost = loop;
    for (int i = nodes_[loop].next; i != loop; i = nodes_[i].next)
      if (at(i).x > at(rightmost).x) rightmost = i;
    bridge(visibleFrom(at(rightmost)), rightmost);
  }

  void cutAll(int firstCorner, std::vector<MeshTriangle>& triangles) {
    for (int i = 0; i < static_cast<int>(nodes_.size()); ++i) updateReflex(i);
    int left = static_cast<int>(nodes_.size());
    int node = first_;
    int failures = 0;
    Care care = kStrict;
    while (left >= 3) {
      if (left > 3 && !isEar(node, care)) {
        node = nodes_[node].next;
        if (++failures < left) continue;
        failures = 0;
        care = care == kStrict ? kRelaxed : kAnything;
        continue;
      }
      const Node& ear = nodes_[node];
      triangles.push_back({{firstCorner + nodes_[ear.previous].corner, firstCorner + ear.corner,
                            firstCorner + nodes_[ear.next].corner}});
      node = cut(node);
      --left;
      failures = 0;
      care = kStrict;
    }
  }

 private:
  // The triangles that count as ears, strictest first: only those of a sound polygon; flat ones
  // too, for corners that coincide or line up; any.
  enum Care { kStrict, kRelaxed, kAnything };

  const PlanePoint& at(int node) const { return points_[nodes_[node].corner]; }

  int addLoop(int begin, int end, bool reversed) {
    const int base = static_cast<int>(nodes_.size());
    const int count = end - begin;
    for (int i = 0; i < count; ++i) {
      nodes_.push_back({reversed ? end - 1 - i : begin + i, base + (i + count - 1) % count,
                        base + (i + 1) % count});
    }
    return base;
  }

  // A corner of the chain that the straight line from `p` reaches: the right end of the nearest
  // edge to the right of `p`. When other corners lie between, it is the one of them nearest in
  // angle.
  int visibleFrom(const PlanePoint& p) {
    if (budget_ < 0) return first_;
    double nearest = HUGE_VAL;
    int best = -1;
    int node = first_;
    do {
      --budget_;
      const PlanePoint& a = at(node);
      const PlanePoint& b = at(nodes_[node].next);
      if (a.y <= p.y && b.y >= p.y && a.y != b.y) {
        const double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
        if (x >= p.x && x < nearest) {
          nearest = x;
          best = a.x > b.x ? node : nodes_[node].next;
        }
      }
      node = nodes_[node].next;
    } while (node != first_);
    return best == -1 ? first_ : nearestInAngle(p, {nearest, p.y}, best);
  }

  int nearestInAngle(const PlanePoint& p, const PlanePoint& hit, int candidate) {
    const PlanePoint end = at(candidate);
    double bestSlope = HUGE_VAL;
    double bestX = HUGE_VAL;
    int best = candidate;
    int node = first_;
    do {
      --budget_;
      const PlanePoint& q = at(node);
      const bool between = end.y < p.y ? isInside(p, end, hit, q) : isInside(p, hit, end, q);
      if (between && q.x > p.x && sees(node, p)) {
        const double slope = std::fabs(q.y - p.y) / (q.x - p.x);
        if (slope < bestSlope || (slope == bestSlope && q.x < bestX)) {
          bestSlope = slope;
          bestX = q.x;
          best = node;
        }
      }
      node = nodes_[node].next;
    } while (node != first_);
    return best;
  }

  // Inserts the loop that starts at `hole` behind `node`, and copies of `hole` and `node` behind
  // it.
  void bridge(int node, int hole) {
    const int holeEnd = static_cast<int>(nodes_.size());
    const int nodeAgain = holeEnd + 1;
    const int after = nodes_[node].next;
    const int holeLast = nodes_[hole].previous;
    nodes_.push_back({nodes_[hole].corner, holeLast, nodeAgain});
    nodes_.push_back({nodes_[node].corner, holeEnd, after});
    nodes_[node].next = hole;
    nodes_[hole].previous = node;
    nodes_[holeLast].next = holeEnd;
    nodes_[after].previous = nodeAgain;
  }

  double turnAt(int node) const {
    return turn(at(nodes_[node].previous), at(node), at(nodes_[node].next));
  }

  // Whether the line from the node to `p` starts out inside the polygon.
  bool sees(int node, const PlanePoint& p) const {
    const PlanePoint& a = at(node);
    const PlanePoint& before = at(nodes_[node].previous);
    const PlanePoint& after = at(nodes_[node].next);
    if (turn(before, a, after) >= 0.0) return turn(a, p, before) > 0.0 && turn(p, a, after) > 0.0;
    return !(turn(a, p, after) >= 0.0 && turn(p, a, before) >= 0.0);
  }

  bool isEar(int node, Care care) {
    if (care == kAnything || --budget_ < 0) return true;
    const int previous = nodes_[node].previous;
    const int next = nodes_[node].next;
    const double area = turnAt(node);
    if (care == kRelaxed ? !(area >= 0.0) : !(area > 0.0)) return false;
    return !holdsReflexCorner(at(previous), at(node), at(next));
  }

  bool holdsReflexCorner(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
    const double left = std::min({a.x, b.x, c.x});
    const double right = std::max({a.x, b.x, c.x});
    const double low = std::min({a.y, b.y, c.y});
    const double high = std::max({a.y, b.y, c.y});
    for (std::size_t i = 0; i < reflex_.size();) {
      const int node = reflex_[i];
      if (nodes_[node].cut || !nodes_[node].reflex) {
        nodes_[node].reflex = false;
        reflex_[i] = reflex_.back();
        reflex_.pop_back();
        continue;
      }
      ++i;
      --budget_;
      const PlanePoint& p = at(node);
      if (p.x < left || p.x > right || p.y < low || p.y > high) continue;
      if (!same(p, a) && !same(p, b) && !same(p, c) && isInside(a, b, c, p)) return true;
    }
    return false;
  }

  void updateReflex(int node) {
    const bool reflex = turnAt(node) < 0.0;
    if (reflex && !nodes_[node].reflex) reflex_.push_back(node);
    nodes_[node].reflex = reflex;
  }

  // Removes the node and gives the one to go on with. A neighbour would make a fan of slivers, so
  // it is a node farther on.
  int cut(int node) {
    const int previous = nodes_[node].previous;
    const int next = nodes_[node].next;
    nodes_[node].cut = true;
    nodes_[previous].next = next;
    nodes_[next].previous = previous;
    updateReflex(previous);
    updateReflex(next);
    return nodes_[next].next;
  }

  const std::vector<PlanePoint>& points_;
  long long& budget_;
  std::vector<Node> nodes_;
  std::vector<int> reflex_;
  int first_ = 0;
};

}  // namespace

void cutEars(const std::vector<PlanePoint>& points, const std::vector<std::pair<int, int>>& loops,
             int firstCorner, long long& budget, std::vector<MeshTriangle>& triangles) {
  Ring ring(points, budget);
  ring.addOuter(loops.front().first, loops.front().second);
  std::vector<std::pair<double, std::size_t>> holes;
  for (std::size_t i = 1; i < loops.size(); ++i) {
    double right = points[loops[i].first].x;
    for (int k = loops[i].first; k < loops[i].second; ++k) right = std::max(right, points[k].x);
    holes.emplace_back(-right, i);
  }
  std::sort(holes.begin(), holes.end());
  for (const auto& hole : holes) ring.joinHole(loops[hole.second].first, loops[hole.second].second);
  ring.cutAll(firstCorner, triangles);
}

}  // namespace host
