# The sketch that is drawn, and the widget that one draws on.
add_library(vnt_sketch_canvas STATIC
  canvas_colours.cpp canvas_private.cpp canvas_stage.cpp canvas_view.cpp draw_gesture.cpp drawn_ink.cpp erase_gesture.cpp
  grid_painter.cpp kind_names.cpp line_coverage.cpp offered_readings.cpp pan_gesture.cpp pen_input.cpp reading_offer.cpp
  select_gesture.cpp shape_adjusting.cpp sheet_backing.cpp sketch_canvas.cpp sketch_commands.cpp sketch_model.cpp
  snap_marks.cpp stroke_art.cpp stroke_mapping.cpp stroke_painter.cpp tool.cpp two_fingers.cpp
  # Named, so that their meta objects are made:
  offered_readings.h pen_input.h sketch_canvas.h sketch_model.h)
add_library(vnt::sketch_canvas ALIAS vnt_sketch_canvas)
target_compile_features(vnt_sketch_canvas PUBLIC cxx_std_20)
target_include_directories(vnt_sketch_canvas PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(vnt_sketch_canvas PUBLIC vnt::sketch_core Qt6::Widgets PRIVATE vnt_options)
set_target_properties(vnt_sketch_canvas PROPERTIES AUTOMOC ON CXX_EXTENSIONS OFF)
