#ifndef MORVANE_HOST_MESH_MESHDATA_H_
#define MORVANE_HOST_MESH_MESHDATA_H_

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/math/MeshVector.h"

class MMatrix;

namespace host {

class SurfaceIndex;

struct MeshUv {
  float u = 0.0f;
  float v = 0.0f;
};

struct MeshNormal {
  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
};

struct MeshColour {
  float r = 0.0f;
  float g = 0.0f;
  float b = 0.0f;
  float a = 1.0f;
};

struct MeshEdge {
  int start = 0;
  int end = 0;
  int flag = 1;  // as a scene file has it: 0 is hard, everything else smooth

  bool smooth() const { return flag != 0; }
};

// An offset that is added to a point (".pt[vertex]"), kept apart so that both are saved as they
// were written.
struct MeshTweak {
  int vertex = 0;
  Vec3 offset;
};

// The loop of a hole: the corners from `firstCorner` to the next hole of the face, or to the face's
// last corner.
struct MeshHole {
  int face = 0;
  int firstCorner = 0;  // counted over the whole mesh
};

// A set of texture coordinates (".uvst[index]"). `ids` has one entry a face corner of the mesh, −1
// where the corner has none; it may be shorter than the corners, and the rest have none.
struct MeshUvSet {
  int index = 0;
  std::string name;
  std::vector<MeshUv> uvs;
  std::vector<int> ids;
};

// A set of colours (".clst[index]"), addressed like UVs. `components` is the number of floats a
// colour, which a scene file's ".rprt" gives (1 opacity, 3 RGB, 4 RGBA).
struct MeshColourSet {
  int index = 0;
  std::string name;
  int components = 4;
  std::vector<MeshColour> colours;
  std::vector<int> ids;
};

// The normal list of a mesh, each distinct normal of a vertex once, and the position in it of every
// corner.
struct MeshNormals {
  std::vector<MeshNormal> list;
  std::vector<int> ids;
};

// The triangles of all faces in face order: three corners each, counted over the whole mesh.
// Face f has the triangles [firstOfFace[f], firstOfFace[f + 1]).
struct MeshTriangle {
  int corners[3];
};
struct MeshTriangles {
  std::vector<MeshTriangle> list;
  std::vector<int> firstOfFace;
};

struct MeshBox {
  Vec3 min;
  Vec3 max;
  bool empty = true;
};

// Stands in ".n" for each component of a normal that is computed instead of locked.
constexpr float kUnlockedNormal = 1.0e20f;

// Sets with any index below this may exist; a statement that asks for more of them is refused.
constexpr int kMaxMeshSets = 128;

// What a polygon mesh holds, as a scene file has it, and what follows from that: corners, normals,
// triangles, a spatial index. What follows is computed when it is first asked for and dropped by
// every setter it depends on, so nothing here has to be told about a change.
//
// Setters that can be wrong return what is wrong in words, and then change nothing; an empty text
// is success. They take what one statement of a scene file holds: consecutive elements from
// position `first`, which may replace elements or follow the last one, but leave no gap. The
// setters of faces go with the loops.
//
// Faces name edges, so whether they fit is known only when everything is set: `problem` tells. A
// mesh with a problem has points, but no faces, normals or triangles.
class MeshData {
 public:
  MeshData();
  ~MeshData();
  MeshData(MeshData&&) noexcept;
  MeshData& operator=(MeshData&&) noexcept;
  MeshData clone() const;  // without what follows

  // --- What a scene file holds.
  const std::vector<Vec3>& storedPoints() const { return points_; }              // ".vt"
  const std::vector<MeshTweak>& tweaks() const { return tweaks_; }               // ".pt", by vertex
  const std::vector<MeshEdge>& edges() const { return edges_; }                  // ".ed"
  const std::vector<MeshNormal>& storedNormals() const { return normals_; }      // ".n"
  const std::vector<MeshUvSet>& uvSets() const { return uvSets_; }               // by index
  const std::vector<MeshColourSet>& colourSets() const { return colourSets_; }   // by index
  const std::string& currentUvSetName() const { return currentUvSet_; }          // ".cuvs"
  const std::string& currentColourSetName() const { return currentColourSet_; }  // ".ccls"

  // The faces of ".fc", whether they fit the mesh or not: face f has the corners
  // [storedFaceStarts()[f], storedFaceStarts()[f + 1]), and from each corner an edge of
  // storedLoopEdges() leads to the next of its loop: edge e from its start to its end, or −e − 1,
  // the other way.
  const std::vector<int>& storedFaceStarts() const { return faceStarts_; }
  const std::vector<int>& storedLoopEdges() const { return loopEdges_; }
  const std::vector<MeshHole>& holes() const { return holes_; }  // by face, then corner

  // Reserves room for `count` elements in all, where that number is known. A list that grows
  // without this takes up to three times its memory meanwhile.
  enum class Table { kPoints, kEdges, kCorners, kNormals };
  void reserve(Table table, std::size_t count);

