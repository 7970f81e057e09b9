#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/text/Numbers.h"
#include "tests/file/BinaryTwin.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

using twin::head;
using twin::real;
using twin::single;
using twin::text;
using twin::word;

class BinaryScenes : public SceneFiles {
 protected:
  std::string openBytes(const std::string& bytes, const std::string& name = "scene.mb") const {
    writeText(name, bytes);
    return openPath(pathOf(name));
  }

  // Opens a file of one node with these chunks behind its creation.
  std::string openNode(const std::string& tag, const std::string& chunks,
                       const twin::Layout& layout = {}) const {
    return openBytes(layout.file(
        layout.container("HEAD", layout.chunk("TUNI", "pal") + layout.chunk("TDUR", "141120000")) +
        layout.container(tag, layout.chunk("CREA", twin::creation("it")) + chunks)));
  }

  std::string saved() const {
    EXPECT_TRUE(save("saved.ma"));
    return readAll(pathOf("saved.ma"));
  }

  // What a saved scene says of its nodes.
  std::string savedNodes() const {
    const std::string all = saved();
    return all.substr(all.find("createNode"));
  }
};

constexpr char kEverything[] = R"(
createNode transform -n "top";
	addAttr -ci true -sn "goblinName" -ln "goblinName" -dt "string";
	addAttr -ci true -k true -sn "size" -ln "size" -at "double";
	setAttr -l on ".tx" 1.5;
	setAttr -k off ".v" no;
	setAttr -k off -cb on ".sx";
	setAttr -av ".sy" 2;
	setAttr ".r" -type "double3" 180 -45 90;
	setAttr ".goblinName" -type "string" "gr\"\303\274n";
	setAttr -k on ".size" 2.5;
createNode transform -n "below" -p "top";
createNode transform -n "below1" -p "top";
createNode mesh -n "shape" -p "|top|below";
	setAttr -s 2 ".iog[0].og";
	setAttr ".iog[0].og[0].gcl" -type "componentList" 1 "f[0]";
	setAttr ".uvst[0].uvsn" -type "string" "map1";
	setAttr ".uvst[0].uvsp[0:2]" 0 0.25 1 0 1 1;
	setAttr ".uvst[3].uvsn" -type "string" "light";
	setAttr ".uvst[3].uvsp[0]" 0.125 0.0625;
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".clst[0].clsn" -type "string" "paint";
	setAttr ".clst[0].clsp[0]" 1 0.5 0.25 1;
	setAttr -s 7 ".vt[0:6]" 0 0 0 8 0 0 8 0 8 0 0 8 2 0 2 3 0 2 2 0 3;
	setAttr -s 8 ".ed[0:7]" 0 1 1 1 2 0 2 3 1 3 0 1 4 6 1 6 5 0 5 4 1 0 2 1;
	setAttr -s 3 ".n[0:2]" 0 1 0 1e+20 1e+20 1e+20 0 -1 0;
	setAttr -s 2 ".fc[0:1]" -type "polyFaces"
		f 4 0 1 2 3 mu 0 4 0 1 2 -1 mc 0 4 0 0 -1 0
		h 3 4 5 6 mu 0 3 0 1 2
		f 3 0 1 -8 mu 0 3 2 1 0 mu 3 3 0 0 0;
	setAttr ".pt[2]" -type "float3" 0 0.5 0;
createNode lambert -n "paint:grass";
createNode shadingEngine -n "grassSG";
	setAttr ".ro" yes;
createNode file -n "picture";
	setAttr ".ftn" -type "string" "textures/a.psd";
createNode someForeignType -n "foreign";
parent -s -nc -r -add "|top|below|shape" "|top|below1";
connectAttr "picture.oc" "paint:grass.c";
connectAttr "paint:grass.oc" "grassSG.ss";
connectAttr "|top|below|shape.iog.og[0]" "grassSG.dsm" -na;
connectAttr "|top|below1|shape.iog[1]" ":initialShadingGroup.dsm" -na;
)";

// Nodes, numbers, angles, flags, dynamic attributes, holes, sets of UVs and colours, instances and
// connections: the file that Maya would write in its other form is the same scene.
TEST_F(BinaryScenes, AreWhatTheirTwinsInTextAre) {
  for (const bool isWide : {true, false}) {
    ASSERT_EQ(open(kEverything), "");
    const std::string expected = savedNodes();
    const std::string bytes = twin::sceneFile({isWide});
    EXPECT_EQ(openBytes(bytes, "a scene by any name"), "");
    EXPECT_EQ(savedNodes(), expected);
    EXPECT_EQ(HostState::current().problems.end, SceneProblems::End::kWhole);
  }
}

