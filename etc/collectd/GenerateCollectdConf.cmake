# cmake -DIN=<configured snippet> -DOUT=<snippet> -DPORTS_TOOL=<ArqStandardViewsConfig>
#       -P GenerateCollectdConf.cmake
# Puts the tool's Data blocks and Collect line in place of the snippet's
# "#:port-counter-data" and "#:port-counter-collect" lines.
file(READ ${IN} text)
foreach(part data collect)
  execute_process(COMMAND ${PORTS_TOOL} collectd-${part} RESULT_VARIABLE status OUTPUT_VARIABLE block)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PORTS_TOOL} collectd-${part} failed")
  endif()
  string(REGEX REPLACE "[ ]*#:port-counter-${part}\n" "${block}" text "${text}")
endforeach()
file(WRITE ${OUT} "${text}")
