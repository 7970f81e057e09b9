#include "host/plugin/SharedLibrary.h"

#include <filesystem>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include "util/Path.h"
#include "util/SystemStatus.h"

namespace host {

namespace fs = std::filesystem;

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

std::string programFolder() {
  wchar_t path[32768];
  const DWORD length = GetModuleFileNameW(nullptr, path, 32768);
  return length == 0 ? std::string()
                     : morvane::nameOf(fs::path(std::wstring(path, length)).parent_path());
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

std::string programFolder() {
  char path[4096];
  std::uint32_t size = sizeof path;
  return _NSGetExecutablePath(path, &size) == 0 ? fs::path(path).parent_path().string()
                                                : std::string();
}

#else

const char* SharedLibrary::pluginSuffix() {
  return ".so";
}

std::string programFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? std::string() : program.parent_path().string();
}

#endif
#endif

}  // namespace host