// Tables are read in blocks: faces lie across their ends, a triangle first so that quads do.
TEST_F(BinaryScenes, HoldMeshesThatAreLargerThanABlock) {
  constexpr int kQuads = 4000;
  std::string faces = "f 3 0 1 4 mu 0 3 0 1 2";
  for (int i = 0; i < kQuads; ++i) faces += "\n\tf 4 0 1 2 3 mu 0 4 2 1 0 2";
  ASSERT_EQ(open("createNode transform -n \"t\";\ncreateNode mesh -n \"s\" -p \"t\";\n"
                 "\tsetAttr \".uvst[0].uvsp[0:2]\" 0 0 1 0 1 1;\n"
                 "\tsetAttr \".vt[0:3]\" 0 0 0 1 0 0 1 0 1 0 0 1;\n"
                 "\tsetAttr \".ed[0:4]\" 0 1 1 1 2 1 2 3 1 3 0 1 2 0 1;\n\tsetAttr \".fc[0:" +
                 std::to_string(kQuads) + "]\" -type \"polyFaces\" " + faces + ";\n"),
            "");
  const std::string expected = savedNodes();
  EXPECT_EQ(openBytes(twin::sceneFile({})), "");
  EXPECT_EQ(node("s")->mesh->faceCount(), kQuads + 1);
  EXPECT_TRUE(savedNodes() == expected);
}

