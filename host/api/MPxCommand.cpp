#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>

#include "host/api/PluginRegistry.h"

using host::commandResult;
using host::mel::Value;

MPxCommand::MPxCommand() = default;
MPxCommand::~MPxCommand() = default;

MStatus MPxCommand::doIt(const MArgList&) {
  return MStatus::kFailure;
}
MStatus MPxCommand::undoIt() {
  return MStatus::kSuccess;
}
MStatus MPxCommand::redoIt() {
  return MStatus::kSuccess;
}
bool MPxCommand::isUndoable() const {
  return false;
}
bool MPxCommand::hasSyntax() const {
  return false;
}

void MPxCommand::displayInfo(const MString& text) {
  MGlobal::displayInfo(text);
}
void MPxCommand::displayWarning(const MString& text, bool) {
  MGlobal::displayWarning(text);
}
void MPxCommand::displayError(const MString& text, bool) {
  MGlobal::displayError(text);
}

void MPxCommand::setResult(bool value) {
  commandResult() = Value::ofTruth(value);
}
void MPxCommand::setResult(int value) {
  commandResult() = Value(value);
}
void MPxCommand::setResult(double value) {
  commandResult() = Value(value);
}
void MPxCommand::setResult(const MString& value) {
  commandResult() = Value(value.asChar());
}

void MPxCommand::setResult(const MIntArray& value) {
  Value::Ints numbers;
  for (unsigned i = 0; i < value.length(); ++i) {
    numbers.push_back(value[i]);
  }
  commandResult() = Value(std::move(numbers));
}

void MPxCommand::setResult(const MStringArray& value) {
  Value::Strings texts;
  for (unsigned i = 0; i < value.length(); ++i) {
    texts.push_back(value[i].asChar());
  }
  commandResult() = Value(std::move(texts));
}

void MPxCommand::clearResult() {
  commandResult() = Value();
}
