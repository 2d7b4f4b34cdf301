# What desktops know the window program by, besides its desktop entry: the
# project version (About data) and the application icon compiled into the
# program, so the window shows it even when the icon theme does not have it.

# app_shell.cpp hands the version to QGuiApplication::setApplicationVersion.
target_compile_definitions(dialcraft_ui PRIVATE DIALCRAFT_VERSION="${PROJECT_VERSION}")

# The icon is drawn once as SVG; the PNG sizes that the icon theme and the
# window icon use are rendered from it at build time.
find_program(DIALCRAFT_RSVG_CONVERT rsvg-convert)
if(NOT DIALCRAFT_RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert not found: it renders the application icon "
                      "(Debian package librsvg2-bin; scripts/bootstrap installs it)")
endif()

set(DIALCRAFT_APP_ID io.github.dialcraft.Dialcraft)
set(DIALCRAFT_ICON_SVG ${PROJECT_SOURCE_DIR}/data/icons/${DIALCRAFT_APP_ID}.svg)
set(DIALCRAFT_ICON_SIZES 48 128 256)
set(DIALCRAFT_ICON_PNGS)
foreach(size IN LISTS DIALCRAFT_ICON_SIZES)
  set(png ${PROJECT_BINARY_DIR}/data/icons/${size}x${size}/${DIALCRAFT_APP_ID}.png)
  add_custom_command(OUTPUT ${png}
    COMMAND ${DIALCRAFT_RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${DIALCRAFT_ICON_SVG}
    DEPENDS ${DIALCRAFT_ICON_SVG}
    COMMENT "Rendering the ${size}x${size} application icon"
    VERBATIM)
  # The window icon finds each size at :/icons/<size>.png.
  set_source_files_properties(${png} PROPERTIES QT_RESOURCE_ALIAS ${size}.png)
  list(APPEND DIALCRAFT_ICON_PNGS ${png})
endforeach()

# Object files, so the resource's registration is linked into the program
# whole; the icon files are built in this directory, where their rules live.
add_library(dialcraft_icon_resources OBJECT)
target_link_libraries(dialcraft_icon_resources PRIVATE Qt6::Core)
qt_add_resources(dialcraft_icon_resources dialcraft_icons
  PREFIX /icons
  FILES ${DIALCRAFT_ICON_PNGS})
target_link_libraries(dialcraft PRIVATE dialcraft_icon_resources)
