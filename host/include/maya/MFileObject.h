#ifndef MORVANE_HOST_INCLUDE_MAYA_MFILEOBJECT_H_
#define MORVANE_HOST_INCLUDE_MAYA_MFILEOBJECT_H_

#include <maya/MStatus.h>
#include <maya/MString.h>

#include <string>

// A file's name in its parts; the file need not exist. "Raw" is the text as it was set; the others
// are absolute, relative names being taken against the process's working folder.
class MFileObject {
 public:
  MStatus setRawFullName(const MString& fullName);

  MString name() const;         // "tile.psd"
  MString fullName() const;     // "/art/tile.psd"
  MString path() const;         // "/art/", with its last separator
  MString rawName() const;      // the last part of the text as set
  MString rawFullName() const;  // the text as set
  MString rawPath() const;      // the text as set without its last part
  bool exists() const;

 private:
  std::string raw_;
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MFILEOBJECT_H_
