# Code hygiene checks, run by ctest like any test (label "checks"):
#   qmllint       the window's QML, failing on any warning
#   shellcheck    every shell script of the tree
#   clang_format  every C++ file against .clang-format
# A check whose tool is not installed is skipped (exit 77), except under
# CI=true, where it fails: scripts/bootstrap installs every tool.
set(DIALCRAFT_CHECKS_DIR ${CMAKE_CURRENT_LIST_DIR}/checks)

if(TARGET dialcraft_ui)
  # Our own types come from the module's build output: its qmldir and
  # qmltypes sit in <import dir>/Dialcraft.
  get_target_property(qml_module_output dialcraft_ui QT_QML_MODULE_OUTPUT_DIRECTORY)
  get_target_property(qml_module_path dialcraft_ui QT_QML_MODULE_TARGET_PATH)
  get_target_property(qml_source_dir dialcraft_ui SOURCE_DIR)
  string(REGEX REPLACE "/${qml_module_path}$" "" qml_import_dir "${qml_module_output}")
  add_test(NAME qmllint
    COMMAND bash ${DIALCRAFT_CHECKS_DIR}/qmllint.sh
      --qmllint=$<$<TARGET_EXISTS:Qt6::qmllint>:$<TARGET_FILE:Qt6::qmllint>>
      ${qml_source_dir} ${qml_import_dir} ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_QML})
  set_tests_properties(qmllint PROPERTIES SKIP_RETURN_CODE 77 LABELS checks)
endif()

add_test(NAME shellcheck COMMAND bash ${DIALCRAFT_CHECKS_DIR}/shellcheck.sh ${PROJECT_SOURCE_DIR})
add_test(NAME clang_format COMMAND bash ${DIALCRAFT_CHECKS_DIR}/clang_format.sh ${PROJECT_SOURCE_DIR})
set_tests_properties(shellcheck clang_format PROPERTIES SKIP_RETURN_CODE 77 LABELS checks)
