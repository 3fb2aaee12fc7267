# The Debian package that ./package builds: where the files go, and what dpkg is told of them. The
# install rules are the package's alone; their directories begin at the root of the machine.

set(PACKAGE_HOME opt/quillon-web)
set(PACKAGE_DOC usr/share/doc/quillon-web)
set(PACKAGE_TEXTS ${PROJECT_SOURCE_DIR}/packaging)
set(PACKAGE_MADE ${PROJECT_BINARY_DIR}/packaging) # what is made here

# The revision is that of the newest entry in the changelog, which has to be of this version.
file(STRINGS ${PACKAGE_TEXTS}/changelog newest_entry LIMIT_COUNT 1)
string(REGEX MATCH "^quillon-web \\((.*)-(.*)\\)" newest_entry "${newest_entry}")
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "packaging/changelog begins with the version \"${CMAKE_MATCH_1}\", but this "
    "is ${PROJECT_VERSION}: add an entry for quillon-web (${PROJECT_VERSION}-1)")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2})

# --- files ---------------------------------------------------------------------------------

# Whoever can open the directory could hold the lock by which one service runs in it.
install(DIRECTORY DESTINATION ${PACKAGE_HOME}
  DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE)
install(TARGETS quillonweb quillonctl quillondb RUNTIME DESTINATION ${PACKAGE_HOME})
install(TARGETS quillonmail LIBRARY DESTINATION ${PACKAGE_HOME}
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# Configuration; the directory of the service gets links to it.
install(DIRECTORY share/WebReports/ DESTINATION etc/quillon-web)

# The unit, which names the manual too: a package always has it.
file(READ ${PROJECT_SOURCE_DIR}/share/quillon-web.service unit)
string(REPLACE "@AppPath@" "/${PACKAGE_HOME}" unit "${unit}")
string(REPLACE "[Unit]\n" "[Unit]\nDocumentation=man:quillonweb(8)\n" unit "${unit}")
file(WRITE ${PACKAGE_MADE}/quillon-web.service "${unit}")
install(FILES ${PACKAGE_MADE}/quillon-web.service DESTINATION lib/systemd/system)

install(FILES share/man/quillonctl.1 share/man/quillondb.1 DESTINATION usr/share/man/man1)
install(FILES share/man/quillonweb.8 DESTINATION usr/share/man/man8)
# The manual of the administrator, with its picture. What tells of the sources alone stays with them.
install(DIRECTORY docs/ DESTINATION ${PACKAGE_DOC}
  FILES_MATCHING PATTERN *.md PATTERN images/console.png
  PATTERN architecture.md EXCLUDE)
install(FILES share/bash-completion/quillonctl DESTINATION usr/share/bash-completion/completions)
install(FILES packaging/changelog DESTINATION ${PACKAGE_DOC} RENAME changelog.Debian)
install(FILES packaging/copyright DESTINATION ${PACKAGE_DOC})
install(FILES packaging/lintian-overrides
  DESTINATION usr/share/lintian/overrides RENAME quillon-web)

# Installs a link with the text `target`.
function(install_link target folder name)
  file(MAKE_DIRECTORY ${PACKAGE_MADE}/${folder})
  file(CREATE_LINK ${target} ${PACKAGE_MADE}/${folder}/${name} SYMBOLIC)
  install(FILES ${PACKAGE_MADE}/${folder}/${name} DESTINATION ${folder})
endfunction()
install_link(/${PACKAGE_HOME}/quillonctl usr/bin quillonctl)
install_link(/${PACKAGE_HOME}/quillondb usr/bin quillondb)
install_link(quillonctl usr/share/bash-completion/completions quillondb)

# --- what dpkg is told ---------------------------------------------------------------------

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillon-web)
set(CPACK_PACKAGE_VENDOR "Quillon Network Reporting")
set(CPACK_PACKAGE_CONTACT "Quillon Network Reporting <packages@quillon.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL https://quillon.example/)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/compress_package_texts.cmake)

file(READ ${PACKAGE_TEXTS}/description description)
string(STRIP "${description}" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Libraries are found in the programs; adduser is for the user that the service runs as.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS adduser)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS ca-certificates) # whom a mail server is checked against
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${PACKAGE_TEXTS}/conffiles
  ${PACKAGE_TEXTS}/preinst
  ${PACKAGE_TEXTS}/postinst
  ${PACKAGE_TEXTS}/prerm
  ${PACKAGE_TEXTS}/postrm)
include(CPack)
