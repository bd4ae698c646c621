# Compares what a shared object exports with what it must: cmake -DLIBRARY=... -DNM=... [-DEXTRA=name;name] -P
# this file. EXTRA are the names beside those of the binding.
set(expected LoadDll LoadDllByPath LoadFunctions ${EXTRA})
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/expected_names.txt names REGEX "^AGL")
foreach(name IN LISTS names ITEMS AGL_GetBit AGL_SetBit AGL_ResetBit AGL_SetBitVal AGL_UnloadDyn)
  list(APPEND expected ${name} p${name})
endforeach()

execute_process(COMMAND ${NM} --dynamic --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${output}")
set(exported)
foreach(line IN LISTS lines)
  string(REGEX REPLACE " .*" "" name "${line}")
  list(APPEND exported ${name})
endforeach()

set(missing ${expected})
list(REMOVE_ITEM missing ${exported})
set(leaked ${exported})
list(REMOVE_ITEM leaked ${expected})
list(LENGTH exported count)
list(LENGTH expected expectedCount)
if(missing OR leaked OR NOT count EQUAL expectedCount)
  message(FATAL_ERROR "${LIBRARY} exports ${count} names instead of ${expectedCount}.\n"
    "Missing: ${missing}\nNot wanted: ${leaked}")
endif()
message(STATUS "${LIBRARY} exports exactly the ${count} names that it must")
