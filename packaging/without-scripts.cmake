# Removes the scripts that run ldconfig from Debian's package. cpack adds them because it treats the effect as a library
# that programs link to.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(package MATCHES "\\.deb$")
    set(tree "${CPACK_TEMPORARY_DIRECTORY}/rebuilt")
    execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
    execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
