// Values that flow along connections. Curves are computed by hand from Hermite's and Bezier's
// formulae, constraints from matrices.

#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>

#include "host/evaluation/GraphEvaluation.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

std::string create(const std::string& type, const std::string& name, const std::string& settings) {
  return "createNode " + type + " -n \"" + name + "\";\n" + settings;
}
std::string set(const std::string& attribute, const std::string& values) {
  return "\tsetAttr \"." + attribute + "\" " + values + ";\n";
}
std::string triple(const std::string& attribute, const std::string& values) {
  return set(attribute, "-type \"double3\" " + values);
}
std::string connected(const std::string& source, const std::string& destination) {
  return "connectAttr \"" + source + "\" \"" + destination + "\";\n";
}
std::string atFrame(const std::string& frame) {
  return "select -ne :time1;\n\tsetAttr \".o\" " + frame + ";\n";
}

class Graph : public SceneFiles {
 protected:
  static double at(const std::string& plug) {
    std::string error;
    return readNumber(Scene::current().findPlug(plug, &error)).value_or(std::nan(""));
  }
  static MMatrix worldOf(const std::string& name) {
    return Scene::current().findPath(name).inclusiveMatrix();
  }
  static std::string troubleOf(const std::string& plug) {
    const auto trouble = Scene::current().flowing->troubleOf(Scene::current().findPlug(plug));
    return trouble ? trouble->node->name() + " (" + trouble->node->type().name() +
                         "): " + trouble->reason
                   : "";
  }
  static void expectMatrix(const MMatrix& got, const MMatrix& want, const std::string& what) {
    for (unsigned i = 0; i < 16; ++i)
      EXPECT_NEAR(got[i / 4][i % 4], want[i / 4][i % 4], 1e-9) << what << ' ' << i;
  }
};

const char kLine[] = "0 0 10 20";  // from 0 at frame 0 to 20 at frame 10
const char kHill[] = "0 0 10 10 20 0";

// A way of a metre and a turn of a radian in a second, in a file of 30 frames a second.
TEST_F(Graph, CurvesOfOtherFilesAreInTheUnitsOfThose) {
  const auto curve = [](const std::string& type, const std::string& name, const std::string& to) {
    return create(type, name,
                  set("tan", "2") + set("wgt", "no") + "\tsetAttr -s 2 \".ktv[0:1]\" 0 0 30 1;\n") +
           connected(name + ".o", to);
  };
  const std::string kMoves =
      create("transform", "box", "") + curve("animCurveTL", "way", "box.tx") +
      curve("animCurveTA", "turn", "box.rx") + curve("animCurveTU", "size", "box.sx");
  writeText("other.ma",
            "//Maya ASCII 2018 scene\ncurrentUnit -l meter -a radian -t ntsc;\n" + kMoves);
  const std::string kRefers =
      "file -rdi 1 -ns \"o\" -rfn \"oRN\" \"other.ma\";\n"
      "file -r -ns \"o\" -rfn \"oRN\" \"other.ma\";\n";
  const struct {
    const char* units;
    const char* frame;  // half a second
  } kCases[] = {{"", "12"},
                {"currentUnit -l foot -a degree -t pal;\n", "12.5"},
                {"currentUnit -l meter -a radian -t ntsc;\n", "15"}};
  for (const auto& c : kCases) {
    for (const bool imports : {false, true}) {
      open((imports ? "" : kRefers) + c.units + atFrame(c.frame));
      if (imports) run("file -i -ns o \"other.ma\"");
      EXPECT_NEAR(at("o:box.tx"), 50, 1e-9) << c.units << imports;
      EXPECT_NEAR(at("o:box.rx"), 0.5 * 180 / std::acos(-1.0), 1e-9) << c.units << imports;
      EXPECT_NEAR(at("o:box.sx"), 0.5, 1e-9) << c.units << imports;
    }
  }
}

