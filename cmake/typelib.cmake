# zeq_typelib(idl [DEPENDS file...]): compiles an interface description into <name>.tlb, <name>.h and
# <name>_i.c in ${ZEQ_GENERATED}. widl comes with mingw-w64-tools; the standard types come from Wine's development files.
set(ZEQ_GENERATED ${CMAKE_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${ZEQ_GENERATED})
find_program(ZEQ_WIDL ${ZEQ_TRIPLET}-widl REQUIRED)
find_program(ZEQ_PYTHON python3 REQUIRED)
set(ZEQ_WINE_IDL /usr/include/wine/wine/windows CACHE PATH "Folder of Wine's oaidl.idl")
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(ZEQ_WIDL_BITS --win32)
  set(ZEQ_STDOLE /usr/lib/i386-linux-gnu/wine/i386-windows CACHE PATH "Folder of Wine's stdole2.tlb")
else()
  set(ZEQ_WIDL_BITS --win64)
  set(ZEQ_STDOLE /usr/lib/x86_64-linux-gnu/wine/x86_64-windows CACHE PATH "Folder of Wine's stdole2.tlb")
endif()

function(zeq_typelib idl)
  cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
  get_filename_component(name ${idl} NAME_WE)
  # widl writes the path that it is given into what it makes.
  file(RELATIVE_PATH source ${ZEQ_GENERATED} ${idl})
  set(widl ${ZEQ_WIDL} ${ZEQ_WIDL_BITS} -I ${CMAKE_SOURCE_DIR}/src -I ${ZEQ_WINE_IDL} -L ${ZEQ_STDOLE})
  add_custom_command(
    OUTPUT ${ZEQ_GENERATED}/${name}.tlb ${ZEQ_GENERATED}/${name}.h ${ZEQ_GENERATED}/${name}_i.c
    COMMAND ${widl} -t -o ${name}.tlb ${source}
    COMMAND ${ZEQ_PYTHON} ${CMAKE_SOURCE_DIR}/cmake/finish_typelib.py ${name}.tlb
    COMMAND ${widl} -h -o ${name}.h ${source}
    COMMAND ${widl} -u -o ${name}_i.c ${source}
    WORKING_DIRECTORY ${ZEQ_GENERATED}
    DEPENDS ${idl} ${arg_DEPENDS} ${CMAKE_SOURCE_DIR}/cmake/finish_typelib.py ${CMAKE_SOURCE_DIR}/cmake/msft.py
    COMMENT "Compiling ${name}.idl"
    VERBATIM)
endfunction()

# zeq_manifest(name): writes the manifest for use without registration from the type library of that name.
function(zeq_manifest name)
  set(architecture x86)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(architecture amd64)
  endif()
  set(script ${CMAKE_SOURCE_DIR}/cmake/write_manifest.py)
  add_custom_command(
    OUTPUT ${ZEQ_GENERATED}/${name}.manifest
    COMMAND ${ZEQ_PYTHON} ${script} ${name}.tlb ${name}.manifest ${name}.dll ${PROJECT_VERSION}.0 ${architecture}
    WORKING_DIRECTORY ${ZEQ_GENERATED}
    DEPENDS ${ZEQ_GENERATED}/${name}.tlb ${script} ${CMAKE_SOURCE_DIR}/cmake/msft.py
    COMMENT "Writing ${name}.manifest"
    VERBATIM)
endfunction()
