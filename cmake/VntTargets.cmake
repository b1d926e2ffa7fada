# How this project's libraries and tests are made. One target per folder, aliased and exported as vnt::<folder>.
include_guard(GLOBAL)

set(VNT_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize= (address,undefined or thread)")

# Flags for this project's own files; nothing of it reaches those who use the installed libraries.
add_library(vnt_options INTERFACE)
target_compile_options(vnt_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2
  # No fused multiply-add: results are the same to the last bit on every machine.
  -ffp-contract=off)
if(VNT_SANITIZE)
  target_compile_options(vnt_options INTERFACE
    -fsanitize=${VNT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vnt_options INTERFACE -fsanitize=${VNT_SANITIZE})
endif()

# vnt_add_library(<folder> SOURCES ... HEADERS ... [LINKS ...])
function(vnt_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS;LINKS")
  set(target vnt_${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(vnt::${name} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${arg_HEADERS})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_link_libraries(${target} PUBLIC ${arg_LINKS})
  # Its flags without a link to it: a link would have to be exported with the library.
  target_compile_options(${target} PRIVATE $<TARGET_PROPERTY:vnt_options,INTERFACE_COMPILE_OPTIONS>)
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name} CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  install(TARGETS ${target} EXPORT vnt
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vnt COMPONENT dev)
endfunction()

# vnt_add_test(<unit> LINKS ... [LABEL unit] [TIMEOUT seconds] [PROPERTIES ...]): <unit>_test.cpp, a CTest entry a case.
function(vnt_add_test unit)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL;TIMEOUT" "LINKS;SOURCES;PROPERTIES")
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  set(target ${unit}_test)
  add_executable(${target} ${unit}_test.cpp ${arg_SOURCES})
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${target} PRIVATE ${arg_LINKS} GTest::gtest_main vnt_options)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  # NO_PRETTY_VALUES: without it a row's memory address ends up in its test's name.
  gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS ${arg_LABEL} ${arg_PROPERTIES})
endfunction()
