# Installation and the Debian package. The libraries are private and installed in lib/zyl. All files
# are found relative to each other, so the installation can be moved.
set_target_properties(zyl PROPERTIES INSTALL_RPATH "$ORIGIN/../lib/zyl")
set_target_properties(zylhost ZylSProgram PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS zyl RUNTIME DESTINATION bin)
install(TARGETS zylhost ZylSProgram LIBRARY DESTINATION lib/zyl)
install(TARGETS zylplayer LIBRARY DESTINATION lib/zyl/plugins/zyl)
install(FILES ${ZYL_METHOD_REFERENCE} DESTINATION lib/zyl)
install(DIRECTORY verbs DESTINATION share/zyl)
install(DIRECTORY lua DESTINATION share/zyl)
install(DIRECTORY examples DESTINATION share/zyl)
# Editor stubs and documentation.
install(FILES docs/zyl.d.lua DESTINATION share/zyl OPTIONAL)
install(FILES README.md DESTINATION share/doc/zyl)
install(DIRECTORY docs DESTINATION share/doc/zyl PATTERN "zyl.d.lua" EXCLUDE)
install(FILES LICENSE DESTINATION share/doc/zyl RENAME copyright)
install(FILES packaging/zyl.bash DESTINATION share/bash-completion/completions RENAME zyl)

# zyl(1) is generated from the help texts of the verbs.
file(GLOB verb_scripts CONFIGURE_DEPENDS verbs/*.lua verbs/lib/*.lua)
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/zyl.1
  COMMAND zyl run ${CMAKE_SOURCE_DIR}/packaging/manual.lua ${CMAKE_BINARY_DIR}/zyl.1
          ${PROJECT_VERSION} $<TARGET_FILE:zyl> ${CMAKE_SOURCE_DIR}/verbs
  DEPENDS zyl ZylSProgram packaging/manual.lua ${verb_scripts}
  COMMENT "Writing zyl.1" VERBATIM)
add_custom_target(manual ALL DEPENDS ${CMAKE_BINARY_DIR}/zyl.1)
install(FILES ${CMAKE_BINARY_DIR}/zyl.1 DESTINATION share/man/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zyl)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Sampler programs from the command line")
set(CPACK_PACKAGE_DESCRIPTION
    "Builds, edits and compares sampler programs, finds loops and pitch of samples, and runs Lua
 scripts that call the 295 methods of the ZylSProgram module.")
set(CPACK_PACKAGE_CONTACT "the zyl maintainers <zyl@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
# The verbs run find and nproc.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "coreutils, findutils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "parallel, bash-completion")
include(CPack)
