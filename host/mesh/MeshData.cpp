#include "host/mesh/MeshData.h"

#include <algorithm>
#include <climits>

#include "host/mesh/MeshDerived.h"

namespace host {

namespace {

constexpr std::size_t kMaxElements = INT_MAX / 2;

// Why `count` elements may not be set from `first` on in a list of `size`; empty when they may.
std::string checkRange(const char* what, std::size_t size, std::size_t first, std::size_t count) {
  if (first > size) {
    return std::string(what) + " " + std::to_string(size) + " to " + std::to_string(first - 1) +
           " are missing";
  }
  if (count > kMaxElements - first) return std::string("too many ") + what;
  return {};
}

template <typename T>
void growTo(std::vector<T>& list, std::size_t size, const T& filler) {
  if (list.size() < size) list.resize(size, filler);
}

// In a list sorted by index: the element with this index, or the position where it belongs.
template <typename T>
typename std::vector<T>::iterator lowerBound(std::vector<T>& sets, int index) {
  return std::lower_bound(sets.begin(), sets.end(), index,
                          [](const T& set, int i) { return set.index < i; });
}

template <typename T>
T* findOrMakeSet(std::vector<T>& sets, int index) {
  auto found = lowerBound(sets, index);
  if (found != sets.end() && found->index == index) return &*found;
  if (index < 0 || sets.size() >= static_cast<std::size_t>(kMaxMeshSets)) return nullptr;
  T set;
  set.index = index;
  return &*sets.insert(found, std::move(set));
}

template <typename T>
const T* findSet(const std::vector<T>& sets, const std::string* name, const std::string& current) {
  const std::string& wanted = name != nullptr && !name->empty() ? *name : current;
  for (const T& set : sets)
    if (set.name == wanted) return &set;
  return name != nullptr && !name->empty() ? nullptr : sets.empty() ? nullptr : &sets.front();
}

std::string tooManySets(int index) {
  return "set " + std::to_string(index) + " is one too many for a mesh";
}

}  // namespace

MeshData::MeshData() = default;
MeshData::~MeshData() = default;
MeshData::MeshData(MeshData&&) noexcept = default;
MeshData& MeshData::operator=(MeshData&&) noexcept = default;

MeshData MeshData::clone() const {
  MeshData copy;
  copy.points_ = points_;
  copy.tweaks_ = tweaks_;
  copy.edges_ = edges_;
  copy.normals_ = normals_;
  copy.faceStarts_ = faceStarts_;
  copy.loopEdges_ = loopEdges_;
  copy.holes_ = holes_;
  copy.uvSets_ = uvSets_;
  copy.colourSets_ = colourSets_;
  copy.currentUvSet_ = currentUvSet_;
  copy.currentColourSet_ = currentColourSet_;
  return copy;
}

void MeshData::shapeChanged() {
  derived_.reset();
}

std::vector<MeshNormal>& MeshData::changeNormals() {
  if (derived_) derived_->normals.reset();
  return normals_;
}

std::vector<MeshEdge>& MeshData::changeEdgeFlags() {
  if (derived_) derived_->normals.reset();
  return edges_;
}

void MeshData::reserve(Table table, std::size_t count) {
  switch (table) {
    case Table::kPoints:
      points_.reserve(count);
      break;
    case Table::kEdges:
      edges_.reserve(count);
      break;
    case Table::kCorners:
      loopEdges_.reserve(count);
      faceStarts_.reserve(count / 3 + 1);
      break;
    case Table::kNormals:
      normals_.reserve(count);
      break;
  }
}

std::string MeshData::setPoints(std::size_t first, const double* xyz, std::size_t count) {
  std::string problem = checkRange("points", points_.size(), first, count);
  if (!problem.empty()) return problem;
  shapeChanged();
  growTo(points_, first + count, Vec3());
  for (std::size_t i = 0; i < count; ++i)
    points_[first + i] = {xyz[3 * i], xyz[3 * i + 1], xyz[3 * i + 2]};
  return {};
}

std::string MeshData::setTweaks(std::size_t first, const double* xyz, std::size_t count) {
  if (first > kMaxElements || count > kMaxElements - first) return "a tweak's vertex is too large";
  shapeChanged();
  const int begin = static_cast<int>(first);
  const auto before = [](const MeshTweak& tweak, int vertex) { return tweak.vertex < vertex; };
  auto low = std::lower_bound(tweaks_.begin(), tweaks_.end(), begin, before);
  const auto high = std::lower_bound(low, tweaks_.end(), static_cast<int>(first + count), before);
  std::vector<MeshTweak> given(count);
  for (std::size_t i = 0; i < count; ++i)
    given[i] = {begin + static_cast<int>(i), {xyz[3 * i], xyz[3 * i + 1], xyz[3 * i + 2]}};
  low = tweaks_.erase(low, high);
  tweaks_.insert(low, given.begin(), given.end());
  return {};
}

std::string MeshData::setEdges(std::size_t first, const int* ints, std::size_t count) {
  std::string problem = checkRange("edges", edges_.size(), first, count);
  if (!problem.empty()) return problem;
  shapeChanged();
  growTo(edges_, first + count, MeshEdge());
  for (std::size_t i = 0; i < count; ++i)
    edges_[first + i] = {ints[3 * i], ints[3 * i + 1], ints[3 * i + 2]};
  return {};
}

std::string MeshData::setNormals(std::size_t first, const float* xyz, std::size_t count) {
  std::string problem = checkRange("normals", normals_.size(), first, count);
  if (!problem.empty()) return problem;
  if (derived_) derived_->normals.reset();
  growTo(normals_, first + count, MeshNormal());
  for (std::size_t i = 0; i < count; ++i)
    normals_[first + i] = {xyz[3 * i], xyz[3 * i + 1], xyz[3 * i + 2]};
  return {};
}

std::string MeshData::beginFaces(std::size_t first) {
  std::string problem = checkRange("faces", faceStarts_.size() - 1, first, 0);
  if (!problem.empty()) return problem;
  shapeChanged();
  faceStarts_.resize(first + 1);
  const std::size_t corners = static_cast<std::size_t>(faceStarts_.back());
  loopEdges_.resize(corners);
  while (!holes_.empty() && holes_.back().face >= static_cast<int>(first)) holes_.pop_back();
  for (MeshUvSet& set : uvSets_) set.ids.resize(std::min(set.ids.size(), corners));
  for (MeshColourSet& set : colourSets_) set.ids.resize(std::min(set.ids.size(), corners));
  return {};
}

std::string MeshData::addFace(const int* edges, std::size_t count) {
  if (count < 3) return "a face of " + std::to_string(count) + " edges";
  if (count > kMaxElements - loopEdges_.size()) return "too many face corners";
  shapeChanged();
  loopEdges_.insert(loopEdges_.end(), edges, edges + count);
  faceStarts_.push_back(static_cast<int>(loopEdges_.size()));
  return {};
}

std::string MeshData::addHole(const int* edges, std::size_t count) {
  if (faceStarts_.size() < 2) return "a hole without a face";
  if (count < 3) return "a hole of " + std::to_string(count) + " edges";
  if (count > kMaxElements - loopEdges_.size()) return "too many face corners";
  shapeChanged();
  holes_.push_back({static_cast<int>(faceStarts_.size()) - 2, faceStarts_.back()});
  loopEdges_.insert(loopEdges_.end(), edges, edges + count);
  faceStarts_.back() = static_cast<int>(loopEdges_.size());
  return {};
}

std::vector<std::pair<int, int>> MeshData::loops(int face) const {
  std::vector<std::pair<int, int>> result = {{faceStarts_[face], faceStarts_[face + 1]}};
  auto hole = std::lower_bound(holes_.begin(), holes_.end(), face,
                               [](const MeshHole& h, int f) { return h.face < f; });
  for (; hole != holes_.end() && hole->face == face; ++hole) {
    result.back().second = hole->firstCorner;
    result.emplace_back(hole->firstCorner, faceStarts_[face + 1]);
  }
  return result;
}

std::string MeshData::setLoopIds(std::vector<int>& idList, int loopStart, const int* ids,
                                 std::size_t count) {
  const std::size_t end = loopEdges_.size();
  const std::size_t start = static_cast<std::size_t>(loopStart);
  if (count > end - start)
    return std::to_string(count) + " ids for " + std::to_string(end - start) + " corners";
  growTo(idList, start + count, -1);
  std::copy(ids, ids + count, idList.begin() + static_cast<std::ptrdiff_t>(start));
  return {};
}

namespace {

// The corners that a statement's ids belong to: those of the whole face when there are as many ids,
// else those of the last loop.
int idsStart(const std::vector<int>& faceStarts, const std::vector<MeshHole>& holes,
             std::size_t count) {
  const int face = static_cast<int>(faceStarts.size()) - 2;
  const int faceStart = faceStarts[face];
  const bool wholeFace = count == static_cast<std::size_t>(faceStarts.back() - faceStart);
  const bool hasHole = !holes.empty() && holes.back().face == face;
  return hasHole && !wholeFace ? holes.back().firstCorner : faceStart;
}

}  // namespace

std::string MeshData::setLoopUvs(int set, const int* ids, std::size_t count) {
  if (faceStarts_.size() < 2) return "UV ids without a face";
  MeshUvSet* uvSet = this->uvSet(set);
  if (uvSet == nullptr) return tooManySets(set);
  return setLoopIds(uvSet->ids, idsStart(faceStarts_, holes_, count), ids, count);
}

std::string MeshData::setLoopColours(int set, const int* ids, std::size_t count) {
  if (faceStarts_.size() < 2) return "colour ids without a face";
  MeshColourSet* colourSet = this->colourSet(set);
  if (colourSet == nullptr) return tooManySets(set);
  return setLoopIds(colourSet->ids, idsStart(faceStarts_, holes_, count), ids, count);
}

std::string MeshData::setFaceUvs(const int* ids, std::size_t count) {
  if (faceStarts_.size() < 2) return "UV ids without a face";
  MeshUvSet* set = uvSet(0);
  if (set == nullptr) return tooManySets(0);
  return setLoopIds(set->ids, faceStarts_[faceStarts_.size() - 2], ids, count);
}

std::string MeshData::setHoleUvs(const int* ids, std::size_t count) {
  const int face = static_cast<int>(faceStarts_.size()) - 2;
  if (holes_.empty() || holes_.back().face != face) return "UV ids without a hole";
  MeshUvSet* set = uvSet(0);
  if (set == nullptr) return tooManySets(0);
  const std::vector<std::pair<int, int>> faceLoops = loops(face);
  for (std::size_t i = 1; i < faceLoops.size(); ++i) {
    const bool taken = static_cast<int>(set->ids.size()) > faceLoops[i].first &&
                       set->ids[static_cast<std::size_t>(faceLoops[i].first)] != -1;
    if (!taken) return setLoopIds(set->ids, faceLoops[i].first, ids, count);
  }
  return "UV ids for more holes than the face has";
}

std::string MeshData::setFaceColours(const int* ids, std::size_t count) {
  if (faceStarts_.size() < 2) return "colour ids without a face";
  MeshColourSet* set = colourSet(0);
  if (set == nullptr) return tooManySets(0);
  return setLoopIds(set->ids, faceStarts_[faceStarts_.size() - 2], ids, count);
}

MeshUvSet* MeshData::uvSet(int index) {
  return findOrMakeSet(uvSets_, index);
}

MeshColourSet* MeshData::colourSet(int index) {
  return findOrMakeSet(colourSets_, index);
}

std::string MeshData::setUvs(int set, std::size_t first, const float* uv, std::size_t count) {
  MeshUvSet* uvSet = this->uvSet(set);
  if (uvSet == nullptr) return tooManySets(set);
  std::string problem = checkRange("UVs", uvSet->uvs.size(), first, count);
  if (!problem.empty()) return problem;
  growTo(uvSet->uvs, first + count, MeshUv());
  for (std::size_t i = 0; i < count; ++i) uvSet->uvs[first + i] = {uv[2 * i], uv[2 * i + 1]};
  return {};
}

std::string MeshData::setColours(int set, std::size_t first, const float* components,
                                 std::size_t count) {
  MeshColourSet* colourSet = this->colourSet(set);
  if (colourSet == nullptr) return tooManySets(set);
  const int step = colourSet->components;
  if (step != 1 && step != 3 && step != 4)
    return "colours of " + std::to_string(step) + " components";
  const std::size_t colours = count / static_cast<std::size_t>(step);
  if (colours * static_cast<std::size_t>(step) != count) {
    return std::to_string(count) + " numbers for colours of " + std::to_string(step) +
           " components";
  }
  std::string problem = checkRange("colours", colourSet->colours.size(), first, colours);
  if (!problem.empty()) return problem;
  growTo(colourSet->colours, first + colours, MeshColour());
  for (std::size_t i = 0; i < colours; ++i, components += step) {
    MeshColour& colour = colourSet->colours[first + i];
    colour =
        step == 1 ? MeshColour() : MeshColour{components[0], components[1], components[2], 1.0f};
    if (step != 3) colour.a = components[step - 1];
  }
  return {};
}

const MeshUvSet* MeshData::findUvSet(const std::string* name) const {
  return findSet(uvSets_, name, currentUvSet_);
}

MeshUvSet* MeshData::findUvSet(const std::string* name) {
  const MeshUvSet* found = findSet(uvSets_, name, currentUvSet_);
  return found == nullptr ? nullptr : &uvSets_[static_cast<std::size_t>(found - uvSets_.data())];
}

const MeshColourSet* MeshData::findColourSet(const std::string* name) const {
  return findSet(colourSets_, name, currentColourSet_);
}

int MeshData::uvAt(const MeshUvSet& set, int corner) {
  if (static_cast<std::size_t>(corner) >= set.ids.size()) return -1;
  const int id = set.ids[corner];
  return id >= 0 && static_cast<std::size_t>(id) < set.uvs.size() ? id : -1;
}

int MeshData::colourAt(const MeshColourSet& set, int corner) {
  if (static_cast<std::size_t>(corner) >= set.ids.size()) return -1;
  const int id = set.ids[corner];
  return id >= 0 && static_cast<std::size_t>(id) < set.colours.size() ? id : -1;
}

}  // namespace host
