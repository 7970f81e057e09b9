#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/state/SceneGaps.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

class SceneText : public SceneFiles {};

// A unit square of two triangles: edge 2 is their diagonal, edge 0 hard.
constexpr char kSquare[] =
    "createNode transform -n \"square\";\ncreateNode mesh -n \"squareShape\" -p \"square\";\n"
    "\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";\n"
    "\tsetAttr -s 4 \".uvst[0].uvsp[0:3]\" -type \"float2\" 0 0 1 0 1 1 0 1;\n"
    "\tsetAttr \".cuvs\" -type \"string\" \"map1\";\n"
    "\tsetAttr -s 4 \".vt[0:3]\"  0 0 0 1 0 -0 1 0 1 0.1 0 1;\n"
    "\tsetAttr -s 5 \".ed[0:4]\"  0 1 0 1 2 1 2 0 1 2 3 1 3 0 1;\n"
    "\tsetAttr -s 2 \".fc[0:1]\" -type \"polyFaces\"\n"
    "\t\tf 3 0 1 2\n\t\tmu 0 3 0 1 2\n\t\tf 3 -3 3 4\n\t\tmu 0 3 0 2 3;\n";

TEST_F(SceneText, StatementsMayBeWrittenInManyWays) {
  EXPECT_EQ(
      open("/* a ; comment \" */ createNode // another ;\n transform -n ( \"long\" + // "
           "\"x\"\n\"Name\" )\n;;"
           "addAttr -ln \"note\" -dt \"string\";\n"
           "setAttr \".note\" -type \"string\" (\n \"one; \\\"two\\\"\\n\"\n + \"// three /* "
           "four\" );\r\n"
           "setAttr -k off -cb on \".translate\" -type \"double3\" 1 2 3 ;setAttr\".v\"(no);"),
      "");
  EXPECT_EQ(run("getAttr longName.note"), "one; \"two\"\n// three /* four");
  EXPECT_EQ(run("getAttr longName.t"), "1 2 3");
  EXPECT_EQ(run("getAttr longName.v"), "0");
}

TEST_F(SceneText, EveryKindOfBlankSeparates) {
  EXPECT_EQ(open("createNode\ftransform\v-n \"t\";\ncreateNode mesh -n \"m\" -p \"t\";\n"
                 "setAttr\f-s\v3 \".vt[0:2]\"\f0 0 0\f1 0 0\v1\t0\r1;"),
            "");
  const auto& points = node("m")->mesh->points();
  ASSERT_EQ(points.size(), 3u);
  EXPECT_TRUE(points[1].x == 1 && points[2].x == 1 && points[2].y == 0 && points[2].z == 1);
}

TEST_F(SceneText, WhatCannotBeUsedIsNamedWithItsPlace) {
  const struct {
    std::string statement;
    const char* warning;
    bool isDamage = false;
  } kCases[] = {
      {"nosuch -x 1;", "unknown command 'nosuch'"},
      {"createNode transform -zz;", "createNode: unknown flag -zz"},
      {"setAttr;", "setAttr: names no attribute", true},
      {"addAttr -at long;", "addAttr: -ln is missing", true},
      {"parent \"persp\";", "parent: needs objects and a parent"},
      {"setAttr \"gone.tx\" 1;", "setAttr: No object matches name: gone", true},
      {"connectAttr \"a.b\" \"c.d\";", "connectAttr: No object matches name: a"},
      {"createNode locator -p \"far:gone\";",
       "createNode: No object matches name: far:gone; something else stands in for it"},
      {"createNode transform -p \"gone\";", "createNode: No object matches name: gone", true},
      {"setAttr \".tx\" 1;", "setAttr: '.tx' names no node, and none is selected"},
      {"setAttr \".a\" -type \"attributeAlias\" {\"b\";", "'{' without '}'", true},
      {"print `ls`;", "'`' has no place in a scene file", true},
      {"$x = 1;", "'$' has no place in a scene file", true},
      {"file -save;", "file: a scene file may refer to other files, and nothing else"},
      {"source \"x.mel\";", "a scene file may not run scripts"},
      {"loadPlugin \"morvane\";", "a scene file may not load plug-ins"},
      {"delete \"persp\";", "a scene file may not delete nodes"},
      {"file -r -ns \"rock\" \"gone/rock.ma\";",
       "the referenced file gone/rock.ma was not found; tell where its folder is (--map, dirmap)"},
      {"setAttr \".v\" no",
       "the file ends inside a statement; it is cut off, or lacks its last semicolon", true},
      {"setAttr \".v\" \"no;",
       "the file ends inside a statement; it is cut off, or lacks its last semicolon", true},
      {std::string("setAttr \".v\" \0\0;", 16),
       "zero bytes stand in the file from line 3 on, where a part of it was lost", true},
      {"setAttr \".v\" \"\n" + std::string(4096, '\0'),
       "zero bytes stand in the file from line 4 on, where a part of it was lost", true},
      {"/* no", "the file ends inside a statement; it is cut off, or lacks its last semicolon",
       true},
      {"connectAttr \"rock:a.b\" \"persp.v\";", "connectAttr: No object matches name: rock:a"},
      {"no statement;", "unknown command 'no'", true},
      {"nosuch \"x\"\nsetAttr \"persp.v\" 1;", "unknown command 'nosuch'", true},
      {"setAttr \"persp.t\" -type \"double3\" 1 2;",
       "setAttr: too few values for 'persp.translateZ'", true},
      {"setAttr \"perspShape.fl\" x;", "setAttr: 'x' is not a number for 'perspShape.focalLength'",
       true},
      {"connectAttr \"persp.v\";", "connectAttr: needs a source and a destination", true},
      {"currentUnit -l cubit;", "currentUnit: unknown unit of length 'cubit'; taken as centimetres",
       true},
  };
  for (const auto& c : kCases) {
    const std::string warnings = open("requires maya \"2018\";\n  " + c.statement);
    EXPECT_NE(warnings.find(std::string(": ") + c.warning + "\n"), std::string::npos) << warnings;
    const bool atEnd = std::string(c.warning).find("ends inside") != std::string::npos;
    EXPECT_TRUE(atEnd || warnings.find("scene.ma:3:3: ") != std::string::npos) << warnings;
    const SceneProblems& problems = HostState::current().problems;
    EXPECT_EQ(problems.damages, c.isDamage ? 1u : 0u) << warnings;
    EXPECT_EQ(problems.list.size(), 1u) << warnings;
    EXPECT_EQ(problems.list.at(0).line, 3) << warnings;
  }
}

