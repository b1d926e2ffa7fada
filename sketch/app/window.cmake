# The window and the program. Its icons are drawings (SVG); what the desktop wishes comes over D-Bus.
find_package(Qt6 6.4 QUIET COMPONENTS DBus Svg LinguistTools)
if(NOT Qt6Svg_FOUND OR NOT Qt6DBus_FOUND OR NOT Qt6LinguistTools_FOUND)
  message(STATUS "vant-sketch is left out: parts of Qt 6 are missing (Debian: qt6-svg-dev qt6-tools-dev qt6-l10n-tools)")
  return()
endif()

# All of the program but its main; the tests link it too.
add_library(vnt_sketch_window STATIC
  actions.cpp answer_curves.cpp appearance.cpp desktop_wishes.cpp end_signals.cpp file_desk.cpp icon_label.cpp icons.cpp
  journal_file.cpp journal_folder.cpp keys_dialog.cpp link_panel.cpp log_file.cpp main_window.cpp
  main_window_wiring.cpp notice_area.cpp options_bar.cpp outline_text.cpp picture_export.cpp preferences_dialog.cpp program_options.cpp questions.cpp settings_store.cpp
  sketch_files.cpp sketch_journal.cpp sketch_session.cpp status_panel.cpp tools.cpp translations.cpp)
add_library(vnt::sketch_window ALIAS vnt_sketch_window)
target_sources(vnt_sketch_window PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
  actions.h answer_curves.h appearance.h desktop_wishes.h end_signals.h file_desk.h icon_label.h icons.h journal_file.h
  journal_folder.h keys_dialog.h link_panel.h log_file.h main_window.h notice_area.h options_bar.h outline_text.h picture_export.h preferences_dialog.h
  program_options.h questions.h settings_store.h sketch_files.h sketch_journal.h sketch_session.h status_panel.h
  tools.h translations.h)
target_compile_features(vnt_sketch_window PUBLIC cxx_std_20)
target_compile_definitions(vnt_sketch_window PRIVATE VNT_PROJECT_VERSION="${PROJECT_VERSION}")
target_link_libraries(vnt_sketch_window
  PUBLIC vnt::sketch_canvas vnt::sketch_link vnt::program Qt6::Widgets
  PRIVATE Qt6::DBus Qt6::Svg vnt_options)
set_target_properties(vnt_sketch_window PROPERTIES AUTOMOC ON CXX_EXTENSIONS OFF)

# Pictures and words are in the program itself.
file(GLOB icons CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} icons/*.svg)
qt_add_resources(vnt_sketch_window icons PREFIX / FILES ${icons})
set(program_icon ${PROJECT_SOURCE_DIR}/packaging/sketch/org.vant.Sketch.svg)
qt_add_resources(vnt_sketch_window program_icon PREFIX /icons BASE ${PROJECT_SOURCE_DIR}/packaging/sketch
  FILES ${program_icon})
qt_add_lrelease(vnt_sketch_window TS_FILES translations/vant-sketch_de.ts translations/vant-sketch_en.ts
  QM_FILES_OUTPUT_VARIABLE messages)
qt_add_resources(vnt_sketch_window messages PREFIX /translations BASE ${CMAKE_CURRENT_BINARY_DIR} FILES ${messages})

add_executable(vant-sketch main.cpp)
target_compile_definitions(vant-sketch PRIVATE VNT_PROJECT_VERSION="${PROJECT_VERSION}")
target_link_libraries(vant-sketch PRIVATE vnt::sketch_window vnt_options)
set_target_properties(vant-sketch PROPERTIES CXX_EXTENSIONS OFF)

install(TARGETS vant-sketch RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT sketch)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/man/vant-sketch.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT sketch)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/sketch/org.vant.Sketch.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT sketch)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/sketch/org.vant.Sketch.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT sketch)
install(FILES ${program_icon} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT sketch)
