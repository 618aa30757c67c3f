# cmake -DIN=<configured snippet> -DOUT=<snippet> -DPORTS_TOOL=<ArqStandardViewsConfig>
#       -P GenerateCollectdConf.cmake
# Puts the tool's Data blocks and Collect lines of each group in place of the
# snippet's "#:<group>-data" and "#:<group>-collect" lines; the tool fails on
# a group it does not declare.
file(READ ${IN} text)
string(REGEX MATCHALL "#:[a-z0-9-]+-(data|collect)\n" markers "${text}")
foreach(marker ${markers})
  string(REGEX REPLACE "^#:([a-z0-9-]+)-(data|collect)\n$" "\\1;\\2" groupAndPart "${marker}")
  list(GET groupAndPart 0 group)
  list(GET groupAndPart 1 part)
  execute_process(COMMAND ${PORTS_TOOL} collectd-${part} ${group} RESULT_VARIABLE status
                  OUTPUT_VARIABLE block)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PORTS_TOOL} collectd-${part} ${group} failed")
  endif()
  string(REGEX REPLACE "[ ]*#:${group}-${part}\n" "${block}" text "${text}")
endforeach()
file(WRITE ${OUT} "${text}")
