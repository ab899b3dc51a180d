# Every target of ours builds clean under the same warning set; third-party headers come in as
# system includes and are not held to it.
function(torvane_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                           -Wno-sign-conversion)
  if(TORVANE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