TEST_F(SceneText, MeshesThatContradictThemselvesAreDamaged) {
  const struct {
    const char* sound;
    const char* damaged;
    int line;  // 0: known only once all is read
  } kCases[] = {
      {"1 0.1 0 1;", "1 0.1 0;", 7},
      {"2 0 1 2 3 1 3 0 1;", "2 0 1 2 3 1 3 0;", 8},
      {"f 3 -3 3 4", "f 3 -3 3 9", 0},
  };
  EXPECT_EQ(open(kSquare), "");
  for (const auto& c : kCases) {
    std::string scene = kSquare;
    scene.replace(scene.find(c.sound), std::string(c.sound).size(), c.damaged);
    open(scene);
    const SceneProblem& first = HostState::current().problems.list.at(0);
    EXPECT_EQ(first.kind, SceneProblem::Kind::kDamage) << c.damaged;
    EXPECT_EQ(first.line, c.line) << c.damaged;
  }
}

TEST_F(SceneText, FilesThatAreNoSceneLeaveAnEmptyOne) {
  writeText("not.ma", "createNode transform -n \"a\";");
  EXPECT_EQ(openPath(pathOf("not.ma")),
            "failed: " + pathOf("not.ma") +
                " is not a scene file: it does not begin with //Maya; save it as Maya ASCII");
  EXPECT_EQ(openPath(pathOf("gone.ma")),
            "failed: no file named " + pathOf("gone.ma") + "; check the name");
  EXPECT_EQ(run("objExists a"), "0");
  EXPECT_EQ(run("objExists persp"), "1");
}

TEST_F(SceneText, PathsInstancesAndSharedNodes) {
  EXPECT_EQ(open("createNode transform -n \"a\";\ncreateNode transform -n \"x\" -p \"a\";\n"
                 "createNode transform -n \"b\";\ncreateNode transform -n \"x\" -p \"b\";\n"
                 "createNode transform -n \"leaf\" -p \"|b|x\";\n\tsetAttr \".tx\" 5;\n"
                 "createNode transform -s -n \"persp\";\n\tsetAttr \".tx\" 9;\n"
                 "parent -s -nc -r -add \"|b|x|leaf\" \"a\";\nselect -ne :time1;\n"),
            "");
  EXPECT_EQ(run("ls -ap -l leaf"), "|b|x|leaf |a|leaf");
  EXPECT_EQ(run("getAttr \"|a|leaf.tx\""), "5");
  EXPECT_EQ(run("getAttr persp.tx"), "9");
  EXPECT_EQ(run("size(`ls \"persp*\"`)"), "2");
}

