// Meshes made by chains of history nodes of any settings: the scene opens, and saves as a scene
// that opens as the same.
#include <string>

#include "fuzz/FuzzTools.h"
#include "fuzz/HostFuzz.h"

using namespace morvane::fuzz;

namespace {

constexpr int kMostNodes = 6;

// A type of node, with the plugs that its mesh comes in and goes out by. Of a setting, "#" stands
// for a small whole number, "@" for any number.
struct Kind {
  const char* type;
  const char* input;  // empty: it makes a mesh of nothing
  const char* output;
  const char* settings[6];
};

constexpr char kTwist[] = "\".txf\" -type \"matrix\" @ @ 0 0 0 @ 0 0 0 0 @ 0 @ 0 0 1";

const Kind kKinds[] = {
    {"polyCube", "", "out", {"\".sw\" #", "\".sh\" #", "\".w\" @"}},
    {"polyPlane",
     "",
     "out",
     {"\".sw\" #", "\".sh\" #", "\".cuv\" #", "\".ax\" -type \"double3\" @ @ @"}},
    {"polySphere", "", "out", {"\".sa\" #", "\".sh\" #", "\".r\" @", "\".cuv\" #"}},
    {"polyCylinder", "", "out", {"\".sa\" #", "\".sc\" #", "\".rcp\" #", "\".cuv\" #"}},
    {"polyCone", "", "out", {"\".sa\" #", "\".sh\" #", "\".sc\" #", "\".cuv\" #"}},
    {"polyTorus", "", "out", {"\".sa\" #", "\".sh\" #", "\".tw\" @", "\".sr\" @"}},
    {"polyPyramid", "", "out", {"\".ns\" #", "\".sh\" #", "\".sc\" #", "\".cuv\" #"}},
    {"transformGeometry", "ig", "og", {kTwist, "\".itf\" #"}},
    {"groupParts",
     "ig",
     "og",
     {"\".ic\" -type \"componentList\" 2 \"f[#:#]\" \"vtx[#]\"", "\".gi\" #"}},
    {"deleteComponent",
     "ig",
     "og",
     {"\".dc\" -type \"componentList\" 2 \"f[#:#]\" \"f[#]\"",
      "\".dc\" -type \"componentList\" 1 \"vtx[#]\""}},
    {"polyExtrudeFace",
     "ip",
     "out",
     {"\".ics\" -type \"componentList\" 2 \"f[#:#]\" \"f[#]\"", "\".lt\" -type \"double3\" @ @ @",
      "\".t\" -type \"double3\" @ @ @", "\".d\" #", "\".kft\" #", "\".tk\" @"}},
    {"polyExtrudeFace",
     "ip",
     "out",
     {"\".ics\" -type \"componentList\" 1 \"f[*]\"", "\".s\" -type \"double3\" @ @ @",
      "\".pvt\" -type \"float3\" @ @ @", "\".ws\" #",
      "\".ix\" -type \"matrix\" @ 0 0 0 0 @ 0 0 0 0 @ 0 @ @ @ 1", "\".kft\" #"}},
    {"polyNormal", "ip", "out", {"\".ics\" -type \"componentList\" 1 \"f[#:#]\"", "\".nm\" #"}},
    {"polyTriangulate", "ip", "out", {"\".ics\" -type \"componentList\" 1 \"f[#:#]\""}},
    {"polySoftEdge", "ip", "out", {"\".ics\" -type \"componentList\" 1 \"e[#:#]\"", "\".a\" @"}},
    {"polyMapDel",
     "ip",
     "out",
     {"\".ics\" -type \"componentList\" 1 \"f[#:#]\"", "\".uvs\" -type \"string\" \"map#\""}},
    {"polyMapCut", "ip", "out", {}},
    {"polyTweak",
     "ip",
     "out",
     {"\".tk[#:#]\" -type \"float3\" @ @ @ @ @ @", "\".tk[#]\" -type \"float3\" @ @ @"}},
    {"polyTweakUV",
     "ip",
     "out",
     {"\".uvtk[#:#]\" -type \"float2\" @ @ @ @", "\".uvs\" -type \"string\" \"map1\""}},
    {"polyColorPerVertex",
     "ip",
     "out",
     {"\".vclr[#].vrgb\" -type \"float3\" @ @ @",
      "\".vclr[#].vfcl[#].frgb\" -type \"float3\" @ @ @", "\".vclr[#].vxal\" @",
      "\".cn\" -type \"string\" \"c#\"", "\".rel\" #"}},
    {"tweak",
     "ip[0].ig",
     "og[0]",
     {"\".vl[#].vt[#:#]\" -type \"float3\" @ @ @ @ @ @", "\".en\" @", "\".rtw\" #"}},
    {"blendShape",
     "ip[0].ig",
     "og[0]",
     {"\".it[0].itg[#].iti[#000].ipt\" -type \"pointArray\" 2 @ @ @ 1 @ @ @ 1",
      "\".it[0].itg[0].iti[6000].ipt\" -type \"pointArray\" 1 @ @ @ 1;\n"
      "\tsetAttr \".it[0].itg[0].iti[6000].ict\" -type \"componentList\" 2 \"vtx[#]\" \"vtx[#:#]\"",
      "\".w[#]\" @", "\".it[0].itg[#].tw[#]\" @", "\".it[0].bw[#]\" @", "\".en\" @"}},
    {"skinCluster",
     "ip[0].ig",
     "og[0]",
     {"\".wl[#:#].w\" # # @ # @ # # @ # @", "\".wl[#].w[#:#]\" @ @",
      "\".pm[#]\" -type \"matrix\" @ 0 0 0 0 @ 0 0 0 0 @ 0 @ @ @ 1", "\".skm\" #",
      "\".bw[#:#]\" @ @", "\".nw\" #"}},
    {"polyUnite", "ip[0]", "out", {"\".im[#]\" -type \"matrix\" @ 0 0 0 0 @ 0 0 0 0 @ 0 @ @ @ 1"}},
    {"polySeparate", "ip", "out[0]", {"\".ic\" #"}},
    {"polyBevel3", "ip", "out", {"\".f\" @"}},
};

std::string smallNumber(InputBytes& in) {
  const int byte = in.takeByte();
  // Most meshes stay small: a large one takes the time of a hundred others.
  return std::to_string(byte == 255 ? 1000000 : byte == 254 ? 50 : byte % 8);
}

std::string anyNumber(InputBytes& in) {
  constexpr const char* kNumbers[] = {"0",    "1",    "-1",     "0.5", "2",
                                      "1e-9", "1e38", "-1e300", "nan", "90"};
  const int byte = in.takeByte();
  const int count = static_cast<int>(std::size(kNumbers));
  return byte < 2 * count ? kNumbers[byte / 2] : std::to_string((byte - 128.0) / 16);
}

std::string filledIn(const char* setting, InputBytes& in) {
  std::string text;
  for (; *setting != '\0'; ++setting)
    if (*setting == '#')
      text += smallNumber(in);
    else if (*setting == '@')
      text += anyNumber(in);
    else
      text += *setting;
  return text;
}

std::string nodeText(const Kind& kind, const std::string& name, InputBytes& in) {
  std::string text = std::string("createNode ") + kind.type + " -n \"" + name + "\";\n";
  const unsigned chosen = in.takeByte();
  for (std::size_t i = 0; i < std::size(kind.settings) && kind.settings[i] != nullptr; ++i)
    if ((chosen >> i & 1u) != 0) text += "\tsetAttr " + filledIn(kind.settings[i], in) + ";\n";
  return text;
}

std::string connection(const std::string& from, const std::string& to) {
  return "connectAttr -f \"" + from + "\" \"" + to + "\";\n";
}

// One node after another, each into the next, the first into its like by a byte's choice, and two
// joints into what has room for them.
std::string sceneOf(InputBytes& in) {
  std::string nodes =
      "createNode joint -n \"j0\";\ncreateNode joint -n \"j1\";\n"
      "\tsetAttr \".r\" -type \"double3\" 0 90 0;\n";
  std::string wires;
  std::string last;
  for (int i = 0; i < kMostNodes && in.left() > 0; ++i) {
    const Kind& kind = kKinds[in.takeByte() % std::size(kKinds)];
    const std::string name = "n" + std::to_string(i);
    nodes += nodeText(kind, name, in);
    if (*kind.input != '\0' && !last.empty()) wires += connection(last, name + '.' + kind.input);
    const unsigned more = in.takeByte();
    if (more % 4 == 1)
      wires += connection("j0.wm", name + ".ma[0]") + connection("j1.wm", name + ".ma[1]");
    if (more % 4 == 2 && !last.empty()) wires += connection(last, name + ".ip[1]");
    if (more % 4 == 3 && !last.empty())
      wires += connection(last, name + ".it[0].itg[0].iti[6000].igt");
    last = name + '.' + kind.output;
  }
  return nodes + "createNode transform -n \"t\";\ncreateNode mesh -n \"m\" -p \"t\";\n" + wires +
         connection(last, "m.i");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InputBytes in(data, size);
  openAndSave("history.ma", "//Maya ASCII 2018 scene\n" + sceneOf(in));
  return 0;
}