// Handles are told of once a scene, at another time than it was saved at, where one of them moves.
TEST_F(Graph, HandlesThatMoveWithTimeAreNamed) {
  const std::string kHandles = create("transform", "mover", "") +
                               "createNode ikHandle -n \"still\";\n"
                               "createNode ikHandle -n \"moved\" -p \"mover\";\n";
  const std::string kCurve =
      create("animCurveTL", "way", set("ktv[0:1]", kLine)) + connected("way.o", "mover.tx");
  const struct {
    std::string scene;
    double frame;
    bool isTold;
  } kCases[] = {{kHandles + kCurve + atFrame("3"), 5, true},
                {kHandles + kCurve + atFrame("5"), 5, false},
                {kHandles + atFrame("3"), 5, false}};
  for (const auto& c : kCases) {
    HostState::current().givenFrame = c.frame;
    const std::string warnings = open(c.scene);
    HostState::current().givenFrame.reset();
    EXPECT_EQ(warnings.find("1 handle of inverse kinematics, first 'moved' (ikHandle)") !=
                  std::string::npos,
              c.isTold)
        << warnings;
    EXPECT_EQ(HostState::current().problems.list.size(), c.isTold ? 1u : 0u);
  }
}

TEST_F(Graph, CurvesRunAsTheirKeysSay) {
  const std::string kLinear = set("tan", "2") + set("wgt", "no");
  const struct {
    const char* type;
    std::string settings;
    const char* keys;
    const char* frame;
    double value;
  } kCases[] = {
      {"TU", kLinear, kLine, "4", 8},
      {"TU", kLinear, "10 20 0 0", "4", 8},
      {"TU", kLinear, "0 0 5 nan 10 20", "4", 8},
      {"TU", set("tan", "5") + set("wgt", "no"), kLine, "9.5", 0},
      {"TU", set("tan", "17") + set("wgt", "no"), kLine, "0.5", 20},
      {"TU", set("tan", "17") + set("wgt", "no"), kLine, "0", 0},
      // Flat on both sides: 3u² − 2u³ of the way, u = 1/4.
      {"TL", set("tan", "3") + set("wgt", "no"), kLine, "2.5", 20 * 0.15625},
      {"TL", set("tan", "3"), kLine, "2.5", 20 * 0.15625},
      {"TL", set("tan", "18") + set("wgt", "no"), kLine, "2.5", 20 * 0.15625},
      // A spline is flat on the top of the hill and leaves its foot with slope 1.
      {"TU", set("tan", "9") + set("wgt", "no"), kHill, "5", 5 + 0.125 * 10},
      {"TU", set("tan", "9"), kHill, "5", 5 + 0.125 * 10},
      // An automatic one is not a steeper than three times the flatter of both sides.
      {"TU", set("tan", "18") + set("wgt", "no"), "0 0 10 1 20 100", "5", 0.5 - 0.125 * 3},
      {"TU", set("tan", "16") + set("wgt", "no"), "0 0 10 10 20 10", "13", 10},
      {"TU", set("tan", "10") + set("wgt", "no"), "0 0 10 10 20 10", "13", 10},
      // A stored tangent, of 2 in a second and flat at the other end.
      {"TU",
       set("tan", "1") + set("wgt", "no") + set("kix[0:1]", "1 1") + set("kiy[0:1]", "0 0") +
           set("kox[0:1]", "1 1") + set("koy[0:1]", "2 0"),
       "0 0 24 0", "12", 0.125 * 2},
      // The same of a degree in a second.
      {"TA",
       set("tan", "3") + set("wgt", "no") + set("kot[0]", "1") + set("kox[0]", "1") +
           set("koy[0]", "0.017453292519943295"),
       "0 0 24 0", "12", 0.125},
      // Handles of half a second to both sides: at u = 1/4, x is 7.125 and y 8 · 0.15625.
      {"TU",
       set("tan", "1") + set("kix[0:1]", "1.5 1.5") + set("kiy[0:1]", "0 0") +
           set("kox[0:1]", "1.5 1.5") + set("koy[0:1]", "0 0"),
       "0 0 24 8", "7.125", 1.25},
      // Handles that reach beyond the other key are cut there: 10.5 at u = 1/4.
      {"TU",
       set("tan", "1") + set("kix[0:1]", "9 9") + set("kiy[0:1]", "0 0") + set("kox[0:1]", "9 9") +
           set("koy[0:1]", "0 0"),
       "0 0 24 8", "10.5", 1.25},
      {"TU", kLinear, kLine, "25", 20},
      {"TU", kLinear + set("pst", "1"), kLine, "25", 50},
      {"TU", kLinear + set("pst", "3"), kLine, "25", 10},
      {"TU", kLinear + set("pst", "4"), kLine, "25", 50},
      {"TU", kLinear + set("pst", "5"), kLine, "13", 14},
      {"TU", kLinear + set("pre", "1"), kLine, "-3", -6},
      {"TU", kLinear + set("pre", "3"), kLine, "-3", 14},
      {"TU", kLinear + set("pre", "4"), kLine, "-3", -6},
      {"TU", kLinear + set("pre", "5"), kLine, "-3", 6},
      {"TU", kLinear + set("pst", "3"), "5 7", "25", 7},
  };
  for (const auto& c : kCases) {
    const std::string plug = std::string(c.type) == "TA" ? "box.rx" : "box.v";
    const std::string count = std::string(c.keys) == kLine ? "0:1" : "0:9";
    open(create(std::string("animCurve") + c.type, "curve",
                c.settings + set("ktv[" + count + "]", c.keys)) +
         create("transform", "box", "") + connected("curve.o", plug) + atFrame(c.frame));
    EXPECT_NEAR(at(plug), c.value, 1e-9) << c.type << ' ' << c.keys << " at " << c.frame;
    EXPECT_EQ(troubleOf(plug), "");
  }
}

