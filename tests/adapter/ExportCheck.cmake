# Checks the dynamic symbol table of a shared library: ENTRY must be
# exported under its plain C name, and no symbol may match FORBIDDEN.
#   cmake -DLIB=<file> -DENTRY=<name> [-DFORBIDDEN=<regex>] [-DNM=<tool>] -P ExportCheck.cmake
cmake_minimum_required(VERSION 3.25)
foreach(var LIB ENTRY)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "${var} not given")
  endif()
endforeach()

# A cross build's library is read with its own target's nm, chosen by the
# ELF header's machine field (bytes 18-19, little-endian; 0xB7 is AArch64).
if(NOT DEFINED NM)
  file(READ ${LIB} machine OFFSET 18 LIMIT 2 HEX)
  if(machine STREQUAL "b700")
    find_program(NM NAMES aarch64-linux-gnu-nm nm REQUIRED)
  else()
    set(NM nm)
  endif()
endif()

function(defined_symbols out)
  execute_process(COMMAND ${NM} -D --defined-only ${ARGN} ${LIB}
    OUTPUT_VARIABLE symbols RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${NM} failed on ${LIB}")
  endif()
  string(REPLACE "\n" ";" symbols "${symbols}")
  set(${out} "${symbols}" PARENT_SCOPE)
endfunction()

defined_symbols(raw)
list(FILTER raw INCLUDE REGEX " T ${ENTRY}$")
if(NOT raw)
  message(FATAL_ERROR "${LIB} does not export ${ENTRY} unmangled")
endif()

if(DEFINED FORBIDDEN)
  defined_symbols(demangled -C)
  list(FILTER demangled INCLUDE REGEX "${FORBIDDEN}")
  if(demangled)
    string(REPLACE ";" "\n" demangled "${demangled}")
    message(FATAL_ERROR "${LIB} exports internal symbols:\n${demangled}")
  endif()
endif()
message(STATUS "${LIB}: exports as expected")
