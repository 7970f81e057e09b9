#include <cmath>
#include <fstream>

#include "host/text/Numbers.h"
#include "tests/mel/Script.h"

namespace host::mel {
namespace {

// Equal, or numbers that differ by rounding alone, word for word.
bool isSame(const std::string& shown, const std::string& expected) {
  std::size_t a = 0;
  std::size_t b = 0;
  while (a <= shown.size() && b <= expected.size()) {
    const std::size_t aEnd = std::min(shown.find(' ', a), shown.size());
    const std::size_t bEnd = std::min(expected.find(' ', b), expected.size());
    const std::string one = shown.substr(a, aEnd - a);
    const std::string other = expected.substr(b, bEnd - b);
    const auto left = parseNumber(one);
    const auto right = parseNumber(other);
    const bool isClose = left && right && std::fabs(*left - *right) <= 1e-9;
    if (one != other && !isClose) return false;
    a = aEnd + 1;
    b = bEnd + 1;
  }
  return a > shown.size() && b > expected.size();
}

// One probe a line: a script, "=>", and the value that documentation or arithmetic gives. A line
// that begins with "##" names a group, which starts in a new scene.
TEST(Probes, GiveWhatIsDocumented) {
  std::ifstream file(MORVANE_SOURCE_DIR "/tests/mel/probes.txt");
  std::string line;
  std::string group;
  int probes = 0;
  while (std::getline(file, line)) {
    if (line.compare(0, 2, "##") == 0) {
      newScene();
      group = line;
      continue;
    }
    const std::size_t arrow = line.find(" =>");
    if (arrow == std::string::npos || group.empty()) continue;
    ++probes;
    const std::string script = line.substr(0, arrow);
    const std::string expected = line.substr(std::min(arrow + 4, line.size()));
    const std::string shown = run(script);
    EXPECT_TRUE(isSame(shown, expected))
        << group << "\n  " << script << "\n  gives " << shown << "\n  not   " << expected;
  }
  EXPECT_GE(probes, 200);
}

}  // namespace
}  // namespace host::mel
