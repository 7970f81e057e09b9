#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>

#include "host/mesh/history/DualQuaternion.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"
#include "host/mesh/history/PointMover.h"

namespace host {
namespace {

enum Method { kLinear = 0, kDualQuaternion = 1, kBlended = 2 };  // skinningMethod
constexpr double kNormalizedAfterwards = 2.0;                    // normalizeWeights
constexpr int kMostInfluences = 100000;
constexpr double kWeightTolerance = 1e-3;

// What one joint weighs at one vertex.
struct Influence {
  int vertex = 0;
  int joint = 0;
  double weight = 0.0;
};

// What a joint does to points of the bind pose.
struct Joint {
  bool known = false;
  MMatrix matrix;
  DualQuaternion rigid;
};

class SkinWeights {
 public:
  SkinWeights(const HistoryParameters& node, int vertices) : vertices_(vertices) {
    node.forEach({"wl", "weightList"}, [this](const ParameterPath& path,
                                              const std::vector<double>& numbers) {
      const bool isWeights = path.size() == 2 && path[0].first >= 0 &&
                             (path[1].name == "w" || path[1].name == "weights");
      if (!isWeights) return;
      path[1].first < 0 ? addCounted(path[0], numbers) : addDense(path[0].first, path[1], numbers);
    });
    const auto byVertex = [](const Influence& a, const Influence& b) {
      return a.vertex < b.vertex;
    };
    if (!std::is_sorted(list.begin(), list.end(), byVertex))
      std::stable_sort(list.begin(), list.end(), byVertex);
  }

  std::vector<Influence> list;  // by vertex

 private:
  // "wl[0:9].w": for each vertex a count and as many pairs of joint and weight.
  void addCounted(const ParameterPart& range, const std::vector<double>& numbers) {
    std::size_t at = 0;
    for (int vertex = range.first; vertex <= range.last && at < numbers.size(); ++vertex) {
      const double count = numbers[at++];
      for (double i = 0; i < count && at + 1 < numbers.size(); ++i, at += 2)
        add(vertex, numbers[at], numbers[at + 1]);
    }
  }
  // "wl[7].w[0:3]": a weight for each joint of the range.
  void addDense(int vertex, const ParameterPart& joints, const std::vector<double>& numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      add(vertex, joints.first + static_cast<double>(i), numbers[i]);
  }
  void add(int vertex, double joint, double weight) {
    if (vertex < vertices_ && joint >= 0.0 && joint < kMostInfluences && weight != 0.0)
      list.push_back({vertex, static_cast<int>(joint), weight});
  }

  int vertices_;
};

std::string ofJoint(int joint, const std::string& problem) {
  return "influence " + std::to_string(joint) + ": " + problem;
}

// The joints that have a weight.
class Joints {
 public:
  std::string read(const HistoryParameters& node, const std::vector<Influence>& influences) {
    const auto matrices = node.elements({"ma", "matrix"});
    const auto bindings = node.elements({"pm", "bindPreMatrix"});
    for (const Influence& influence : influences) {
      const auto index = static_cast<std::size_t>(influence.joint);
      if (index < list_.size() && list_[index].known) continue;
      list_.resize(std::max(list_.size(), index + 1));
      const std::string problem = readOne(influence.joint, matrices, bindings, list_[index]);
      if (!problem.empty()) return ofJoint(influence.joint, problem);
    }
    return {};
  }
  const Joint& at(int joint) const { return list_[static_cast<std::size_t>(joint)]; }

 private:
  using Elements = std::map<int, std::vector<double>>;

  static std::string readOne(int index, const Elements& matrices, const Elements& bindings,
                             Joint& joint) {
    const auto matrix = matrices.find(index);
    if (matrix == matrices.end()) return "its joint is missing";
    MMatrix placed;
    MMatrix bound;
    std::string problem = readMatrix(matrix->second, placed);
    const auto binding = bindings.find(index);
    if (problem.empty() && binding != bindings.end()) problem = readMatrix(binding->second, bound);
    if (problem.empty()) {
      joint.matrix = bound * placed;
      joint.rigid = DualQuaternion::rigidPartOf(joint.matrix);
      joint.known = true;
    }
    return problem;
  }