TEST_F(Graph, NumbersHaveTheUnitsOfTheirPlugs) {
  // In feet: curves of lengths, and a tangent, which is always in centimetres.
  open(
      "currentUnit -l foot -a degree -t ntsc;\n" + create("transform", "box", "") +
      create("animCurveTL", "length", set("tan", "2") + set("wgt", "no") + set("ktv[0:1]", kLine)) +
      create("animCurveTA", "angle", set("tan", "2") + set("wgt", "no") + set("ktv[0:1]", kLine)) +
      create("animCurveTL", "rise",
             set("tan", "3") + set("wgt", "no") + set("kot[0]", "1") + set("kox[0]", "1") +
                 set("koy[0]", "8") + set("ktv[0:1]", "0 0 30 0")) +
      create("unitConversion", "degrees", set("cf", "57.295779513082323")) +
      create("multiplyDivide", "double", set("i2", "-type \"float3\" 2 2 2")) +
      create("unitConversion", "radians", set("cf", "0.017453292519943295")) +
      connected("length.o", "box.tx") + connected("angle.o", "box.rx") +
      connected("rise.o", "box.ty") + connected("box.rx", "degrees.i") +
      connected("degrees.o", "double.i1x") + connected("double.ox", "radians.i") +
      connected("radians.o", "box.ry") + atFrame("5"));
  EXPECT_NEAR(at("box.tx"), 10 * 30.48, 1e-9);
  EXPECT_NEAR(at("box.rx"), 10, 1e-9);
  EXPECT_NEAR(at("double.ox"), 20, 1e-9);
  EXPECT_NEAR(at("box.ry"), 20, 1e-9);
  run("setAttr time1.outTime 15");
  EXPECT_NEAR(at("box.ty"), 1, 1e-9);
}

