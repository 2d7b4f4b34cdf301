# The Debian package, built by CPack's DEB generator (`bash scripts/package`,
# or `cpack` in a build tree): what it depends on, its description, and the
# documents Debian wants in /usr/share/doc/dialcraft.

set(DIALCRAFT_MAINTAINER "the dialcraft developers <dialcraft@users.noreply.github.com>"
  CACHE STRING "Maintainer field of the Debian package and its changelog")
set(DIALCRAFT_HOMEPAGE "https://github.com/dialcraft/dialcraft")

# copyright, machine-readable, from LICENSE: its copyright line and its
# licence text from "Permission is hereby granted" on, indented as a
# paragraph body (one space; empty lines as " .").
file(READ ${PROJECT_SOURCE_DIR}/LICENSE license_text)
if(NOT license_text MATCHES "Copyright \\(c\\) ([^\n]+)")
  message(FATAL_ERROR "LICENSE has no copyright line")
endif()
set(DIALCRAFT_COPYRIGHT "${CMAKE_MATCH_1}")
string(FIND "${license_text}" "Permission is hereby granted" body_start)
string(SUBSTRING "${license_text}" ${body_start} -1 license_body)
string(STRIP "${license_body}" license_body)
string(REPLACE "\n" "\n " license_body " ${license_body}")
string(REPLACE "\n \n" "\n .\n" DIALCRAFT_LICENSE_BODY "${license_body}")

set(doc_out ${PROJECT_BINARY_DIR}/packaging)
configure_file(${PROJECT_SOURCE_DIR}/packaging/copyright.in ${doc_out}/copyright @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${doc_out}/changelog @ONLY)
add_custom_command(OUTPUT ${doc_out}/changelog.gz
  COMMAND gzip -9nkf changelog
  WORKING_DIRECTORY ${doc_out}
  DEPENDS ${doc_out}/changelog
  VERBATIM)
add_custom_target(dialcraft_package_docs ALL DEPENDS ${doc_out}/changelog.gz)
add_dependencies(dialcraft_installables dialcraft_package_docs)
install(FILES ${doc_out}/copyright ${doc_out}/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dialcraft)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)  # dialcraft_<version>_<arch>.deb
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${DIALCRAFT_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${DIALCRAFT_HOMEPAGE}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "programs the knobs of USB-MIDI knob controllers")
set(CPACK_PACKAGE_DESCRIPTION
"dialcraft programs the knobs of the 4AC0CC27 to 4ACFCC27 family of USB-MIDI
knob controllers from a desktop window. For each knob choose a message type
(Note On, Note Off, Control Change or Bend Change), a MIDI channel and a
controller number, and press the knob's set button: dialcraft finds the
controller on the ALSA sequencer and sends it the short MIDI sequence that
programs that knob. The table of knob settings is kept between runs and can
be exported to and imported from plain-text files.")

# Libraries the program links come from dpkg-shlibdeps. The window's QML
# modules and the font of its Chinese labels are loaded at run time, so they
# are named here. (QtQml, which QtQuick imports, also has a copy built into
# the Qt libraries; the module package's files are used when it is installed,
# so it is named too, and the program runs the same everywhere.)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(DIALCRAFT_RUNTIME_PACKAGES
  qml6-module-qtqml
  qml6-module-qtquick
  qml6-module-qtquick-controls
  qml6-module-qtquick-dialogs
  qml6-module-qtquick-layouts
  qml6-module-qtquick-templates
  qml6-module-qtquick-window
  qml6-module-qtqml-workerscript
  qml6-module-qt-labs-folderlistmodel
  fonts-noto-cjk)
list(JOIN DIALCRAFT_RUNTIME_PACKAGES ", " CPACK_DEBIAN_PACKAGE_DEPENDS)

include(CPack)
