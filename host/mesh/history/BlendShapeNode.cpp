#include <algorithm>
#include <cmath>
#include <map>

#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/PointMover.h"

namespace host {
namespace {

// Items of a target are numbered by the weight at which they are reached.
constexpr int kItemAtZero = 5000;
constexpr double kItemsPerWeight = 1000.0;

using Offsets = std::map<int, Vec3>;  // by vertex

// The shapes of one target, by the weight at which they are reached.
using Target = std::map<double, Offsets>;

// What the targets of one mesh hold: "it[geometry].itg[target].iti[item]".
class Targets {
 public:
  explicit Targets(HistoryParameters& node, const MeshData& mesh) : mesh_(mesh), node_(node) {
    const ParameterName inputTarget = {"it", "inputTarget"};
    node.forEach(inputTarget, [&](const ParameterPath& path, const std::vector<double>& numbers) {
      addSetting(path, numbers);
    });
    complete = node.forEachMesh(inputTarget, [&](const ParameterPath& path, const MeshData& shape) {
      addLive(path, shape);
    });
  }

  std::map<int, Target> list;
  std::map<int, std::vector<double>> weights;  // of a target's vertices, where set
  std::vector<double> baseWeights;
  bool complete = false;

 private:
  bool isOfThisMesh(const ParameterPath& path) const {
    return std::max(path.front().first, 0) == node_.outputIndex();
  }

  void addSetting(const ParameterPath& path, const std::vector<double>& numbers) {
    if (path.size() < 2 || !isOfThisMesh(path)) return;
    const std::string_view name = path.back().name;
    if (path.size() == 2 && (name == "bw" || name == "baseWeights"))
      setRange(baseWeights, path.back(), numbers);
    else if (path.size() == 3 && (name == "tw" || name == "targetWeights"))
      setRange(weights[std::max(path[1].first, 0)], path.back(), numbers);
    else if (path.size() == 4 && (name == "ipt" || name == "inputPointsTarget"))
      addStored(path, numbers);
  }

  void setRange(std::vector<double>& shares, const ParameterPart& range,
                const std::vector<double>& numbers) const {
    shares.resize(mesh_.storedPoints().size(), 1.0);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      const std::size_t vertex = static_cast<std::size_t>(std::max(range.first, 0)) + i;
      if (vertex < shares.size()) shares[vertex] = numbers[i];
    }
  }

  Offsets* shapeAt(const ParameterPath& path) {
    const int item = path.size() == 4 ? path[2].first : -1;
    if (item < 0 || !isOfThisMesh(path) || item == kItemAtZero) return nullptr;
    return &list[std::max(path[1].first, 0)][(item - kItemAtZero) / kItemsPerWeight];
  }

  // A count, then four numbers a point; the component list beside it names the vertices.
  void addStored(const ParameterPath& path, const std::vector<double>& numbers) {
    Offsets* offsets = shapeAt(path);
    if (offsets == nullptr) return;
    const std::vector<int> vertices = node_.componentsBeside(
        path, {"ict", "inputComponentsTarget"}, ElementKind::kVertex, mesh_.pointCount());
    for (std::size_t i = 0; i < vertices.size() && 4 * i + 3 < numbers.size(); ++i)
      (*offsets)[vertices[i]] = {numbers[4 * i + 1], numbers[4 * i + 2], numbers[4 * i + 3]};
  }

  void addLive(const ParameterPath& path, const MeshData& shape) {
    Offsets* offsets = shapeAt(path);
    if (offsets == nullptr) return;
    const std::vector<Vec3>& from = mesh_.storedPoints();
    const std::vector<Vec3>& to = shape.points();
    offsets->clear();
    for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i) {
      const Vec3 offset = to[i] - from[i];
      if (!(offset == Vec3())) offsets->emplace(static_cast<int>(i), offset);
    }
  }

  const MeshData& mesh_;
  HistoryParameters& node_;
};

// The share of each shape at a weight. Between two shapes both count in proportion, where weight 0
// is a shape without offsets. Beyond the outermost shape that shape grows in proportion.
std::map<double, double> sharesOf(const Target& target, double weight) {
  std::map<double, double> shares;
  const auto above = target.lower_bound(weight);
  const auto below = above == target.begin() ? target.end() : std::prev(above);
  const bool hasAbove = above != target.end() && (above->first > 0.0) == (weight > 0.0);
  const bool hasBelow = below != target.end() && (below->first > 0.0) == (weight > 0.0);
  if (hasAbove && hasBelow) {
    const double share = (weight - below->first) / (above->first - below->first);
    shares[above->first] = share;
    shares[below->first] = 1.0 - share;
  } else if (hasAbove || hasBelow) {
    const double at = hasAbove ? above->first : below->first;
    shares[at] = weight / at;
  } else if (!target.empty()) {  // only shapes of the other sign
    const double at = weight > 0.0 ? target.rbegin()->first : target.begin()->first;
    shares[at] = weight / at;
  }
  return shares;
}

double shareAt(const std::vector<double>& weights, int vertex) {
  return weights.empty() ? 1.0 : weights[static_cast<std::size_t>(vertex)];
}

}  // namespace

std::string blendShape(HistoryParameters& node, MeshData& mesh) {
  if (node.knownPoints() != kAllKnown) return kOtherNumbers;
  const Targets targets(node, mesh);
  if (!targets.complete) return {};
  const auto weights = node.elements({"w", "weight"});
  const auto visible = node.elements({"tgvs", "targetVisibility"});
  std::map<int, Vec3> sums;
  for (const auto& [index, target] : targets.list) {
    const auto weight = weights.find(index);
    const auto shown = visible.find(index);
    if (weight == weights.end() || (shown != visible.end() && shown->second.front() == 0.0))
      continue;
    const double amount = weight->second.front();
    if (!std::isfinite(amount)) return "weight " + std::to_string(index) + " is not a number";
    const auto own = targets.weights.find(index);
    for (const auto& [at, share] : sharesOf(target, amount)) {
      for (const auto& [vertex, offset] : target.at(at)) {
        const double here = own == targets.weights.end() ? 1.0 : shareAt(own->second, vertex);
        sums[vertex] = sums[vertex] + offset * (share * here);
      }
    }
  }
  PointMover mover(node, mesh);
  for (const auto& [vertex, offset] : sums)
    mover.offset(vertex, offset * shareAt(targets.baseWeights, vertex));
  return {};
}

}  // namespace host
