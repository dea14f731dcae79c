# zeq_typelib(idl [INCLUDES dir...] [FINISH spellings]): compiles an interface description into <name>.tlb, <name>.h and
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
  set(widl ${ZEQ_WIDL} ${ZEQ_WIDL_BITS} -I ${CMAKE_SOURCE_DIR}/src -I ${ZEQ_WINE_IDL} -L ${ZEQ_STDOLE})
  add_custom_command(
    OUTPUT ${ZEQ_GENERATED}/${name}.tlb ${ZEQ_GENERATED}/${name}.h ${ZEQ_GENERATED}/${name}_i.c
    COMMAND ${widl} -t -o ${name}.tlb ${idl}
    COMMAND ${ZEQ_PYTHON} ${CMAKE_SOURCE_DIR}/cmake/finish_typelib.py ${name}.tlb
    COMMAND ${widl} -h -o ${name}.h ${idl}
    COMMAND ${widl} -u -o ${name}_i.c ${idl}
    WORKING_DIRECTORY ${ZEQ_GENERATED}
    DEPENDS ${idl} ${arg_DEPENDS} ${CMAKE_SOURCE_DIR}/cmake/finish_typelib.py
    COMMENT "Compiling ${name}.idl"
    VERBATIM)
endfunction()
