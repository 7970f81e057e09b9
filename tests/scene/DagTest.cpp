#include <maya/MItDag.h>

#include <utility>

#include "tests/scene/SceneTest.h"

namespace host {
namespace {

class Dag : public SceneTest {
 protected:
  // Walks below a root and gives the paths met, the first position included.
  static Strings walk(MItDag walk) {
    Strings paths;
    for (; !walk.isDone(); walk.next()) paths.push_back(walk.fullPathName().asChar());
    return paths;
  }
};

TEST_F(Dag, WalksInCreationOrderAndOncePerPath) {
  const NodePtr top = make("transform", "top1");
  const NodePtr a = make("transform", "a", top);
  const NodePtr b = make("transform", "b", top);
  const NodePtr shape = make("mesh", "shape", a);
  const NodePtr hidden = make("mesh", "hidden", a);
  writeValue(*Plug::find(hidden, "io"), 1.0);
  make("locator", "mark", b);
  ASSERT_TRUE(scene.addInstance(shape, b));
  MItDag it;
  EXPECT_EQ(it.reset(MObject(top)), MStatus::kSuccess);
  EXPECT_EQ(walk(it), (Strings{"|top1", "|top1|a", "|top1|a|shape", "|top1|a|hidden", "|top1|b",
                               "|top1|b|mark", "|top1|b|shape"}));
  it.reset(MObject(top), MItDag::kBreadthFirst);
  EXPECT_EQ(walk(it), (Strings{"|top1", "|top1|a", "|top1|b", "|top1|a|shape", "|top1|a|hidden",
                               "|top1|b|mark", "|top1|b|shape"}));
  it.reset(MObject(top), MItDag::kDepthFirst, MFn::kMesh);
  EXPECT_EQ(walk(it), (Strings{"|top1", "|top1|a|shape", "|top1|a|hidden", "|top1|b|shape"}));
  it.reset(MObject(top));
  it.next();
  it.prune();
  it.next();
  EXPECT_STREQ(it.fullPathName().asChar(), "|top1|b");
  EXPECT_TRUE(it.reset(MObject(scene.findNode("lambert1"))).error());
  EXPECT_TRUE(it.isDone());
  MItDag all(MItDag::kDepthFirst, MFn::kMesh);
  EXPECT_EQ(all.item().apiType(), MFn::kWorld);
  EXPECT_EQ(all.next(), MStatus::kSuccess);
  EXPECT_EQ(all.depth(), 3u);
  EXPECT_EQ(all.prune(), MStatus::kSuccess);
  EXPECT_EQ(all.next(), MStatus::kSuccess);
  EXPECT_EQ(all.next(), MStatus::kSuccess);
  EXPECT_EQ(all.next(), MStatus::kSuccess);
  EXPECT_TRUE(all.isDone());
  EXPECT_TRUE(all.next().error());
}

TEST_F(Dag, InstancesAreNumberedInTheirOrder) {
  const NodePtr a = make("transform", "a");
  const NodePtr b = make("transform", "b");
  const NodePtr inner = make("transform", "inner", a);
  const NodePtr shape = make("mesh", "shape", inner);
  ASSERT_TRUE(scene.addInstance(shape, b));
  ASSERT_TRUE(scene.addInstance(inner, b));
  ASSERT_TRUE(scene.addInstance(inner, b));  // again: nothing more
  Strings names;
  for (const DagPath& path : allPaths(shape)) {
    EXPECT_EQ(path.instanceNumber(), names.size());
    EXPECT_EQ(pathOfInstance(shape, names.size()), path);
    EXPECT_EQ(scene.findPath(path.partialName()), path);
    names.push_back(path.fullName());
  }
  EXPECT_EQ(names, (Strings{"|a|inner|shape", "|b|inner|shape", "|b|shape"}));
  EXPECT_EQ(shape->pathCount(), 3u);
  EXPECT_TRUE(pathOfInstance(shape, 3).isEmpty());
  EXPECT_EQ(scene.displayName(shape), "shape");
  EXPECT_EQ(matched("shape"), Strings{"|a|inner|shape"});
  EXPECT_EQ(matched("b|shape"), Strings{"|b|shape"});
  EXPECT_EQ(matched("*|shape").size(), 3u);
}

TEST_F(Dag, DeletingSparesWhatHasAnotherParent) {
  const NodePtr a = make("transform", "a");
  const NodePtr b = make("transform", "b");
  const NodePtr shape = make("mesh", "shape", a);
  const NodePtr child = make("transform", "child", a);
  ASSERT_TRUE(scene.addInstance(shape, b));
  const DagPath gone = DagPath({a, shape});
  scene.selection.add(SelectionItem::of(child));
  scene.selection.add(SelectionItem::of(b));
  EXPECT_TRUE(scene.deleteNode(a));
  EXPECT_FALSE(a->isAlive() || child->isAlive() || gone.isAlive());
  EXPECT_TRUE(shape->isAlive());
  EXPECT_EQ(firstPath(shape).fullName(), "|b|shape");
  EXPECT_EQ(scene.selection.size(), 1u);
  EXPECT_FALSE(scene.deleteNode(a));
  EXPECT_TRUE(scene.removeInstance(shape, b));
  EXPECT_FALSE(shape->isAlive());
}

TEST_F(Dag, WhatMakesNoSenseIsRefused) {
  const NodePtr a = make("transform", "a");
  const NodePtr b = make("transform", "b", a);
  const NodePtr shape = make("mesh", "shape", b);
  const NodePtr shader = make("lambert", "shader");
  std::string error;
  const auto refused = [&error](bool done) { return !done && !std::exchange(error, "").empty(); };
  EXPECT_TRUE(refused(scene.reparent(a, nullptr, b, &error)));
  EXPECT_TRUE(refused(scene.addInstance(a, a, &error)));
  EXPECT_TRUE(refused(scene.reparent(b, a, shape, &error)));
  EXPECT_TRUE(refused(scene.reparent(b, a, shader, &error)));
  EXPECT_TRUE(refused(scene.reparent(shape, b, nullptr, &error)));
  EXPECT_TRUE(refused(scene.reparent(b, nullptr, a, &error)));
  EXPECT_TRUE(refused(scene.addInstance(shader, a, &error)));
  const auto& transform = *NodeType::find("transform");
  EXPECT_NE(scene.createNode(transform, "c", shape), nullptr);  // as image planes stand
  EXPECT_TRUE(scene.reparent(b, a, nullptr));
  EXPECT_EQ(firstPath(shape).fullName(), "|b|shape");
}

TEST_F(Dag, DepthAndInstancesAreBounded) {
  NodePtr deepest;
  for (std::size_t i = 0; i < Scene::kMaxDepth; ++i) deepest = make("transform", "", deepest);
  EXPECT_FALSE(scene.createNode(*NodeType::find("transform"), {}, deepest));
  EXPECT_TRUE(scene.deleteNode(scene.findNode("transform1")));
  EXPECT_FALSE(deepest->isAlive());

  // Each level holds the next one twice: levels would multiply without end.
  NodePtr left = make("transform", "l");
  NodePtr right = make("transform", "r");
  std::size_t levels = 0;
  for (; levels < 40; ++levels) {
    const NodePtr next = make("transform", "", left);
    if (!scene.addInstance(next, right)) break;
    left = make("transform", "", next);
    right = make("transform", "", next);
  }
  EXPECT_EQ(levels, 16u);  // 2 to the 16 is the most
  EXPECT_EQ(left->pathCount(), Scene::kMaxInstances);
  // Nor by moving what has instances below what has.
  const NodePtr twice = make("transform", "twice");
  const NodePtr leaf = make("transform", "leaf", twice);
  EXPECT_TRUE(scene.addInstance(leaf, nullptr));
  EXPECT_FALSE(scene.reparent(twice, nullptr, left));
  EXPECT_EQ(firstPath(leaf).fullName(), "|twice|leaf");
}

}  // namespace
}  // namespace host
