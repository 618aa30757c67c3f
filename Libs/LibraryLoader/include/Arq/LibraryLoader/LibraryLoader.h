#pragma once

#include <dlfcn.h>
#include <link.h>

#include <string>

#include "Arq/LibraryLoader/LibraryLoaderException.h"

namespace Arq::LibraryLoader {

// Owns one dlopen handle of a plug-in whose exported makers return T*.
// Construction opens the library with every symbol resolved at once; the
// handle is closed on destruction, so every object the plug-in made must be
// destroyed before its loader (their code and vtables live in the library).
template <typename T>
class LibraryLoader {
 public:
  using Maker = T* (*)();

  explicit LibraryLoader(std::string path) : path_(std::move(path)) {
    dlerror();
    handle_ = dlopen(path_.c_str(), RTLD_NOW);
    if (handle_ == nullptr) {
      const char* error = dlerror();
      error_ = error != nullptr ? error : "";
    }
  }
  ~LibraryLoader() {
    if (handle_ != nullptr) dlclose(handle_);
  }
  LibraryLoader(const LibraryLoader&) = delete;
  LibraryLoader& operator=(const LibraryLoader&) = delete;

  const std::string& Path() const { return path_; }
  void* Handle() const { return handle_; }

  // Throws when the library did not open, with the dynamic loader's reason.
  void EnsureLoaded() const {
    if (handle_ == nullptr) {
      throw LibraryLoaderException("Error Loading Library: " + path_ + " Error: " + error_);
    }
  }

  // Calls the maker exported as `entryPoint` and returns what it made (not
  // owned by the loader).
  T* Instantiate(const std::string& entryPoint) const {
    if (handle_ == nullptr) {
      throw LibraryLoaderException("Error Instantiate Factory From Library: " + path_ +
                                   " Error: Library not loaded");
    }
    void* symbol = dlsym(handle_, entryPoint.c_str());
    if (symbol == nullptr) {
      throw LibraryLoaderException("Error Instantiate Factory From Library: " + path_ +
                                   " Error: Undefined Symbol: " + entryPoint);
    }
    // dlsym on a handle also searches the library's dependencies: a name the
    // plug-in does not define (getpid) would be found in the C library and
    // called as a maker.
    if (!DefinedByLibrary(symbol)) {
      throw LibraryLoaderException("Error Instantiate Factory From Library: " + path_ +
                                   " Error: Symbol Not Defined By The Library: " + entryPoint);
    }
    return reinterpret_cast<Maker>(symbol)();
  }

 private:
  bool DefinedByLibrary(void* symbol) const {
    link_map* library = nullptr;
    if (dlinfo(handle_, RTLD_DI_LINKMAP, &library) != 0) return false;
    Dl_info info{};
    link_map* owner = nullptr;
    if (dladdr1(symbol, &info, reinterpret_cast<void**>(&owner), RTLD_DL_LINKMAP) == 0) {
      return false;
    }
    return owner == library;
  }

  std::string path_;
  void* handle_ = nullptr;
  std::string error_;
};

}  // namespace Arq::LibraryLoader
