# The plug-in as a Mac bundle. Never run so far: it was written without a Mac. Included by Source/plugin.
set(VNT_BUNDLE_EXTENSION "bundle" CACHE STRING "Extension that the editor expects of its plug-ins")
set(VNT_BUNDLE_TYPE "BNDL" CACHE STRING "Type code that the editor expects in the property list")
set(VNT_BUNDLE_CREATOR "????" CACHE STRING "Creator code that the editor expects in the property list")

if(NOT VNT_EDITOR_SDK)
  message(WARNING "VNT_EDITOR_SDK is empty: the bundle is built for hosts of host/api, not for the editor")
endif()

set(exports ${CMAKE_CURRENT_LIST_DIR}/exports)
target_link_options(vant PRIVATE LINKER:-exported_symbols_list,${exports})
if(VNT_EDITOR_SDK)
  target_link_libraries(vant PRIVATE "-framework Carbon")
else()
  target_link_options(vant PRIVATE LINKER:-undefined,dynamic_lookup)
endif()
set_target_properties(vant PROPERTIES
  BUNDLE ON
  BUNDLE_EXTENSION ${VNT_BUNDLE_EXTENSION}
  LINK_DEPENDS ${exports}
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in)
install(TARGETS vant LIBRARY DESTINATION . COMPONENT runtime)
