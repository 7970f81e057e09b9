#include "host/plugin/SharedLibrary.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "util/Path.h"
#include "util/SystemStatus.h"

namespace host {

#ifdef _WIN32

bool SharedLibrary::open(const std::string& path, std::string& error) {
  handle_ = LoadLibraryW(morvane::systemPath(path).c_str());
  if (handle_ == nullptr)
    error = "cannot load " + path + ": " +
            morvane::windowsStatus(GetLastError(), morvane::StatusCode::kCannotRead).text();
  return handle_ != nullptr;
}

void* SharedLibrary::symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

void SharedLibrary::close() {
  if (handle_ != nullptr) {
    FreeLibrary(static_cast<HMODULE>(handle_));
    handle_ = nullptr;
  }
}

const char* SharedLibrary::pluginSuffix() {
  return ".mll";
}

#else

bool SharedLibrary::open(const std::string& path, std::string& error) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    const char* reason = dlerror();
    error = "cannot load " + path + ": " + (reason == nullptr ? "no reason given" : reason);
  }
  return handle_ != nullptr;
}

void* SharedLibrary::symbol(const char* name) const {
  return dlsym(handle_, name);
}

void SharedLibrary::close() {
  if (handle_ != nullptr) {
    dlclose(handle_);
    handle_ = nullptr;
  }
}

#ifdef __APPLE__

const char* SharedLibrary::pluginSuffix() {
  return ".bundle";
}

#else

const char* SharedLibrary::pluginSuffix() {
  return ".so";
}

#endif
#endif

}  // namespace host
