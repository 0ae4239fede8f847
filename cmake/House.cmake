# What every target of the house is built with, and how a layer is declared.

# A compiler cache with a base folder hands the compiler paths relative to the build folder.
file(RELATIVE_PATH relativeSource "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")

add_library(HouseFlags INTERFACE)
target_compile_options(HouseFlags INTERFACE
  -ffp-contract=off # the same bits on every machine
  # GCC 12 leaves out a rounding to single precision where it makes a vector of what stands side by side in the source.
  -fno-tree-slp-vectorize
  # An assertion names its source by the path below Tessarine/.
  "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/="
  "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/Tessarine/="
  "-fmacro-prefix-map=${relativeSource}="
  "-fmacro-prefix-map=${relativeSource}Tessarine/=")
target_compile_definitions(HouseFlags INTERFACE
  TESSARINE_ASSERTIONS=$<BOOL:${TESSARINE_ASSERTIONS}>
  $<$<BOOL:${TESSARINE_SANITIZED}>:TESSARINE_ASSERTION_FAULTS=1>)

add_library(HouseWarnings INTERFACE)
target_compile_options(HouseWarnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual
  -Wformat=2 -Werror)

# Several files are compiled as one, which takes a fifth of the time; fixtures in unnamed namespaces are meant there.
if(CMAKE_UNITY_BUILD)
  target_compile_options(HouseWarnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()

if(TESSARINE_SANITIZED)
  target_sources(HouseWarnings INTERFACE
    "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${PROJECT_SOURCE_DIR}/cmake/Sanitized.cpp>")
endif()

# AddLayer(NAME SOURCES ... USES ... TESTS ...): one static library, one test program that links it alone.
# Sources are relative to the calling folder, tests to tests/.
function(AddLayer name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;TESTS")
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC HouseFlags ${arg_USES} PRIVATE HouseWarnings)
  foreach(file IN LISTS arg_SOURCES)
    cmake_path(GET file PARENT_PATH folder)
    target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/${folder}")
  endforeach()
  if(TESSARINE_TESTS AND arg_TESTS)
    AddTestProgram(${name}Test LAYER ${name} TESTS ${arg_TESTS})
  endif()
endfunction()

# AddTestProgram(NAME LAYER library TESTS files-below-tests...)
function(AddTestProgram name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LAYER;TESTS")
  list(TRANSFORM arg_TESTS PREPEND "${PROJECT_SOURCE_DIR}/tests/")
  add_executable(${name} ${arg_TESTS})
  target_link_libraries(${name} PRIVATE ${arg_LAYER} HouseWarnings support GTest::gmock)
  # The libraries are as shipped; the tests' own code takes half the time to compile like this.
  target_compile_options(${name} PRIVATE -Og)
  if(NOT TESSARINE_SANITIZED)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
    return()
  endif()
  # Under the sanitizers the start of a process takes longer than most cases do: a few processes share them out.
  set(shards 4)
  foreach(shard RANGE 1 ${shards})
    math(EXPR index "${shard} - 1")
    add_test(NAME ${name}.${shard} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name}.${shard} PROPERTIES TIMEOUT 600
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
