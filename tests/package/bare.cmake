# Configures everything with every optional library hidden: it succeeds, and says in one line a folder what it left out.
file(REMOVE_RECURSE ${WORK})
set(hidden)
foreach(package GTest benchmark EXPAT pugixml LibXml2 PkgConfig)
  list(APPEND hidden -DCMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
endforeach()
execute_process(
  COMMAND ${CMAKE_COMMAND} -G Ninja -S ${SOURCE} -B ${WORK} -DCMAKE_CXX_COMPILER=${COMPILER} ${hidden}
    -DVNT_ASIO_INCLUDE_DIR=VNT_ASIO_INCLUDE_DIR-NOTFOUND -DCMAKE_FIND_ROOT_PATH=${WORK}/nothing
    -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY -DVNT_BUILD_BENCHMARKS=ON
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "exit status ${status}\n${output}")
endif()
foreach(line "tests are left out: GoogleTest is missing" "benchmarks are left out: Google Benchmark is missing"
    "vant-peer is left out: asio is missing")
  string(REGEX MATCHALL "${line}" found "${output}")
  list(LENGTH found times)
  if(NOT times EQUAL 1)
    message(FATAL_ERROR "expected \"${line}\" once, found ${times} times in\n${output}")
  endif()
endforeach()