// A chunk, and the statement that a saved scene has for it.
TEST_F(BinaryScenes, SayInTheirChunksWhatStatementsSay) {
  const auto ticks = [](int frames) { return twin::longWord(141120000ULL / 25 * frames); };
  std::string xform;
  for (int i = 0; i < 40; ++i) xform += i == 6 ? word(5) + word(0x01000000) : real(i);
  const std::string curve = word(1) + word(1) + word(0) + std::string(1, '\0') + word(3) + word(2) +
                            real(0) + real(1) + word(2) + real(0) + real(0) + real(0) + real(1) +
                            real(2) + real(3);
  const std::string edits = text("aRN") + word(0) + word(1) + text("aRN") + word(2) + word(2) +
                            text("|a:b") + text("translate") + text(" 1") + word(5) + word(3) +
                            text("aRN") + text("a:b.tx") + text("aRN.phl[1]") + text("");
  struct Case {
    const char* node;
    const char* chunk;
    std::string content;
    const char* statement;
  };
  const Case kCases[] = {
      {"XFRM", "DBL3", head("zz") + real(1) + real(-0.5) + real(0),
       "setAttr \".zz\" -type \"double3\" 1 -0.5 0;"},
      {"XFRM", "FLT2", head("zz[0:1]") + single(0.5) + single(1) + single(2) + single(3),
       "setAttr \".zz[0:1]\" -type \"float2\" 0.5 1 2 3;"},
      {"XFRM", "DBLE",
       head("zz[0:1].w", 0) + word(2) + word(0) + real(0.5) + word(7) + real(0.25) + word(0),
       "setAttr \".zz[0:1].w\" 2 0 0.5 7 0.25 0;"},
      {"XFRM", "DBL3", head("r") + real(3.14159265358979323846) + real(0) + real(0),
       "setAttr \".rotateX\" 180;"},
      {"XFRM", "DBL3", head("mnrl") + real(3.14159265358979323846) + real(0) + real(0),
       "setAttr \".mnrl\" -type \"double3\" 180 0 0;"},
      {"DORC", "DBL3", head("o") + real(0) + real(0) + real(3.14159265358979323846),
       "setAttr \".offsetZ\" 180;"},
      {"DPAR", "DBLE", head("tg[1].tory") + real(3.14159265358979323846),
       "setAttr \".target[1].targetOffsetRotate.targetOffsetRotateY\" 180;"},
      {"XFRM", "MATR", head("xm[0]") + xform + '\x01' + std::string(7, '\0'),
       "setAttr \".xm[0]\" -type \"matrix\" \"xform\" 0 1 2 3 4 5 5 7 8 9 10 11 12 13 14 15 16 17 "
       "18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 yes;"},
      {"XFRM", "STR#", head("zz") + word(2) + text("a") + text(""),
       "setAttr \".zz\" -type \"stringArray\" 2 \"a\" \"\";"},
      {"XFRM", "I32#", head("zz") + word(2) + word(7) + word(0xFFFFFFFF),
       "setAttr \".zz\" -type \"Int32Array\" 2 7 -1;"},
      {"XFRM", "CMP#",
       head("zz") + word(2) + "CMDV" + word(1) + word(0xFFFFFFFF) + word(9) + "CMDE" + word(2) +
           word(3) + word(3) + word(5) + word(8),
       "setAttr \".zz\" -type \"componentList\" 3 \"vtx[*]\" \"e[3]\" \"e[5:8]\";"},
      {"PCTA", "CMPD",
       head("ktv[0:1]") + ticks(0) + real(0) + ticks(10) + real(3.14159265358979323846),
       "setAttr \".ktv[0:1]\" 0 0 10 180;"},
      {"FBLS", "ATAL",
       head("aal") + word(4) + text("a") + text("w[0]") + text("b\"") + text("w[1]"),
       "setAttr \".aal\" -type \"attributeAlias\" {\"a\",\"w[0]\",\"b\\\"\",\"w[1]\"};"},
      {"XFRM", "FLGS", head("tx", 0x20), "setAttr -k off \".translateX\";"},
      {"XFRM", "FLGS", head("tx", 0x30), "setAttr -k off -cb on \".translateX\";"},
      {"XFRM", "DBLE", head("tx", 0x27) + real(3), "setAttr -l on -av \".translateX\" 3;"},
      {"ABCD", "FLGS", head("unw", 0x26), "setAttr -k on -av \".unw\";"},
      {"ABCD", "FLGS", head("ufe", 0x32), "setAttr -cb on -av \".ufe\";"},
      {"ABCD", "DBLE", head("zz", 0x37) + real(7), "setAttr -l on -av \".zz\" 7;"},
      {"PCUU", "CMPD", head("ktv[0]") + real(1) + real(2), "setAttr \".ktv[0]\" 1 2;"},
      {"NCRV", "NRBC", head("cc") + curve,
       "\" -type \"nurbsCurve\" 1 1 0 no 3 2 0 1 2 0 0 0 1 2 3;"},
      {"REFN", "REFE", head("ed") + edits,
       "setAttr \".edits\" -type \"dataReferenceEdits\" \"aRN\" \"aRN\" 2 2 \"|a:b\" \"translate\" "
       "\" 1\" 5 3 \"aRN\" \"a:b.tx\" \"aRN.phl[1]\" \"\";"},
  };
  const twin::Layout wide;
  for (const Case& it : kCases) {
    EXPECT_EQ(openNode(it.node, wide.chunk(it.chunk, it.content)), "") << it.statement;
    const std::string nodes = savedNodes();
    EXPECT_NE(nodes.find(it.statement), std::string::npos) << it.statement << '\n' << nodes;
  }
}

TEST_F(BinaryScenes, ApplyEditsOfReferences) {
  writeText("prop.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"b\";\n");
  const twin::Layout wide;
  const std::string edits = text("it") + word(0) + word(1) + text("it") + word(1) + word(2) +
                            text("a:b") + text("rotateX") + text(" 30");
  EXPECT_EQ(
      openBytes(wide.file(
          wide.chunk("FREF", text("prop.ma") + text("a") + std::string(2, '\0') + text("it")) +
          wide.container("REFN", wide.chunk("CREA", twin::creation("it")) +
                                     wide.chunk("REFE", head("ed") + edits)))),
      "");
  EXPECT_EQ(run("getAttr \"a:b.rx\""), "30");
}

