#include "tools/model/GoblinDiff.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

namespace tools {
namespace {

using Numbers = std::vector<std::size_t>;  // goblins of a file

constexpr float kTolerance = 1e-6F;
// Of goblins with one another, so that a file made for the purpose does not keep the program for
// hours.
constexpr std::size_t kMaxComparisons = 100'000'000;

bool close(float a, float b, float tolerance = kTolerance) {
  return std::abs(a - b) <= tolerance;
}

bool allClose(const ViewMesh& a, const ViewMesh& b, std::size_t first, std::size_t end) {
  for (std::size_t i = 0; i < a.vertices.size(); ++i)
    for (std::size_t n = first; n < end; ++n)
      if (!close(a.vertices[i][n], b.vertices[i][n])) return false;
  return true;
}

bool sameTriangles(const ViewMesh& a, const ViewMesh& b) {
  return a.vertices.size() == b.vertices.size() && a.triangles == b.triangles;
}

bool samePositions(const ViewMesh& a, const ViewMesh& b) {
  return sameTriangles(a, b) && allClose(a, b, 0, 3);
}

struct Box {
  std::array<float, 3> min{};
  std::array<float, 3> max{};

  explicit Box(const ViewMesh& mesh) {
    if (mesh.vertices.empty()) return;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto [low, high] = std::minmax_element(
          mesh.vertices.begin(), mesh.vertices.end(),
          [axis](const MeshVertex& a, const MeshVertex& b) { return a[axis] < b[axis]; });
      min[axis] = (*low)[axis];
      max[axis] = (*high)[axis];
    }
  }

