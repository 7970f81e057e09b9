#include <maya/MFnMesh.h>
#include <maya/MItMeshPolygon.h>

#include <cmath>

#include "host/attribute/Component.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Values.h"
#include "tests/mesh/MeshFixtures.h"

namespace {

using host::MeshData;
using host::NodePtr;

class MFnMeshTest : public testing::Test {
 protected:
  void SetUp() override { host::Scene::current().clear(); }

  NodePtr make(const char* type, const NodePtr& parent = nullptr) {
    return host::Scene::current().createNode(*host::NodeType::find(type), {}, parent);
  }
  // A mesh below a transform that doubles x, mirrors z and moves by (10, 20, 30).
  NodePtr makeMesh(MeshData data) {
    transform_ = make("transform");
    host::writeValue(*host::Plug::find(transform_, "t"), std::vector<double>{10, 20, 30});
    host::writeValue(*host::Plug::find(transform_, "s"), std::vector<double>{2, 1, -1});
    const NodePtr mesh = make("mesh", transform_);
    *mesh->mesh = std::move(data);
    return mesh;
  }
  static MDagPath pathTo(const NodePtr& node) {
    MDagPath path;
    EXPECT_EQ(MDagPath::getAPathTo(MObject(node), path), MStatus::kSuccess);
    return path;
  }
  static MObject faces(std::vector<host::IndexRange> ranges) {
    return MObject(std::make_shared<host::Component>(host::Component::Kind::kFace,
                                                     host::IndexSet(std::move(ranges))));
  }

  static MIntArray arrayOf(const std::vector<int>& list) {
    return MIntArray(list.data(), static_cast<unsigned>(list.size()));
  }

