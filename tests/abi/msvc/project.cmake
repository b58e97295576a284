# Included in the project's configuration for clang-cl: the target "compile" makes every object file there is and links
# nothing.

# There is no resource compiler.
set(CMAKE_RC_COMPILE_OBJECT "\"${CMAKE_COMMAND}\" -E touch <OBJECT>")

# One source file for each public header, so that each is known to stand on its own.
file(GLOB_RECURSE public_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/include"
  "${PROJECT_SOURCE_DIR}/include/*.h")
set(sources)
function(add_source header extension)
  string(MAKE_C_IDENTIFIER "${header}" name)
  set(source "${PROJECT_BINARY_DIR}/public_headers/${name}.${extension}")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n" @ONLY)
  set(sources ${sources} "${source}" PARENT_SCOPE)
endfunction()
foreach(header IN LISTS public_headers)
  add_source(${header} cpp)
endforeach()
foreach(header IN ITEMS speech/speech_c.h speech/audio.h lxapi/lxapi.h)
  add_source(${header} c)
endforeach()
add_library(public_headers OBJECT ${sources})
target_link_libraries(public_headers PRIVATE speech_options)

# What check_slots.sh reads.
add_library(interface_layout OBJECT "${CMAKE_CURRENT_LIST_DIR}/../layout.cpp")
target_link_libraries(interface_layout PRIVATE speech_options)
target_compile_options(interface_layout PRIVATE "SHELL:-Xclang -fdump-vtable-layouts")
set_target_properties(interface_layout PROPERTIES CXX_COMPILER_LAUNCHER "")

function(collect_objects folder)
  get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type MATCHES "EXECUTABLE|(STATIC|SHARED|OBJECT)_LIBRARY")
      set_property(GLOBAL APPEND PROPERTY objects "$<TARGET_OBJECTS:${target}>")
    endif()
  endforeach()
  get_property(children DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(child IN LISTS children)
    collect_objects("${child}")
  endforeach()
endfunction()

function(add_compile_target)
  collect_objects("${PROJECT_SOURCE_DIR}")
  get_property(objects GLOBAL PROPERTY objects)
  add_custom_command(OUTPUT compiled COMMAND "${CMAKE_COMMAND}" -E touch compiled DEPENDS ${objects})
  add_custom_target(compile DEPENDS compiled)
endfunction()
cmake_language(DEFER CALL add_compile_target)
