# cpack reads this for each kind of package.
if(CPACK_GENERATOR STREQUAL DEB)
  list(TRANSFORM CPACK_INSTALL_CMAKE_PROJECTS REPLACE "^licence$" debian)
endif()
