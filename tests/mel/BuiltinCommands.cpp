#include <gtest/gtest.h>

#include "host/commands/Builtin.h"

namespace {

// What host::start() does first; these tests need no more of it.
class BuiltinCommands : public testing::Environment {
  void SetUp() override {
    host::mel::addBuiltinCommands(host::mel::Interpreter::current().commands());
  }
};

const testing::Environment* const added = testing::AddGlobalTestEnvironment(new BuiltinCommands);

}  // namespace
