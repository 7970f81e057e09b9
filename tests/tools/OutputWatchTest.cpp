#include "tools/batch/OutputWatch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <vector>

#include "tools/terminal/Platform.h"

namespace tools {
namespace {

// What writes in three ways (C streams, C++ streams, the bare descriptor) must arrive whole and
// unchanged.
TEST(OutputWatch, PassesEverythingOnAndHearsEveryLine) {
  std::vector<std::string> heard;
  bool complete = false;
  const std::string big(300000, 'x');
  testing::internal::CaptureStdout();
  std::printf("before\n");
  {
    OutputWatch watch([&](std::string_view line) { heard.emplace_back(line); });
    std::printf("one\n\ntw");
    std::printf("o\n");
    std::fflush(stdout);
    std::cout << "three\n" << std::flush;
    ASSERT_TRUE(writeAll(kStandardOutput, "four\n", 5));
    std::printf("%s\nno line end", big.c_str());
    complete = watch.finish();
  }
  std::printf("\nafter\n");
  const std::string arrived = testing::internal::GetCapturedStdout();

  EXPECT_TRUE(complete);
  EXPECT_EQ(arrived, "before\none\n\ntwo\nthree\nfour\n" + big + "\nno line end\nafter\n");
  ASSERT_EQ(heard.size(), 7u);
  heard.erase(heard.begin() + 5);  // the big one: heard in part is enough
  EXPECT_EQ(heard, (std::vector<std::string>{"one", "", "two", "three", "four", "no line end"}));
}

}  // namespace
}  // namespace tools