  float middle(std::size_t axis) const { return (min[axis] + max[axis]) / 2; }
  bool meets(const Box& other) const {
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (min[axis] > other.max[axis] || other.min[axis] > max[axis]) return false;
    return true;
  }
};

std::array<float, 3> wayFrom(const Box& before, const Box& after) {
  return {after.middle(0) - before.middle(0), after.middle(1) - before.middle(1),
          after.middle(2) - before.middle(2)};
}

float lengthOf(const std::array<float, 3>& way) {
  return std::hypot(way[0], way[1], way[2]);
}

// Of lengths, which several rounded coordinates have a part in.
constexpr float kShapeTolerance = 16 * kTolerance;

bool isShifted(const ViewMesh& a, const ViewMesh& b) {
  for (std::size_t i = 0; i < a.vertices.size(); ++i)
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (!close(a.vertices[i][axis] - a.vertices[0][axis],
                 b.vertices[i][axis] - b.vertices[0][axis], kShapeTolerance))
        return false;
  return true;
}

float distance(const MeshVertex& a, const MeshVertex& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

// Whether every vertex is as far from the first and the last one, and every edge as long.
bool isTurned(const ViewMesh& a, const ViewMesh& b) {
  const auto as = [&](std::size_t i, std::size_t k) {
    return close(distance(a.vertices[i], a.vertices[k]), distance(b.vertices[i], b.vertices[k]),
                 kShapeTolerance);
  };
  for (std::size_t i = 0; i < a.vertices.size(); ++i)
    if (!as(i, 0) || !as(i, a.vertices.size() - 1)) return false;
  return std::all_of(a.triangles.begin(), a.triangles.end(), [&](const auto& t) {
    return as(t[0], t[1]) && as(t[1], t[2]) && as(t[2], t[0]);
  });
}

bool sameShape(const ViewMesh& a, const ViewMesh& b) {
  return sameTriangles(a, b) && (isShifted(a, b) || isTurned(a, b));
}

bool haveNames(const GoblinSide& before, const GoblinSide& after) {
  return before.goblins.kind == morvane::GoblinBlobKind::kNamed &&
         after.goblins.kind == morvane::GoblinBlobKind::kNamed;
}

class Matcher {
 public:
  Matcher(const GoblinSide& before, const GoblinSide& after) : before_(before), after_(after) {
    for (const ViewMesh& mesh : before.meshes.meshes) beforeBoxes_.emplace_back(mesh);
    for (const ViewMesh& mesh : after.meshes.meshes) afterBoxes_.emplace_back(mesh);
    partners_.resize(afterBoxes_.size());
  }

  // The partner in the old file of each goblin of the new one.
  std::vector<std::optional<std::size_t>> match();
  std::array<float, 3> way(std::size_t before, std::size_t after) const {
    return wayFrom(beforeBoxes_[before], afterBoxes_[after]);
  }

 private:
  void matchGroup(Numbers before, Numbers after);
  void pairUnmoved(Numbers& before, Numbers& after);
  template <typename Fits>
  void pairNearest(Numbers& before, Numbers& after, const Fits& fits);
  void pair(std::size_t before, std::size_t& after) {
    partners_[std::exchange(after, kTaken)] = before;
  }
  // Whether one more comparison may be made.
  bool compares() { return ++comparisons_ <= kMaxComparisons; }

  static constexpr std::size_t kTaken = std::numeric_limits<std::size_t>::max();
  const GoblinSide& before_;
  const GoblinSide& after_;
  const bool named_ = haveNames(before_, after_);
  std::vector<Box> beforeBoxes_;
  std::vector<Box> afterBoxes_;
  std::vector<std::optional<std::size_t>> partners_;
  std::size_t comparisons_ = 0;
};

// Pairs those whose corners are all where they were, whatever else has changed.
void Matcher::pairUnmoved(Numbers& before, Numbers& after) {
  std::multimap<float, std::size_t> byX;  // where in `after`
  for (std::size_t i = 0; i < after.size(); ++i) byX.emplace(afterBoxes_[after[i]].min[0], i);
  Numbers left;
  for (const std::size_t old : before) {
    const float x = beforeBoxes_[old].min[0];
    auto at = byX.lower_bound(x - kTolerance);
    while (at != byX.end() && at->first <= x + kTolerance && compares() &&
           !samePositions(before_.meshes.meshes[old], after_.meshes.meshes[after[at->second]]))
      ++at;
    if (at == byX.end() || at->first > x + kTolerance || comparisons_ > kMaxComparisons) {
      left.push_back(old);
      continue;
    }
    pair(old, after[at->second]);
    byX.erase(at);
  }
  before = std::move(left);
  after.erase(std::remove(after.begin(), after.end(), kTaken), after.end());
}

// Of very many, only those at one place in both lists are compared.
template <typename Fits>
void Matcher::pairNearest(Numbers& before, Numbers& after, const Fits& fits) {
  const bool many = before.size() > kMaxComparisons / std::max<std::size_t>(after.size(), 1);
  Numbers left;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const std::size_t begin = many ? std::min(i, after.size()) : 0;
    const std::size_t end = many ? std::min(i + 1, after.size()) : after.size();
    std::size_t* best = nullptr;
    float least = std::numeric_limits<float>::max();
    for (std::size_t k = begin; k < end; ++k) {
      if (after[k] == kTaken) continue;
      const float length = lengthOf(way(before[i], after[k]));
      if (!(length < least) || !fits(before[i], after[k])) continue;
      least = length;
      best = &after[k];
    }
    if (best)
      pair(before[i], *best);
    else
      left.push_back(before[i]);
  }
  before = std::move(left);
  after.erase(std::remove(after.begin(), after.end(), kTaken), after.end());
}

void Matcher::matchGroup(Numbers before, Numbers after) {
  pairUnmoved(before, after);
  pairNearest(before, after, [this](std::size_t a, std::size_t b) {
    return sameShape(before_.meshes.meshes[a], after_.meshes.meshes[b]);
  });
  pairNearest(before, after, [this](std::size_t a, std::size_t b) {
    return named_ || beforeBoxes_[a].meets(afterBoxes_[b]);
  });
}

std::map<std::string, Numbers> groups(const GoblinSide& side, bool named) {
  std::map<std::string, Numbers> groups;
  for (std::size_t i = 0; i < side.meshes.meshes.size(); ++i)
    groups[named ? side.goblins.goblins[i].name : std::string()].push_back(i);
  return groups;
}

std::vector<std::optional<std::size_t>> Matcher::match() {
  const auto before = groups(before_, named_);
  for (const auto& [name, numbers] : groups(after_, named_)) {
    const auto old = before.find(name);
    if (old != before.end()) matchGroup(old->second, numbers);
  }
  if (!named_) return partners_;
  std::vector<bool> hasPartner(beforeBoxes_.size());
  Numbers leftBefore;
  Numbers leftAfter;
  for (std::size_t i = 0; i < partners_.size(); ++i)
    if (partners_[i])
      hasPartner[*partners_[i]] = true;
    else
      leftAfter.push_back(i);
  for (std::size_t i = 0; i < hasPartner.size(); ++i)
    if (!hasPartner[i]) leftBefore.push_back(i);
  pairUnmoved(leftBefore, leftAfter);  // other names for what is there still
  return partners_;
}

std::string numbersOf(const char* what, std::size_t before, std::size_t after) {
  return std::string(what) + ' ' + std::to_string(before) + " to " + std::to_string(after);
}

// In what a goblin differs, but for its place. `moved` is set where that is another.
std::vector<std::string> differences(const ViewMesh& a, const ViewMesh& b, bool& moved) {
  std::vector<std::string> what;
  if (a.triangles.size() != b.triangles.size())
    what.push_back(numbersOf("triangles", a.triangles.size(), b.triangles.size()));
  if (a.vertices.size() != b.vertices.size())
    what.push_back(numbersOf("vertices", a.vertices.size(), b.vertices.size()));
  if (!what.empty()) return what;
  moved = !samePositions(a, b);
  if (moved && !sameShape(a, b)) return {"shape"};
  if (!moved || isShifted(a, b))
    if (!allClose(a, b, 3, 6)) what.emplace_back("normals");
  if (!moved && !allClose(a, b, 6, 8)) what.emplace_back("texture coordinates");
  return what;
}

}  // namespace