TEST_F(SceneText, ReferencesAreLoadedOnceUnderTheirNamespace) {
  const std::string rock =
      std::string("//Maya ASCII 2018 scene\nfile -r -ns \"self\" \"rock.ma\";\n") + kSquare +
      "createNode lambert -n \"m\";\ncreateNode shadingEngine -n \"mSG\";\n"
      "connectAttr \"m.oc\" \"mSG.ss\";\nconnectAttr \"squareShape.iog\" \"mSG.dsm\" -na;\n";
  writeText("rock.ma", rock);
  const std::string warnings = open(
      "file -rdi 1 -ns \"r\" -rfn \"rRN\" -typ \"mayaAscii\" \"/dead/folder/rock.ma\";\n"
      "file -r -ns \"r\" -dr 1 -rfn \"rRN\" -typ \"mayaAscii\" \"/dead/folder/rock.ma\";\n"
      "setAttr \"r:square.tx\" 3;\n");
  EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 1) << warnings;
  EXPECT_NE(warnings.find("refers to itself"), std::string::npos) << warnings;
  EXPECT_EQ(run("ls -type mesh"), "r:squareShape");
  EXPECT_EQ(run("listConnections \"r:mSG.ss\""), "r:m");
  EXPECT_EQ(run("sets -q \"r:mSG\""), "r:squareShape");
  EXPECT_EQ(run("getAttr \"r:square.tx\""), "3");
  ASSERT_TRUE(save("saved.ma"));
  const std::string saved = readAll(pathOf("saved.ma"));
  EXPECT_EQ(saved.find("createNode mesh"), std::string::npos);
  EXPECT_EQ(readAll(pathOf("rock.ma")), rock);
  openPath(pathOf("saved.ma"));
  EXPECT_EQ(run("ls -type mesh"), "r:squareShape");
}

// An edit of each kind, the connections by way of place holders, and one of a node that is not
// there; and the same again from the saved scene, in which they stand as they stood.
TEST_F(SceneText, EditsOfReferencesAreAppliedAndKept) {
  writeText("prop.ma",
            "//Maya ASCII 2018 scene\ncreateNode transform -n \"a\";\ncreateNode transform -n "
            "\"b\" -p \"a\";\ncreateNode lambert -n \"m\";\ncreateNode file -n \"f\";\n"
            "connectAttr \"f.oc\" \"m.c\";\n");
  const std::string scene =
      "file -rdi 1 -ns \"p\" -rfn \"pRN\" \"prop.ma\";\n"
      "file -rdi 1 -ns \"q\" -dr 1 -rfn \"qRN\" \"prop.ma\";\n"
      "file -r -ns \"p\" -dr 1 -rfn \"pRN\" \"prop.ma\";\n"
      "file -r -ns \"q\" -dr 1 -rfn \"qRN\" \"prop.ma\";\n"
      "createNode transform -n \"group\";\nsetAttr \".tx\" 4;\n"
      "createNode checker -n \"own\";\ncreateNode lambert -n \"ownMaterial\";\n"
      "createNode reference -n \"pRN\";\nsetAttr \".ed\" -type \"dataReferenceEdits\"\n"
      "\"pRN\" \"pRN\" 10\n"
      "5 0 \"pRN\" \"p:f.outColor\" \"p:m.incandescence\" \"pRN.phl[3]\" \"pRN.phl[4]\" \"\"\n"
      "0 \"|p:a\" \"|group\" \"-s -r \"\n"
      "1 |p:a \"wear\" \"wr\" \" -ci 1 -at \\\"double\\\"\"\n"
      "2 \"|group|p:a\" \"translate\" \" -type \\\"double3\\\" 1 2 3\"\n"
      "2 \"|group|p:a\" \"wear\" \" 0.5\"\n"
      "2 \"p:f\" \"fileTextureName\" \" -type \\\"string\\\" \\\"new.psd\\\"\"\n"
      "2 \"p:gone\" \"visibility\" \" 0\"\n"
      "3 \"p:f.outColor\" \"p:m.color\" \"\"\n"
      "8 \"|group|p:a\" \"translateX\"\n"
      "5 4 \"pRN\" \"p:m.color\" \"pRN.placeHolderList[1]\" \"\"\n"
      "5 3 \"pRN\" \"p:f.outColor\" \"pRN.placeHolderList[2]\" \"\";\n"
      "connectAttr \"own.oc\" \"pRN.phl[1]\";\nconnectAttr \"pRN.phl[2]\" \"ownMaterial.c\";\n";
  std::string saved[2];
  for (std::string& text : saved) {
    const std::string warnings = &text == saved ? open(scene) : openPath(pathOf("scene2.ma"));
    EXPECT_EQ(HostState::current().problems.list.size(), 2u) << warnings;
    EXPECT_NE(warnings.find("1 of 10 edits of references were not applied, first pRN: "),
              std::string::npos)
        << warnings;
    EXPECT_NE(warnings.find("prop.ma was not loaded in the scene as saved"), std::string::npos);
    EXPECT_EQ(run("ls -l \"p:b\""), "|group|p:a|p:b");
    EXPECT_EQ(run("getAttr \"p:a.t\""), "1 2 3");
    EXPECT_EQ(run("getAttr \"p:a.wear\""), "0.5");
    EXPECT_EQ(run("getAttr \"p:f.ftn\""), "new.psd");
    EXPECT_EQ(run("listConnections \"p:m.c\""), "own");
    EXPECT_EQ(run("listConnections \"p:m.incandescence\""), "p:f");
    EXPECT_EQ(run("listConnections ownMaterial.c"), "p:f");
    ASSERT_TRUE(save("scene2.ma"));
    text = readAll(pathOf("scene2.ma"));
    EXPECT_NE(text.find("connectAttr \"own.outColor\" \"pRN.placeHolderList[1]\";"),
              std::string::npos)
        << text;
  }
  EXPECT_EQ(saved[0], saved[1]);
}

