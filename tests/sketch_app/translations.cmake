# Whether every word of the program has its translation: as lupdate finds them in the sources.
get_filename_component(name ${MESSAGES} NAME)
configure_file(${MESSAGES} ${WORK}/${name} COPYONLY)
execute_process(COMMAND ${LUPDATE} ${OPTIONS} -no-obsolete -locations none -silent -I ${ROOT} ${ROOT}/sketch/app
    -ts ${WORK}/${name}
  ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "lupdate: exit status ${status}\n${errors}")
endif()
file(READ ${WORK}/${name} now)
file(READ ${MESSAGES} kept)
if(now MATCHES "type=\"unfinished\"")
  string(REGEX MATCHALL "<source>[^<]*</source>[^/]*<translation type=\"unfinished\"" missing "${now}")
  list(JOIN missing "\n" missing)
  message(FATAL_ERROR "${name} lacks:\n${missing}")
endif()
if(NOT now STREQUAL kept)
  message(FATAL_ERROR "${name} is not as lupdate writes it (with ${OPTIONS} -no-obsolete -locations none -I .)")
endif()
