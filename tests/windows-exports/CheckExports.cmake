# Checks what FormulaFunction.dll exports and imports:
#   cmake -DDLL=FormulaFunction.dll -DOBJDUMP=x86_64-w64-mingw32-objdump -P CheckExports.cmake
# The host finds the five plain functions by their bare names, links the class and
# the settings through the import library, and loads the DLL with nothing but
# system DLLs beside it.
cmake_minimum_required(VERSION 3.20)
if(NOT DLL OR NOT OBJDUMP)
  message(FATAL_ERROR "usage: cmake -DDLL=<dll> -DOBJDUMP=<objdump> -P CheckExports.cmake")
endif()
execute_process(COMMAND ${OBJDUMP} -p ${DLL} OUTPUT_VARIABLE dump RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} -p ${DLL} failed (${rc})")
endif()

# The names of the export table: the lines "[ N] name" after "[Ordinal/Name Pointer] Table".
string(FIND "${dump}" "[Ordinal/Name Pointer] Table" start)
if(start EQUAL -1)
  message(FATAL_ERROR "${DLL} has no export name table")
endif()
string(SUBSTRING "${dump}" ${start} -1 table)
string(REGEX REPLACE "\r" "" table "${table}")
string(REPLACE "\n" ";" lines "${table}")
set(exports)
set(in_table FALSE)
foreach(line IN LISTS lines)
  if(line MATCHES "^[ \t]*\\[ *[0-9]+\\] ([^ \t]+)$")
    list(APPEND exports "${CMAKE_MATCH_1}")
    set(in_table TRUE)
  elseif(in_table)
    break()
  endif()
endforeach()

set(required
    # the five plain functions, unmangled and undecorated
    FormulaFunction_Init FormulaFunction_ChangeUser FormulaFunction_Exit
    GetSysFunctionList GetFuncGroupList
    # the class: constructor over the host data object, copy, assignment, virtual destructor
    _ZN12CSystemFuncsC1EP12CKelBaseData _ZN12CSystemFuncsC2EP12CKelBaseData
    _ZN12CSystemFuncsC1ERKS_ _ZN12CSystemFuncsaSERKS_
    _ZN12CSystemFuncsD0Ev _ZN12CSystemFuncsD1Ev _ZN12CSystemFuncsD2Ev
    _ZTV12CSystemFuncs)
# The process-wide settings. A global whose type is a std::string or a container
# of them carries the library's ABI tag in its name (_Z13g_strRootPathB5cxx11).
set(settings g_pSubscribeManage g_strRootPath g_strUserName g_bUseFileProfile g_mapFuncNameToId)
set(problems)
foreach(name IN LISTS required)
  if(NOT name IN_LIST exports)
    list(APPEND problems "missing export ${name}")
  endif()
endforeach()
foreach(name IN LISTS settings)
  string(LENGTH "${name}" length)
  set(found FALSE)
  foreach(export IN LISTS exports)
    if(export STREQUAL name OR export MATCHES "^_Z${length}${name}B[0-9]+[A-Za-z0-9_]+$")
      set(found TRUE)
    endif()
  endforeach()
  if(NOT found)
    list(APPEND problems "missing export ${name}")
  endif()
endforeach()
foreach(name IN LISTS exports)
  if(name MATCHES "@")
    list(APPEND problems "decorated export ${name}")
  elseif(name MATCHES "ffplatform|^_ZN[0-9]*std|^_ZNSt|^_ZNKSt")
    list(APPEND problems "internal symbol exported: ${name}")
  endif()
endforeach()

# The compiler's runtime is linked in; only system DLLs may be imported.
string(REGEX MATCHALL "DLL Name: [^\n\r]+" imports "${dump}")
foreach(entry IN LISTS imports)
  string(REPLACE "DLL Name: " "" dll "${entry}")
  string(TOLOWER "${dll}" lower)
  if(lower MATCHES "libstdc|libgcc|libwinpthread|libgomp")
    list(APPEND problems "imports the compiler runtime ${dll}")
  endif()
endforeach()

list(LENGTH exports count)
if(problems)
  list(JOIN problems "\n  " text)
  message(FATAL_ERROR "${DLL} (${count} exports):\n  ${text}")
endif()
message(STATUS "${DLL}: ${count} exports, all required names present and undecorated")
