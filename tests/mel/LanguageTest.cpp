#include <gtest/gtest.h>

#include <string>

#include "host/Host.h"
#include "host/mel/Interpreter.h"

namespace host::mel {
namespace {

class Language : public testing::Test {
 protected:
  void SetUp() override { newScene(); }

  // The script's value as text, or its failure with the place.
  static std::string run(const std::string& script) {
    const Outcome outcome = Interpreter::current().execute(script, "s");
    return outcome.ok ? outcome.value.toString() : outcome.failure.describe();
  }
};

TEST_F(Language, GivesTheValueOfTheLastStatement) {
  const struct {
    const char* script;
    const char* value;
  } kCases[] = {
      // Numbers: whole ones stay whole, division of whole numbers cuts.
      {"1 + 2 * 3;", "7"},
      {"(1 + 2) * 3;", "9"},
      {"7 / 2;", "3"},
      {"-7 / 2;", "-3"},
      {"7 / 2.0;", "3.5"},
      {"7 % 4;", "3"},
      {"2147483647 + 1;", "-2147483648"},
      {"0.1 + 0.2;", "0.3"},
      {"-0.0;", "-0"},
      {"1e3;", "1000"},
      {"1 < 2 && 2 < 1;", "0"},
      {"1 < 2 || $undeclared;", "1"},
      {"!0;", "1"},
      {"int $t = true + on + yes; $t;", "3"},
      {"1 ? \"a\" : \"b\";", "a"},
      // Texts.
      {"\"a\" + 1 + 2;", "a12"},
      {"\"tab\\there \\\"quoted\\\" back\\\\slash\";", "tab\there \"quoted\" back\\slash"},
      {"\"abc\" < \"abd\";", "1"},
      {"(int)\"12 tiles\" + 1;", "13"},
      {"(string)1.5 + \"!\";", "1.5!"},
      // Variables and arrays.
      {"int $i = 3; $i += 4; $i++; $i;", "8"},
      {"int $i = 3; int $j = $i++; $j * 10 + $i;", "34"},
      {"int $i = 3; int $j = ++$i; $j * 10 + $i;", "44"},
      {"int $n = 2.9; $n;", "2"},
      {"string $s[] = {\"a\", \"b\"}; $s[3] = \"d\"; size($s) + $s[2] + $s[3];", "4d"},
      {"string $s[] = {\"a\", \"b\"}; $s[9];", ""},
      {"$new[1] = \"b\"; $new[1] + size($new);", "b2"},
      {"float $f[] = {1, 2.5}; $f[0] + $f[1];", "3.5"},
      // Flow.
      {"int $sum = 0; for ($i = 1; $i <= 10; $i++) { if ($i == 3) continue; if ($i == 6) break; "
       "$sum += $i; } $sum;",
       "12"},
      {"int $n = 0; while (true) { if (++$n >= 5) break; } $n;", "5"},
      {"int $n = 9; do $n++; while ($n < 5); $n;", "10"},
      {"string $all = \"\"; for ($w in {\"x\", \"y\", \"z\"}) $all += $w; $all;", "xyz"},
      {"string $r = \"\"; switch (2) { case 1: $r += \"1\"; case 2: $r += \"2\"; case 3: $r += "
       "\"3\"; break; default: $r "
       "+= \"d\"; } $r;",
       "23"},
      {"int $x = 1; { int $x = 2; } $x;", "1"},
      // Procedures.
      {"global proc int twice(int $n) { return 2 * $n; } twice(4) + `twice 5`;", "18"},
      {"proc int fib(int $n) { if ($n < 2) return $n; return fib($n - 1) + fib($n - 2); } fib(15);",
       "610"},
      {"proc add(string $list[]) { $list[size($list)] = \"new\"; } string $l[] = {\"old\"}; "
       "add($l); $l[1];",
       "new"},
      {"proc string[] pair() { return {\"a\", \"b\"}; } size(pair());", "2"},
      {"proc string nothing() { } nothing() + \"|\";", "|"},
      {"global int $g = 5; proc int seen() { global int $g; return $g; } seen();", "5"},
      // Functions.
      {"substring(\"abcdef\", 2, 4);", "bcd"},
      {"substring(\"abc\", 2, 9);", ""},
      {"string $p[]; int $n = tokenize(\"a:b::c\", \":\", $p); $n + $p[2];", "3c"},
      {"stringArrayToString({\"a\", \"b\"}, \"-\");", "a-b"},
      {"toupper(\"maya\") + tolower(\"MAYA\");", "MAYAmaya"},
      {"startsWith(\"tile01\", \"tile\") + endsWith(\"tile01\", \"02\");", "1"},
      {"max(3, 7) + min(3, 7.5);", "10"},
      {"eval(\"1 +\" + \" 1\");", "2"},
      {"int $a[] = sort({3, 1, 2}); $a[0] * 100 + $a[1] * 10 + $a[2];", "123"},
      // Commands in their forms.
      {"string $n = `createNode transform -n \"a\"`; $n;", "a"},
      {"createNode(\"transform\") + 1;", "transform11"},
      {"size(\"abc\");", "3"},
      {"setAttr(\"persp\" + \".tx\") 7; getAttr persp.tx;", "7"},
      {"createNode transform -n (\"c\" + 1); objExists c1;", "1"},
      {"// nothing\n/* at\nall */ 4;", "4"},
      {"5", "5"},
  };
  for (const auto& c : kCases) {
    newScene();
    EXPECT_EQ(run(c.script), c.value) << c.script;
  }
}

TEST_F(Language, SaysWhereItFailed) {
  const struct {
    const char* script;
    const char* failure;
  } kCases[] = {
      {"int $a = 1;\n  nosuchcommand 3;", "s:2:3: unknown command 'nosuchcommand'"},
      {"createNode transform -zz;", "s:1:1: createNode: unknown flag -zz"},
      {"setAttr -l maybe persp.tx;", "s:1:1: setAttr: flag -l needs a truth value, not 'maybe'"},
      {"createNode transform -n;", "s:1:1: createNode: flag -n lacks an argument"},
      {"if (1 { }", "s:1:7: expected ')' before '{'"},
      {"print \"open", "s:1:7: text without a closing quote"},
      {"$nowhere + 1;", "s:1:1: $nowhere is an undeclared variable"},
      {"1 / 0;", "s:1:3: division by zero"},
      {"int $i = {1, 2};", "s:1:5: cannot convert int[] to int"},
      {"string $s[] = {\"a\"}; $s + 1;", "s:1:25: '+' cannot take string[]"},
      {"int $a[]; $a[-1];", "s:1:14: index -1 is outside any array"},
      {"int $a[]; $a[2000000000] = 1;", "s:1:14: index 2000000000 is outside any array"},
      {"int $i = 0x100000000;", "s:1:10: the number has more than 32 bits"},
      {"size(\"a\" + ;", "s:1:12: expected a value before ';'"},
      {"1 + apple;", "s:1:5: expected a value before 'apple'"},
      {"`5`;", "s:1:2: expected a command before '5'"},
      {"{ 1;", "s:1:5: expected '}' before the end"},
      {"proc p(int 5) { }", "s:1:12: expected a variable before '5'"},
      {"global 5;", "s:1:8: expected 'proc' or a type before '5'"},
      {"proc int 5;", "s:1:10: expected the procedure's name before '5'"},
      {"proc p() 5;", "s:1:10: expected '{' before '5'"},
      {"size(1, 2);", "s:1:1: size: wrong number of arguments"},
      {"5 = 6;", "s:1:1: only a variable can be assigned to"},
      {"proc p(int $a) { } p(1, 2);", "s:1:20: p: needs 1 arguments, not 2"},
      {"proc select() { }", "s:1:1: 'select' is a command; a procedure cannot replace it"},
      {"\n\neval(\"\\n1 +\");", "eval:2:4: expected a value before the end"},
      {"error \"no \" \"tile\";", "s:1:1: no  tile"},
      {"select `ls nothing` |x;", "s:1:1: select: No object matches name: |x"},
  };
  for (const auto& c : kCases) EXPECT_EQ(run(c.script), c.failure) << c.script;
}

TEST_F(Language, StopsAtTheFirstFailureUnlessItIsCaught) {
  EXPECT_EQ(run("createNode transform -n \"first\"; nosuch; createNode transform -n \"second\";"),
            "s:1:34: unknown command 'nosuch'");
  EXPECT_EQ(run("`objExists first` * 10 + `objExists second`;"), "10");
  EXPECT_EQ(run("catchQuiet(`nosuch`) * 10 + catchQuiet(`objExists first`);"), "10");
}

TEST_F(Language, NestingIsAnErrorAndNotAnExhaustedStack) {
  const auto repeated = [](const char* text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
  };
  const std::string kDeep[] = {repeated("(", 100000),      repeated("{", 100000),
                               repeated("-", 100001),      repeated("!", 100000) + "1;",
                               repeated("(int)", 100000),  repeated("if (1) ", 100000),
                               repeated("1+", 100000),     "$a = {" + repeated("{", 100000),
                               repeated("$a[", 100000),    repeated("1?", 100000),
                               repeated("for(;;)", 50000), "size(" + repeated("size(", 100000)};
  for (const std::string& script : kDeep)
    EXPECT_FALSE(Interpreter::current().execute(script, "deep").ok) << script.substr(0, 12);
  EXPECT_NE(run("proc int down(int $n) { return down($n + 1); } down(0);").find("too many calls"),
            std::string::npos);
  EXPECT_NE(run("global string $again = \"eval($again)\"; eval($again);").find("too many calls"),
            std::string::npos);
  // What people write is not deep: a thousand statements, a long sum, a hundred calls inside each
  // other.
  EXPECT_EQ(run("int $n = 0;" + repeated("$n = $n + 1;", 1000) + "$n;"), "1000");
  EXPECT_EQ(run(repeated("1+", 200) + "1;"), "201");
  EXPECT_EQ(run("proc int sum(int $n) { return $n == 0 ? 0 : $n + sum($n - 1); } sum(100);"),
            "5050");
}

TEST_F(Language, EndsScriptsThatGoOverALimit) {
  Limits limits;
  limits.steps = 1000;
  limits.textSize = 100;
  limits.arraySize = 10;
  const struct {
    const char* script;
    const char* failure;
  } kCases[] = {
      {"while (1) {}", "the script takes too many steps"},
      {"while (catchQuiet(1 / 0)) {}", "the script takes too many steps"},
      {"for (;;) {}", "the script takes too many steps"},
      {"global proc p() { p; p; } p;", "too many"},
      {"string $s = \"abc\"; for (;;) $s += $s;", "a text becomes too long"},
      {"string $a[] = {\"a\"}; for (;;) appendStringArray($a, $a);", "the array becomes too large"},
      {"string $a[]; tokenize(\"1 2 3 4 5 6 7 8 9 10 11\", $a);", "the array becomes too large"},
      {"int $a[]; $a[10] = 1;", "outside any array"},
      {"string $a[] = {\"a\", \"b\", \"c\"}; string $s = \"\"; for (;;) $s = "
       "stringArrayToString($a, $s + \"--\");",
       "a text becomes too long"},
  };
  for (const auto& test : kCases) {
    Interpreter::current().reset(limits);
    EXPECT_NE(run(test.script).find(test.failure), std::string::npos)
        << test.script << " gave " << run(test.script);
  }
  Interpreter::current().reset();
  EXPECT_EQ(run("int $i; for ($i = 0; $i < 2000; $i++) {} $i;"), "2000");
}

}  // namespace
}  // namespace host::mel
