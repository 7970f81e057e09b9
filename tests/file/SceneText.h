#ifndef MORVANE_TESTS_FILE_SCENETEXT_H_
#define MORVANE_TESTS_FILE_SCENETEXT_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "host/file/SceneFiles.h"
#include "host/file/SceneWriter.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/state/SceneProblems.h"
#include "tests/mel/Script.h"
#include "tests/util/Corpus.h"

namespace host {

namespace fs = std::filesystem;
using mel::run;
using morvane::corpusScenes;

inline std::string readAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A folder of its own for the test, removed at the end.
class SceneFiles : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    // Saves are flushed to the disk, which costs nothing where there is none.
    const fs::path memory = "/dev/shm";
    folder_ =
        (fs::is_directory(memory) ? memory : fs::temp_directory_path()) /
        (std::string("morvane_file_") + info->name() + std::to_string(std::random_device()()));
    fs::create_directories(folder_);
    mel::Interpreter::current().setCallerFolder(folder_.generic_string());
    startNewScene(HostState::current());
  }
  void TearDown() override {
    startNewScene(HostState::current());
    fs::current_path(fs::temp_directory_path());
    fs::remove_all(folder_);
  }

  std::string pathOf(const std::string& name) const { return (folder_ / name).generic_string(); }
  void writeText(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  // Opens a scene with these statements and gives the warnings.
  std::string open(const std::string& statements) const {
    writeText("scene.ma", "//Maya ASCII 2018 scene\n" + statements);
    return openPath(pathOf("scene.ma"));
  }
  static std::string openPath(const std::string& path) {
    testing::internal::CaptureStderr();
    HostState::current().problems = SceneProblems();
    const morvane::Status status = openFile(HostState::current(), {path, "mayaAscii", "", ""});
    const std::string warnings = testing::internal::GetCapturedStderr();
    return status.ok() ? warnings : "failed: " + status.text();
  }
  testing::AssertionResult save(const std::string& name) const {
    const morvane::Status status = writeScene(HostState::current(), pathOf(name));
    return status.ok() ? testing::AssertionSuccess() : testing::AssertionFailure() << status.text();
  }

  static NodePtr node(const std::string& name) { return Scene::current().findNode(name); }

  fs::path folder_;
};

}  // namespace host

#endif  // MORVANE_TESTS_FILE_SCENETEXT_H_