TEST_F(Graph, NodesComputeWhatTheyAreFor) {
  const auto float3 = [](const std::string& name, const std::string& values) {
    return set(name, "-type \"float3\" " + values);
  };
  const struct {
    const char* type;
    std::string settings;
    const char* output;
    double value;
  } kCases[] = {
      {"multiplyDivide", float3("i1", "6 7 8") + float3("i2", "2 2 2"), "oy", 14},
      {"multiplyDivide", set("op", "2") + float3("i1", "6 7 8") + float3("i2", "2 2 2"), "ox", 3},
      {"multiplyDivide", set("op", "3") + float3("i1", "6 7 8") + float3("i2", "2 2 2"), "oz", 64},
      {"multiplyDivide", set("op", "0") + float3("i1", "6 7 8") + float3("i2", "2 2 2"), "oz", 8},
      {"plusMinusAverage", set("i1[0:2]", "5 1 3"), "o1", 9},
      {"plusMinusAverage", set("op", "2") + set("i1[0:2]", "5 1 3"), "o1", 1},
      {"plusMinusAverage", set("op", "3") + set("i1[0:2]", "5 1 3"), "o1", 3},
      {"plusMinusAverage", float3("i3[4]", "1 2 3") + float3("i3[7]", "10 20 30"), "o3y", 22},
      {"plusMinusAverage", set("i2[1]", "-type \"float2\" 1 2"), "o2y", 2},
      {"condition", set("ft", "2") + set("st", "2") + float3("ct", "1 2 3") + float3("cf", "4 5 6"),
       "ocg", 2},
      {"condition",
       set("op", "2") + set("ft", "2") + set("st", "2") + float3("ct", "1 2 3") +
           float3("cf", "4 5 6"),
       "ocb", 6},
      {"reverse", float3("i", "0.25 0 0"), "ox", 0.75},
      {"setRange",
       float3("v", "5 15 0") + float3("on", "0 0 0") + float3("om", "10 10 0") +
           float3("n", "100 100 7") + float3("m", "200 200 8"),
       "ox", 150},
      {"setRange", float3("v", "5 15 0") + float3("om", "10 10 0") + float3("m", "200 200 8"), "oy",
       200},
      {"setRange", float3("n", "100 100 7"), "oz", 7},
      {"addDoubleLinear", set("i1", "2") + set("i2", "3"), "o", 5},
      {"multDoubleLinear", set("i1", "2") + set("i2", "3"), "o", 6},
      {"blendWeighted", set("i[0:1]", "4 10") + set("w[1]", "0.5"), "o", 9},
      {"animBlendNodeAdditive", set("ia", "4") + set("ib", "10") + set("wb", "0.5"), "o", 9},
      {"pairBlend", set("w", "0.25") + set("itx1", "10") + set("itx2", "20"), "otx", 12.5},
      {"pairBlend", set("w", "0.25") + set("itx1", "1") + set("itx2", "2") + set("txm", "2"), "otx",
       2},
      {"pairBlend", set("w", "0.5") + set("iry1", "0") + set("iry2", "90"), "ory", 45},
      {"pairBlend", set("w", "0.5") + set("iry2", "90") + set("rm", "1"), "ory", 0},
      {"pairBlend", set("w", "0.5") + set("irz2", "90") + set("ri", "1"), "orz", 45},
      {"composeMatrix", triple("it", "1 2 3"), "omat", 1},
      {"decomposeMatrix", set("imat", "-type \"matrix\" 0 2 0 0 -3 0 0 0 0 0 4 0 5 6 7 1"), "orz",
       90},
      {"decomposeMatrix", set("imat", "-type \"matrix\" 0 2 0 0 -3 0 0 0 0 0 4 0 5 6 7 1"), "osy",
       3},
      {"decomposeMatrix", set("imat", "-type \"matrix\" 0 2 0 0 -3 0 0 0 0 0 4 0 5 6 7 1"), "otz",
       7},
      {"expression",
       set("in[0:1]", "3 4") +
           set("ixp",
               "-type \"string\" \"float $a = .I[0]; // \\\"x\\\"\\nif (frame > 2) .O[0] = "
               "sqrt($a * $a + pow(.I[1], 2));\""),
       "out[0]", 5},
      {"expression", set("ixp", "-type \"string\" \".O[2] = time * 24\""), "out[2]", 12},
  };
  for (const auto& c : kCases) {
    open(create(c.type, "made", c.settings) + atFrame("12"));
    const std::string plug = std::string("made.") + c.output;
    if (std::string(c.output) == "omat")
      EXPECT_EQ(readNumbers(Scene::current().findPlug(plug)),
                (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1}));
    else
      EXPECT_NEAR(at(plug), c.value, 1e-6) << c.type << ' ' << c.settings;
  }
}

