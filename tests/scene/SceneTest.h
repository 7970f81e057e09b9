#ifndef MORVANE_TESTS_SCENE_SCENETEST_H_
#define MORVANE_TESTS_SCENE_SCENETEST_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/mesh/MeshPrimitives.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {

using Strings = std::vector<std::string>;

// Every test begins and ends with an empty scene.
class SceneTest : public testing::Test {
 protected:
  void SetUp() override { scene.clear(); }
  void TearDown() override { scene.clear(); }

  NodePtr make(const char* type, const char* name, const NodePtr& parent = nullptr) {
    std::string error;
    const NodePtr node = scene.createNode(*NodeType::find(type), name, parent, &error);
    EXPECT_TRUE(node) << type << ' ' << name << ": " << error;
    return node;
  }

  // A transform with a flat mesh of `faces` faces below it: gives the mesh.
  NodePtr makeMesh(const char* name, int faces) {
    const NodePtr transform = make("transform", name);
    const NodePtr mesh = make("mesh", (std::string(name) + "Shape").c_str(), transform);
    const auto size = [faces](std::string_view shortName, std::string_view) {
      if (shortName == "sw") return std::optional<double>(faces);
      return shortName == "sh" ? std::optional<double>(1.0) : std::nullopt;
    };
    EXPECT_EQ(evaluatePrimitive("polyPlane", size, *mesh->mesh), "");
    EXPECT_EQ(mesh->mesh->faceCount(), faces);
    return mesh;
  }

  Plug plug(const std::string& text) {
    std::string error;
    const Plug found = scene.findPlug(text, &error);
    EXPECT_FALSE(found.isNull()) << text << ": " << error;
    return found;
  }

  void set(const std::string& text, AttributeValue value) {
    EXPECT_TRUE(writeValue(plug(text), std::move(value))) << text;
  }

  void join(const std::string& source, const std::string& destination) {
    std::string error;
    const Plug to = nextElement(plug(destination));
    EXPECT_TRUE(connect(plug(source).orFirstElement(), to, false, &error)) << error;
  }

  // What a text matches, as full paths, or names for what is not a DAG node.
  Strings matched(const char* text, bool inNamespaces = false) {
    Strings names;
    for (const SelectionItem& item : scene.match(text, inNamespaces))
      names.push_back(item.path.isEmpty() ? item.node->name() : item.path.fullName());
    return names;
  }

  Scene& scene = Scene::current();
};

}  // namespace host

#endif  // MORVANE_TESTS_SCENE_SCENETEST_H_