  // `xyz` holds 3 × count numbers. Tweaks may leave gaps, and may be beyond the last point.
  std::string setPoints(std::size_t first, const double* xyz, std::size_t count);
  std::string setTweaks(std::size_t first, const double* xyz, std::size_t count);
  // `ints` holds start, end and flag of each edge.
  std::string setEdges(std::size_t first, const int* ints, std::size_t count);
  std::string setNormals(std::size_t first, const float* xyz, std::size_t count);

  // Begins ".fc[first:...]": faces before `first` stay, all later ones go. Its loops follow in
  // order: `addFace` for f, `addHole` for h, a hole of the face before it.
  std::string beginFaces(std::size_t first);
  std::string addFace(const int* edges, std::size_t count);
  std::string addHole(const int* edges, std::size_t count);
  // mu and mc: ids for the corners of the loop added last, or of its whole face when there are as
  // many; −1 is none. The UV or colour set need not exist yet.
  std::string setLoopUvs(int set, const int* ids, std::size_t count);
  std::string setLoopColours(int set, const int* ids, std::size_t count);
  // mf and mh, of older scenes, for the UV set 0: ids for the face's outer loop, and for its first
  // hole that has none yet. fc, for the colour set 0: the whole face or its outer loop.
  std::string setFaceUvs(const int* ids, std::size_t count);
  std::string setHoleUvs(const int* ids, std::size_t count);
  std::string setFaceColours(const int* ids, std::size_t count);

  // The set of this index, made when missing; null when that would be too many sets. Names may be
  // written through the pointer; it is good until another set is made.
  MeshUvSet* uvSet(int index);
  MeshColourSet* colourSet(int index);
  std::string setUvs(int set, std::size_t first, const float* uv, std::size_t count);
  // `components` holds `count` floats, as many a colour as the set has components; `first` counts
  // colours.
  std::string setColours(int set, std::size_t first, const float* components, std::size_t count);
  void setCurrentUvSetName(std::string name) { currentUvSet_ = std::move(name); }
  void setCurrentColourSetName(std::string name) { currentColourSet_ = std::move(name); }

  // Null when there is none. Without a name: the current set, else the first.
  const MeshUvSet* findUvSet(const std::string* name = nullptr) const;
  MeshUvSet* findUvSet(const std::string* name = nullptr);
  const MeshColourSet* findColourSet(const std::string* name = nullptr) const;

  // Access for moving points one by one; none may be added or removed. The stored points take their
  // tweaks in first, so that no tweak is left.
  std::vector<Vec3>& changePoints();
  // The entries of ".n", to be changed in place.
  std::vector<MeshNormal>& changeNormals();
  // The flag of every edge, to be changed in place.
  std::vector<MeshEdge>& changeEdgeFlags();

  // Gives corner `corner` of the mesh a normal of its own, as a locked entry of ".n".
  void setCornerNormal(int corner, const MeshNormal& normal);

  // --- What follows from it.
  // Why the faces do not fit the mesh, such as "face 3 names edge 12 of 12"; empty when they do.
  const std::string& problem() const;

  int pointCount() const { return static_cast<int>(points_.size()); }
  int faceCount() const;
  int faceStart(int face) const { return faceStarts_[face]; }
  int cornerCount(int face) const { return faceStarts_[face + 1] - faceStarts_[face]; }
  // The vertex of every corner, loops of a face in order: the outer one, then its holes.
  const std::vector<int>& cornerVertices() const;
  // The face's loops as corner ranges, the outer one first.
  std::vector<std::pair<int, int>> loops(int face) const;

  // Points with their tweaks.
  const std::vector<Vec3>& points() const;
  const MeshNormals& normals() const;
  const MeshTriangles& triangles() const;
  const MeshBox& box() const;  // around points()
  // The index for closest points. Its space is that to which `matrix` (row vectors) takes the mesh.
  const SurfaceIndex& surfaceIndex(const MMatrix& matrix) const;

  // The UV or colour that an id list gives a corner; −1 for none, and for one that does not exist.
  static int uvAt(const MeshUvSet& set, int corner);
  static int colourAt(const MeshColourSet& set, int corner);

 private:
  struct Derived;

  std::string setLoopIds(std::vector<int>& idList, int loopStart, const int* ids,
                         std::size_t count);
  void shapeChanged();
  Derived& derived() const;

  std::vector<Vec3> points_;
  std::vector<MeshTweak> tweaks_;
  std::vector<MeshEdge> edges_;
  std::vector<MeshNormal> normals_;
  std::vector<int> faceStarts_ = {0};
  std::vector<int> loopEdges_;
  std::vector<MeshHole> holes_;
  std::vector<MeshUvSet> uvSets_;
  std::vector<MeshColourSet> colourSets_;
  std::string currentUvSet_;
  std::string currentColourSet_;
  mutable std::unique_ptr<Derived> derived_;
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHDATA_H_
