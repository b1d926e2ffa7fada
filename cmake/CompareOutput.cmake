# cmake -DCOMMAND=... -DEXPECTED=FILE -P CompareOutput.cmake: fails unless COMMAND succeeds and prints FILE's content.
execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE printed ERROR_VARIABLE problems RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "exit status ${status}: ${problems}")
endif()
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "printed:\n${printed}\nexpected:\n${expected}")
endif()
