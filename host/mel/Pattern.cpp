#include "host/mel/Pattern.h"

#include <algorithm>

namespace host::mel {
namespace {

constexpr std::size_t kMaxSteps = 4096;
constexpr int kMaxGroups = 100;
constexpr std::size_t kMaxWork = 100'000'000;

using Set = std::bitset<256>;

std::size_t byteOf(char c) {
  return static_cast<unsigned char>(c);
}

// Reads "[...]" from `at`, which is behind the bracket; false when it does not end.
bool readSet(std::string_view text, std::size_t& at, Set& set) {
  const bool inverts = at < text.size() && text[at] == '^';
  at += inverts ? 1 : 0;
  for (bool first = true; at < text.size() && (first || text[at] != ']'); first = false) {
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    const std::size_t low = byteOf(text[at++]);
    std::size_t high = low;
    if (at + 1 < text.size() && text[at] == '-' && text[at + 1] != ']') {
      high = byteOf(text[at + 1]);
      at += 2;
    }
    for (std::size_t c = low; c <= high; ++c) set.set(c);
  }
  if (at >= text.size()) return false;
  ++at;
  if (inverts) set.flip();
  return true;
}

}  // namespace

// Builds the steps from the end backwards, so that every part knows the step after it.
class PatternParser {
 public:
  PatternParser(std::string_view text, Pattern& pattern) : text_(text), steps_(pattern.steps_) {}

  bool parse(std::size_t& start, std::string& error) {
    const std::size_t done = add(Kind::kDone);
    Part all = alternatives();
    if (failed_ || at_ < text_.size()) {
      error = failed_ ? error_ : "a parenthesis is closed that was not opened";
      return false;
    }
    connect(all, done);
    start = all.start;
    return true;
  }

 private:
  using Kind = Pattern::Step::Kind;
  struct Part {
    std::size_t start;
    std::size_t end;  // the step whose `next` leads out
  };

  std::size_t add(Kind kind) {
    if (steps_.size() >= kMaxSteps) {
      fail("the expression is too long");
      return 0;
    }
    Pattern::Step step;
    step.kind = kind;
    steps_.push_back(step);
    return steps_.size() - 1;
  }

  void fail(const char* error) {
    failed_ = true;
    error_ = error;
  }

  void connect(const Part& part, std::size_t next) { steps_[part.end].next = next; }

  // A step that splits into two ways, one of them given later: ways begin or come together here.
  std::size_t addSplit(std::size_t next, std::size_t other) {
    const std::size_t split = add(Kind::kSplit);
    steps_[split].next = next;
    steps_[split].other = other;
    return split;
  }

  Part empty() {
    const std::size_t step = addSplit(kNowhere, kNowhere);
    return {step, step};
  }

  Part alternatives() {
    Part all = sequence();
    while (!failed_ && at_ < text_.size() && text_[at_] == '|') {
      ++at_;
      const Part other = sequence();
      const Part join = empty();
      connect(all, join.start);
      connect(other, join.start);
      all = {addSplit(all.start, other.start), join.end};
    }
    return all;
  }

  Part sequence() {
    Part all = empty();
    while (!failed_ && at_ < text_.size() && text_[at_] != '|' && text_[at_] != ')') {
      const Part next = repeated();
      connect(all, next.start);
      all.end = next.end;
    }
    return all;
  }

  Part repeated() {
    Part part = single();
    while (!failed_ && at_ < text_.size() &&
           std::string_view("*+?").find(text_[at_]) != std::string_view::npos) {
      const char kind = text_[at_++];
      const std::size_t split = addSplit(kNowhere, part.start);
      if (kind == '?') {
        const Part join = empty();
        connect(part, join.start);
        steps_[split].next = join.start;
        part = {split, join.end};
      } else {
        connect(part, split);
        part = {kind == '*' ? split : part.start, split};
      }
    }
    return part;
  }

