#include <maya/MGlobal.h>

#include <optional>

#include "host/mel/Interpreter.h"
#include "host/scene/Scene.h"
#include "host/text/Messages.h"

using host::Scene;
using host::Selection;
using host::SelectionItem;
using host::mel::Interpreter;
using host::mel::Outcome;
using host::mel::Value;

namespace {

std::string textOf(const MString& text) {
  return std::string(text.asChar(), text.length());
}

MString stringOf(const std::string& text) {
  return MString(text.data(), static_cast<int>(text.size()));
}

std::optional<Value> run(const MString& command, bool display) {
  Outcome outcome = Interpreter::current().execute(textOf(command), "command");
  if (!outcome.ok) {
    host::mel::showError(outcome.failure.describe());
    return std::nullopt;
  }
  if (display && outcome.value.type() != Value::Type::kNone)
    host::mel::showInfo("Result: " + outcome.value.toPrinted());
  return std::move(outcome.value);
}

// A type that the caller's variable cannot hold.
MStatus mismatch() {
  return MStatus::kFailure;
}

}  // namespace

MStatus MGlobal::getActiveSelectionList(MSelectionList& list, bool) {
  Scene::current().selection.removeDeleted();
  list.hostSelection() = Scene::current().selection;
  return MStatus::kSuccess;
}

MStatus MGlobal::setActiveSelectionList(const MSelectionList& list, ListAdjustment adjustment) {
  Selection& active = Scene::current().selection;
  if (adjustment == kReplaceList) {
    active = list.hostSelection();
    return MStatus::kSuccess;
  }
  for (const SelectionItem& item : list.hostSelection().items()) {
    const bool isThere = active.contains(item);
    if (adjustment == kRemoveFromList || (adjustment == kXORWithList && isThere))
      active.remove(item);
    else
      active.addIfMissing(item);
  }
  return MStatus::kSuccess;
}

MStatus MGlobal::executeCommand(const MString& command, bool display, bool) {
  return run(command, display) ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MGlobal::executeCommand(const MString& command, int& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value || value->type() != Value::Type::kInt) return mismatch();
  result = value->toInt();
  return MStatus::kSuccess;
}

MStatus MGlobal::executeCommand(const MString& command, double& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value || !value->isNumber()) return mismatch();
  result = value->toFloat();
  return MStatus::kSuccess;
}

MStatus MGlobal::executeCommand(const MString& command, MString& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value || value->type() != Value::Type::kString) return mismatch();
  result = stringOf(value->toString());
  return MStatus::kSuccess;
}

// Arrays also take a single value of their elements' type, and nothing: a command without a result
// succeeded.
MStatus MGlobal::executeCommand(const MString& command, MIntArray& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value ||
      (value->type() != Value::Type::kNone && elementType(value->type()) != Value::Type::kInt)) {
    return mismatch();
  }
  result.clear();
  const auto numbers = value->convertedTo(Value::Type::kIntArray);
  for (const int number : numbers ? *numbers->ints() : Value::Ints()) result.append(number);
  return MStatus::kSuccess;
}

MStatus MGlobal::executeCommand(const MString& command, MDoubleArray& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value || elementType(value->type()) == Value::Type::kString) return mismatch();
  result.clear();
  const auto numbers = value->convertedTo(Value::Type::kFloatArray);
  for (const double number : numbers ? *numbers->floats() : Value::Floats()) result.append(number);
  return MStatus::kSuccess;
}

MStatus MGlobal::executeCommand(const MString& command, MStringArray& result, bool display, bool) {
  const auto value = run(command, display);
  if (!value ||
      (value->type() != Value::Type::kNone && elementType(value->type()) != Value::Type::kString)) {
    return mismatch();
  }
  result.clear();
  for (const std::string& text : value->toWords()) result.append(stringOf(text));
  return MStatus::kSuccess;
}

MStatus MGlobal::sourceFile(const MString& fileName) {
  const Outcome outcome = Interpreter::current().executeFile(textOf(fileName));
  if (!outcome.ok) host::mel::showError(outcome.failure.describe());
  return outcome.ok ? MStatus::kSuccess : MStatus::kFailure;
}

void MGlobal::displayInfo(const MString& text) {
  host::mel::showInfo(textOf(text));
}
void MGlobal::displayWarning(const MString& text) {
  host::mel::showWarning(textOf(text));
}
void MGlobal::displayError(const MString& text) {
  host::mel::showError(textOf(text));
}
