# Fails unless the shared library exports exactly the two entries.
execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${LIBRARY}
                OUTPUT_VARIABLE exported COMMAND_ERROR_IS_FATAL ANY)
if(NOT exported STREQUAL "LoadFirmWare\nVendorIORequest\n")
  message(FATAL_ERROR "${LIBRARY} exports:\n${exported}")
endif()