TEST_F(BinaryScenes, DeclareAttributesAndKeepWhatIsNotKnown) {
  const twin::Layout wide;
  const std::string limited = "aDBL" + word(0x0000404E) + word(1) + word(0) + text("size") +
                              text("sz") + word(0) + real(-1) + real(1) + "DBLE" + real(0.5);
  const std::string named = "aENM" + word(0x00008240) + word(1) + word(0) + text("kind") +
                            text("kd") + text("Kind of it") + text("red:green") + word(0);
  const std::string child = "aFLT" + word(0x00000060) + word(1) + word(0) + text("pX") +
                            text("px_") + text("p") + word(0);
  const std::string compound =
      "aFL2" + word(0x00000450) + word(2) + word(2) + "FLT2DBL2" + text("p") + text("p") + word(0);
  EXPECT_EQ(openNode("QQQQ", wide.chunk("ATTR", limited) + wide.chunk("ATTR", named) +
                                 wide.chunk("ATTR", compound) + wide.chunk("ATTR", child)),
            "");
  const std::string nodes = savedNodes();
  for (const char* const expected :
       {"createNode QQQQ -n \"it\"",
        "-k true -sn \"sz\" -ln \"size\" -dv 0.5 -min -1 -max 1 -at \"double\"",
        "-nn \"Kind of it\" -en \"red:green\" -at \"enum\"",
        "-uac -ci true -sn \"p\" -ln \"p\" -at \"float2\" -nc 2",
        "-ln \"pX\" -at \"float\" -p \"p\""}) {
    EXPECT_NE(nodes.find(expected), std::string::npos) << expected << '\n' << nodes;
  }
  const std::string notice =
      openNode("XFRM", wide.chunk("ZZZZ", head("a")) + wide.chunk("ZZZZ", head("b")));
  EXPECT_NE(notice.find("byte 140: chunks ZZZZ hold something that is not known"),
            std::string::npos)
      << notice;
  EXPECT_EQ(HostState::current().problems.notices, 1u);
  EXPECT_EQ(HostState::current().problems.damages, 0u);
  EXPECT_NE(openNode("XFRM", wide.chunk("ATTR", "aXYZ" + limited.substr(4))).find("the type aXYZ"),
            std::string::npos);
}

// Files of both kinds refer to one another; names and commands that choose a kind.
TEST_F(BinaryScenes, ReferToFilesOfBothKindsAndAreTypesOfFiles) {
  const twin::Layout wide;
  const twin::Layout narrow{false};
  const auto refersTo = [](const twin::Layout& layout, const std::string& path) {
    return layout.container("FREF",
                            layout.chunk("FREF", text(path) + text("in") + "\1\1" + text("inRN")));
  };
  const auto makes = [](const twin::Layout& layout, const std::string& name) {
    return layout.container("XFRM", layout.chunk("CREA", twin::creation(name)));
  };
  writeText("deepest.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"deepest\";\n");
  writeText("middle.mb",
            narrow.file(refersTo(narrow, "gone/deepest.ma") + makes(narrow, "middle")));
  writeText("outer.mb", wide.file(refersTo(wide, "middle.mb") + makes(wide, "outer")));
  EXPECT_EQ(openPath(pathOf("outer.mb")), "");
  EXPECT_EQ(run("ls outer \"in:middle\" \"in:in:deepest\""), "outer in:middle in:in:deepest");
  EXPECT_NE(saved().find("-typ \"mayaBinary\" \"middle.mb\""), std::string::npos);

  EXPECT_EQ(identifyFile(HostState::current(), pathOf("outer.mb")), "mayaBinary");
  EXPECT_EQ(run("file -new"), "untitled");
  EXPECT_EQ(run("file -o -type \"mayaBinary\" \"outer.mb\"; objExists outer"), "1");
  EXPECT_EQ(run("file -i -ns \"twice\" \"middle.mb\"; objExists \"twice:middle\""), "1");
  const std::string only = "only Maya ASCII is written";
  EXPECT_NE(run("file -s").find(only), std::string::npos);
  EXPECT_NE(run("file -ea -type \"mayaBinary\" \"all\"").find(only), std::string::npos);
  EXPECT_NE(run("file -ea \"all.MB\"").find(only), std::string::npos);
  EXPECT_FALSE(fs::exists(pathOf("all.MB")));
}

// --- Hostile files

// Where each chunk and container begins in a sound file.
void boundariesOf(const std::string& bytes, std::size_t begin, std::size_t end,
                  std::vector<std::size_t>& places) {
  while (begin + 16 <= end) {
    places.push_back(begin);
    std::size_t length = 0;
    for (std::size_t i = 8; i < 16; ++i)
      length = length << 8 | static_cast<unsigned char>(bytes[begin + i]);
    const std::string tag = bytes.substr(begin, 4);
    const bool isContainer = tag == "FOR8" || tag == "LIS8";
    if (isContainer) boundariesOf(bytes, begin + 20, begin + 16 + length, places);
    begin += 16 + (isContainer ? length : (length + 7) / 8 * 8);
  }
}

