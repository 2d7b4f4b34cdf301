# Writes build/link_graph.txt for the layer check (tests/checks/layer_check.py):
# for every target of src/, tools/, tests/ and bench/, its folder, the targets
# and libraries it links, and its sources, one line each:
#   target <name> <type> <source folder>
#   links <name> <library>;<library>;...
#   sources <name> <file>;<file>;...
function(dialcraft_collect_targets dir out)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(sub IN LISTS subdirs)
    dialcraft_collect_targets(${sub} sub_targets)
    list(APPEND targets ${sub_targets})
  endforeach()
  set(${out} ${targets} PARENT_SCOPE)
endfunction()

function(dialcraft_write_link_graph)
  set(content "")
  # The folders this configuration added (tests and benchmarks only when
  # they are built).
  get_property(tops DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTY SUBDIRECTORIES)
  foreach(top IN LISTS tops)
    dialcraft_collect_targets(${top} targets)
    foreach(target IN LISTS targets)
      get_target_property(type ${target} TYPE)
      if(NOT type MATCHES "^(STATIC_LIBRARY|SHARED_LIBRARY|MODULE_LIBRARY|OBJECT_LIBRARY|EXECUTABLE)$")
        continue()
      endif()
      get_target_property(folder ${target} SOURCE_DIR)
      string(APPEND content "target ${target} ${type} ${folder}\n")
      string(APPEND content "links ${target} $<TARGET_PROPERTY:${target},LINK_LIBRARIES>\n")
      string(APPEND content "sources ${target} $<TARGET_PROPERTY:${target},SOURCES>\n")
    endforeach()
  endforeach()
  file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/link_graph.txt CONTENT "${content}")
endfunction()