// What lacks something since a file is missing, or since an edit is of something that is not there.
TEST_F(SceneText, GapsThatReferencesLeave) {
  writeText("prop.ma",
            "//Maya ASCII 2018 scene\ncreateNode transform -n \"a\";\ncreateNode lambert -n "
            "\"m\";\ncreateNode shadingEngine -n \"SG\";\n");
  writeText("outer.ma", "//Maya ASCII 2018 scene\nfile -r -ns \"q\" -rfn \"qRN\" \"prop.ma\";\n");
  const std::string notFound = "needs the referenced file gone.ma (pRN), which was not found";
  const std::string unapplied = "has an edit of pRN that was not applied: ";
  const struct {
    const char* file;
    const char* edit;
    const char* node;
    std::string text;  // how it begins; empty: the node lacks nothing
  } kCases[] = {
      {"gone.ma", R"(0 "|p:a" "|group" "-s -r ")", "group", notFound},
      {"gone.ma", R"(0 "|p:a" "|group|p:b" "-s -r ")", "group", notFound},
      {"gone.ma", R"(2 "|group|p:a" "translate" " 1 2 3")", "group", notFound},
      {"gone.ma", R"(5 3 "pRN" "p:f.outColor" "pRN.phl[1]" "")", "pRN", notFound},
      {"gone.ma", R"(3 "|group|p:aShape.iog" ":initialShadingGroup.dsm" "-na")",
       ":initialShadingGroup", ""},
      {"gone.ma", R"(5 4 "pRN" ":initialShadingGroup.dsm" "pRN.phl[1]" "")", ":initialShadingGroup",
       ""},
      {"gone.ma", R"(0 "|p:a" "" "-s -r ")", "group", ""},
      {"prop.ma", R"(0 "|p:a" "|group" "-s -r ")", "group", ""},
      {"prop.ma", R"(0 "|own" "|p:a" "-s -r ")", "p:a", unapplied + "'own' stays where it is"},
      {"prop.ma", R"(0 "|persp" "|p:a" "-s -r ")", "p:a", ""},
      {"prop.ma", R"(2 "|p:a" "translate" " -type \"double3\" 1 2")", "p:a",
       unapplied + "setAttr: "},
      {"prop.ma", R"(3 "p:gone.outColor" "p:m.color" "")", "p:m", unapplied + "No object"},
      {"prop.ma", R"(3 "p:m.outColor" "p:SG.surfaceShader" "")", "p:SG", ""},
      {"prop.ma", R"(1 p:gone "wear" "wr" " -at \"double\"")", "p:a", ""},
  };
  for (const auto& c : kCases) {
    open(std::string("file -r -ns \"p\" -rfn \"pRN\" \"") + c.file +
         "\";\ncreateNode transform -n \"group\";\ncreateNode transform -n \"own\";\n"
         "createNode mesh -n \"ownShape\" -p \"own\";\n"
         "createNode reference -n \"pRN\";\nsetAttr \".ed\" -type \"dataReferenceEdits\" \"pRN\" "
         "\"pRN\" 1 " +
         c.edit + ";\n");
    const SceneGap* const gap = HostState::current().gaps.at(*node(c.node));
    EXPECT_EQ(gap == nullptr, c.text.empty()) << c.edit;
    EXPECT_EQ((gap == nullptr ? "" : gap->text).substr(0, c.text.size()), c.text) << c.edit;
  }
  const std::string nested =
      "file -r -ns \"o\" -rfn \"oRN\" \"outer.ma\";\ncreateNode transform -n \"group\";\n"
      "createNode reference -n \"oRN\";\nsetAttr \".ed\" -type \"dataReferenceEdits\" \"oRN\" "
      "\"oRN\" 0 \"o:qRN\" 2 0 \"|o:q:a\" \"|group\" \"-s -r \" 2 \"|group|o:q:a\" "
      "\"translateX\" \" 7\";\n";
  EXPECT_EQ(open(nested), "");
  EXPECT_EQ(run("getAttr \"|group|o:q:a.tx\""), "7");
  fs::remove(pathOf("prop.ma"));
  open(nested);
  ASSERT_NE(HostState::current().gaps.at(*node("group")), nullptr);
  EXPECT_NE(HostState::current().gaps.at(*node("group"))->text.find("prop.ma (qRN)"),
            std::string::npos);
}

