# The documents that are installed beside the program, and how CPack makes a Debian package of the installation.
# script/package runs it.
set(LARKSPAN_DOCS "${CMAKE_INSTALL_DATADIR}/doc/larkspan")

set(changelog "${PROJECT_SOURCE_DIR}/resources/changelog")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
file(STRINGS "${changelog}" release LIMIT_COUNT 1)
if(NOT release MATCHES "^larkspan \\(${PROJECT_VERSION}\\)")
  message(FATAL_ERROR "The newest entry of resources/changelog is not of ${PROJECT_VERSION}: ${release}")
endif()
file(STRINGS "${changelog}" signature LIMIT_COUNT 1 REGEX "^ -- ")
string(REGEX REPLACE "^ -- (.*>)  .*" "\\1" maintainer "${signature}")

# Debian wants these compressed; without a name and a time inside, the same file always gives the same bytes.
function(larkspan_install_compressed file folder)
  get_filename_component(name "${file}" NAME)
  set(compressed "${PROJECT_BINARY_DIR}/${name}.gz")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  execute_process(COMMAND gzip -9 --no-name --stdout "${file}" OUTPUT_FILE "${compressed}" COMMAND_ERROR_IS_FATAL ANY)
  install(FILES "${compressed}" DESTINATION "${folder}")
endfunction()
larkspan_install_compressed("${changelog}" "${LARKSPAN_DOCS}")
larkspan_install_compressed("${PROJECT_SOURCE_DIR}/resources/larkspan.1" "${CMAKE_INSTALL_MANDIR}/man1")

install(FILES "${PROJECT_SOURCE_DIR}/resources/copyright" DESTINATION "${LARKSPAN_DOCS}")
# The engine's and the networks' own words about their rights; resources/copyright points there.
install(FILES "${LARKSPAN_DEPS}/onnxruntime/LICENSE" DESTINATION "${LARKSPAN_DOCS}/notices" RENAME onnxruntime.txt)
install(FILES "${LARKSPAN_DEPS}/onnxruntime/ThirdPartyNotices.txt" DESTINATION "${LARKSPAN_DOCS}/notices"
  RENAME onnxruntime-third-parties.txt)
install(FILES "${LARKSPAN_DEPS}/models/LICENSE" DESTINATION "${LARKSPAN_DOCS}/notices" RENAME detectors.txt)
install(FILES "${LARKSPAN_DEPS}/models/LICENSE-scene" DESTINATION "${LARKSPAN_DOCS}/notices" RENAME scene.txt)
configure_file("${PROJECT_SOURCE_DIR}/resources/com.ostrel.larkspan.metainfo.xml.in"
  "${PROJECT_BINARY_DIR}/com.ostrel.larkspan.metainfo.xml" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/com.ostrel.larkspan.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${PROJECT_SOURCE_DIR}/resources/lintian-overrides"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME larkspan)

# dpkg-shlibdeps finds the libraries that are linked. QML modules, plugins, fonts and the player are loaded at run time,
# so they are named.
file(STRINGS "${PROJECT_SOURCE_DIR}/script/packages.txt" packages)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/script/packages.txt")
set(running "")
foreach(line IN LISTS packages)
  if(line MATCHES "^# (.*)")
    set(section "${CMAKE_MATCH_1}")
  elseif(section STREQUAL "running")
    list(APPEND running "${line}")
  endif()
endforeach()
if(NOT running)
  message(FATAL_ERROR "script/packages.txt has no section \"running\"")
endif()
# So is FFmpeg; the names of its packages change with the release of Debian.
set(libraries "")
foreach(library IN LISTS FFmpeg_LINK_LIBRARIES)
  file(REAL_PATH "${library}" library)
  list(APPEND libraries "${library}")
endforeach()
execute_process(COMMAND dpkg-query --search ${libraries} OUTPUT_VARIABLE owners COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE ":[^\n]*\n" ";" owners "${owners}")
list(SORT owners)
list(APPEND running ${owners})
list(JOIN running ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnome-keyring, xdg-desktop-portal")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libsecret-tools")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME larkspan)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${maintainer}")
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "sorts the footage of real-estate shoots into rooms")
set(CPACK_PACKAGE_DESCRIPTION "\
Larkspan is a desktop tool suite for editors of real-estate video. Its
working tool, Binnacle, looks at a few still frames of each clip of a shoot,
decides which room or shot type it shows, lets the editor settle the clips
that it is unsure of, and writes an event file in which every clip carries
its bins as keywords. On request it copies or moves the footage into one
folder per bin, and compares every copy before a source goes.

All of this happens on the editor's own machine; the networks that look at
the frames are part of this package.")
# Independent of the umask, so that the package is the same everywhere.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
