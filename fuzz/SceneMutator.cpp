// Changes scenes and scripts a word or a statement at a time, so that most of what comes out is
// still a sequence of commands.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/Mutator.h"

namespace {

using morvane::fuzz::Dice;
using Texts = std::vector<std::string>;

constexpr const char* kNumbers[] = {"0",   "-1",         "1",         "2",     "0.5",     "1e308",
                                    "nan", "2147483647", "-99999999", "65536", "1e-300",  "inf",
                                    "yes", "no",         "16777217",  "[0:7]", "[0:9999]"};
constexpr const char* kNames[] = {"a", "a1", "x:a", ":a", "|a", "|a|b",   "x:y:a",    "particle",
                                  ":", "a:", "|",   "1a", "",   "aShape", "x:aShape", "A"};
constexpr const char* kOddities[] = {"\\\"", "\\\\", "\\n", "\t",           "\x1b[0m",  "$v",
                                     "`ls`", ";",    "\r",  "\xE2\x80\xAE", "\xC2\x9B", "//"};
constexpr const char* kTypes[] = {"transform",   "mesh",       "lambert",     "shadingEngine",
                                  "file",        "polyCube",   "objectSet",   "joint",
                                  "groupId",     "groupParts", "reference",   "multiplyDivide",
                                  "animCurveTL", "script",     "someonesNode"};
// "#" becomes a number, "@" a name, "%" a type.
constexpr const char* kStatements[] = {
    "createNode % -n \"@\";",
    "createNode % -n \"@\" -p \"@\";",
    "setAttr \".t\" -type \"double3\" # # #;",
    "setAttr \"@.v\" #;",
    "connectAttr \"@.o\" \"@.i\";",
    "connectAttr -f \"@.t\" \"@.t\";",
    "parent -s -nc -r -add \"|@|@\" \"@\";",
    "rename -uid \"00000000-0000-0000-0000-00000000000#\";",
    "addAttr -ln \"@\" -at double -dv #;",
    "addAttr -ln \"@\" -dt \"string\";",
    "setAttr \".@\" -type \"string\" \"@\";",
    "select -ne \"@\";",
    "setAttr -s # \".@\";",
    "setAttr \".iog[#].og[#].gcl\" -type \"componentList\" 1 \"f[#]\";",
    "sets -e -forceElement \"@\" \"@\";",
    "lockNode -l # \"@\";",
    "setAttr \".vt[0:#]\" # # # # # #;",
    "setAttr \".fc[0]\" -type \"polyFaces\" f 3 # # #;",
    "file -rdi 1 -ns \"@\" -rfn \"@RN\" \"@.ma\";",
    "currentUnit -l % -a degree -t film;",
    "fileInfo \"@\" \"@\";",
    "delete \"@\";",
    "group -n \"@\" \"@\";"};

// --- Words

bool isWord(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::strchr("_.:|+-", c) != nullptr;
}

std::size_t quotedEnd(const std::string& text, std::size_t at) {
  for (++at; at < text.size() && text[at] != '"'; ++at)
    if (text[at] == '\\') ++at;
  return std::min(at + 1, text.size());
}

// Quoted texts, words, blanks and single other characters; joined they are the text again.
Texts split(const std::string& text) {
  Texts words;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at + 1;
    if (text[at] == '"')
      end = quotedEnd(text, at);
    else if (text[at] != '\0' && isWord(text[at]))
      while (end < text.size() && text[end] != '\0' && isWord(text[end])) ++end;
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::string join(const Texts& words) {
  std::string text;
  for (const std::string& word : words) text += word;
  return text;
}

enum class Kind { kQuoted, kNumber, kWord, kOther };

Kind kindOf(const std::string& word) {
  if (word[0] == '"') return Kind::kQuoted;
  if (word[0] == '\0' || !isWord(word[0])) return Kind::kOther;
  return word.find_first_of("0123456789") <= 1 ? Kind::kNumber : Kind::kWord;
}

// One of those of a kind; the number of words when there is none.
std::size_t pick(const Texts& words, Kind kind, Dice& dice) {
  const std::size_t start = dice.below(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::size_t at = (start + i) % words.size();
    if (kindOf(words[at]) == kind) return at;
  }
  return words.size();
}

void changeQuoted(std::string& word, Dice& dice) {
  if (word.size() < 2) return;
  const std::size_t at = 1 + dice.below(word.size() - 1);
  switch (dice.below(4)) {
    case 0:
      word = '"' + std::string(dice.oneOf(kNames)) + '"';
      break;
    case 1:
      word.insert(at, dice.oneOf(kOddities));
      break;
    case 2:
      word.insert(at, dice.oneOf(kNames));
      break;
    default:
      word.insert(1, dice.oneIn(2) ? "x:" : ".");
      break;
  }
}

void changeWord(Texts& words, Dice& dice) {
  constexpr Kind kKinds[] = {Kind::kQuoted, Kind::kNumber, Kind::kWord};
  const Kind kind = dice.oneOf(kKinds);
  const std::size_t at = pick(words, kind, dice);
  if (at == words.size()) return;
  switch (dice.below(5)) {
    case 0:
      words.erase(words.begin() + static_cast<std::ptrdiff_t>(at));
      return;
    case 1:
      words[at] = words[pick(words, kind, dice)];
      return;
    case 2:
      std::swap(words[at], words[pick(words, kind, dice)]);
      return;
    default:
      break;
  }
  if (kind == Kind::kQuoted) changeQuoted(words[at], dice);
  if (kind == Kind::kNumber) words[at] = dice.oneOf(kNumbers);
  if (kind == Kind::kWord) words[at] += dice.oneOf(kNames);
}

// --- Statements

// Each with its end.
Texts statementsOf(const std::string& text) {
  Texts statements(1);
  for (const std::string& word : split(text)) {
    statements.back() += word;
    if (word == ";" || (word == "\n" && statements.back().compare(0, 2, "//") == 0))
      statements.emplace_back();
  }
  return statements;
}

std::string newStatement(const Texts& words, Dice& dice) {
  std::string statement = "\n";
  for (const char* at = dice.oneOf(kStatements); *at != '\0'; ++at) {
    const std::size_t known =
        *at == '@' && dice.oneIn(2) ? pick(words, Kind::kQuoted, dice) : words.size();
    if (known < words.size() && words[known].size() > 1)
      statement += words[known].substr(1, words[known].size() - 2);
    else if (*at == '@')
      statement += dice.oneOf(kNames);
    else if (*at == '#')
      statement += dice.oneOf(kNumbers);
    else if (*at == '%')
      statement += dice.oneOf(kTypes);
    else
      statement += *at;
  }
  return statement;
}

std::string changeStatements(const std::string& text, Dice& dice) {
  Texts statements = statementsOf(text);
  const auto any = [&] {
    return statements.begin() + static_cast<std::ptrdiff_t>(dice.below(statements.size()));
  };
  switch (dice.below(4)) {
    case 0:
      statements.erase(any());
      break;
    case 1:
      statements.insert(any(), std::string(*any()));
      break;
    case 2:
      std::swap(*any(), *any());
      break;
    default:
      *any() += newStatement(split(text), dice);
      break;
  }
  return join(statements);
}

std::size_t give(const std::string& text, std::uint8_t* data, std::size_t room) {
  const std::size_t size = std::min(text.size(), room);
  std::copy_n(text.begin(), size, data);
  return size;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t room, unsigned seed) {
  Dice dice(seed);
  if (size == 0 || dice.oneIn(4)) return LLVMFuzzerMutate(data, size, room);
  std::string text(data, data + size);
  for (std::size_t changes = 1 + dice.below(3); changes > 0 && !text.empty(); --changes) {
    if (dice.oneIn(2)) {
      text = changeStatements(text, dice);
    } else {
      Texts words = split(text);
      changeWord(words, dice);
      text = join(words);
    }
  }
  return give(text, data, room);
}

// The first statements of one and the last of the other.
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t room,
                                                 unsigned seed) {
  Dice dice(seed);
  Texts head = statementsOf(std::string(first, first + firstSize));
  const Texts tail = statementsOf(std::string(second, second + secondSize));
  head.resize(dice.below(head.size() + 1));
  const auto from = static_cast<std::ptrdiff_t>(dice.below(tail.size()));
  head.insert(head.end(), tail.begin() + from, tail.end());
  return give(join(head), out, room);
}
