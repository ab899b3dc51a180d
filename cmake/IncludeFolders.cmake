# Include paths name exactly what a target's users may include. A source folder handed out whole
# would carry its neighbours with it (src/driver holds the codec's internals beside tlm.h, src
# holds every module), so a target hands out a folder of its own in the build tree that holds
# only symbolic links to the headers or header folders it offers, each under its own name:
#
#   torvane_include_folder(torvane-link PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})  # "link/wire.h"
#   torvane_include_folder(tlm PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/tlm.h)     # "tlm.h", nothing else
#
# Links rather than copies: an editor that follows an error into a header edits the real file,
# and a header added to a linked folder is reachable at once.
function(torvane_include_folder target scope)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/include.${target})
  file(MAKE_DIRECTORY ${folder})
  foreach(path IN LISTS ARGN)
    cmake_path(GET path FILENAME name)
    file(CREATE_LINK ${path} ${folder}/${name} SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} ${folder})
endfunction()

# App and core mirror each other's folders (graph/, logger/...), and the simulator's logger/ sits
# beside core's, so one "graph/x.h" is looked up under several roots. That stays unambiguous only
# while no header path repeats across them; a repeated one would be found under whichever root
# comes first, so the configure step refuses it.
function(torvane_forbid_repeated_headers)
  list(JOIN ARGN ", " roots)
  set(seen)
  foreach(root IN LISTS ARGN)
    file(GLOB_RECURSE headers RELATIVE ${root} CONFIGURE_DEPENDS ${root}/*.h)
    foreach(header IN LISTS headers)
      if(header IN_LIST seen)
        message(FATAL_ERROR "${header} exists under more than one of ${roots}: "
                            "an include of it would be ambiguous; rename one of them.")
      endif()
      list(APPEND seen ${header})
    endforeach()
  endforeach()
endfunction()