TEST_F(BinaryScenes, CutOffAnywhereAreCalledDamaged) {
  open(kEverything);
  const std::string whole = twin::sceneFile({});
  std::vector<std::size_t> places;
  boundariesOf(whole, 0, whole.size(), places);
  ASSERT_GT(places.size(), 50u);
  for (const std::size_t place : places) {
    for (const std::size_t size : {place, place + 5, place + 17}) {
      const std::string warnings = openBytes(whole.substr(0, size));
      if (size < 20) {
        EXPECT_EQ(warnings.substr(0, 6), "failed") << size;
        continue;
      }
      EXPECT_NE(warnings.find("byte " + std::to_string(std::min(size, whole.size())) +
                              ": the file is cut off here"),
                std::string::npos)
          << size << warnings;
      EXPECT_EQ(HostState::current().problems.end, SceneProblems::End::kCut) << size;
    }
  }
}

// Lengths, counts and depths that promise what is not there: told with their place, without the
// memory, and what stands around them is read.
TEST_F(BinaryScenes, BelieveNoLengthNoCountAndNoDepth) {
  const twin::Layout wide;
  const std::string longest(8, '\xFF');
  const auto lying = [&](const std::string& tag, const std::string& length) {
    return tag + word(0) + length + std::string(32, 'x');
  };
  constexpr std::uint64_t kDepth = 1000000;
  std::string deep;
  for (std::uint64_t i = 0; i < kDepth; ++i)
    deep += "FOR8" + word(0) + twin::longWord((kDepth - i) * 20 - 16) + "XFRM";
  struct Case {
    std::string chunks;
    const char* warning;
  };
  const std::string huge = word(0xFFFFFFFF);
  const std::string kPoint = word(3) + word(0) + word(0) + word(0);
  const Case kCases[] = {
      {lying("DBLE", longest), "the chunk DBLE says that it holds 18446744073709551615 bytes"},
      {lying("FOR8", twin::longWord(1000000)), "the chunk FOR8 says that it holds 1000000 bytes"},
      {lying("FOR8", twin::longWord(3)), "has no form type"},
      {"1234567", "7 bytes stand where a chunk should begin"},
      {deep, "containers stand more than 16 deep"},
      {wide.chunk("DBLE", "no end of the name"), "holds something else than its chunk says"},
      {wide.chunk("DBL3", head("t") + real(1)), "holds something else than its chunk says"},
      {wide.chunk("STR#", head("zz") + huge), "holds something else than its chunk says"},
      {wide.chunk("I32#", head("zz") + huge + word(1)), "holds something else"},
      {wide.chunk("ATAL", head("aal") + huge + text("a")), "holds something else"},
      {wide.chunk("CMP#", head("zz") + huge + "CMDF" + huge), "holds something else"},
      {wide.chunk("REFE", head("ed") + text("RN") + huge + text("a") + huge), "something else"},
      {wide.chunk("NRBC", head("cc") + huge + huge + huge + '\1' + word(3) + huge), "else"},
      {wide.chunk("DBLE", head("zz[0:9].w") + huge), "holds something else than its chunk says"},
      {wide.chunk("ATTR", "aDBL" + word(0x40) + huge + "DBLE"), "a chunk ends before"},
      {wide.chunk("DBLE", head("io") + real(1) + real(2)), "as many numbers as it does not have"},
      {wide.chunk("MESH", head("o") + huge + word(0)), "4294967295 numbers for its points"},
      {wide.chunk("MESH", head("o") + word(4) + std::string(16, '\0')), "is not whole"},
      {wide.chunk("MESH", head("o") + kPoint + word(0) + word(1) + word(0)), "has no end"},
      {wide.chunk("MESH", head("o") + kPoint + word(0) + word(1) + word(0x60000000)),
       "a face of 1 edges"},
      {wide.chunk("MESH", head("o") + kPoint + word(0) + word(0) + word(0) + huge), "ends before"},
      {wide.chunk("MESH", head("o") + kPoint + word(0) + word(0) + word(0) + word(1) + huge),
       "has no index"},
      {wide.chunk("MESH", head("o") + kPoint + word(0) + word(0) + word(0) + word(1) + word(0) +
                              "no end of the name"),
       "has no end"},
  };
  for (const Case& it : kCases) {
    const std::string warnings = openBytes(
        wide.file(wide.container("DMSH", wide.chunk("CREA", twin::creation("it")) + it.chunks) +
                  wide.container("XFRM", wide.chunk("CREA", twin::creation("after")))));
    EXPECT_NE(warnings.find(it.warning), std::string::npos) << it.warning << '\n' << warnings;
    EXPECT_NE(warnings.find(": byte "), std::string::npos) << warnings;
    EXPECT_GT(HostState::current().problems.damages, 0u) << it.warning;
    EXPECT_EQ(run("objExists after"), "1") << it.warning;
  }
}

