# Included in the project's configuration for clang-cl: one source file for each public header, so that each is known
# to stand on its own.

include("${PROJECT_SOURCE_DIR}/cmake/PublicHeaders.cmake")
# The framework's own classes are for compilers without MFC.
list(FILTER speech_public_headers EXCLUDE REGEX "^framework/(application|exception|message_box|pointer_list|string.*)\\.h$")
list(TRANSFORM speech_public_headers REPLACE "^include/" "")

set(sources)
function(add_source header extension)
  string(MAKE_C_IDENTIFIER "${header}" name)
  set(source "${PROJECT_BINARY_DIR}/public_headers/${name}.${extension}")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n" @ONLY)
  set(sources ${sources} "${source}" PARENT_SCOPE)
endfunction()
foreach(header IN LISTS speech_public_headers)
  add_source(${header} cpp)
endforeach()
foreach(header IN ITEMS speech/speech_c.h speech/audio_c.h lxapi/lxapi.h)
  add_source(${header} c)
endforeach()

add_library(public_headers OBJECT EXCLUDE_FROM_ALL ${sources} "${CMAKE_CURRENT_LIST_DIR}/../layout.cpp")
target_link_libraries(public_headers PRIVATE speech_options)
set_target_properties(public_headers PROPERTIES EXPORT_COMPILE_COMMANDS ON)