TEST_F(SceneText, UnitsBecomeCentimetresAndDegrees) {
  EXPECT_EQ(open(std::string("currentUnit -l meter -a radian -t film;\n") + kSquare +
                 "createNode transform -n \"t\";\n\tsetAttr \".t\" -type \"double3\" 1 2 "
                 "3;\n\tsetAttr \".rx\" "
                 "1.5707963267948966;\n\tsetAttr \".s\" -type \"double3\" 2 2 2;\n"),
            "");
  EXPECT_EQ(run("getAttr t.t"), "100 200 300");
  EXPECT_EQ(run("getAttr t.rx"), "90");
  EXPECT_EQ(run("getAttr t.s"), "2 2 2");
  EXPECT_EQ(node("squareShape")->mesh->points()[1].x, 100.0);
}

// In the unit that it had, so that numbers of which the host does not know the kind keep their
// meaning.
TEST_F(SceneText, AScenesUnitIsKept) {
  const std::vector<std::string> statements = {
      "currentUnit -l meter -a radian -t ntsc;",
      "setAttr \".translate\" -type \"double3\" 0.1 0.7 1e-3;",
      "setAttr \".rotateX\" 0.3;",
      "setAttr \".reach\" 12.5;",
      "setAttr \".radius\" 0.3;",
      "setAttr -s 2 \".vt[0:1]\" 0.1 0.2 0.3 0.7 -0.9 1.1;",
      "setAttr \".pt[0]\" -type \"float3\" 0.01 0.02 0.03;",
      "setAttr \".thickness\" 0.25;",
      "setAttr \".vl[0].vt[0:1]\" -type \"float3\" 0.1 0.7 1.1 0.3 0 0.9;",
      "setAttr \".sideLength\" 0.7;"};
  EXPECT_EQ(
      open(statements[0] + "createNode transform -n \"t\";" + statements[1] + statements[2] +
           "createNode oddNode -n \"o\";" + statements[3] + "createNode polySphere -n \"s\";" +
           statements[4] + "createNode mesh -n \"m\";" + statements[5] + statements[6] +
           "createNode polyPipe -n \"pipe\";" + statements[7] + "createNode tweak -n \"tweak\";" +
           statements[8] + "createNode polyPrism -n \"prism\";" + statements[9]),
      "");
  EXPECT_EQ(run("getAttr s.r"), "30");
  EXPECT_EQ(run("getAttr pipe.thickness"), "25");
  EXPECT_EQ(run("getAttr prism.sl"), "70");
  ASSERT_TRUE(save("saved.ma"));
  const std::string saved = readAll(pathOf("saved.ma"));
  EXPECT_NE(saved.find("setAttr \".translateX\" 0.1;"), std::string::npos) << saved;
  for (const std::string& statement : statements) {
    EXPECT_TRUE(statement.find("translate") != std::string::npos ||
                saved.find(statement) != std::string::npos)
        << statement << '\n'
        << saved;
  }
}

TEST_F(SceneText, HistoriesOfPrimitivesAreEvaluatedAndOthersNamed) {
  const std::string warnings = open(
      "createNode transform -n \"p\";\ncreateNode mesh -n \"pShape\" -p \"p\";\ncreateNode "
      "polyPlane -n \"pp\";\n"
      "\tsetAttr \".w\" 4;\n\tsetAttr \".sw\" 3;\n\tsetAttr \".sh\" 2;\nconnectAttr \"pp.out\" "
      "\"pShape.i\";\n"
      "createNode mesh -n \"q\";\ncreateNode polyBevel -n \"bevel\";\nconnectAttr \"bevel.out\" "
      "\"q.i\";\n");
  EXPECT_NE(warnings.find("'q' is made by 'bevel' (polyBevel)"), std::string::npos) << warnings;
  const MeshData& mesh = *node("pShape")->mesh;
  EXPECT_EQ(mesh.pointCount(), 4 * 3);
  EXPECT_EQ(mesh.faceCount(), 3 * 2);
  EXPECT_EQ(mesh.box().max.x - mesh.box().min.x, 4.0);
}

