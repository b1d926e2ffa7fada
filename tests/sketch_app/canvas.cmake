# The canvas, by events as the screen, the pen and the keys send them.
find_package(Qt6 6.4 QUIET COMPONENTS Test)
if(NOT TARGET Qt6::Test)
  message(STATUS "tests of the canvas are left out: Qt's test library is missing (Debian: qt6-base-dev)")
  return()
endif()

foreach(unit canvas_view line_coverage many_strokes shape_adjusting stroke_painter sketch_model)
  vnt_add_test(${unit} LABEL sketch LINKS vnt::sketch_canvas)
endforeach()
foreach(unit canvas_ink canvas_reading canvas_snapping canvas_input canvas_editing
    canvas_tools grid_painter)
  vnt_add_test(${unit} SOURCES gui_main.cpp LABEL sketch TIMEOUT 240 LINKS vnt::sketch_canvas Qt6::Test)
endforeach()
# Ink and snapping must not depend on how fine the screen is.
foreach(unit canvas_ink canvas_snapping)
  foreach(scale 1.25 2)
    gtest_discover_tests(${unit}_test NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60 TEST_SUFFIX .AtScale${scale}
      TEST_LIST ${unit}_at_${scale}
      PROPERTIES TIMEOUT 240 LABELS sketch ENVIRONMENT QT_SCALE_FACTOR=${scale})
  endforeach()
endforeach()
