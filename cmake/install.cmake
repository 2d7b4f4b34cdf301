# Where everything lands on `cmake --install` (and in the Debian package):
# the programs, the desktop entry, the icons, the AppStream metainfo and the
# manual pages, in the GNU layout under CMAKE_INSTALL_PREFIX.
include(GNUInstallDirs)

# Every program that is installed; add new ones here.
set(DIALCRAFT_PROGRAMS dialcraft dialcraft-cli dialcraft-virtual-controller)
# Manual pages in data/, as <name>.<section>.in, configured with the version.
set(DIALCRAFT_MAN_PAGES dialcraft.1 dialcraft-cli.1 dialcraft-virtual-controller.1)

install(TARGETS ${DIALCRAFT_PROGRAMS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

set(data_dir ${PROJECT_SOURCE_DIR}/data)
set(data_out ${PROJECT_BINARY_DIR}/data)

install(FILES ${data_dir}/${DIALCRAFT_APP_ID}.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

install(FILES ${DIALCRAFT_ICON_SVG}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size IN LISTS DIALCRAFT_ICON_SIZES)
  install(FILES ${data_out}/icons/${size}x${size}/${DIALCRAFT_APP_ID}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

configure_file(${data_dir}/${DIALCRAFT_APP_ID}.metainfo.xml.in
  ${data_out}/${DIALCRAFT_APP_ID}.metainfo.xml @ONLY)
install(FILES ${data_out}/${DIALCRAFT_APP_ID}.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# Manual pages are installed compressed, as Debian wants them; man reads
# them either way. -n keeps name and time out of the file.
set(DIALCRAFT_DATA_OUTPUTS)
foreach(page IN LISTS DIALCRAFT_MAN_PAGES)
  string(REGEX REPLACE "^.*\\.([0-9])$" "\\1" section ${page})
  configure_file(${data_dir}/${page}.in ${data_out}/${page} @ONLY)
  add_custom_command(OUTPUT ${data_out}/${page}.gz
    COMMAND gzip -9nkf ${page}
    WORKING_DIRECTORY ${data_out}
    DEPENDS ${data_out}/${page}
    VERBATIM)
  install(FILES ${data_out}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
  list(APPEND DIALCRAFT_DATA_OUTPUTS ${data_out}/${page}.gz)
endforeach()
add_custom_target(dialcraft_data ALL DEPENDS ${DIALCRAFT_DATA_OUTPUTS})

# Everything the install rules need built, without the tests and benchmarks.
add_custom_target(dialcraft_installables)
add_dependencies(dialcraft_installables ${DIALCRAFT_PROGRAMS} dialcraft_data)
