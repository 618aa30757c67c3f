#include "Arq/LibraryLoader/LibraryLoader.h"

#include <gtest/gtest.h>

#include <string>

#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"

namespace {

using Arq::LibraryLoader::LibraryLoader;
using Arq::LibraryLoader::LibraryLoaderException;
using FactoryLoader = LibraryLoader<Arq::Logging::Loader::ILoggingLoaderFactory>;

const std::string kPlugin = ARQ_STREAM_LOGGER_PATH;

// The text of the exception `action` throws, or "no exception".
template <typename Action>
std::string Failure(Action action) {
  try {
    action();
  } catch (const LibraryLoaderException& error) {
    return error.what();
  }
  return "no exception";
}

TEST(LibraryLoaderTest, FailuresCarryThePathAndTheReason) {
  struct Case {
    const char* name;
    std::string path;
    std::string entryPoint;
    std::string loadError;         // EnsureLoaded
    std::string instantiateError;  // Instantiate(entryPoint)
  };
  const std::string missing = "/nonexistent/libnothing.so";
  const Case cases[] = {
      {"missing library", missing, "ILoggingLoaderFactoryMaker",
       "Error Loading Library: " + missing + " Error: " + missing +
           ": cannot open shared object file: No such file or directory",
       "Error Instantiate Factory From Library: " + missing + " Error: Library not loaded"},
      {"a directory", "/tmp", "ILoggingLoaderFactoryMaker",
       "Error Loading Library: /tmp Error: /tmp: cannot read file data: Is a directory",
       "Error Instantiate Factory From Library: /tmp Error: Library not loaded"},
      {"symbol absent", kPlugin, "NoSuchMaker", "no exception",
       "Error Instantiate Factory From Library: " + kPlugin +
           " Error: Undefined Symbol: NoSuchMaker"},
      {"name in another case", kPlugin, "iloggingloaderfactorymaker", "no exception",
       "Error Instantiate Factory From Library: " + kPlugin +
           " Error: Undefined Symbol: iloggingloaderfactorymaker"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    FactoryLoader loader(c.path);
    EXPECT_EQ(loader.Path(), c.path);
    EXPECT_EQ(Failure([&] { loader.EnsureLoaded(); }), c.loadError);
    EXPECT_EQ(Failure([&] { loader.Instantiate(c.entryPoint); }), c.instantiateError);
  }
}

TEST(LibraryLoaderTest, MakersOfTheProjectPluginAreFoundAndCalled) {
  FactoryLoader factories(kPlugin);
  ASSERT_NE(factories.Handle(), nullptr);
  auto* factory = factories.Instantiate("ILoggingLoaderFactoryMaker");
  ASSERT_NE(factory, nullptr);
  EXPECT_STREQ(factory->GetPluginName(), "StreamLogger");
  // The maker hands out the plug-in's own object, the same at every call.
  EXPECT_EQ(factories.Instantiate("ILoggingLoaderFactoryMaker"), factory);

  LibraryLoader<Arq::Logging::Loader::ILoggingEventHandlerSetter> setters(kPlugin);
  EXPECT_NE(setters.Instantiate("ILoggingEventHandlerSetterMaker"), nullptr);
  // Both loaders share the one mapping of the library.
  EXPECT_EQ(setters.Handle(), factories.Handle());
}

}  // namespace
