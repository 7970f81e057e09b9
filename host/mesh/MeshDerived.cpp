#include "host/mesh/MeshDerived.h"

#include <algorithm>

#include "host/mesh/MeshNormals.h"
#include "host/mesh/MeshTriangulation.h"

namespace host {

namespace {

// Instances of one mesh have different matrices; no more than this many indices are kept.
constexpr std::size_t kMaxIndices = 4;

std::string edgeOutOfRange(int face, long long edge, std::size_t edges) {
  return "face " + std::to_string(face) + " names edge " + std::to_string(edge) + " of " +
         std::to_string(edges);
}

// The vertices from which and to which a signed edge leads.
int fromVertex(const std::vector<MeshEdge>& edges, int signedEdge) {
  return signedEdge >= 0 ? edges[signedEdge].start : edges[-(signedEdge + 1)].end;
}
int toVertex(const std::vector<MeshEdge>& edges, int signedEdge) {
  return signedEdge >= 0 ? edges[signedEdge].end : edges[-(signedEdge + 1)].start;
}

std::string checkEdges(const std::vector<MeshEdge>& edges, int points) {
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (const int vertex : {edges[i].start, edges[i].end}) {
      if (vertex < 0 || vertex >= points) {
        return "edge " + std::to_string(i) + " names point " + std::to_string(vertex) + " of " +
               std::to_string(points);
      }
    }
  }
  return {};
}

// Fills the vertices of the corners [begin, end), which are one loop of `face`.
std::string resolveLoop(const MeshData& mesh, int face, int begin, int end,
                        std::vector<int>& vertices) {
  const std::vector<MeshEdge>& edges = mesh.edges();
  const std::vector<int>& loop = mesh.storedLoopEdges();
  for (int corner = begin; corner < end; ++corner) {
    const int edge = loop[corner];
    const long long number = edge >= 0 ? edge : -(static_cast<long long>(edge) + 1);
    if (number >= static_cast<long long>(edges.size()))
      return edgeOutOfRange(face, number, edges.size());
    vertices[corner] = fromVertex(edges, edge);
    if (corner > begin && toVertex(edges, loop[corner - 1]) != vertices[corner])
      return "the edges of face " + std::to_string(face) + " do not meet";
  }
  if (toVertex(edges, loop[end - 1]) != vertices[begin])
    return "the edges of face " + std::to_string(face) + " do not close";
  return {};
}

std::string resolveFaces(const MeshData& mesh, std::vector<int>& vertices) {
  std::string problem = checkEdges(mesh.edges(), mesh.pointCount());
  if (!problem.empty()) return problem;
  const std::vector<int>& starts = mesh.storedFaceStarts();
  vertices.resize(static_cast<std::size_t>(starts.back()));
  auto hole = mesh.holes().begin();
  for (int face = 0; face + 1 < static_cast<int>(starts.size()); ++face) {
    int begin = starts[face];
    while (begin < starts[face + 1]) {
      const bool holeFollows = hole != mesh.holes().end() && hole->face == face;
      const int end = holeFollows ? (hole++)->firstCorner : starts[face + 1];
      problem = resolveLoop(mesh, face, begin, end, vertices);
      if (!problem.empty()) return problem;
      begin = end;
    }
  }
  return {};
}

}  // namespace

MeshData::Derived& MeshData::derived() const {
  if (!derived_) {
    derived_ = std::make_unique<Derived>();
    derived_->problem = resolveFaces(*this, derived_->cornerVertices);
    if (!derived_->problem.empty()) derived_->cornerVertices.clear();
  }
  return *derived_;
}

const std::string& MeshData::problem() const {
  return derived().problem;
}

int MeshData::faceCount() const {
  return problem().empty() ? static_cast<int>(faceStarts_.size()) - 1 : 0;
}

const std::vector<int>& MeshData::cornerVertices() const {
  return derived().cornerVertices;
}

const std::vector<Vec3>& MeshData::points() const {
  if (tweaks_.empty()) return points_;
  Derived& own = derived();
  if (!own.tweakedPoints) {
    own.tweakedPoints = points_;
    for (const MeshTweak& tweak : tweaks_) {
      if (tweak.vertex >= pointCount()) break;
      Vec3& point = (*own.tweakedPoints)[static_cast<std::size_t>(tweak.vertex)];
      point = point + tweak.offset;
    }
  }
  return *own.tweakedPoints;
}

std::vector<Vec3>& MeshData::changePoints() {
  if (!tweaks_.empty()) {
    points_ = points();
    tweaks_.clear();
  }
  if (derived_) {
    derived_->tweakedPoints.reset();
    derived_->normals.reset();
    derived_->triangles.reset();
    derived_->box.reset();
    derived_->indices.clear();
  }
  return points_;
}

const MeshNormals& MeshData::normals() const {
  Derived& own = derived();
  if (!own.normals) own.normals = computeNormals(*this);
  return *own.normals;
}

void MeshData::setCornerNormal(int corner, const MeshNormal& normal) {
  Derived& own = derived();
  if (normals_.size() != own.cornerVertices.size()) normals_ = storedNormalsByCorner(*this);
  normals_[static_cast<std::size_t>(corner)] = normal;
  own.normals.reset();
}

const MeshTriangles& MeshData::triangles() const {
  Derived& own = derived();
  if (!own.triangles) own.triangles = triangulate(*this);
  return *own.triangles;
}

const MeshBox& MeshData::box() const {
  Derived& own = derived();
  if (own.box) return *own.box;
  MeshBox box;
  for (const Vec3& p : points()) {
    if (box.empty) box = {p, p, false};
    box.min = {std::min(box.min.x, p.x), std::min(box.min.y, p.y), std::min(box.min.z, p.z)};
    box.max = {std::max(box.max.x, p.x), std::max(box.max.y, p.y), std::max(box.max.z, p.z)};
  }
  own.box = box;
  return *own.box;
}

const SurfaceIndex& MeshData::surfaceIndex(const MMatrix& matrix) const {
  std::vector<Derived::Index>& indices = derived().indices;
  for (const Derived::Index& known : indices)
    if (known.matrix == matrix) return *known.index;
  if (indices.size() == kMaxIndices) indices.erase(indices.begin());
  indices.push_back({matrix, std::make_unique<SurfaceIndex>(*this, matrix)});
  return *indices.back().index;
}

}  // namespace host
