# The files that `cmake --install` installs, and the packages that cpack builds from them.
#
#   Linux    bin/        equalize, which searches ../lib/vst for the library, and lngcheck
#            lib/vst/    the library, its editor and its language files
#            lib/lv2/    the LV2 bundle
#            share/      factory presets, man pages, completions, documents, description for software centres
#            install     in the archive only: a script that installs the other files for one user
#   Windows  ./          the library, its language files, editor-host.exe, lngcheck.exe, documents

set(package parametric-equalizer)
if(WIN32)
  set(effect_dir .)
  set(program_dir .)
  set(document_dir .)
  set(programs editor-host lngcheck)
else()
  set(effect_dir lib/vst)
  set(program_dir bin)
  set(document_dir share/doc/${package})
  set(programs equalize lngcheck)
endif()

install(TARGETS parametric-equalizer DESTINATION ${effect_dir} COMPONENT effect)
if(TARGET curve-module)
  install(TARGETS curve-module DESTINATION ${effect_dir} COMPONENT effect)
endif()
install(FILES ${EQ_LANGUAGE_FILES} DESTINATION ${effect_dir} COMPONENT effect)
install(FILES packaging/README.md DESTINATION ${document_dir} COMPONENT documents)
install(FILES docs/USER_GUIDE.md docs/curve-english.png docs/editor-english.png docs/translating.md
        DESTINATION ${document_dir}/docs COMPONENT documents)
install(FILES LICENSE DESTINATION ${document_dir} COMPONENT licence)

if(EQ_LV2_BUNDLE)
  install(TARGETS parametric-equalizer-lv2 DESTINATION lib/lv2/${package}.lv2 COMPONENT effect)
  install(FILES ${EQ_LV2_TURTLE} DESTINATION lib/lv2/${package}.lv2 COMPONENT effect)
  if(TARGET parametric-equalizer-lv2-editor)
    install(TARGETS parametric-equalizer-lv2-editor DESTINATION lib/lv2/${package}.lv2 COMPONENT effect)
    install(FILES ${EQ_LANGUAGE_FILES} DESTINATION lib/lv2/${package}.lv2 COMPONENT effect)
  endif()
endif()
if(NOT WIN32)
  install(FILES ${EQ_PRESET_FILES} DESTINATION share/${package}/presets COMPONENT effect)
  string(TIMESTAMP release_day "%Y-%m-%d" UTC)
  configure_file(packaging/org.example.parametric_equalizer.metainfo.xml.in
                 org.example.parametric_equalizer.metainfo.xml @ONLY)
  install(FILES packaging/examples/pipewire-equalizer.conf DESTINATION ${document_dir}/examples COMPONENT documents)
  install(FILES "${CMAKE_BINARY_DIR}/org.example.parametric_equalizer.metainfo.xml" DESTINATION share/metainfo
          COMPONENT documents)
endif()

# Installs a file in the compressed form that Debian requires, without a time stamp.
#   eq_install_gzip(SOURCE RESULT install-arguments...)
function(eq_install_gzip source result)
  add_custom_command(OUTPUT "${result}" COMMAND gzip -9nc "${source}" > "${result}" DEPENDS "${source}" VERBATIM)
  set_property(GLOBAL APPEND PROPERTY EQ_COMPRESSED "${result}")
  install(FILES "${result}" ${ARGN})
endfunction()

foreach(program IN LISTS programs)
  if(TARGET ${program})
    install(TARGETS ${program} DESTINATION ${program_dir} COMPONENT effect)
    if(NOT WIN32)
      eq_install_gzip("${PROJECT_SOURCE_DIR}/docs/man/${program}.1" "${CMAKE_BINARY_DIR}/${program}.1.gz"
                      DESTINATION share/man/man1 COMPONENT documents)
      install(FILES packaging/completion/${program} DESTINATION share/bash-completion/completions COMPONENT documents)
    endif()
  endif()
endforeach()

set(CPACK_PACKAGE_NAME ${package})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "the Parametric Equalizer authors")
set(CPACK_PACKAGE_CONTACT "the Parametric Equalizer authors <parametric-equalizer@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "four-band parametric equalizer for LV2 and VST 2 hosts and audio files")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/times.cmake")

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ${package}-${PROJECT_VERSION}-windows)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
  # One package contains both builds.
  set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_SOURCE_DIR}/build/win32" ${PROJECT_NAME} effect /32-bit
    "${PROJECT_SOURCE_DIR}/build/win64" ${PROJECT_NAME} effect /64-bit
    "${PROJECT_SOURCE_DIR}/build/win64" ${PROJECT_NAME} documents /
    "${PROJECT_SOURCE_DIR}/build/win64" ${PROJECT_NAME} licence /)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME ${package}-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_INSTALL_CMAKE_PROJECTS
    "${CMAKE_BINARY_DIR}" ${PROJECT_NAME} effect /
    "${CMAKE_BINARY_DIR}" ${PROJECT_NAME} documents /
    "${CMAKE_BINARY_DIR}" ${PROJECT_NAME} licence /)

  install(PROGRAMS packaging/install DESTINATION . COMPONENT archive EXCLUDE_FROM_ALL)

  # Debian's package needs another name for the licence file, and a changelog in Debian's form.
  set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/packaging/generator.cmake")
  set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/debian-control.cmake")
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  configure_file(packaging/changelog.in changelog @ONLY)
  eq_install_gzip("${CMAKE_BINARY_DIR}/changelog" "${CMAKE_BINARY_DIR}/changelog.gz"
                  DESTINATION ${document_dir} COMPONENT debian EXCLUDE_FROM_ALL)
  install(FILES packaging/copyright DESTINATION ${document_dir} COMPONENT debian EXCLUDE_FROM_ALL)

  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION sound)
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS bash-completion)
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Each channel runs through an output gain and four peak filters, and a change
of a setting never clicks.
.
The package has LV2 plug-ins, mono and stereo, right at every sampling rate;
the effect as a library for VST 2 hosts, designed for 44100 Hz; both in
thirteen languages; equalize, a command that equalizes audio files; and
lngcheck, which checks language files for translators.")

  get_property(compressed GLOBAL PROPERTY EQ_COMPRESSED)
  add_custom_target(compressed-documents ALL DEPENDS ${compressed})
endif()
include(CPack)
