# Where Inkscape finds its commands: the two extension files, and beside each a link to vant-host in the name it calls.
set(extensions ${CMAKE_INSTALL_DATADIR}/inkscape/extensions)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/vant-start.inx ${CMAKE_CURRENT_LIST_DIR}/vant-place.inx
  DESTINATION ${extensions} COMPONENT runtime)

# Relative links, made here for copying: they hold under any prefix, and below DESTDIR.
file(RELATIVE_PATH program ${CMAKE_INSTALL_FULL_DATADIR}/inkscape/extensions ${CMAKE_INSTALL_FULL_BINDIR}/vant-host)
foreach(name vant-start vant-place)
  set(link ${CMAKE_CURRENT_BINARY_DIR}/links/${name})
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
  file(CREATE_LINK ${program} ${link} SYMBOLIC)
  install(FILES ${link} DESTINATION ${extensions} COMPONENT runtime)
endforeach()

# Inkscape has one folder of the system's extensions, wherever this project is installed.
install(CODE "
  set(bin \"${CMAKE_INSTALL_BINDIR}\")
  set(extensions \"${extensions}\")
  foreach(folder bin extensions)
    cmake_path(ABSOLUTE_PATH \${folder} BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" NORMALIZE)
  endforeach()
  if(NOT DEFINED CPACK_PACKAGE_NAME AND NOT extensions STREQUAL /usr/share/inkscape/extensions)
    message(STATUS \"Inkscape looks in /usr/share/inkscape/extensions, not in \${extensions}. For its commands run:\")
    message(STATUS \"  \${bin}/vant-host install          (for all users, as root)\")
    message(STATUS \"  \${bin}/vant-host install --user   (for this user)\")
  endif()" COMPONENT runtime)
