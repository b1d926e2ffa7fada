# The sketch application's end of the link, with scripted editors and with the real plug-in.
add_executable(listening_program listening_program.cpp)
add_executable(starting_program starting_program.cpp)
foreach(program listening_program starting_program)
  target_link_libraries(${program} PRIVATE vnt::sketch_link vnt_options)
  target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR})
  set_target_properties(${program} PROPERTIES CXX_EXTENSIONS OFF)
endforeach()

foreach(unit link_server link_refusals link_end port_owner running_instance)
  vnt_add_test(${unit} LABEL sketch LINKS vnt::sketch_link Threads::Threads)
endforeach()
target_compile_definitions(link_end_test PRIVATE VNT_LISTENING_PROGRAM="$<TARGET_FILE:listening_program>")
target_compile_definitions(running_instance_test PRIVATE VNT_STARTING_PROGRAM="$<TARGET_FILE:starting_program>")
add_dependencies(link_end_test listening_program)
add_dependencies(running_instance_test starting_program)

if(TARGET vant-host AND TARGET vant)
  vnt_add_test(link_exchange LABEL exchange TIMEOUT 150 SOURCES ../host_app/host_program.cpp
    LINKS vnt::sketch_link Threads::Threads PROPERTIES RESOURCE_LOCK port_4910)
  target_compile_definitions(link_exchange_test PRIVATE
    VNT_HOST_PROGRAM="$<TARGET_FILE:vant-host>"
    VNT_LISTENING_PROGRAM="$<TARGET_FILE:listening_program>")
  add_dependencies(link_exchange_test vant-host vant listening_program)
endif()
