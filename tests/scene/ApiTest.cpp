#include <maya/MDagPathArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnLambertShader.h>
#include <maya/MFnSet.h>
#include <maya/MFnTransform.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MItSelectionList.h>
#include <maya/MPlugArray.h>

#include "host/scene/Sets.h"
#include "tests/scene/SceneTest.h"

namespace host {
namespace {

class Api : public SceneTest {
 protected:
  static Strings listed(const MSelectionList& list) {
    MStringArray names;
    list.getSelectionStrings(names);
    Strings result;
    for (unsigned i = 0; i < names.length(); ++i) result.push_back(names[i].asChar());
    return result;
  }
};

TEST_F(Api, KindsKnowWhatTheyAreCasesOf) {
  const struct {
    const char* type;
    const char* name;
    std::vector<MFn::Type> has;
    std::vector<MFn::Type> hasNot;
  } kCases[] = {
      {"mesh",
       "kMesh",
       {MFn::kMesh, MFn::kShape, MFn::kDagNode, MFn::kDependencyNode},
       {MFn::kTransform, MFn::kSet}},
      {"transform", "kTransform", {MFn::kDagNode}, {MFn::kShape, MFn::kMesh}},
      {"joint", "kJoint", {MFn::kTransform, MFn::kDagNode}, {MFn::kShape}},
      {"lambert", "kLambert", {MFn::kDependencyNode}, {MFn::kDagNode, MFn::kPhong}},
      {"phong", "kPhong", {MFn::kLambert, MFn::kReflect}, {MFn::kBlinn}},
      {"blinn", "kBlinn", {MFn::kLambert}, {MFn::kPhong}},
      {"phongE", "kPhongExplorer", {MFn::kLambert}, {}},
      {"anisotropic", "kReflect", {MFn::kLambert}, {}},
      {"surfaceShader", "kSurfaceShader", {}, {MFn::kLambert}},
      {"file", "kFileTexture", {MFn::kTexture2d}, {MFn::kPsdFileTexture}},
      {"psdFileTex", "kPsdFileTexture", {MFn::kFileTexture}, {}},
      {"PSDTextureNode", "kPsdFileTexture", {MFn::kFileTexture}, {}},
      {"ramp", "kRamp", {MFn::kTexture2d}, {MFn::kFileTexture}},
      {"shadingEngine", "kShadingEngine", {MFn::kSet}, {MFn::kPartition}},
      {"objectSet", "kSet", {}, {MFn::kShadingEngine}},
      {"directionalLight", "kDirectionalLight", {MFn::kLight, MFn::kShape}, {MFn::kMesh}},
  };
  for (const auto& c : kCases) {
    const MObject object(make(c.type, ""));
    EXPECT_STREQ(object.apiTypeStr(), c.name) << c.type;
    for (const MFn::Type kind : c.has) EXPECT_TRUE(object.hasFn(kind)) << c.type << kind;
    for (const MFn::Type kind : c.hasNot) EXPECT_FALSE(object.hasFn(kind)) << c.type << kind;
  }
  const NodeType& unknown = NodeType::findOrInvent("someonesShader", false);
  EXPECT_EQ(MObject(scene.createNode(unknown)).apiType(), MFn::kUnknown);
  EXPECT_FALSE(NodeType::find("someonesShader"));
  EXPECT_FALSE(MObject::kNullObj.hasFn(MFn::kBase));
  EXPECT_EQ(MObject(), MObject::kNullObj);
}

TEST_F(Api, ATransformsPathAlsoHasItsOnlyShapesFunctions) {
  const NodePtr mesh = makeMesh("tile", 1);
  const NodePtr tile = scene.findNode("tile");
  MDagPath path;
  ASSERT_EQ(MDagPath::getAPathTo(MObject(tile), path), MStatus::kSuccess);
  EXPECT_TRUE(path.hasFn(MFn::kMesh) && path.hasFn(MFn::kTransform));
  EXPECT_FALSE(path.node().hasFn(MFn::kMesh));
  EXPECT_EQ(path.apiType(), MFn::kTransform);
  MDagPath shape = path;
  EXPECT_EQ(shape.extendToShape(), MStatus::kSuccess);
  EXPECT_STREQ(shape.fullPathName().asChar(), "|tile|tileShape");
  EXPECT_EQ(shape.transform(), MObject(tile));
  EXPECT_EQ(shape.pop(), MStatus::kSuccess);
  EXPECT_EQ(shape, path);
  const NodePtr second = make("mesh", "second", tile);
  EXPECT_FALSE(path.hasFn(MFn::kMesh));
  EXPECT_EQ(path.extendToShape(), MStatus::kFailure);
  writeValue(*Plug::find(second, "io"), 1.0);
  EXPECT_TRUE(path.hasFn(MFn::kMesh));
  EXPECT_EQ(MFnDagNode(path).childCount(), 2u);
  EXPECT_EQ(MFnDagNode(path).parent(0).apiType(), MFn::kWorld);
  EXPECT_FALSE(MDagPath().isValid());
  EXPECT_TRUE(MDagPath::getAPathTo(MObject(scene.findNode("lambert1")), path).error());
  scene.deleteNode(tile);
  EXPECT_FALSE(path.isValid());
  EXPECT_STREQ(path.fullPathName().asChar(), "");
  EXPECT_FALSE(MObject(mesh).hasFn(MFn::kMesh));
}

TEST_F(Api, FunctionSetsAttachToTheirKindOnly) {
  MStatus status;
  MFnTransform made;
  const MObject top = made.create(MObject::kNullObj, &status);
  EXPECT_EQ(status, MStatus::kSuccess);
  EXPECT_STREQ(made.name().asChar(), "transform1");
  const MObject below = MFnTransform().create(top);
  EXPECT_STREQ(MFnDagNode(below).fullPathName().asChar(), "|transform1|transform2");
  EXPECT_TRUE(MFnTransform().create(MObject(scene.findNode("lambert1")), &status).isNull());
  EXPECT_EQ(status, MStatus::kFailure);
  MFnSet notASet(top, &status);
  EXPECT_TRUE(status.error());
  EXPECT_TRUE(notASet.object().isNull());
  MFnTransform notATransform(MObject(scene.findNode("perspShape")), &status);
  EXPECT_TRUE(status.error());
  MFnDependencyNode node(top);
  EXPECT_STREQ(node.setName("tile 1").asChar(), "tile_1");
  scene.deleteNode(scene.findNode("tile_1"));
  EXPECT_STREQ(node.name(&status).asChar(), "");
  EXPECT_TRUE(status.error());
  EXPECT_TRUE(node.findPlug("tx", &status).isNull());
}

TEST_F(Api, ShadersAreFoundWhileTheyAreMade) {
  MStatus status;
  MFnLambertShader shader;
  const MObject made = shader.create(true, &status);
  EXPECT_STREQ(shader.name().asChar(), "lambert2");
  make("phong", "shiny");
  make("file", "noShader");
  Strings names;
  for (MItDependencyNodes it(MFn::kLambert); !it.isDone(); it.next()) {
    names.push_back(MFnDependencyNode(it.item()).name().asChar());
    if (names.size() == 1) make("lambert", "late");
    if (names.back() == "shiny") scene.deleteNode(scene.findNode("late"));
  }
  EXPECT_EQ(names, (Strings{"lambert1", "lambert2", "shiny"}));
  EXPECT_EQ(plug("defaultShaderList1.s[2]"), destinationsOf(plug("lambert2.msg")).at(0));
}

TEST_F(Api, PlugsAreFoundConnectedAndRead) {
  make("file", "picture");
  set("picture.ftn", std::string("C:/Art/TILE.tga"));
  join("picture.oc", "lambert1.c");
  MFnDependencyNode shader(MObject(scene.findNode("lambert1")));
  MStatus status;
  const MPlug colour = shader.findPlug("color", &status);
  EXPECT_EQ(status, MStatus::kSuccess);
  EXPECT_EQ(colour, shader.findPlug("c", false));
  EXPECT_EQ(colour, shader.findPlug(shader.attribute("color"), true));
  EXPECT_STREQ(colour.name().asChar(), "lambert1.color");
  EXPECT_TRUE(colour.isConnected());
  MPlugArray plugs;
  EXPECT_FALSE(colour.connectedTo(plugs, false, true));
  EXPECT_TRUE(colour.connectedTo(plugs, true, false));
  ASSERT_EQ(plugs.length(), 1u);
  const MFnDependencyNode texture(plugs[0].node());
  MString name("before");
  EXPECT_EQ(texture.findPlug("fileTextureName").getValue(name), MStatus::kSuccess);
  EXPECT_EQ(name, "C:/Art/TILE.tga");
  int number = 5;
  EXPECT_TRUE(texture.findPlug("fileTextureName").getValue(number).error());
  EXPECT_EQ(number, 5);
  EXPECT_TRUE(shader.findPlug("nothing", &status).isNull());
  EXPECT_TRUE(status.error());
  EXPECT_TRUE(shader.attribute("nothing", &status).isNull());
  EXPECT_TRUE(MPlug().getValue(name).error());
  EXPECT_FALSE(shader.findPlug("diffuse").isConnected());
}

TEST_F(Api, SelectionsKeepOrderAndTakePatterns) {
  makeMesh("b", 3);
  makeMesh("a", 3);
  MSelectionList list;
  EXPECT_EQ(list.add("a"), MStatus::kSuccess);
  EXPECT_EQ(list.add(MObject(scene.findNode("b"))), MStatus::kSuccess);
  EXPECT_EQ(list.add(MObject(scene.findNode("a")), true), MStatus::kSuccess);
  EXPECT_TRUE(list.add("nothing*").error());
  EXPECT_TRUE(list.add(MObject::kNullObj).error());
  EXPECT_EQ(list.add("?Shape"), MStatus::kSuccess);
  EXPECT_EQ(list.add("a.f[1]"), MStatus::kSuccess);
  EXPECT_EQ(list.add("lambert1"), MStatus::kSuccess);
  EXPECT_EQ(listed(list), (Strings{"a", "b", "bShape", "aShape", "a.f[1]", "lambert1"}));

  MDagPath path;
  MObject component;
  EXPECT_EQ(list.getDagPath(4, path, component), MStatus::kSuccess);
  EXPECT_EQ(component.apiType(), MFn::kMeshPolygonComponent);
  EXPECT_EQ(component, MObject(Component::parse("f[1]")));
  EXPECT_TRUE(list.getDagPath(5, path).error());
  MObject node;
  EXPECT_TRUE(list.getDependNode(6, node).error());
  MSelectionList copy(list);
  copy.clear();
  unsigned meshes = 0;
  for (MItSelectionList it(list, MFn::kMesh); !it.isDone(); it.next()) ++meshes;
  EXPECT_EQ(meshes, 5u);  // two transforms with one mesh each count
  const NodePtr group = make("shadingEngine", "SG");
  forceMember(group, scene.match("b.f[1:2]").at(0));
  EXPECT_EQ(MFnSet(MObject(group)).getMembers(copy, true), MStatus::kSuccess);
  EXPECT_EQ(listed(copy), Strings{"b.f[1:2]"});
  scene.deleteNode(scene.findNode("a"));
  EXPECT_TRUE(list.getDependNode(0, node).error());
  EXPECT_EQ(list.getDependNode(1, node), MStatus::kSuccess);
}

TEST(Texts, AreCutAndCompared) {
  const MString text("Some.Tile.PSD");
  EXPECT_EQ(text.index('.'), 4);
  EXPECT_EQ(text.rindex('.'), 9);
  EXPECT_EQ(text.rindex('/'), -1);
  EXPECT_EQ(text.substring(9, 12), ".PSD");
  EXPECT_EQ(text.substring(9, 99), ".PSD");
  EXPECT_EQ(text.substring(5, 4), "");
  MString lower = text.substring(10, 12);
  EXPECT_EQ(lower.toLowerCase(), "psd");
  EXPECT_EQ(lower, "psd");
  MString built("n");
  built += -12;
  built += 0.1;
  EXPECT_EQ(built + "|", "n-120.1|");
  EXPECT_EQ(MString(static_cast<const char*>(nullptr)).length(), 0u);
  EXPECT_EQ(MString(" 42 ").asInt(), 42);
  EXPECT_FALSE(MString("42x").isInt());
  EXPECT_FALSE(MString("").isDouble());
  EXPECT_EQ(MString("-1.5e3").asDouble(), -1500.0);
  EXPECT_FALSE(bool(MStatus(MStatus::kNotFound)));
  EXPECT_TRUE(MStatus::kSuccess == MStatus());
}

}  // namespace
}  // namespace host
