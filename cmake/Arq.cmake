# Project-wide compiler settings and helpers shared by every target.

add_compile_options(-Wall -Wextra -Wpedantic -Werror)
# Source paths in log lines and assertions are relative to the repository.
add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)

if(ARQ_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
elseif(ARQ_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(NOT ARQ_SANITIZE STREQUAL "")
  message(FATAL_ERROR "ARQ_SANITIZE must be empty, 'address' or 'thread'")
endif()
# GCC 12 reports std::regex and std::function members, and a std::optional
# of a vector moved by std::sort, as maybe uninitialized in instrumented code
# at -O1 (false positives of the instrumentation); the Release build keeps the
# warning. The test presets send sanitizer reports to files in
# sanitizer-reports (log_path): scripts/sanitize fails on any file it finds.
if(NOT ARQ_SANITIZE STREQUAL "")
  add_compile_options(-Wno-maybe-uninitialized)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/sanitizer-reports)
endif()

# arq_add_gtest(<name> SOURCES <files...> LIBS <targets...>)
# One test executable, discovered test by test by CTest.
function(arq_add_gtest name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gmock GTest::gtest_main Threads::Threads)
  # The tests' own code is compiled for a short build, not for speed: it
  # spends its time waiting on the components it drives, which keep their
  # build's optimisation. A test file compiles in about 0.65 of the time at
  # -O1 than at -O3, and in about 0.6 at -O0 than at -O1 with a sanitizer.
  if(NOT ARQ_SANITIZE STREQUAL "")
    target_compile_options(${name} PRIVATE -O0)
  elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(${name} PRIVATE -O1)
  endif()
  set(labels unit)
  if(ARG_LABELS)
    set(labels ${ARG_LABELS})
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 120
    PROPERTIES LABELS "${labels}" TIMEOUT 300)
endfunction()

# Unused functions and data (most of the generated Thrift code, for one) are
# dropped at link time: a smaller image keeps the daemon's resident set small.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-ffunction-sections -fdata-sections)
  add_link_options(-Wl,--gc-sections)
endif()