GoblinDiff diffGoblins(const GoblinSide& before, const GoblinSide& after) {
  GoblinDiff diff;
  Matcher matcher(before, after);
  const auto partners = matcher.match();
  const bool named = haveNames(before, after);
  std::vector<bool> hasPartner(before.meshes.meshes.size());
  for (std::size_t i = 0; i < partners.size(); ++i) {
    GoblinChange change{GoblinFate::kAdded, partners[i], i, {}, {}};
    if (!change.before) {
      diff.changes.push_back(std::move(change));
      continue;
    }
    hasPartner[*change.before] = true;
    bool moved = false;
    change.what = differences(before.meshes.meshes[*change.before], after.meshes.meshes[i], moved);
    const Goblin& old = before.goblins.goblins[*change.before];
    const Goblin& now = after.goblins.goblins[i];
    if (named && old.name != now.name) change.what.emplace_back("name");
    if (named && old.texture != now.texture) change.what.emplace_back("texture");
    change.fate = change.what.empty() ? GoblinFate::kMoved : GoblinFate::kChanged;
    change.by = matcher.way(*change.before, i);
    if (moved || !change.what.empty())
      diff.changes.push_back(std::move(change));
    else
      ++diff.same;
  }
  for (std::size_t i = 0; i < hasPartner.size(); ++i)
    if (!hasPartner[i]) diff.changes.push_back({GoblinFate::kGone, i, std::nullopt, {}, {}});
  return diff;
}

const char* fateName(GoblinFate fate) {
  switch (fate) {
    case GoblinFate::kAdded:
      return "added";
    case GoblinFate::kGone:
      return "gone";
    case GoblinFate::kMoved:
      return "moved";
    case GoblinFate::kChanged:
      break;
  }
  return "changed";
}

const std::string& changedName(const GoblinChange& change, const GoblinSide& before,
                               const GoblinSide& after) {
  return change.after ? after.meshes.meshes[*change.after].name
                      : before.meshes.meshes[*change.before].name;
}

}  // namespace tools
