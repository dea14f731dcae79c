# zeq_compile_options(target): the language level, the warnings (all of them errors) and, natively, the sanitizers.
function(zeq_compile_options target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2
    -Wnull-dereference $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op> -Wimplicit-fallthrough
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Woverloaded-virtual>)
  if(WIN32)
    target_compile_definitions(${target} PRIVATE
      UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT _WIN32_WINNT=0x0601 WINVER=0x0601)
    # The linker drops what the component does not use (--gc-sections).
    target_compile_options(${target} PRIVATE -ffunction-sections -fdata-sections)
    if(ZEQ_TRAP)
      # Clients pass any integer for an enumeration, and the system's marshaller pointers to any address. The checks
      # make paths that the warnings take for real ones.
      target_compile_options(${target} PRIVATE -fsanitize=undefined -fno-sanitize=enum,alignment -fsanitize-undefined-trap-on-error
        -Wno-null-dereference -Wno-maybe-uninitialized)
    endif()
  else()
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    if(ZEQ_FUZZ)  # The fuzzer follows which ways through the code its inputs take.
      target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
  endif()
endfunction()
