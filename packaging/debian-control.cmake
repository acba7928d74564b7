# Completes Debian's package after cpack has built it.
#
# cpack treats the effect as a library that programs link to, and adds scripts that run ldconfig. This script removes
# these scripts. It also writes the dependencies. The package depends on the libraries of the programs and the plug-ins.
# It only recommends the libraries of the editors, because a machine without a screen needs no graphics libraries.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(NOT package MATCHES "\\.deb$")
    continue()
  endif()
  set(work "${CPACK_TEMPORARY_DIRECTORY}/rebuilt")
  set(tree "${work}/tree")
  file(MAKE_DIRECTORY "${work}")
  execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")

  file(WRITE "${work}/debian/control" "Source: package\n\nPackage: package\nArchitecture: any\n")
  file(GLOB editors "${tree}/usr/lib/vst/*.editor" "${tree}/usr/lib/lv2/*/*-editor.so")
  file(GLOB others "${tree}/usr/bin/*" "${tree}/usr/lib/vst/*.so" "${tree}/usr/lib/lv2/*/*.so")
  list(REMOVE_ITEM others "" ${editors})
  execute_process(COMMAND dpkg-shlibdeps -O -dDepends ${others} -dRecommends ${editors}
    WORKING_DIRECTORY "${work}" OUTPUT_VARIABLE found COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "shlibs:([A-Za-z]+)=" "\\1: " fields "${found}")
  file(READ "${tree}/DEBIAN/control" control)
  file(WRITE "${tree}/DEBIAN/control" "${fields}${control}")
  execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
