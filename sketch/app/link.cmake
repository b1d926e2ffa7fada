# The sketch application's end of the link, without a window.
add_library(vnt_sketch_link STATIC
  editor_connection.cpp link_server.cpp port_owner.cpp running_instance.cpp)
add_library(vnt::sketch_link ALIAS vnt_sketch_link)
target_sources(vnt_sketch_link PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
  editor_connection.h link_server.h port_owner.h running_instance.h)
target_compile_features(vnt_sketch_link PUBLIC cxx_std_20)
target_link_libraries(vnt_sketch_link PUBLIC vnt::sketch_core vnt::program Qt6::Core Qt6::Network PRIVATE vnt_options)
set_target_properties(vnt_sketch_link PROPERTIES CXX_EXTENSIONS OFF AUTOMOC ON)
