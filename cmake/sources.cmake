# zeq_sources(PORTABLE ... WINDOWS ...): adds a folder's files to the library. PORTABLE files need no Windows header
# and are also built natively; WINDOWS files are built for Windows only.
function(zeq_sources)
  cmake_parse_arguments(arg "" "" "PORTABLE;WINDOWS" ${ARGN})
  list(TRANSFORM arg_PORTABLE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM arg_WINDOWS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(zeq_portable PRIVATE ${arg_PORTABLE})
  if(WIN32)
    target_sources(zeq_windows PRIVATE ${arg_WINDOWS})
  endif()
endfunction()

# zeq_tests(PORTABLE ... UNIT ... COMPONENT ...): adds a folder's test files. PORTABLE tests run natively under the
# sanitizers and on Windows; UNIT tests link the library's code; COMPONENT tests know only the built DLL.
function(zeq_tests)
  cmake_parse_arguments(arg "" "" "PORTABLE;UNIT;COMPONENT" ${ARGN})
  foreach(kind PORTABLE UNIT COMPONENT)
    list(TRANSFORM arg_${kind} PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  endforeach()
  if(WIN32)
    target_sources(unit_tests PRIVATE ${arg_PORTABLE} ${arg_UNIT})
    target_sources(component_tests PRIVATE ${arg_COMPONENT})
  else()
    target_sources(portable_tests PRIVATE ${arg_PORTABLE})
  endif()
endfunction()