TEST_F(BinaryScenes, HoldNamesThatAreNoUtf8) {
  const twin::Layout wide;
  openNode("XFRM", wide.chunk("STR ", head("notes") + text("\xFF\xC0\x80")) +
                       wide.chunk("CREA", twin::creation("\xFFname\x80")));
  const std::string nodes = savedNodes();
  EXPECT_EQ(openPath(pathOf("saved.ma")).find("failed"), std::string::npos);
  EXPECT_EQ(savedNodes(), nodes);
}

// --- Real files

template <class Element>
std::string bitsOf(const std::vector<Element>& elements) {
  return {reinterpret_cast<const char*>(elements.data()), elements.size() * sizeof(Element)};
}

// Points, UVs and normals of every mesh, to the bit.
std::string meshBits() {
  std::string bits;
  for (const auto& [serial, node] : Scene::current().nodes()) {
    if (node->mesh == nullptr) continue;
    bits += node->name() + bitsOf(node->mesh->storedPoints()) + bitsOf(node->mesh->storedNormals());
    for (const MeshUvSet& set : node->mesh->uvSets()) bits += bitsOf(set.uvs) + bitsOf(set.ids);
  }
  return bits;
}

// What the corpus's list of meshes says of one: vertices, polygons, edges, UVs of each set.
bool holds(const NodePtr& node, std::istringstream counts) {
  const MeshData& mesh = *node->mesh;
  std::size_t points = 0;
  std::size_t faces = 0;
  std::size_t edges = 0;
  counts >> points >> faces >> edges;
  bool same = mesh.storedPoints().size() == points && mesh.edges().size() == edges &&
              mesh.faceCount() == static_cast<int>(faces);
  for (const MeshUvSet& set : mesh.uvSets()) {
    std::size_t uvs = 0;
    counts >> uvs;
    same = same && set.uvs.size() == uvs;
  }
  return same;
}

TEST_F(BinaryScenes, OfTheCorpusHoldTheirMeshesAndStayTheSameThroughSaving) {
  const fs::path corpus = morvane::corpusFolder();
  std::ifstream list(corpus / "mb_meshes.tsv");
  std::map<std::string, std::vector<std::string>> meshes;
  for (std::string line; std::getline(list, line);) {
    const std::size_t tab = line.find('\t');
    meshes[line.substr(0, tab)].push_back(line.substr(tab + 1));
  }
  int files = 0;  // that have nodes below others, or connections, of which the host knows nothing
  std::error_code none;
  for (const auto& entry : fs::recursive_directory_iterator(corpus / "mb", none)) {
    if (entry.path().extension() != ".mb") continue;
    ++files;
    EXPECT_EQ(openPath(entry.path().generic_string()).find("failed"), std::string::npos)
        << entry.path();
    EXPECT_EQ(HostState::current().problems.end, SceneProblems::End::kWhole) << entry.path();
    EXPECT_EQ(HostState::current().problems.damages, 0) << entry.path();
    for (const std::string& line : meshes[fs::relative(entry.path(), corpus).generic_string()]) {
      const std::string name = line.substr(0, line.find('\t'));
      const std::string counts = line.substr(line.find('\t', name.size() + 1));
      const std::vector<NodePtr> named = Scene::current().nodesNamed(name);
      EXPECT_TRUE(std::any_of(named.begin(), named.end(),
                              [&](const NodePtr& each) {
                                return each->mesh != nullptr &&
                                       holds(each, std::istringstream(counts));
                              }))
          << entry.path() << " " << line;
    }
    const std::string nodes = run("sort(`ls -l`)");
    const std::string bits = meshBits();
    const std::string first = saved();
    openPath(pathOf("saved.ma"));
    EXPECT_EQ(run("sort(`ls -l`)"), nodes) << entry.path();
    EXPECT_TRUE(meshBits() == bits) << entry.path();
    EXPECT_TRUE(saved() == first) << entry.path();
  }
  if (files == 0) GTEST_SKIP() << "no corpus";
}