// Compounds are connected whole, a choice hands on what it has chosen, and matrices multiply.
TEST_F(Graph, ValuesFlowWhole) {
  open(create("transform", "a", triple("t", "1 2 3") + triple("r", "0 90 0")) +
       create("transform", "b", triple("t", "4 5 6")) + create("choice", "either", set("s", "1")) +
       create("transform", "box", "") + create("transform", "moved", "") +
       create("multMatrix", "product", "") + create("decomposeMatrix", "parts", "") +
       connected("a.t", "either.i[0]") + connected("b.t", "either.i[1]") +
       connected("either.o", "box.t") + connected("b.wm", "product.i[0]") +
       connected("a.wm", "product.i[1]") + connected("product.o", "parts.imat") +
       connected("parts.ot", "moved.t") + connected("parts.or", "moved.r") +
       create("transform", "offset", "") + connected("product.o", "offset.opm"));
  EXPECT_EQ(readNumbers(Scene::current().findPlug("box.t")), (std::vector<double>{4, 5, 6}));
  expectMatrix(worldOf("moved"), worldOf("b") * worldOf("a"), "decomposed");
  expectMatrix(worldOf("offset"), worldOf("b") * worldOf("a"), "offset parent matrix");
  run("setAttr either.selector 0; setAttr a.ty 20");
  EXPECT_EQ(readNumbers(Scene::current().findPlug("box.t")), (std::vector<double>{1, 20, 3}));
  // What was never set hands on its default.
  open(create("transform", "a", "") + create("transform", "box", set("sx", "7") + set("ty", "8")) +
       connected("a.sx", "box.sx") + connected("a.ty", "box.ty"));
  EXPECT_EQ(at("box.sx"), 1);
  EXPECT_EQ(at("box.ty"), 0);
}

TEST_F(Graph, WhatCannotBeWorkedOutIsNamed) {
  const std::string kBox = create("transform", "box", set("tx", "7"));
  const struct {
    std::string nodes;
    const char* trouble;
  } kCases[] = {
      {create("oracle", "seer", "") + connected("seer.out", "box.tx"), "seer (oracle): "},
      {create("oracle", "seer", "") + create("reverse", "back", "") +
           connected("seer.out", "back.ix") + connected("back.ox", "box.tx"),
       "seer (oracle): "},
      {create("reference", "other", "") + connected("other.phl[1]", "box.tx"),
       "other (reference): the file that it refers to is not loaded"},
      {create("reverse", "one", "") + create("reverse", "two", "") + connected("one.ox", "two.ix") +
           connected("two.ox", "one.ix") + connected("two.ox", "box.tx"),
       "two (reverse): its inputs lead back to it"},
      {create("multiplyDivide", "none", set("op", "2") + set("i1x", "1") + set("i2x", "0")) +
           connected("none.ox", "box.tx"),
       "none (multiplyDivide): what it works out is not a finite number"},
      {create("animCurveTU", "old", set("tan", "6") + set("ktv[0:1]", kLine)) +
           connected("old.o", "box.tx"),
       "old (animCurveTU): it has tangents of a kind that is not evaluated"},
      {create("expression", "e", set("ixp", "-type \"string\" \".O[0] = rand(1);\"")) +
           connected("e.out[0]", "box.tx"),
       "e (expression): its expression uses rand, which is not evaluated"},
      {create("expression", "e", set("ixp", "-type \"string\" \"setAttr box.ty 1; .O[0] = 1;\"")) +
           connected("e.out[0]", "box.tx"),
       "e (expression): its expression uses setAttr, which is not evaluated"},
  };
  for (const auto& c : kCases) {
    open(kBox + c.nodes);
    EXPECT_EQ(troubleOf("box.t"), c.trouble);
  }
  open(kBox + kCases[0].nodes);
  EXPECT_EQ(at("box.tx"), 7);
  open(kBox + create("expression", "e", set("ixp", "-type \"string\" \"while (1) .O[0] = 1;\"")) +
       connected("e.out[0]", "box.tx"));
  EXPECT_NE(troubleOf("box.tx"), "");
}

