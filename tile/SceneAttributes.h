#ifndef MORVANE_TILE_SCENEATTRIBUTES_H_
#define MORVANE_TILE_SCENEATTRIBUTES_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

// How nodes are found and named, and how the plug-in keeps data of its own in dynamic attributes of
// the scene's nodes. Attributes are made, written and read by commands, just as a person would do
// it by hand.
namespace morvane {

// The node reached by stepping down from transforms that have exactly one child; `node` itself when
// it is not a transform or has no child or several.
MObject getShapeNode(MObject node);

// The one node that the name, or name pattern, matches; the null object for none and for several.
MObject getNodeByName(MString name);

MString getNodeName(MObject node);

// The node's name for a command. A DAG node whose name occurs again under another parent is named
// by the end of its path that tells them apart.
MString commandName(MObject node);

// The first full path of a DAG node.
MString getFullPathName(MObject node);

bool attributeExists(MObject node, MString name);

// With `onShape` the four functions below work on getShapeNode(node), and fail when that is the
// null object. The setters add the attribute when it is missing: a text, or a `bool` (`asBool`) or
// `long` number.
MStatus setStringAttr(MObject node, MString name, MString value, bool onShape);
MStatus setIntAttr(MObject node, MString name, int value, bool onShape, bool asBool);

// A missing attribute is a failure, and leaves `value` as it was.
MStatus getStringAttr(MObject node, MString name, MString& value, bool onShape);
MStatus getIntAttr(MObject node, MString name, int& value, bool onShape);

// `text` as a literal of the command language, quotes included: whatever it holds arrives as that
// text.
MString quoted(const MString& text);

}  // namespace morvane

#endif  // MORVANE_TILE_SCENEATTRIBUTES_H_
