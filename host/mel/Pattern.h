#ifndef MORVANE_HOST_MEL_PATTERN_H_
#define MORVANE_HOST_MEL_PATTERN_H_

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::mel {

// A regular expression of the language: characters, ".", "[a-z]", "[^a-z]", "( )", "|", "*", "+",
// "?", "^" and "$" at the ends, and a backslash before a character that means itself. All ways to
// match are followed at once. So the time is at most the expression's length times the square of
// the text's.
class Pattern {
 public:
  // Null with the reason in `error`.
  static std::optional<Pattern> parse(std::string_view text, std::string& error);

  struct Match {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool gaveUp = false;  // the search took too many steps
  };
  // The leftmost match, and of those the longest; null when there is none.
  std::optional<Match> find(std::string_view text) const;

 private:
  friend class PatternParser;
  struct Step {
    enum class Kind { kSet, kBegin, kEnd, kSplit, kDone };
    Kind kind;
    std::size_t next = 0;
    std::size_t other = 0;  // of a split
    std::bitset<256> set;
  };
  using Steps = std::vector<std::size_t>;

  void follow(std::size_t step, std::string_view text, std::size_t at, Steps& steps,
              std::vector<bool>& seen) const;

  std::vector<Step> steps_;
  std::size_t start_ = 0;
};

// Whether a whole text matches a pattern of file names: "*", "?", "[a-z]".
bool matchesGlob(std::string_view text, std::string_view pattern);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_PATTERN_H_