TEST_F(Graph, TheCurrentTimeMovesWhatDependsOnIt) {
  const std::string kScene =
      create("animCurveTL", "curve", set("tan", "2") + set("wgt", "no") + set("ktv[0:1]", kLine)) +
      create("transform", "mover", "") + connected("curve.o", "mover.tx") +
      create("polyPlane", "plane", set("w", "2") + set("sw", "1") + set("sh", "1")) +
      create("transformGeometry", "moved", "") + connected("plane.out", "moved.ig") +
      connected("mover.wm", "moved.txf") + create("mesh", "m", "") + connected("moved.og", "m.i");
  const auto left = [] { return node("m")->mesh->points().front().x; };
  open(kScene + atFrame("2.5"));
  EXPECT_NEAR(left(), -1 + 5, 1e-6);
  EXPECT_EQ(run("currentTime 5; float $other = `getAttr -time 2.5 mover.tx`; "
                "float $now = `currentTime -q`; float $all[] = {$other, `getAttr mover.tx`, $now}; "
                "$all;"),
            "5 10 5");
  EXPECT_NEAR(left(), -1 + 10, 1e-6);
}

// More nodes behind one another than a stack would hold.
TEST_F(Graph, NoChainIsTooLong) {
  constexpr int kNodes = 5000;
  std::string text = create("reverse", "n0", set("ix", "0.25"));
  for (int i = 1; i <= kNodes; ++i) {
    text += create("reverse", "n" + std::to_string(i), "");
    text += connected("n" + std::to_string(i - 1) + ".ox", "n" + std::to_string(i) + ".ix");
  }
  open(text);
  EXPECT_NEAR(at("n" + std::to_string(kNodes) + ".ox"), 0.75, 1e-12);
  run("setAttr n0.inputX 0.5");
  EXPECT_NEAR(at("n" + std::to_string(kNodes) + ".ox"), 0.5, 1e-12);
}

