#include <maya/MArgList.h>

#include "host/api/Status.h"
#include "host/text/Numbers.h"

using namespace host;

unsigned MArgList::length() const {
  return static_cast<unsigned>(words_.size());
}

MString MArgList::asString(unsigned index, MStatus* status) const {
  report(status, index < words_.size());
  return index < words_.size()
             ? MString(words_[index].data(), static_cast<int>(words_[index].size()))
             : MString();
}

int MArgList::asInt(unsigned index, MStatus* status) const {
  const double number = asDouble(index, status);
  return mel::toInteger(number);
}

double MArgList::asDouble(unsigned index, MStatus* status) const {
  const auto number = index < words_.size() ? mel::parseNumber(words_[index]) : std::nullopt;
  report(status, number.has_value());
  return number.value_or(0.0);
}

bool MArgList::asBool(unsigned index, MStatus* status) const {
  const auto truth = index < words_.size() ? mel::parseTruth(words_[index]) : std::nullopt;
  report(status, truth.has_value());
  return truth.value_or(false);
}

MStatus MArgList::addArg(const MString& word) {
  words_.emplace_back(word.asChar(), word.length());
  return MStatus::kSuccess;
}

MStatus MArgList::addArg(int number) {
  words_.push_back(std::to_string(number));
  return MStatus::kSuccess;
}

MStatus MArgList::addArg(double number) {
  words_.push_back(mel::formatNumber(number));
  return MStatus::kSuccess;
}

unsigned MArgList::flagIndex(const MString& shortFlag, const MString& longFlag) const {
  const auto isFlag = [](const std::string& word, const MString& flag) {
    return flag.length() > 0 && (word == flag.asChar() || word == std::string("-") + flag.asChar());
  };
  for (std::size_t i = 0; i < words_.size(); ++i)
    if (isFlag(words_[i], shortFlag) || isFlag(words_[i], longFlag))
      return static_cast<unsigned>(i);
  return kInvalidArgIndex;
}
