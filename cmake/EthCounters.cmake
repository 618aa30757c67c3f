# The Ethernet port counters of the domain's list (ARQ_ETH_COUNTERS), for the
# build steps that make files from it. Usable from a project and from a
# cmake -P script.
get_filename_component(ARQ_ETH_COUNTERS_HEADER
  "${CMAKE_CURRENT_LIST_DIR}/../Libs/OrvoViaSwitch/Domain/include/Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
  ABSOLUTE)

# arq_eth_counters(<var>): the counter names in the list's order, one
# "  X(<name>)" line of the header each.
function(arq_eth_counters var)
  # Read whole: the lines end in backslashes, which would escape a list's
  # separators.
  file(READ "${ARQ_ETH_COUNTERS_HEADER}" text)
  string(REGEX MATCHALL "\n  X\\([A-Za-z0-9_]+\\)" items "${text}")
  set(names)
  foreach(item IN LISTS items)
    string(REGEX REPLACE "^\n  X\\(([A-Za-z0-9_]+)\\)$" "\\1" name "${item}")
    if(name IN_LIST names)
      message(FATAL_ERROR "${ARQ_ETH_COUNTERS_HEADER}: counter ${name} is listed twice")
    endif()
    list(APPEND names ${name})
  endforeach()
  if(NOT names)
    message(FATAL_ERROR "${ARQ_ETH_COUNTERS_HEADER}: no counter found")
  endif()
  set(${var} ${names} PARENT_SCOPE)
endfunction()

# arq_check_eth_counters_idl(<idl file>): fails unless the int64 fields of
# EthCnt_t after its EthName are the list's counters, in the same order.
function(arq_check_eth_counters_idl idl)
  arq_eth_counters(counters)
  file(READ "${idl}" text)
  if(NOT text MATCHES "struct EthCnt_t {([^}]*)}")
    message(FATAL_ERROR "${idl}: no struct EthCnt_t")
  endif()
  string(REGEX MATCHALL "[0-9]+: i64 [A-Za-z0-9_]+" fields "${CMAKE_MATCH_1}")
  set(wire)
  foreach(field IN LISTS fields)
    string(REGEX REPLACE "^[0-9]+: i64 " "" name "${field}")
    list(APPEND wire ${name})
  endforeach()
  if(NOT wire STREQUAL counters)
    list(JOIN wire " " wire)
    list(JOIN counters " " counters)
    message(FATAL_ERROR "The counters of EthCnt_t in ${idl} are not those of ARQ_ETH_COUNTERS in "
                        "${ARQ_ETH_COUNTERS_HEADER}, in the same order:\n${wire}\n${counters}")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${idl}" "${ARQ_ETH_COUNTERS_HEADER}")
endfunction()
