#ifndef MORVANE_HOST_INCLUDE_MAYA_MARGLIST_H_
#define MORVANE_HOST_INCLUDE_MAYA_MARGLIST_H_

#include <maya/MStatus.h>
#include <maya/MString.h>

#include <string>
#include <vector>

// The words that follow a command's name, flags included, as they stand after evaluation. A value,
// copied whole.
class MArgList {
 public:
  static constexpr unsigned kInvalidArgIndex = 0xFFFFFFFFu;

  unsigned length() const;

  // A word as text, or as a number or truth value when it reads as one. An index past the end, or a
  // word that does not read as asked, is a failure and gives empty text, 0 or false.
  MString asString(unsigned index, MStatus* status = nullptr) const;
  int asInt(unsigned index, MStatus* status = nullptr) const;
  double asDouble(unsigned index, MStatus* status = nullptr) const;
  bool asBool(unsigned index, MStatus* status = nullptr) const;

  MStatus addArg(const MString& word);
  MStatus addArg(int number);
  MStatus addArg(double number);

  // Position of the first word that is this flag, short or long, with its dash or without; else
  // kInvalidArgIndex.
  unsigned flagIndex(const MString& shortFlag, const MString& longFlag = MString()) const;

 private:
  std::vector<std::string> words_;
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MARGLIST_H_
