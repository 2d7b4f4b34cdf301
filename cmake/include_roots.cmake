# Each library exports only its own headers. A library's headers are linked
# into an include root of its own, build/include_roots/<target>/, by their
# path below a base folder ("model/global_state.h" from src/), and that root
# is the library's only include folder. A target sees a header only when it
# links the library that holds it, so an include against the layer order does
# not compile.
set(DIALCRAFT_INCLUDE_ROOTS ${PROJECT_BINARY_DIR}/include_roots)

# dialcraft_export_headers(<target> <base folder> [PRIVATE <file name>...])
#   The headers among <target>'s sources, by their path below <base folder>.
#   Those named after PRIVATE go to a root only the target itself sees.
#   Call it after all of the target's sources are added.
function(dialcraft_export_headers target base)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "PRIVATE")
  get_target_property(sources ${target} SOURCES)
  get_target_property(source_dir ${target} SOURCE_DIR)
  set(public_root ${DIALCRAFT_INCLUDE_ROOTS}/${target})
  set(private_root ${DIALCRAFT_INCLUDE_ROOTS}/${target}.private)
  file(REMOVE_RECURSE ${public_root} ${private_root})
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "\\.h$")
      continue()
    endif()
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${source_dir} NORMALIZE OUTPUT_VARIABLE path)
    cmake_path(IS_PREFIX base ${path} NORMALIZE below_base)
    if(NOT below_base)
      continue()
    endif()
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${base} OUTPUT_VARIABLE relative)
    cmake_path(GET path FILENAME name)
    set(root ${public_root})
    if(name IN_LIST arg_PRIVATE)
      set(root ${private_root})
    endif()
    cmake_path(GET relative PARENT_PATH folder)
    file(MAKE_DIRECTORY ${root}/${folder})
    file(CREATE_LINK ${path} ${root}/${relative} SYMBOLIC)
  endforeach()
  file(MAKE_DIRECTORY ${public_root})
  target_include_directories(${target} PUBLIC ${public_root})
  if(arg_PRIVATE)
    target_include_directories(${target} PRIVATE ${private_root})
  endif()
endfunction()
