#include "tests/plugin/HostFixture.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "host/Host.h"
#include "psd/PsdDocument.h"

namespace morvane {
namespace {

void startHost() {
  static const bool started = [] {
    host::start(std::filesystem::current_path().generic_string());
    host::addPlugInFolder(MORVANE_BINARY_DIR "/plug-ins");
    host::addScriptFolder(MORVANE_BINARY_DIR "/scripts");
    return host::loadPlugin("morvane");
  }();
  ASSERT_TRUE(started);
}

std::string rangeText(const char* attribute, std::size_t count) {
  return std::string("\tsetAttr \"") + attribute + "[0:" + std::to_string(count - 1) + "]\"";
}

}  // namespace

HostFixture::HostFixture() {
  startHost();
  host::newScene();
}

HostFixture::~HostFixture() {
  host::newScene();
}

void HostFixture::open(const std::string& statements) const {
  ASSERT_TRUE(
      host::openScene(
          write("scene.ma", "//Maya ASCII 2018 scene\nrequires maya \"2018\";\n" + statements))
          .ok());
}

std::string HostFixture::attempt(const std::string& commands) {
  ::testing::internal::CaptureStdout();
  const bool succeeded = host::execute(commands, "test");
  return ::testing::internal::GetCapturedStdout() + (succeeded ? "ok" : "failed");
}

std::string HostFixture::run(const std::string& commands) {
  const std::string output = attempt(commands);
  const std::size_t end = output.size() - std::min<std::size_t>(output.size(), 2);
  EXPECT_EQ(output.substr(end), "ok") << commands;
  return output.substr(0, end);
}

std::string HostFixture::ask(const std::string& command) {
  std::string answer = run("print (`" + command + "`)");
  if (!answer.empty() && answer.back() == '\n') answer.pop_back();  // after each element of a list
  return answer;
}

std::string HostFixture::writePsd(const std::string& name, std::uint32_t side) const {
  EXPECT_TRUE(PsdDocument(side, side).save(path(name).c_str()));
  return path(name);
}

Blob HostFixture::blobOf(const std::string& file) {
  PsdDocument document(1, 1);
  EXPECT_TRUE(document.load(file.c_str()));
  std::uint32_t size = 0;
  const auto bytes = document.readDataLayer("GoblinGeometry", size);
  EXPECT_NE(bytes, nullptr);
  return {bytes.get(), bytes.get() + size};
}

std::string HostFixture::writeTga(const std::string& name) const {
  std::string bytes(18, '\0');
  bytes[2] = 2;    // uncompressed true colour
  bytes[13] = 1;   // width 256
  bytes[15] = 1;   // height 256
  bytes[16] = 24;  // bits a pixel
  return write(name, bytes + std::string(256 * 256 * 3, '\x80'));
}

std::string transformText(const std::string& name, const std::string& parent,
                          const std::string& attributes) {
  std::string text = "createNode transform -n \"" + name + "\"";
  if (!parent.empty()) text += " -p \"" + parent + "\"";
  return text + ";\n" + attributes;
}

// Every face has edges of its own, all of them hard.
std::string meshText(const std::string& name, const std::string& parent, const MeshShape& shape) {
  std::ostringstream text;
  std::ostringstream edges;
  std::ostringstream faces;
  std::size_t edgeCount = 0;
  for (const std::vector<int>& face : shape.faces) {
    faces << "\n\t\tf " << face.size();
    for (std::size_t i = 0; i < face.size(); ++i) {
      edges << ' ' << face[i] << ' ' << face[(i + 1) % face.size()] << " 0";
      faces << ' ' << edgeCount++;
    }
  }
  text << "createNode mesh -n \"" << name << "\" -p \"" << parent << "\";\n"
       << rangeText(".vt", shape.points.size());
  for (const auto& p : shape.points) text << ' ' << p[0] << ' ' << p[1] << ' ' << p[2];
  text << ";\n";
  if (shape.faces.empty()) return text.str();
  text << rangeText(".ed", edgeCount) << edges.str() << ";\n"
       << rangeText(".fc", shape.faces.size()) << " -type \"polyFaces\"" << faces.str() << ";\n";
  return text.str();
}

std::string materialText(const std::string& name, const std::string& texture) {
  return "createNode lambert -n \"" + name + "\";\ncreateNode shadingEngine -n \"" + name +
         "SG\";\ncreateNode file -n \"" + name + "File\";\n\tsetAttr \".ftn\" -type \"string\" \"" +
         texture + "\";\nconnectAttr \"" + name + "File.oc\" \"" + name + ".c\";\nconnectAttr \"" +
         name + ".oc\" \"" + name + "SG.ss\";\nconnectAttr \"" + name +
         "SG.pa\" \":renderPartition.st\" -na;\n";
}

std::string assignText(const std::string& shape, const std::string& group) {
  return "connectAttr \"" + shape + ".iog\" \"" + group + ".dsm\" -na;\n";
}

MeshShape tileShape() {
  return {{{-2, 0, -4}, {-2, 0, 4}, {2, 1, 4}, {2, 1, -4}}, {{0, 1, 2, 3}}};
}

MeshShape triangleShape() {
  return {{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}}, {{0, 1, 2}}};
}

std::string tileText(const std::string& texture) {
  return transformText("tile") + meshText("tileShape", "tile", tileShape()) +
         materialText("grass", texture) + assignText("tileShape", "grassSG");
}

}  // namespace morvane
