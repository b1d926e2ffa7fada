# Whether an extension file is valid by the editor's own schema.
find_program(xmllint xmllint)
set(schema /usr/share/inkscape/extensions/inkscape.extension.rng)
if(NOT xmllint OR NOT EXISTS ${schema})
  message("skipped: xmllint or the editor's schema is missing (Debian: libxml2-utils, inkscape)")
  return()
endif()
execute_process(COMMAND ${xmllint} --noout --nonet --relaxng ${schema} ${FILE}
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "exit status ${status}\n${output}")
endif()