// Statements of sound scenes that the host has no use for, or only half: none is warned of, each
// stands in the saved scene, and that one saves as it was.
TEST_F(SceneText, WhatTheHostDoesNotKnowComesBack) {
  const struct {
    std::string before;  // the node that the statements belong to
    std::vector<std::string> statements;
  } kCases[] = {
      {"createNode blendShape -n \"n\";",
       {"setAttr \".aal\" -type \"attributeAlias\" {\"a\",\"weight[0]\",\"b\",\"weight[1]\"};",
        "setAttr -k on \".w[0:1]\" 1 0.5;",
        "setAttr \".it[0].itg[0].iti[6000].ict\" -type \"componentList\" 1 \"vtx[0:7]\";"}},
      {"createNode nurbsCurve -n \"n\";",
       {"setAttr \".cached\" -type \"nurbsCurve\" 1 1 0 no 3 2 0 1 2 0 0 0 1 0 0;"}},
      {"createNode transform -n \"n\";",
       {"setAttr -av \".translateX\" 3;", "setAttr -ca off \".translateY\" 4;",
        "setAttr \".odd\" -type \"lattice\" 2 2 2 8 0 0 0;",
        "setAttr \".v\" -type \"float3\" 1 2 3;", "setAttr \".ro\" 1 2;",
        "lockNode -l 0 -lu on ;"}},
      {"createNode joint -n \"n\";",
       {"addAttr -ci true -sn \"liw\" -ln \"lockInfluence\" -bt \"lock\" -min 0 -max 1 -at "
        "\"bool\";",
        "setAttr \".lockInfluence\" yes;"}},
      {"createNode transform -n \"n\";",
       {"addAttr -dcb 0 -ci true -sn \"d\" -ln \"d\" -dt \"float3\";",
        "addAttr -ci true -sn \"e\" -ln \"e\" -dt \"long2\";",
        "addAttr -ci true -sn \"rotatePivot\" -ln \"rotatePivot\" -at \"double\";",
        "setAttr \".d\" -type \"float3\" 1 2 3;", "setAttr \".e\" -type \"long2\" 7 8;"}},
      {"select -ne :standardSurface1;", {"setAttr \".b\" 0.8;"}},
      {"createNode mesh -n \"n\";",
       {"setAttr \".tweakLocation\" 3;", "setAttr \".uvst[0].new\" 3;",
        "setAttr \".creaseData\" -type \"dataPolyComponent\" Index_Data Edge 0;"}},
      {"createNode script -n \"n\";",
       {"setAttr \".before\" -type \"string\" \"if (1) { print \\\"x;\\\"; }\";"}},
      {"",
       {"relationship \"link\" \":lightLinker1\" \"far:SG.message\" "
        "\":defaultLightSet.message\";"}},
      {"createNode polyTweakUV -n \"p\";\ncreateNode mesh -n \"n\";",
       {"connectAttr \"p.uvtk[0]\" \"n.uvSet[0].uvTweakLocation\";",
        "connectAttr \"p.a\" \"n.pnts[2].pntx\";",
        "connectAttr \"p.b\" \"n.uvSet[1].later[2].x\";"}},
  };
  for (const auto& c : kCases) {
    std::string text = c.before + "\n";
    for (const std::string& statement : c.statements) text += statement + "\n";
    EXPECT_EQ(open(text), "");
    ASSERT_TRUE(save("saved.ma"));
    const std::string saved = readAll(pathOf("saved.ma"));
    for (const std::string& statement : c.statements)
      EXPECT_NE(saved.find(statement), std::string::npos) << statement << '\n' << saved;
    EXPECT_EQ(openPath(pathOf("saved.ma")), "");
    ASSERT_TRUE(save("again.ma"));
    EXPECT_EQ(readAll(pathOf("again.ma")), saved);
  }
}

// Nodes of which the host knows the type or not, with and without what stands above them.
// Long statements of numbers take a short cut; a name with an escape in it is still the name.
TEST_F(SceneText, LongNumbersUnderAnOddNameComeBack) {
  std::string numbers;
  for (int i = 0; i < 200; ++i) numbers += " " + std::to_string(i);
  const std::string statement = "\tsetAttr \".\\nkyts\"" + numbers + ";\n";
  open("createNode skinCluster -n \"s\";\n" + statement);
  ASSERT_TRUE(save("odd.ma"));
  EXPECT_NE(readAll(pathOf("odd.ma")).find(statement), std::string::npos);
}

