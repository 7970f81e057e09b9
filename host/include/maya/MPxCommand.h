#ifndef MORVANE_HOST_INCLUDE_MAYA_MPXCOMMAND_H_
#define MORVANE_HOST_INCLUDE_MAYA_MPXCOMMAND_H_

#include <maya/MArgList.h>
#include <maya/MIntArray.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

// Base of a plug-in's commands. The host makes one object a call, runs `doIt` and deletes it.
class MPxCommand {
 public:
  MPxCommand();
  virtual ~MPxCommand();

  virtual MStatus doIt(const MArgList& arguments);
  virtual MStatus undoIt();
  virtual MStatus redoIt();
  virtual bool isUndoable() const;  // false unless overridden
  virtual bool hasSyntax() const;   // false unless overridden

  // One line each on standard error; the last two begin "Warning: " and "Error: ".
  static void displayInfo(const MString& text);
  static void displayWarning(const MString& text, bool showLineNumber = false);
  static void displayError(const MString& text, bool showLineNumber = false);

 protected:
  // What the running command gives back to the command language.
  static void setResult(bool value);
  static void setResult(int value);
  static void setResult(double value);
  static void setResult(const MString& value);
  static void setResult(const MIntArray& value);
  static void setResult(const MStringArray& value);
  static void clearResult();

 private:
  MPxCommand(const MPxCommand&) = delete;
  MPxCommand& operator=(const MPxCommand&) = delete;
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MPXCOMMAND_H_
