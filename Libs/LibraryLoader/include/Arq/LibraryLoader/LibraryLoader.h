#pragma once

#include <dlfcn.h>

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
    return reinterpret_cast<Maker>(symbol)();
  }

 private:
  std::string path_;
  void* handle_ = nullptr;
  std::string error_;
};

}  // namespace Arq::LibraryLoader
