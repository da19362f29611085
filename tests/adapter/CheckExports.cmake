# Fails unless the shared library exports exactly the two entries and the EXTRA ones that are
# given, a list.
set(expected LoadFirmWare VendorIORequest ${EXTRA})
list(SORT expected)
list(JOIN expected "\n" expected)
execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${LIBRARY}
                OUTPUT_VARIABLE exported COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" exported "${exported}")
string(REPLACE "\n" ";" exported "${exported}")
list(SORT exported)
list(JOIN exported "\n" exported)
if(NOT exported STREQUAL expected)
  message(FATAL_ERROR "${LIBRARY} exports:\n${exported}\nand not:\n${expected}")
endif()
