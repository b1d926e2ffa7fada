# What asks the desktop: the session bus, and the X server's windows. Where a library is missing, a stand-in that
# finds nothing takes its place.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(GIO QUIET IMPORTED_TARGET GLOBAL gio-2.0>=2.66)
  pkg_check_modules(XCB QUIET IMPORTED_TARGET GLOBAL xcb)
endif()

target_sources(vnt_host_editor PRIVATE bus_address.cpp)
target_sources(vnt_host_editor PUBLIC FILE_SET HEADERS FILES bus_address.h front_window.h session_bus.h)

if(TARGET PkgConfig::GIO)
  target_sources(vnt_host_editor PRIVATE session_bus.cpp)
  target_link_libraries(vnt_host_editor PRIVATE PkgConfig::GIO)
else()
  message(STATUS "the session bus is left out: GIO is missing (Debian: libglib2.0-dev)")
  target_sources(vnt_host_editor PRIVATE no_session_bus.cpp)
endif()

if(TARGET PkgConfig::XCB)
  target_sources(vnt_host_editor PRIVATE front_window.cpp x_connection.cpp)
  target_link_libraries(vnt_host_editor PRIVATE PkgConfig::XCB)
else()
  message(STATUS "bringing the editor's window to the front is left out: libxcb is missing (Debian: libxcb1-dev)")
  target_sources(vnt_host_editor PRIVATE no_front_window.cpp)
endif()
