#include <maya/MFileObject.h>

#include "util/FileFacts.h"
#include "util/WholeNames.h"

namespace {

MString text(const std::string& bytes) {
  return MString(bytes.data(), static_cast<int>(bytes.size()));
}

std::string absolute(const std::string& raw) {
  return morvane::resolvedName(morvane::absoluteName(raw), "");
}

std::size_t lastPart(const std::string& path) {
#ifdef _WIN32
  const std::size_t separator = path.find_last_of("/\\");
#else
  const std::size_t separator = path.rfind('/');
#endif
  return separator == std::string::npos ? 0 : separator + 1;
}

}  // namespace

MStatus MFileObject::setRawFullName(const MString& fullName) {
  raw_ = std::string(fullName.asChar(), fullName.length());
  return raw_.empty() ? MStatus::kInvalidParameter : MStatus::kSuccess;
}

MString MFileObject::rawFullName() const {
  return text(raw_);
}
MString MFileObject::rawName() const {
  return text(raw_.substr(lastPart(raw_)));
}
MString MFileObject::rawPath() const {
  return text(raw_.substr(0, lastPart(raw_)));
}
MString MFileObject::fullName() const {
  return text(absolute(raw_));
}

MString MFileObject::name() const {
  const std::string full = absolute(raw_);
  return text(full.substr(lastPart(full)));
}

MString MFileObject::path() const {
  const std::string full = absolute(raw_);
  return text(full.substr(0, lastPart(full)));
}

bool MFileObject::exists() const {
  return morvane::factsOf(absolute(raw_)).exists();
}
