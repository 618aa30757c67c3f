#include "Arq/LibraryLoader/LibraryLoader.h"

#include <gtest/gtest.h>

#include <string>

#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"

namespace {

using Arq::LibraryLoader::LibraryLoader;
using FactoryLoader = LibraryLoader<Arq::Logging::Loader::ILoggingLoaderFactory>;

const std::string kPlugin = ARQ_STREAM_LOGGER_PATH;

// The text of the exception `action` throws, or "no exception".
template <typename Action>
std::string Failure(Action action) {
  try {
    action();
  } catch (const Arq::LibraryLoader::LibraryLoaderException& error) {
    return error.what();
  }
  return "no exception";
}

// The project's plug-in is opened once for both loaders and its makers hand
// out its own objects; a library that did not open has no maker to call.
// (The loader's other failures are the logging aggregation's tests.)
TEST(LibraryLoaderTest, MakersAreFoundAndFailuresCarryThePathAndTheReason) {
  FactoryLoader factories(kPlugin);
  ASSERT_NE(factories.Handle(), nullptr);
  auto* factory = factories.Instantiate("ILoggingLoaderFactoryMaker");
  ASSERT_NE(factory, nullptr);
  EXPECT_STREQ(factory->GetPluginName(), "StreamLogger");
  EXPECT_EQ(factories.Instantiate("ILoggingLoaderFactoryMaker"), factory);
  LibraryLoader<Arq::Logging::Loader::ILoggingEventHandlerSetter> setters(kPlugin);
  EXPECT_NE(setters.Instantiate("ILoggingEventHandlerSetterMaker"), nullptr);
  EXPECT_EQ(setters.Handle(), factories.Handle());

  const std::string missing = "/nonexistent/libnothing.so";
  FactoryLoader nothing(missing);
  EXPECT_EQ(nothing.Path(), missing);
  EXPECT_EQ(Failure([&] { nothing.Instantiate("ILoggingLoaderFactoryMaker"); }),
            "Error Instantiate Factory From Library: " + missing + " Error: Library not loaded");
}

}  // namespace
