#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>

#include "host/plugin/PluginRegistry.h"

using host::PluginRegistry;
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
  PluginRegistry::current().result = Value::ofTruth(value);
}
void MPxCommand::setResult(int value) {
  PluginRegistry::current().result = Value(value);
}
void MPxCommand::setResult(double value) {
  PluginRegistry::current().result = Value(value);
}
void MPxCommand::setResult(const MString& value) {
  PluginRegistry::current().result = Value(value.asChar());
}

void MPxCommand::setResult(const MIntArray& value) {
  Value::Ints numbers;
  for (unsigned i = 0; i < value.length(); ++i) numbers.push_back(value[i]);
  PluginRegistry::current().result = Value(std::move(numbers));
}

void MPxCommand::setResult(const MStringArray& value) {
  Value::Strings texts;
  for (unsigned i = 0; i < value.length(); ++i) texts.push_back(value[i].asChar());
  PluginRegistry::current().result = Value(std::move(texts));
}

void MPxCommand::clearResult() {
  PluginRegistry::current().result = Value();
}
