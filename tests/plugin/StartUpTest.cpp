#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "host/Host.h"

// Start-up and removal, each in a process of its own: what is registered stays for a process's
// life.
namespace morvane {
namespace {

void expectExit(bool condition) {
  if (!condition) std::exit(1);
}

void startHost(bool withScripts) {
  host::start(std::filesystem::current_path().generic_string());
  host::addPlugInFolder(MORVANE_BINARY_DIR "/plug-ins");
  if (withScripts) host::addScriptFolder(MORVANE_BINARY_DIR "/scripts");
}

bool run(const char* commands) {
  return host::execute(commands, "test");
}

class StartUp : public ::testing::Test {
 protected:
  StartUp() { ::testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(StartUp, RegistersAndWithdrawsEverything) {
  EXPECT_EXIT(
      {
        startHost(true);
        expectExit(!run("exportTile"));
        expectExit(host::loadPlugin("morvane"));
        expectExit(run("select -cl; exportTile; goblin_name nobody"));
        expectExit(run("unloadPlugin morvane"));
        expectExit(!run("exportTile") && !run("goblin_name nobody"));
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(StartUp, EndsWithoutTheBlindDataScript) {
  EXPECT_EXIT(
      {
        startHost(false);
        expectExit(!host::loadPlugin("morvane"));
        expectExit(!run("goblin_uv") && !run("goblin_name nobody") && !run("exportTile"));
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "Could not initialise blind data\\.");
}

// What was registered before the name that is taken stays; removal tells of what never was.
TEST_F(StartUp, EndsAtANameThatIsTaken) {
  EXPECT_EXIT(
      {
        startHost(true);
        expectExit(run("global proc goblin_name() { print \"mine\"; }"));
        expectExit(!host::loadPlugin("morvane"));
        expectExit(run("select -cl; goblin_uv") && !run("exportTile"));
        run("unloadPlugin morvane");
        expectExit(!run("goblin_uv"));
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      "registerCommand goblin_name(.|\n)*deregisterCommand goblin_name(.|\n)*"
      "deregisterCommand exportTile(.|\n)*deregisterFileTranslator");
}

}  // namespace
}  // namespace morvane