TEST_F(SceneText, NodesKeepWhatStandsBelowThem) {
  const std::string warnings = open(
      "createNode fosterParent -n \"f\";\ncreateNode dagContainer -n \"asset\" -p \"f\";\n"
      "\tsetAttr \".tx\" 5;\n"
      "createNode someonesGroup -n \"g\";\ncreateNode someonesGroup -n \"h\" -p \"g\";\n"
      "createNode transform -n \"t\" -p \"h\";\n"
      "createNode transform -n \"c\";\ncreateNode camera -n \"cShape\" -p \"c\";\n"
      "createNode transform -n \"t\" -p \"cShape\";\n"
      "createNode imagePlane -n \"picture\" -p \"|c|cShape->|t\";\n"
      "createNode locator -n \"l\" -p \"far:asset\";\n"
      "connectAttr \"far:asset.t\" \"t.s\";\nconnectAttr \"never.o\" \"asset.rx\";\n"
      "connectAttr \"|c|cShape->|t.tx\" \"asset.ry\";\n");
  EXPECT_EQ(HostState::current().problems.damages, 0u) << warnings;
  EXPECT_EQ(run("ls -l t picture l"), "|g|h|t |c|cShape->|t |c|cShape->|t|picture |far:asset|l");
  EXPECT_EQ(run("getAttr asset.worldMatrix[0]").substr(24, 1), "5");
  ASSERT_TRUE(save("saved.ma"));
  const std::string saved = readAll(pathOf("saved.ma"));
  for (const char* statement :
       {"createNode locator -n \"l\" -p \"far:asset\";", "createNode someonesGroup -n \"g\";",
        "connectAttr \"never.o\" \"asset.rx\";",
        "createNode imagePlane -n \"picture\" -p \"cShape->|t\";"}) {
    EXPECT_NE(saved.find(statement), std::string::npos) << statement << '\n' << saved;
  }
  EXPECT_EQ(saved.find("fosterParent -n \"far"), std::string::npos);
  openPath(pathOf("saved.ma"));
  EXPECT_EQ(run("ls -l t picture l"), "|g|h|t |c|cShape->|t |c|cShape->|t|picture |far:asset|l");
}

