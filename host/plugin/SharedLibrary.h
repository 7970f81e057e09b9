#ifndef MORVANE_HOST_PLUGIN_SHAREDLIBRARY_H_
#define MORVANE_HOST_PLUGIN_SHAREDLIBRARY_H_

#include <string>

namespace host {

// A library loaded into the process, by the platform's own calls. It stays loaded until `close`.
class SharedLibrary {
 public:
  // False with the reason in `error`.
  bool open(const std::string& path, std::string& error);
  void* symbol(const char* name) const;  // null when there is none
  void close();

  // The suffix of plug-ins: ".so", ".mll", ".bundle".
  static const char* pluginSuffix();

 private:
  void* handle_ = nullptr;
};

}  // namespace host

#endif  // MORVANE_HOST_PLUGIN_SHAREDLIBRARY_H_