// "target" stands below "a", "box" below "b", both turned, moved, and with pivots.
class Constraints : public Graph {
 protected:
  void constrain(const std::string& type, const std::string& settings, const std::string& wires,
                 const std::string& boxSettings = "") {
    open(create("transform", "a", triple("t", "1 2 3") + triple("r", "10 20 30")) +
         create("transform", "b", triple("t", "-4 5 1") + triple("r", "40 -30 20")) +
         "createNode transform -n \"target\" -p \"a\";\n" + triple("t", "5 0 2") +
         triple("r", "20 40 60") + set("ro", "2") + triple("rp", "1 1 0") +
         "createNode transform -n \"other\" -p \"a\";\n" + triple("t", "-1 7 0") +
         "createNode transform -n \"box\" -p \"b\";\n" + boxSettings + "createNode " + type +
         " -n \"c\" -p \"box\";\n" + settings + connected("box.pim", "c.cpim") +
         connected("box.ro", "c.cro") + connected("box.rp", "c.crp") +
         connected("box.rpt", "c.crt") + target(0, "target") + wires);
  }
  static std::string target(int index, const std::string& name) {
    std::string text;
    const std::string to = "c.tg[" + std::to_string(index) + "].";
    for (const auto& pair : kPairs) text += connected(name + "." + pair[0], to + pair[1]);
    return text;
  }
  static std::string outputs(const std::string& from, const std::string& to) {
    std::string text;
    for (const char axis : {'x', 'y', 'z'})
      text += connected("c." + from + axis, "box." + to + axis);
    return text;
  }
  static constexpr const char* kPairs[7][2] = {{"t", "tt"},  {"rp", "trp"}, {"rpt", "trt"},
                                               {"r", "tr"},  {"ro", "tro"}, {"s", "ts"},
                                               {"pm", "tpm"}};
  static MPoint pivot(const std::string& name, const MPoint& point) {
    return point * worldOf(name);
  }
  static void expectPoint(const MPoint& got, const MPoint& want) {
    EXPECT_NEAR(got.x, want.x, 1e-9);
    EXPECT_NEAR(got.y, want.y, 1e-9);
    EXPECT_NEAR(got.z, want.z, 1e-9);
  }
  static void expectTurn(const MMatrix& got, const MMatrix& want) {
    for (unsigned i = 0; i < 9; ++i) EXPECT_NEAR(got[i / 3][i % 3], want[i / 3][i % 3], 1e-9) << i;
  }
};

TEST_F(Constraints, AParentConstraintKeepsTheOffset) {
  constrain("parentConstraint", triple("tg[0].tot", "1 2 3") + set("tg[0].torz", "90"),
            outputs("ct", "t") + outputs("cr", "r"), set("ro", "3") + triple("rp", "0 2 0"));
  EXPECT_EQ(troubleOf("box.t"), "");
  EXPECT_EQ(troubleOf("box.r"), "");
  expectPoint(pivot("box", {0, 2, 0}), pivot("target", {2, 3, 3}));
  MMatrix quarter;
  quarter[0][0] = quarter[1][1] = 0;
  quarter[0][1] = 1;
  quarter[1][0] = -1;
  expectTurn(worldOf("box"), quarter * worldOf("target"));
  run("setAttr a.ty 50");
  expectPoint(pivot("box", {0, 2, 0}), pivot("target", {2, 3, 3}));
}

TEST_F(Constraints, APointConstraintWeighsItsTargets) {
  constrain("pointConstraint", set("tg[0].tw", "1") + set("tg[1].tw", "3") + triple("o", "0 0 1"),
            target(1, "other") + outputs("ct", "t"));
  const MPoint first = pivot("target", {1, 1, 0});
  const MPoint second = pivot("other", {0, 0, 0});
  const MPoint mean((first.x + 3 * second.x) / 4, (first.y + 3 * second.y) / 4,
                    (first.z + 3 * second.z) / 4);
  MPoint local = mean * worldOf("b").inverse();
  local.z += 1;
  expectPoint(pivot("box", {0, 0, 0}), local * worldOf("b"));
  // Without weights the rest position counts, if that is allowed.
  constrain("pointConstraint", set("tg[0].tw", "0") + triple("rst", "7 8 9"), outputs("ct", "t"));
  EXPECT_EQ(readNumbers(Scene::current().findPlug("box.t")), (std::vector<double>{7, 8, 9}));
  constrain("pointConstraint", set("tg[0].tw", "0") + set("erp", "no"), outputs("ct", "t"));
  EXPECT_EQ(troubleOf("box.t"),
            "c (pointConstraint): its targets weigh nothing, and its rest values are switched off");
}

TEST_F(Constraints, AnOrientConstraintTurnsHalfWay) {
  constrain("orientConstraint", "", outputs("cr", "r"), set("ro", "4"));
  expectTurn(worldOf("box"), worldOf("target"));
  // Half way between two turns: twice that turn leads from one to the other.
  constrain("orientConstraint", "", target(1, "other") + outputs("cr", "r"));
  const MMatrix first = worldOf("target");
  const MMatrix step = first.inverse() * worldOf("box");
  MMatrix end = first * step * step;
  expectTurn(end, worldOf("other"));
}