// The numbers of a value, whether it is understood or kept.
std::vector<double> numbersOf(const AttributeValue& value) {
  if (const auto* const number = std::get_if<double>(&value)) return {*number};
  if (const auto* const numbers = std::get_if<std::vector<double>>(&value)) return *numbers;
  std::vector<double> parsed;
  if (const auto* const kept = std::get_if<KeptWords>(&value)) {
    for (const std::string& words : kept->words) {
      std::istringstream each(words);
      for (std::string word; each >> word;)
        parsed.push_back(word == "yes" ? 1.0 : mel::parseNumber(word).value_or(0));
    }
  }
  return parsed;
}

// What is compared of a node that stands in two files.
struct NodeFacts {
  std::string type;
  std::string name;
  std::string uvs;
  std::map<std::string, std::vector<double>> numbers;
};

std::map<std::string, NodeFacts> factsByUuid() {
  std::map<std::string, NodeFacts> all;
  for (const auto& [serial, node] : Scene::current().nodes()) {
    if (node->uuid.empty()) continue;
    NodeFacts& facts = all[node->uuid];
    facts.type = node->type().name();
    facts.name = node->name();
    for (const AttributeState& state : node->values.inWrittenOrder())
      facts.numbers[state.path] = numbersOf(state.value);
    if (node->mesh == nullptr) continue;
    for (const MeshUvSet& set : node->mesh->uvSets())
      facts.uvs += set.name + bitsOf(set.uvs) + bitsOf(set.ids);
  }
  return all;
}

bool areClose(const std::vector<double>& a, const std::vector<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
    return std::abs(x - y) <= 1e-9 + 1e-5 * std::abs(y);
  });
}

// Three rigs that were made from one, and saved in different forms. What poses them differs; what
// they are made of (joints, constraints, poses, deformers) does not.
TEST_F(BinaryScenes, OfTheCorpusAgreeWithTheirRelativesInText) {
  const std::string rigs = "dn246+GuidoNSalvator/assets/riggingFiles/";
  const fs::path binary =
      morvane::corpusFolder() / "mb" / (rigs + "SalvatorRigFiles/duck_salvator_RIG_textured.mb");
  if (!fs::exists(binary)) GTEST_SKIP() << "no corpus";
  openPath(binary.string());
  const auto ours = factsByUuid();
  for (const char* const name :
       {"PoliceDuckRigFiles/duck_police_officer_RIG.ma", "GuidoRigFiles/duck_guido_RIg.ma"}) {
    openPath((morvane::corpusFolder() / "ma" / (rigs + name)).string());
    int nodes = 0;
    int renamed = 0;
    int values = 0;
    for (const auto& [uuid, theirs] : factsByUuid()) {
      const auto found = ours.find(uuid);
      if (found == ours.end()) continue;
      const NodeFacts& it = found->second;
      ++nodes;
      renamed += it.name == theirs.name ? 0 : 1;
      EXPECT_EQ(it.type, theirs.type) << it.name;
      EXPECT_TRUE(it.uvs == theirs.uvs) << it.name;
      if (it.type == "transform" || it.type == "camera" || it.type == "reference") continue;
      for (const auto& [path, numbers] : it.numbers) {
        const auto other = theirs.numbers.find(path);
        if (other == theirs.numbers.end() || path == "bindPose") continue;
        ++values;
        EXPECT_TRUE(areClose(numbers, other->second)) << it.type << " " << it.name << "." << path;
      }
    }
    EXPECT_EQ(renamed, 1);  // the character
    EXPECT_GT(nodes, 250);
    EXPECT_GT(values, 1500);
  }
}

// What follows a line break would be read as commands.
TEST_F(BinaryScenes, AVersionStaysInTheFirstLineOfASavedScene) {
  const twin::Layout wide;
  openBytes(wide.file(wide.container("HEAD", wide.chunk("VERS", "2018\nquit -force;"))));
  EXPECT_EQ(saved().rfind("//Maya ASCII 2018 scene\n", 0), 0u);
}

}  // namespace
}  // namespace host
