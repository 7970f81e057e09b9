#ifndef MORVANE_HOST_INCLUDE_MAYA_MGLOBAL_H_
#define MORVANE_HOST_INCLUDE_MAYA_MGLOBAL_H_

#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

// Services of the host that belong to no object: selection, command language, messages.
class MGlobal {
 public:
  enum ListAdjustment { kReplaceList, kXORWithList, kAddToList, kRemoveFromList, kAddToHeadOfList };

  // The selection in the order it was made, whatever the flag says.
  static MStatus getActiveSelectionList(MSelectionList& list, bool orderedSelection = false);
  static MStatus setActiveSelectionList(const MSelectionList& list,
                                        ListAdjustment adjustment = kReplaceList);

  // Runs command text to its end. With `display` the result is shown on standard error. There is no
  // undo: the last flag is accepted and ignored. A result that `result` cannot hold is a failure
  // and leaves it alone.
  static MStatus executeCommand(const MString& command, bool display = false, bool undo = false);
  static MStatus executeCommand(const MString& command, int& result, bool display = false,
                                bool undo = false);
  static MStatus executeCommand(const MString& command, double& result, bool display = false,
                                bool undo = false);
  static MStatus executeCommand(const MString& command, MString& result, bool display = false,
                                bool undo = false);
  static MStatus executeCommand(const MString& command, MIntArray& result, bool display = false,
                                bool undo = false);
  static MStatus executeCommand(const MString& command, MDoubleArray& result, bool display = false,
                                bool undo = false);
  static MStatus executeCommand(const MString& command, MStringArray& result, bool display = false,
                                bool undo = false);

  // Runs a script found by path or in the script folders; a failure when it is not found or fails.
  static MStatus sourceFile(const MString& fileName);

  // One line each on standard error; the last two begin "Warning: " and "Error: ".
  static void displayInfo(const MString& text);
  static void displayWarning(const MString& text);
  static void displayError(const MString& text);
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MGLOBAL_H_