  NodePtr transform_;
};

TEST_F(MFnMeshTest, AttachesToMeshesAndToTransformsWithOne) {
  const NodePtr mesh = makeMesh(host::primitive("polyCube"));
  MStatus status;
  EXPECT_EQ(MFnMesh(MObject(mesh), &status).numVertices(), 8);
  EXPECT_EQ(MFnMesh(pathTo(transform_), &status).numPolygons(), 6);
  EXPECT_EQ(status, MStatus::kSuccess);
  MFnMesh onTransform(MObject(transform_), &status);
  EXPECT_NE(status, MStatus::kSuccess);
  EXPECT_EQ(onTransform.numVertices(&status), 0);
  EXPECT_NE(status, MStatus::kSuccess);
  MFnMesh early(MObject(mesh), &status);
  make("mesh", transform_);
  MFnMesh two(pathTo(transform_), &status);
  EXPECT_NE(status, MStatus::kSuccess);
  host::Scene::current().deleteNode(mesh);
  MPoint point;
  EXPECT_NE(early.getPoint(0, point), MStatus::kSuccess);
}

TEST_F(MFnMeshTest, PointsAndNormalsInBothSpaces) {
  const NodePtr node = makeMesh(host::primitive("polyCube"));
  const double tweak[] = {0, 0.5, 0};
  node->mesh->setTweaks(3, tweak, 1);
  MFnMesh mesh(pathTo(node));
  MPointArray own, world;
  MFloatPointArray floats;
  EXPECT_EQ(mesh.getPoints(own), MStatus::kSuccess);
  EXPECT_EQ(mesh.getPoints(world, MSpace::kWorld), MStatus::kSuccess);
  EXPECT_EQ(mesh.getPoints(floats, MSpace::kWorld), MStatus::kSuccess);
  EXPECT_EQ(own[3], MPoint(0.5, 1, 0.5));
  EXPECT_EQ(world[3], MPoint(11, 21, 29.5));
  EXPECT_EQ(floats[3], MFloatPoint(11, 21, 29.5f));
  MPoint point;
  EXPECT_EQ(mesh.getPoint(3, point, MSpace::kWorld), MStatus::kSuccess);
  EXPECT_EQ(point, world[3]);
  for (const int vertex : {-1, 8})
    EXPECT_EQ(mesh.getPoint(vertex, point), MStatus::kInvalidParameter);
  EXPECT_EQ(point, world[3]);
  MFnMesh withoutPath{MObject(node)};
  EXPECT_EQ(withoutPath.getPoints(world, MSpace::kWorld), MStatus::kInvalidParameter);

  // A slope (1, 1, 0) in a space that is twice as wide becomes (0.5, 1, 0); outward stays outward
  // when mirrored.
  *node->mesh =
      host::meshOf({{0, 1, 0}, {0, 1, 1}, {1, 0, 1}, {1, 0, 0}, {0, 0, 0}, {0, 1, -1}, {1, 1, -1}},
                   {{0, 1, 2, 3}, {4, 5, 6}});
  MFloatVectorArray normals;
  EXPECT_EQ(mesh.getNormals(normals, MSpace::kWorld), MStatus::kSuccess);
  EXPECT_NEAR(normals[0].x, 0.5 / std::sqrt(1.25), 1e-6);
  EXPECT_NEAR(normals[0].y, 1.0 / std::sqrt(1.25), 1e-6);
}

TEST_F(MFnMeshTest, CreateMakesATransformOnlyWhereThereIsNoParent) {
  const NodePtr parent = make("transform");
  MStatus status;
  MFnMesh mesh;
  const auto create = [&](int vertices, int polygons, const std::vector<int>& counts,
                          const std::vector<int>& connects, const MObject& below) {
    return mesh.create(vertices, polygons, MPointArray(4, MPoint()), arrayOf(counts),
                       arrayOf(connects), below, &status);
  };
  const std::vector<int> counts = {3, 3}, connects = {0, 1, 2, 0, 2, 3};
  const MObject below = create(4, 2, counts, connects, MObject(parent));
  EXPECT_EQ(status, MStatus::kSuccess);
  EXPECT_TRUE(below.hasFn(MFn::kMesh));
  EXPECT_EQ(mesh.object(), below);
  EXPECT_STREQ(mesh.name().asChar(), "polySurfaceShape1");
  EXPECT_EQ(parent->children().size(), 1u);
  EXPECT_EQ(mesh.numFaceVertices(), 6);
  const MObject alone = create(4, 2, counts, connects, MObject::kNullObj);
  EXPECT_TRUE(alone.hasFn(MFn::kTransform));
  EXPECT_TRUE(mesh.object().hasFn(MFn::kMesh));

  const auto refused = [&](int vertices, int polygons, const std::vector<int>& badCounts,
                           const std::vector<int>& badConnects) {
    const std::size_t before = host::Scene::current().nodes().size();
    const MObject made = create(vertices, polygons, badCounts, badConnects, MObject(parent));
    EXPECT_EQ(host::Scene::current().nodes().size(), before);
    return made.isNull() && status == MStatus::kInvalidParameter;
  };
  EXPECT_TRUE(refused(5, 1, {3}, {0, 1, 2}));
  EXPECT_TRUE(refused(4, 2, {3}, {0, 1, 2}));
  EXPECT_TRUE(refused(4, 1, {3}, {0, 1, 4}));
  EXPECT_TRUE(refused(4, 1, {3}, {0, 1, -1}));
  EXPECT_TRUE(refused(4, 1, {4}, {0, 1, 2}));
  EXPECT_TRUE(refused(4, 1, {2}, {0, 1}));
  EXPECT_TRUE(refused(4, 1, {-3}, {0, 1, 2}));
  EXPECT_TRUE(refused(4, 0, {}, {}));
  EXPECT_TRUE(refused(-1, -1, {3}, {0, 1, 2}));
}

TEST_F(MFnMeshTest, UvsAreSetGrownAndAssigned) {
  const NodePtr node =
      makeMesh(host::meshOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2}, {0, 2, 3}}));
  MFnMesh mesh(pathTo(node));
  EXPECT_EQ(mesh.numUVs(), 0);
  EXPECT_EQ(mesh.setUV(2, 0.25f, 0.75f), MStatus::kSuccess);
  EXPECT_EQ(mesh.numUVs(), 3);
  float u = 9, v = 9;
  EXPECT_EQ(mesh.getUV(1, u, v), MStatus::kSuccess);
  EXPECT_EQ(u, 0.0f);
  EXPECT_EQ(mesh.getUV(2, u, v), MStatus::kSuccess);
  EXPECT_EQ(v, 0.75f);
  EXPECT_NE(mesh.getUV(3, u, v), MStatus::kSuccess);
  EXPECT_NE(mesh.setUV(-1, 0, 0), MStatus::kSuccess);
  EXPECT_NE(mesh.setUV(2'000'000'000, 0, 0), MStatus::kSuccess);
  const MString other("other");
  EXPECT_NE(mesh.setUV(0, 0, 0, &other), MStatus::kSuccess);

  EXPECT_EQ(mesh.assignUV(1, 2, 2), MStatus::kSuccess);
  MItMeshPolygon polygon{MObject(node)};
  int id = 77;
  EXPECT_NE(polygon.getUVIndex(0, id), MStatus::kSuccess);
  EXPECT_EQ(id, 77);
  EXPECT_FALSE(polygon.hasUVs());
  polygon.next();
  EXPECT_EQ(polygon.getUVIndex(2, id), MStatus::kSuccess);
  EXPECT_EQ(id, 2);
  for (const auto& bad :
       {std::array<int, 3>{2, 0, 0}, {-1, 0, 0}, {0, 3, 0}, {0, -1, 0}, {0, 0, 3}, {0, 0, -1}}) {
    EXPECT_NE(mesh.assignUV(bad[0], bad[1], bad[2]), MStatus::kSuccess);
  }

  MFloatArray us(4, 0.5f), vs(4, -0.25f), few(2, 0.0f);
  EXPECT_NE(mesh.setUVs(us, few), MStatus::kSuccess);
  EXPECT_NE(mesh.setUVs(few, few), MStatus::kSuccess);
  EXPECT_EQ(mesh.setUVs(us, vs), MStatus::kSuccess);
  const auto assign = [&](const std::vector<int>& counts, const std::vector<int>& ids) {
    return mesh.assignUVs(arrayOf(counts), arrayOf(ids));
  };
  EXPECT_EQ(assign({0, 3}, {3, 0, 1}), MStatus::kSuccess);
  EXPECT_NE(assign({3}, {0, 1, 2}), MStatus::kSuccess);
  EXPECT_NE(assign({3, 3}, {0, 1, 2}), MStatus::kSuccess);
  EXPECT_NE(assign({3, 0}, {0, 1, 2, 3}), MStatus::kSuccess);
  EXPECT_NE(assign({2, 0}, {0, 1}), MStatus::kSuccess);
  EXPECT_NE(assign({3, 0}, {0, 1, 4}), MStatus::kSuccess);
  EXPECT_EQ(polygon.getUVIndex(0, id), MStatus::kSuccess);
  EXPECT_EQ(id, 3);
  EXPECT_EQ(mesh.updateSurface(), MStatus::kSuccess);
}

TEST_F(MFnMeshTest, FaceVertexNormalsGoByTheVertexOfTheMesh) {
  const NodePtr node = makeMesh(host::primitive("polyCube"));
  MFnMesh mesh(pathTo(node));
  MVector normal(0.6, 0.8, 0);
  EXPECT_EQ(mesh.setFaceVertexNormal(normal, 1, 4), MStatus::kSuccess);  // face 1 is 2 3 5 4
  EXPECT_NE(mesh.setFaceVertexNormal(normal, 1, 0), MStatus::kSuccess);
  EXPECT_NE(mesh.setFaceVertexNormal(normal, 6, 4), MStatus::kSuccess);
  MFloatVectorArray normals;
  mesh.getNormals(normals);
  MItMeshPolygon polygon{MObject(node)};
  int previous = -1;
  EXPECT_EQ(polygon.setIndex(1, previous), MStatus::kSuccess);
  EXPECT_EQ(previous, 0);
  EXPECT_EQ(normals[polygon.normalIndex(3)], MFloatVector(0.6f, 0.8f, 0));
  EXPECT_EQ(normals[polygon.normalIndex(0)], MFloatVector(0, 1, 0));
  // What is set in the world reads back in the world.
  MVector slope = MVector(1, 2, -3).normal();
  EXPECT_EQ(mesh.setFaceVertexNormal(slope, 0, 0, MSpace::kWorld), MStatus::kSuccess);
  mesh.getNormals(normals, MSpace::kWorld);
  polygon.setIndex(0, previous);
  EXPECT_TRUE(MVector(normals[polygon.normalIndex(0)]).isEquivalent(slope, 1e-6));
}

TEST_F(MFnMeshTest, VertexColoursAreTheMeanOfTheirCorners) {
  const NodePtr node = makeMesh(host::meshOf(
      {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {5, 5, 5}}, {{0, 1, 2}, {0, 2, 3}}));
  MFnMesh mesh(pathTo(node));
  MColorArray colours(3);
  EXPECT_EQ(mesh.getVertexColors(colours), MStatus::kSuccess);
  EXPECT_EQ(colours.length(), 0u);
  const float rgba[] = {0.1f, 0.5f, 0.25f, 1, 0.3f, 0.5f, 0.75f, 0};
  node->mesh->colourSet(0)->name = "c";
  node->mesh->setColours(0, 0, rgba, 8);
  node->mesh->colourSet(0)->ids = {0, 0, 0, 1, 0, -1};
  EXPECT_EQ(mesh.getVertexColors(colours), MStatus::kSuccess);
  ASSERT_EQ(colours.length(), 5u);
  EXPECT_EQ(colours[2], MColor(0.1f, 0.5f, 0.25f, 1));
  EXPECT_NEAR(colours[0].r, 0.2, 1e-6);
  EXPECT_NEAR(colours[0].b, 0.5, 1e-6);
  EXPECT_EQ(colours[0].a, 0.5f);
  EXPECT_EQ(colours[3], MColor(-1, -1, -1, -1));
  const MColor unset(0.5f, 0, 0, 0);
  mesh.getVertexColors(colours, nullptr, &unset);
  EXPECT_EQ(colours[4], unset);
}

TEST_F(MFnMeshTest, ClosestPointInTheWorldUsesWorldDistances) {
  const NodePtr node = makeMesh(host::primitive("polyPlane", {{"sw", 2}, {"sh", 1}}));
  MFnMesh mesh(pathTo(node));
  MPoint closest;
  int polygon = -1;
  EXPECT_EQ(mesh.getClosestPoint(MPoint(10.5, 23, 30.25), closest, MSpace::kWorld, &polygon),
            MStatus::kSuccess);
  EXPECT_EQ(closest, MPoint(10.5, 20, 30.25));
  EXPECT_EQ(polygon, 1);
  EXPECT_EQ(mesh.getClosestPoint(MPoint(10.5, 23, 30.25), closest), MStatus::kSuccess);
  EXPECT_EQ(closest, MPoint(0.5, 0, 0.5));
  // The index follows the transform and the mesh.
  host::writeValue(*host::Plug::find(transform_, "t"), std::vector<double>{0, 0, 0});
  EXPECT_EQ(mesh.getClosestPoint(MPoint(-9, 1, 0), closest, MSpace::kWorld, &polygon),
            MStatus::kSuccess);
  EXPECT_EQ(closest, MPoint(-1, 0, 0));
  EXPECT_EQ(polygon, 0);
  EXPECT_NE(mesh.getClosestPoint(MPoint(std::nan(""), 0, 0), closest), MStatus::kSuccess);
  EXPECT_NE(MFnMesh(MObject(make("mesh", make("transform")))).getClosestPoint(MPoint(), closest),
            MStatus::kSuccess);
}

TEST_F(MFnMeshTest, PolygonsOfAComponentAndUvsAtPoints) {
  const NodePtr node = makeMesh(host::primitive("polyPlane", {{"sw", 4}, {"sh", 1}}));
  std::vector<unsigned> seen;
  MStatus status;
  MItMeshPolygon some(pathTo(transform_), faces({{2, 2}, {0, 0}, {3, 900}}), &status);
  EXPECT_EQ(status, MStatus::kSuccess);
  EXPECT_EQ(some.count(), 3u);
  for (; !some.isDone(); some.next()) seen.push_back(some.index());
  EXPECT_EQ(seen, (std::vector<unsigned>{0, 2, 3}));
  int number = 0;
  EXPECT_NE(some.next(), MStatus::kSuccess);
  EXPECT_NE(some.numTriangles(number), MStatus::kSuccess);
  EXPECT_EQ(some.setIndex(2, number), MStatus::kSuccess);
  EXPECT_NE(some.setIndex(1, number), MStatus::kSuccess);

  MObject third = some.polygon();
  MItMeshPolygon one(pathTo(node), third);
  EXPECT_EQ(one.numTriangles(number), MStatus::kSuccess);
  EXPECT_EQ(number, 2);
  MPoint point(10.4, 25, 30.1);  // x 0.2 and z −0.1 on the plane, in its third quarter
  float2 uv = {9, 9};
  EXPECT_EQ(one.getUVAtPoint(point, uv, MSpace::kWorld), MStatus::kSuccess);
  EXPECT_NEAR(uv[0], 0.7, 1e-6);
  EXPECT_NEAR(uv[1], 0.6, 1e-6);
  MPoint offside(0.4, 0, 0);  // right of the polygon
  EXPECT_EQ(one.getUVAtPoint(offside, uv), MStatus::kSuccess);
  EXPECT_NEAR(uv[0], 0.75, 1e-6);
  one.next();
  EXPECT_NE(one.getUVAtPoint(point, uv, MSpace::kWorld), MStatus::kSuccess);
  MItMeshPolygon nothing(MObject(transform_), &status);
  EXPECT_NE(status, MStatus::kSuccess);
  EXPECT_TRUE(nothing.isDone());
}

TEST_F(MFnMeshTest, ShadingGroupsWithTheirFaces) {
  const NodePtr node = makeMesh(host::primitive("polyCube"));
  MFnMesh mesh(pathTo(node));
  MObjectArray groups, components;
  MIntArray indices;
  const auto indicesAfter = [&](const NodePtr& group, const host::ComponentPtr& component) {
    EXPECT_TRUE(!group || host::forceMember(
                              group, host::SelectionItem::of(host::firstPath(node), component)));
    EXPECT_EQ(mesh.getConnectedShaders(0, groups, indices), MStatus::kSuccess);
    std::vector<int> result;
    for (unsigned face = 0; face < indices.length(); ++face) result.push_back(indices[face]);
    mesh.getConnectedSetsAndMembers(0, groups, components, true);
    return result;
  };
  const NodePtr group[3] = {make("shadingEngine"), make("shadingEngine"), make("shadingEngine")};
  EXPECT_EQ(indicesAfter(nullptr, nullptr), std::vector<int>(6, -1));
  EXPECT_EQ(groups.length(), 0u);
  EXPECT_EQ(indicesAfter(group[0], nullptr), std::vector<int>(6, 0));
  ASSERT_EQ(groups.length(), 1u);
  EXPECT_TRUE(components[0].isNull());
  ASSERT_TRUE(host::removeMember(group[0], host::SelectionItem::of(host::firstPath(node))));
  indicesAfter(group[1], host::Component::parse("f[0:1]"));
  EXPECT_EQ(indicesAfter(group[2], host::Component::parse("f[3:99]")),
            (std::vector<int>{0, 0, -1, 1, 1, 1}));
  ASSERT_EQ(groups.length(), 2u);
  EXPECT_EQ(groups[1], MObject(group[2]));
  EXPECT_EQ(components[1], faces({{3, 5}}));
}

}  // namespace