  Part single() {
    const char c = text_[at_++];
    if (c == '(') return group();
    const bool begins = c == '^' && at_ == 1;
    const bool ends = c == '$' && at_ == text_.size();
    const std::size_t step = add(begins ? Kind::kBegin : ends ? Kind::kEnd : Kind::kSet);
    Set& set = steps_[step].set;
    if (c == '.') {
      set.set();
    } else if (c == '[') {
      if (!readSet(text_, at_, set)) fail("a bracket is not closed");
    } else if (c == '\\' && at_ < text_.size()) {
      set.set(byteOf(text_[at_++]));
    } else {
      set.set(byteOf(c));
    }
    return {step, step};
  }

  Part group() {
    if (++groups_ > kMaxGroups) {
      fail("the expression has too many groups");
      return {0, 0};
    }
    const Part inside = alternatives();
    if (!failed_ && (at_ >= text_.size() || text_[at_] != ')')) fail("a parenthesis is not closed");
    ++at_;
    return inside;
  }

  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  std::string_view text_;
  std::vector<Pattern::Step>& steps_;
  std::size_t at_ = 0;
  int groups_ = 0;
  bool failed_ = false;
  const char* error_ = "";
};

std::optional<Pattern> Pattern::parse(std::string_view text, std::string& error) {
  Pattern pattern;
  PatternParser parser(text, pattern);
  return parser.parse(pattern.start_, error) ? std::optional<Pattern>(std::move(pattern))
                                             : std::nullopt;
}

// Adds the steps that `step` leads to without taking a character: those that take one, and the end.
void Pattern::follow(std::size_t first, std::string_view text, std::size_t at, Steps& steps,
                     std::vector<bool>& seen) const {
  Steps waiting{first};
  while (!waiting.empty()) {
    const std::size_t index = waiting.back();
    waiting.pop_back();
    if (index >= steps_.size() || seen[index]) continue;
    seen[index] = true;
    const Step& step = steps_[index];
    if (step.kind == Step::Kind::kSplit) {
      waiting.push_back(step.next);
      waiting.push_back(step.other);
    } else if (step.kind == Step::Kind::kBegin || step.kind == Step::Kind::kEnd) {
      if (at == (step.kind == Step::Kind::kBegin ? 0 : text.size())) waiting.push_back(step.next);
    } else {
      steps.push_back(index);
    }
  }
}

std::optional<Pattern::Match> Pattern::find(std::string_view text) const {
  std::size_t work = 0;
  Steps now;
  Steps next;
  std::vector<bool> seen(steps_.size());
  for (std::size_t begin = 0; begin <= text.size(); ++begin) {
    if ((work += 1 + steps_.size() / 64) > kMaxWork) return Match{begin, begin, true};
    std::optional<Match> longest;
    now.clear();
    seen.assign(steps_.size(), false);
    follow(start_, text, begin, now, seen);
    for (std::size_t at = begin; !now.empty(); ++at) {
      work += now.size() + steps_.size() / 64;
      if (work > kMaxWork) return Match{begin, begin, true};
      next.clear();
      seen.assign(steps_.size(), false);
      for (const std::size_t index : now) {
        const Step& step = steps_[index];
        if (step.kind == Step::Kind::kDone)
          longest = Match{begin, at, false};
        else if (at < text.size() && step.set[byteOf(text[at])])
          follow(step.next, text, at + 1, next, seen);
      }
      now.swap(next);
    }
    if (longest) return longest;
  }
  return std::nullopt;
}

bool matchesGlob(std::string_view text, std::string_view pattern) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t starPattern = pattern.npos;
  std::size_t starText = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      starPattern = p++;
      starText = t;
      continue;
    }
    std::size_t behind = p + 1;
    bool fits = p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t]);
    if (p < pattern.size() && pattern[p] == '[') {
      Set set;
      fits = readSet(pattern, behind, set) && set[byteOf(text[t])];
    }
    if (fits) {
      ++t;
      p = behind;
    } else if (starPattern != pattern.npos) {
      p = starPattern + 1;
      t = ++starText;
    } else {
      return false;
    }
  }
  return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(std::min(p, pattern.size())),
                     pattern.end(), [](char c) { return c == '*'; });
}

}  // namespace host::mel
