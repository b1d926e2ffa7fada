# The window and what it is made of: on no screen, each test with files of its own.
if(NOT TARGET vnt::sketch_window)
  return()
endif()
find_package(Qt6 6.4 QUIET COMPONENTS DBus Svg Test)

# vnt_add_window_test(<unit> ...): as vnt_add_test, with an application and the program's words.
function(vnt_add_window_test unit)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;PROPERTIES")
  vnt_add_test(${unit} LABEL sketch SOURCES window_main.cpp LINKS vnt::sketch_window Qt6::DBus Qt6::Test ${arg_LINKS}
    PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen ${arg_PROPERTIES})
endfunction()

foreach(unit answer_curves appearance journal_drawing main_window picture_export session_place sketch_files
    settings_store sketch_log sketch_session window_picture window_offer window_view window_words)
  vnt_add_window_test(${unit})
endforeach()
target_compile_definitions(sketch_files_test PRIVATE VNT_ANSWERS="${PROJECT_SOURCE_DIR}/examples/answers")
target_link_libraries(picture_export_test PRIVATE Qt6::Svg)
# What another renderer shows of the pictures, where it is installed (Debian: librsvg2-bin).
find_program(VNT_RSVG_CONVERT rsvg-convert DOC "librsvg's rsvg-convert")
mark_as_advanced(VNT_RSVG_CONVERT)
target_compile_definitions(picture_export_test PRIVATE
  VNT_RSVG_CONVERT="$<$<BOOL:${VNT_RSVG_CONVERT}>:${VNT_RSVG_CONVERT}>")
foreach(unit journal_folder journal_steps sketch_journal)
  vnt_add_test(${unit} LABEL sketch LINKS vnt::sketch_window)
endforeach()

add_executable(drawing_program drawing_program.cpp)
target_link_libraries(drawing_program PRIVATE vnt::sketch_window vnt_options)
set_target_properties(drawing_program PROPERTIES CXX_EXTENSIONS OFF)
vnt_add_test(journal_crash LABEL sketch LINKS vnt::sketch_window)
target_compile_definitions(journal_crash_test PRIVATE VNT_DRAWING_PROGRAM="$<TARGET_FILE:drawing_program>")
add_dependencies(journal_crash_test drawing_program)

# Every word in every language.
find_package(Qt6 6.4 QUIET COMPONENTS LinguistTools)
foreach(language de en)
  set(options)
  if(language STREQUAL en)
    set(options -pluralonly)
  endif()
  add_test(NAME SketchTranslations.HaveEveryWord.${language}
    COMMAND ${CMAKE_COMMAND} -DLUPDATE=$<TARGET_FILE:Qt6::lupdate> -DOPTIONS=${options} -DROOT=${PROJECT_SOURCE_DIR}
      -DMESSAGES=${PROJECT_SOURCE_DIR}/sketch/app/translations/vant-sketch_${language}.ts
      -DWORK=${CMAKE_CURRENT_BINARY_DIR}/translations -P ${CMAKE_CURRENT_SOURCE_DIR}/translations.cmake)
  set_tests_properties(SketchTranslations.HaveEveryWord.${language} PROPERTIES LABELS sketch TIMEOUT 60)
endforeach()

# What the desktop is told of the program, where its own checkers are installed.
find_program(VNT_DESKTOP_FILE_VALIDATE desktop-file-validate)
find_program(VNT_APPSTREAMCLI appstreamcli)
mark_as_advanced(VNT_DESKTOP_FILE_VALIDATE VNT_APPSTREAMCLI)
set(packaging ${PROJECT_SOURCE_DIR}/packaging/sketch)
if(VNT_DESKTOP_FILE_VALIDATE)
  add_test(NAME SketchPackaging.DesktopEntryIsValid
    COMMAND ${VNT_DESKTOP_FILE_VALIDATE} ${packaging}/org.vant.Sketch.desktop)
  set_tests_properties(SketchPackaging.DesktopEntryIsValid PROPERTIES LABELS sketch TIMEOUT 60
    FAIL_REGULAR_EXPRESSION "error|warning")
endif()
if(VNT_APPSTREAMCLI)
  add_test(NAME SketchPackaging.DescriptionIsValid
    COMMAND ${VNT_APPSTREAMCLI} validate --no-net ${packaging}/org.vant.Sketch.metainfo.xml)
  set_tests_properties(SketchPackaging.DescriptionIsValid PROPERTIES LABELS sketch TIMEOUT 60)
endif()

# With the plug-in and its host, over the port of the link.
if(TARGET vant-host AND TARGET vant)
  vnt_add_window_test(sketch_program PROPERTIES RESOURCE_LOCK port_4910)
  target_compile_definitions(sketch_program_test PRIVATE
    VNT_VERSION="${PROJECT_VERSION}"
    VNT_SKETCH_PROGRAM="$<TARGET_FILE:vant-sketch>"
    VNT_HOST_PROGRAM="$<TARGET_FILE:vant-host>"
    VNT_ARTWORK="${PROJECT_SOURCE_DIR}/examples/artwork/harbour.svg")
  add_dependencies(sketch_program_test vant-sketch vant-host vant)
endif()
