# Debian packages, one a part: cpack -G DEB in the build folder, or tools/package, which also builds and checks them.
set(debian ${PROJECT_SOURCE_DIR}/packaging/debian)

# The changelog has the last word on what is packaged; its newest entry is this version's.
file(STRINGS ${debian}/changelog newest LIMIT_COUNT 1)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${debian}/changelog)
if(NOT newest MATCHES "^([a-z-]+) \\(([0-9.]+)-([0-9a-z]+)\\)" OR NOT CMAKE_MATCH_2 VERSION_EQUAL PROJECT_VERSION)
  message(FATAL_ERROR "packaging/debian/changelog begins with \"${newest}\", not with an entry of ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_SOURCE ${CMAKE_MATCH_1})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_3})

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VENDOR "VANT link developers")
set(CPACK_PACKAGE_CONTACT "VANT link developers <packages@vant-link.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${debian}/finish.cmake)
set(CPACK_VNT_STRIP ${CMAKE_STRIP}) # for that script

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENTS_ALL)

# vnt_package(<name> COMPONENTS ... SECTION ... [RECOMMENDS ...] [SUGGESTS ...]), which packaging/debian/<name>.txt
# describes: a first line of few words, then paragraphs.
macro(vnt_package name)
  cmake_parse_arguments(package "" "SECTION;RECOMMENDS;SUGGESTS" "COMPONENTS" ${ARGN})
  string(TOUPPER ${name} group)
  file(READ ${debian}/${name}.txt CPACK_DEBIAN_${group}_DESCRIPTION)
  string(STRIP "${CPACK_DEBIAN_${group}_DESCRIPTION}" CPACK_DEBIAN_${group}_DESCRIPTION)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${debian}/${name}.txt)
  set(CPACK_DEBIAN_${group}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${group}_PACKAGE_SECTION ${package_SECTION})
  set(CPACK_DEBIAN_${group}_PACKAGE_RECOMMENDS ${package_RECOMMENDS})
  set(CPACK_DEBIAN_${group}_PACKAGE_SUGGESTS ${package_SUGGESTS})
  foreach(component IN LISTS package_COMPONENTS)
    string(TOUPPER ${component} upper)
    set(CPACK_COMPONENT_${upper}_GROUP ${name})
    list(APPEND CPACK_COMPONENTS_ALL ${component})
  endforeach()
endmacro()

if(TARGET vant-host)
  vnt_package(vant-plugin COMPONENTS runtime SECTION graphics RECOMMENDS "inkscape, vant-sketch")
endif()
if(TARGET vant-sketch)
  vnt_package(vant-sketch COMPONENTS sketch SECTION graphics RECOMMENDS qt6-translations-l10n SUGGESTS vant-plugin)
endif()
set(peer)
if(TARGET vant-peer)
  set(peer peer)
endif()
vnt_package(vant-dev COMPONENTS dev ${peer} SECTION libdevel SUGGESTS cmake)

include(CPack)