TEST_F(Constraints, AnAimConstraintPointsUpright) {
  constrain("aimConstraint", triple("a", "0 0 1") + triple("u", "0 1 0"),
            outputs("cr", "r") + connected("box.t", "c.ct"), triple("t", "3 3 3"));
  const MMatrix box = worldOf("box");
  const MPoint goal = pivot("target", {1, 1, 0});
  const MVector way(goal.x - box[3][0], goal.y - box[3][1], goal.z - box[3][2]);
  const MVector z(box[2][0], box[2][1], box[2][2]);
  EXPECT_NEAR(way * z, way.length(), 1e-9);
  // Its own y is as near to the world's as it can be, so its x lies level.
  EXPECT_NEAR(box[0][1], 0, 1e-9);
  EXPECT_GT(box[1][1], 0);
}

TEST_F(Constraints, AScaleConstraintTakesTheParentBack) {
  constrain("scaleConstraint", triple("o", "1 2 1"), outputs("cs", "s"));
  run("setAttr target.s 2 3 4; setAttr b.s 2 2 2");
  const auto scale = readNumbers(Scene::current().findPlug("box.s"));
  ASSERT_TRUE(scale);
  // The target's turn against the box's parent plays no part in the lengths of its axes.
  EXPECT_NEAR((*scale)[0], 1, 1e-9);
  EXPECT_NEAR((*scale)[1], 3, 1e-9);
}

// Two targets, of which one counts three times; the mean of their scales, as seen from the parent.
TEST_F(Constraints, AScaleConstraintWeighsItsTargets) {
  open(create("transform", "one", triple("s", "2 1 1")) +
       create("transform", "other", triple("s", "6 1 5")) + create("transform", "box", "") +
       create("scaleConstraint", "c", set("tg[0].tw", "1") + set("tg[1].tw", "3")) +
       connected("one.s", "c.tg[0].ts") + connected("one.pm", "c.tg[0].tpm") +
       connected("other.s", "c.tg[1].ts") + connected("other.pm", "c.tg[1].tpm") +
       connected("box.pim", "c.cpim") + connected("c.csx", "box.sx") +
       connected("c.csz", "box.sz"));
  EXPECT_NEAR(at("box.sx"), (2 + 3 * 6) / 4.0, 1e-9);
  EXPECT_NEAR(at("box.sz"), (1 + 3 * 5) / 4.0, 1e-9);
}

// Rigs store where their constraints hold them: the rest position, and the last rotation or that at
// rest.
TEST_F(Constraints, RigsStandWhereTheyWereSaved) {
  int constraints = 0;
  const auto distance = [](const NodePtr& c, const char* output, const char* stored) {
    const auto a = readNumbers(*Plug::find(c, output));
    const auto b = readNumbers(*Plug::find(c, stored));
    double most = a && b && a->size() == b->size() ? 0 : 1e9;
    for (std::size_t i = 0; most < 1e9 && i < a->size(); ++i)
      most = std::max(most, std::fabs((*a)[i] - (*b)[i]));
    return most;
  };
  for (const fs::path& path : corpusScenes()) {
    const std::string text = readAll(path);
    if (text.find("Constraint -n") == text.npos) continue;
    openPath(path.string());
    for (const auto& [serial, c] : Scene::current().nodes()) {
      const bool isParent = c->type().name() == "parentConstraint";
      if (!isParent && c->type().name() != "orientConstraint") continue;
      ++constraints;
      EXPECT_LT(isParent ? distance(c, "ct", "rst") : 0, 1e-6) << path << ' ' << c->name();
      EXPECT_LT(std::min(distance(c, "cr", "lr"), distance(c, "cr", "rsrr")), 1e-5)
          << path << ' ' << c->name();
    }
  }
  if (constraints == 0) GTEST_SKIP() << "no corpus";
}

}  // namespace
}  // namespace host
