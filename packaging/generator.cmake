# cpack reads this file once per type of package.
if(CPACK_GENERATOR STREQUAL DEB)
  list(TRANSFORM CPACK_INSTALL_CMAKE_PROJECTS REPLACE "^licence$" debian)
elseif(CPACK_GENERATOR STREQUAL TGZ)
  # The list has four entries per component: the build tree, the project, the component and its folder.
  list(SUBLIST CPACK_INSTALL_CMAKE_PROJECTS 0 2 archive)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS ${archive} archive /)
endif()