// Everything that a session can make, saved and opened again.
TEST_F(SceneText, WhatWasMadeComesBack) {
  open(std::string("requires maya \"2018\";\nfileInfo \"product\" \"Maya 2018\";\n") + kSquare +
       "\tsetAttr \".n[0:5]\" -type \"float3\" 0 1 0 0 1 0 0 1 0 1e+20 1e+20 1e+20 0 0.6 0.8 0 1 "
       "0;\n"
       "\tsetAttr \".pt[2]\" -type \"float3\" 0 0.25 0;\n"
       "\tsetAttr \".clst[0].clsn\" -type \"string\" \"tint\";\n\tsetAttr \".clst[0].rprt\" 3;\n"
       "\tsetAttr -s 2 \".clst[0].clsp[0:1]\"  1 0 0 0 1 0;\n\tsetAttr \".unknown[2].thing\" 1 2 "
       "\"three\" -4;\n"
       "createNode strangeNode -n \"strange\";\n\tsetAttr \".data\" -type \"oddType\" 3 \"x y\" f "
       "2;\n"
       "\taddAttr -ci true -sn \"pair\" -ln \"pair\" -at \"double2\" -nc 2;\n"
       "\taddAttr -ci true -sn \"pairA\" -ln \"pairA\" -at \"double\" -p \"pair\";\n"
       "\taddAttr -ci true -sn \"pairB\" -ln \"pairB\" -at \"double\" -p \"pair\";\n"
       "\tsetAttr \".pair\" -type \"double2\" 0.1 -0;\n");
  run("addAttr -ln goblinName -dt \"string\" squareShape; "
      "setAttr -type \"string\" squareShape.goblinName \"a \\\"quoted\\\" \\\\ name;\\n`ls`\"; "
      "setAttr -lock true squareShape.goblinName; setAttr squareShape.pt[3] 0 2 0; setAttr -l true "
      "square.tx; createNode lambert -n "
      "skin; "
      "createNode PSDTextureNode -n tex; sets -renderable true -noSurfaceShader true -empty -name "
      "skinSG; "
      "connectAttr -f skin.outColor skinSG.surfaceShader; connectAttr tex.outColor skin.color; "
      "sets -e -fe skinSG square.f[1]; instance square; parent -w square1; setAttr square1.t 0.1 0 "
      "-0.0;");
  const std::string members = run("sets -q skinSG");
  const std::string others = run("sets -q initialShadingGroup");
  ASSERT_TRUE(save("saved.ma"));
  EXPECT_EQ(openPath(pathOf("saved.ma")), "");
  EXPECT_EQ(run("getAttr squareShape.goblinName"), "a \"quoted\" \\ name;\n`ls`");
  EXPECT_EQ(run("getAttr -l squareShape.goblinName"), "1");
  EXPECT_EQ(run("getAttr -l square.tx"), "1");
  EXPECT_EQ(run("getAttr square1.t"), "0.1 0 -0");
  EXPECT_EQ(run("getAttr strange.pair"), "0.1 -0");
  EXPECT_EQ(run("sets -q skinSG"), members);
  EXPECT_EQ(run("sets -q initialShadingGroup"), others);
  EXPECT_EQ(run("listConnections skin.color"), "tex");
  EXPECT_EQ(run("size(`ls -ap -type mesh`)"), "2");
  const MeshData& mesh = *node("squareShape")->mesh;
  ASSERT_EQ(mesh.problem(), "");
  EXPECT_EQ(mesh.cornerVertices(), (std::vector<int>{0, 1, 2, 0, 2, 3}));
  EXPECT_EQ(mesh.points()[3].x, 0.1);
  EXPECT_EQ(mesh.points()[3].y, 2.0);
  EXPECT_TRUE(std::signbit(mesh.points()[1].z));
  EXPECT_FALSE(mesh.edges()[0].smooth());
  EXPECT_TRUE(mesh.edges()[1].smooth());
  ASSERT_EQ(mesh.uvSets().size(), 1u);
  EXPECT_EQ(mesh.uvSets()[0].ids, (std::vector<int>{0, 1, 2, 0, 2, 3}));
  ASSERT_EQ(mesh.storedNormals().size(), 6u);
  EXPECT_EQ(mesh.storedNormals()[3].x, kUnlockedNormal);
  EXPECT_EQ(mesh.points()[2].y, 0.25);
  ASSERT_EQ(mesh.colourSets().size(), 1u);
  EXPECT_EQ(mesh.colourSets()[0].colours[1].g, 1.0f);
  const std::string saved = readAll(pathOf("saved.ma"));
  EXPECT_NE(saved.find("setAttr \".data\" -type \"oddType\" 3 \"x y\" f 2;"), std::string::npos);
  EXPECT_NE(saved.find("setAttr \".unknown[2].thing\" 1 2 \"three\" -4;"), std::string::npos);
  EXPECT_NE(saved.find("fileInfo \"product\" \"Maya 2018\";"), std::string::npos);
  ASSERT_TRUE(save("again.ma"));
  EXPECT_TRUE(readAll(pathOf("again.ma")) == saved);
}

TEST_F(SceneText, ImportRenamesWhatClashesAndKeepsItsConnections) {
  writeText("part.ma", std::string("//Maya ASCII 2018 scene\n") + kSquare +
                           "createNode lambert -n \"m\";\ncreateNode file -n \"f\";\nconnectAttr "
                           "\"f.oc\" \"m.c\";\nconnectAttr \"squareShape.iog\" "
                           "\":initialShadingGroup.dsm\" -na;\n");
  open(std::string(kSquare) + "createNode lambert -n \"m\";\n");
  EXPECT_EQ(run("file -import \"part.ma\""), pathOf("part.ma"));
  EXPECT_EQ(run("ls -type mesh"), "square|squareShape square1|squareShape");
  EXPECT_EQ(run("sets -q initialShadingGroup"), "square1|squareShape");
  EXPECT_EQ(run("listConnections f"), "m1");
  EXPECT_EQ(run("file -import -ns \"again\" \"part.ma\"; listConnections \"again:f\""), "again:m");
  EXPECT_EQ(run("select square; file -exportSelected -type \"mayaAscii\" \"out.ma\""),
            pathOf("out.ma"));
  openPath(pathOf("out.ma"));
  EXPECT_EQ(run("ls -type mesh"), "squareShape");
}

TEST_F(SceneText, AFailedSaveLeavesTheOldFile) {
  writeText("kept.ma", "//Maya old");
  fs::create_directory(folder_ / "folder.ma");
  const morvane::Status status = writeScene(HostState::current(), pathOf("folder.ma"));
  EXPECT_EQ(status.code(), morvane::StatusCode::kNotAFile);
  EXPECT_NE(status.text().find("folder.ma"), std::string::npos);
  EXPECT_FALSE(save("gone/kept.ma"));
  EXPECT_EQ(readAll(pathOf("kept.ma")), "//Maya old");
  EXPECT_EQ(run("file -save"),
            "failed: file: the scene has no name; give it one with file -rename");
}

}  // namespace
}  // namespace host
