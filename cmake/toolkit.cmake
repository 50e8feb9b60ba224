# The toolkit, FLTK 1.1, 1.3 or 1.4, as the library "fltk". The toolkit's
# fltk-config tells where the headers are, which flags they need and what to
# link, because these differ between versions and systems.
# -D FLTK_CONFIG=/path/to/fltk-config chooses another installation.

find_program(FLTK_CONFIG fltk-config)
if(NOT FLTK_CONFIG)
  message(FATAL_ERROR "fltk-config is missing: install FLTK 1.1, 1.3 or 1.4 "
    "with its headers.")
endif()

function(ask_toolkit answer)
  execute_process(
    COMMAND ${FLTK_CONFIG} --use-images ${ARGN}
    OUTPUT_VARIABLE text
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY
  )
  separate_arguments(words UNIX_COMMAND "${text}")
  set(${answer} ${words} PARENT_SCOPE)
endfunction()

ask_toolkit(version --version)
ask_toolkit(flags --cxxflags)
ask_toolkit(libraries --ldflags)
message(STATUS "FLTK ${version}")

# SYSTEM below keeps warnings about the toolkit's headers away.
set(include_directories ${flags})
list(FILTER include_directories INCLUDE REGEX "^-I")
list(TRANSFORM include_directories REPLACE "^-I" "")
list(FILTER flags EXCLUDE REGEX "^-I")

add_library(fltk INTERFACE)
target_include_directories(fltk SYSTEM INTERFACE ${include_directories})
target_compile_options(fltk INTERFACE ${flags})
target_link_libraries(fltk INTERFACE ${libraries})