  std::vector<Joint> list_;
};

// The matrix by which the joints move one vertex, in the space of the bind pose.
class Blend {
 public:
  Blend(const Joints& joints, Method method) : joints_(joints), method_(method) {}

  MMatrix of(const Influence* begin, const Influence* end, double scale, double dualShare) const {
    const MMatrix linear = method_ == kDualQuaternion ? MMatrix() : linearOf(begin, end, scale);
    if (method_ == kLinear) return linear;
    const MMatrix dual = dualOf(begin, end);
    return method_ == kDualQuaternion ? dual : linear * (1.0 - dualShare) + dual * dualShare;
  }

 private:
  MMatrix linearOf(const Influence* begin, const Influence* end, double scale) const {
    MMatrix sum = joints_.at(begin->joint).matrix * (begin->weight * scale);
    for (const Influence* i = begin + 1; i != end; ++i)
      sum = sum + joints_.at(i->joint).matrix * (i->weight * scale);
    return sum;
  }
  MMatrix dualOf(const Influence* begin, const Influence* end) const {
    DualQuaternion sum;
    for (const Influence* i = begin; i != end; ++i) sum.add(joints_.at(i->joint).rigid, i->weight);
    return sum.toMatrix();
  }

  const Joints& joints_;
  Method method_;
};

struct Skin {
  MMatrix placed;  // from the mesh's space to the world in which the joints were bound
  MMatrix back;
  Method method = kLinear;
  bool normalizes = false;
};

std::string readSkin(const HistoryParameters& node, Skin& skin) {
  const std::vector<double> geometry = node.numbers({"gm", "geomMatrix"});
  std::string problem = geometry.empty() ? std::string() : readMatrix(geometry, skin.placed);
  skin.back = skin.placed;
  if (problem.empty()) problem = invert(skin.back);
  skin.method =
      static_cast<Method>(node.whole({"skm", "skinningMethod"}, kLinear, kLinear, kBlended));
  skin.normalizes = node.number({"nw", "normalizeWeights"}, 1.0) == kNormalizedAfterwards;
  return problem;
}

// Gives how many vertices have weights that do not add up to 1.
std::size_t moveAll(const HistoryParameters& node, const Skin& skin, const Joints& joints,
                    const std::vector<Influence>& list, MeshData& mesh) {
  const Blend blend(joints, skin.method);
  const std::vector<double> dualShares =
      perVertex(node, {"bw", "blendWeights"}, mesh.pointCount(), 0.0);
  PointMover mover(node, mesh);
  std::size_t unbalanced = 0;
  for (const Influence *i = list.data(), *last = i + list.size(), *end = i; i != last; i = end) {
    double sum = 0.0;
    for (end = i; end != last && end->vertex == i->vertex; ++end) sum += end->weight;
    unbalanced += std::abs(sum - 1.0) > kWeightTolerance ? 1 : 0;
    const double scale = skin.normalizes && sum > 0.0 ? 1.0 / sum : 1.0;
    const double dualShare = dualShares[static_cast<std::size_t>(i->vertex)];
    mover.move(i->vertex, skin.placed * blend.of(i, end, scale, dualShare) * skin.back);
  }
  return unbalanced;
}

}  // namespace

std::string skinCluster(HistoryParameters& node, MeshData& mesh) {
  if (node.knownPoints() != kAllKnown) return kOtherNumbers;
  const SkinWeights weights(node, mesh.pointCount());
  Joints joints;
  std::string problem = joints.read(node, weights.list);
  Skin skin;
  if (problem.empty()) problem = readSkin(node, skin);
  if (!problem.empty()) return problem;
  const std::size_t unbalanced = moveAll(node, skin, joints, weights.list, mesh);
  if (unbalanced > 0 && !skin.normalizes) {
    node.note("has weights that do not add up to 1 at " + std::to_string(unbalanced) +
              " vertices; they are used as they are");
  }
  return {};
}

}  // namespace host
