#include "tile/SceneAttributes.h"

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <string>

namespace morvane {
namespace {

MStatus runCommand(const MString& command) {
  return MGlobal::executeCommand(command, false, false);
}

// The answer of a command that asks for a number; 0 when it cannot run.
int answerOf(const MString& command) {
  int answer = 0;
  if (MGlobal::executeCommand(command, answer, false, false) != MStatus::kSuccess) return 0;
  return answer;
}

MString plugName(const MObject& node, const MString& name) {
  return getFullPathName(node) + "." + name;
}

MString readCommand(const MObject& node, const MString& name) {
  return MString("getAttr ") + plugName(node, name) + ";";
}

MStatus addAttribute(const MObject& node, const MString& name, const char* typeFlags) {
  return runCommand(MString("addAttr -ln \"") + name + "\" " + typeFlags + " " +
                    getFullPathName(node) + ";");
}

// Replaces a node by the one that holds its attributes. False when there is none.
bool redirect(MObject& node, bool onShape) {
  if (onShape) node = getShapeNode(node);
  return !(onShape && node.isNull());
}

const char* escapeOf(char character) {
  switch (character) {
    case '\\':
      return "\\\\";
    case '"':
      return "\\\"";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return nullptr;
  }
}

}  // namespace

MObject getShapeNode(MObject node) {
  while (node.hasFn(MFn::kTransform)) {
    const MFnDagNode dagNode(node);
    if (dagNode.childCount() != 1) break;
    node = dagNode.child(0);
  }
  return node;
}

MObject getNodeByName(MString name) {
  MSelectionList matches;
  MObject node;
  matches.add(name);
  if (matches.length() == 1) matches.getDependNode(0, node);
  return node;
}

MString getNodeName(MObject node) {
  return MFnDependencyNode(node).name();
}

MString commandName(MObject node) {
  if (!node.hasFn(MFn::kDagNode)) return getNodeName(node);
  return MFnDagNode(node).partialPathName();
}

MString getFullPathName(MObject node) {
  MDagPath path;
  MFnDagNode dagNode(node);
  dagNode.getPath(path);
  return path.fullPathName();
}

bool attributeExists(MObject node, MString name) {
  const MString path = getFullPathName(node);
  if (answerOf(MString("objExists \"") + path + "\";") == 0) return false;
  if (answerOf(MString("attributeQuery -n \"") + path + "\" -ex " + name + ";") == 0) return false;
  if (!node.hasFn(MFn::kDependencyNode)) return false;
  MStatus status;
  MFnDependencyNode(node).attribute(name, &status);
  return status == MStatus::kSuccess;
}

MStatus setStringAttr(MObject node, MString name, MString value, bool onShape) {
  if (!redirect(node, onShape)) return MStatus::kFailure;
  if (!attributeExists(node, name)) addAttribute(node, name, "-dt \"string\"");
  return runCommand(MString("setAttr -type \"string\" ") + plugName(node, name) + " " +
                    quoted(value) + ";");
}

MStatus setIntAttr(MObject node, MString name, int value, bool onShape, bool asBool) {
  if (!redirect(node, onShape)) return MStatus::kFailure;
  if (!attributeExists(node, name)) {
    const MStatus added = addAttribute(node, name, asBool ? "-at bool" : "-at long");
    if (added != MStatus::kSuccess) return added;
  }
  MString command = MString("setAttr ") + plugName(node, name) + " ";
  command += value;
  command += ";";
  return runCommand(command);
}

MStatus getStringAttr(MObject node, MString name, MString& value, bool onShape) {
  if (!redirect(node, onShape) || !attributeExists(node, name)) return MStatus::kFailure;
  return MGlobal::executeCommand(readCommand(node, name), value, false, false);
}

MStatus getIntAttr(MObject node, MString name, int& value, bool onShape) {
  if (!redirect(node, onShape) || !attributeExists(node, name)) return MStatus::kFailure;
  return MGlobal::executeCommand(readCommand(node, name), value, false, false);
}

MString quoted(const MString& text) {
  std::string literal = "\"";
  for (const char* at = text.asChar(); *at != '\0'; ++at) {
    const char* const escape = escapeOf(*at);
    if (escape != nullptr)
      literal += escape;
    else
      literal += *at;
  }
  literal += '"';
  return MString(literal.c_str());
}

}  // namespace morvane
