# cmake -DIN=<template> -DOUT=<module file> -DARQ_ENTERPRISE_NUMBER=<n> -P GenerateMib.cmake
# Writes the MIB module with the deployment's enterprise number, the object
# identifiers of the modules' table (@OID_<name>@), and the counter columns of
# the port tables from the domain's list of Ethernet counters. In the template, one line stands for all the counters of a port:
#   @ETH_COUNTERS SEQUENCE <prefix>@   their lines in the entry's SEQUENCE;
#   @ETH_COUNTERS OBJECTS <prefix> <entry> <first column> "<port>"@
#                                      their OBJECT-TYPE definitions;
#   @ETH_COUNTERS GROUP <prefix>@      their lines in the conformance group.
# Counter NbOfX is the object arqSwitchOrvoVia<prefix>X.
if(NOT ARQ_ENTERPRISE_NUMBER MATCHES "^[1-9][0-9]*$")
  message(FATAL_ERROR "ARQ_ENTERPRISE_NUMBER must be a positive integer, not '${ARQ_ENTERPRISE_NUMBER}'")
endif()
cmake_policy(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../cmake/EthCounters.cmake)
arq_eth_counters(counters)
foreach(counter IN LISTS counters)
  if(NOT counter MATCHES "^NbOf[A-Za-z0-9]+$")
    message(FATAL_ERROR "Counter ${counter}: its MIB objects are named after what follows \"NbOf\"")
  endif()
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/ObjectIdentifiers.cmake)
arq_mib_object_identifiers(${IN} ${CMAKE_CURRENT_LIST_DIR}/../Libs/Snmp/sources/ObjectIdentifiers.def)

# Greedy word wrap of a description to lines of at most 78 characters.
function(wrap_description text out)
  string(REPLACE " " ";" words "${text}")
  set(indent "        ")
  set(result "")
  set(line "")
  foreach(word IN LISTS words)
    string(LENGTH "${indent}${line} ${word}" length)
    if(line STREQUAL "")
      set(line "${word}")
    elseif(length GREATER 78)
      string(APPEND result "${indent}${line}\n")
      set(line "${word}")
    else()
      string(APPEND line " ${word}")
    endif()
  endforeach()
  set(${out} "${result}${indent}${line}" PARENT_SCOPE)
endfunction()

file(READ "${IN}" template)
string(REGEX MATCHALL "[ ]*@ETH_COUNTERS [^@\n]*@" directives "${template}")
set(module "${template}")
foreach(directive IN LISTS directives)
  set(lines "")
  if(directive MATCHES "^ *@ETH_COUNTERS (SEQUENCE|GROUP) ([A-Za-z0-9]+)@$")
    set(part ${CMAKE_MATCH_1})
    set(prefix ${CMAKE_MATCH_2})
    foreach(counter IN LISTS counters)
      string(SUBSTRING ${counter} 4 -1 object)
      if(part STREQUAL "SEQUENCE")
        list(APPEND lines "    arqSwitchOrvoVia${prefix}${object} DisplayString,")
      else()
        list(APPEND lines "        arqSwitchOrvoVia${prefix}${object},")
      endif()
    endforeach()
    list(JOIN lines "\n" text)
  elseif(directive MATCHES "^@ETH_COUNTERS OBJECTS ([A-Za-z0-9]+) ([A-Za-z0-9]+) ([0-9]+) \"([^\"]+)\"@$")
    set(prefix ${CMAKE_MATCH_1})
    set(entry ${CMAKE_MATCH_2})
    set(column ${CMAKE_MATCH_3})
    set(port ${CMAKE_MATCH_4})
    set(text "")
    foreach(counter IN LISTS counters)
      # A column of the entry that the template gives to another object.
      string(FIND "${template}" "::= { ${entry} ${column} }" taken)
      if(NOT taken EQUAL -1)
        message(FATAL_ERROR "${IN}: column ${column} of ${entry} is both counter ${counter} and another object")
      endif()
      string(SUBSTRING ${counter} 4 -1 object)
      wrap_description("\"Counter ${counter} of ${port}, as the decimal text of a signed 64-bit number (cut to 25 characters).\"" description)
      if(NOT text STREQUAL "")
        string(APPEND text "\n\n")
      endif()
      string(APPEND text "arqSwitchOrvoVia${prefix}${object} OBJECT-TYPE\n"
                         "    SYNTAX      DisplayString (SIZE (0..25))\n"
                         "    MAX-ACCESS  read-only\n"
                         "    STATUS      current\n"
                         "    DESCRIPTION\n"
                         "${description}\n"
                         "    ::= { ${entry} ${column} }")
      math(EXPR column "${column} + 1")
    endforeach()
  else()
    message(FATAL_ERROR "${IN}: cannot read the line \"${directive}\"")
  endif()
  string(REPLACE "${directive}" "${text}" module "${module}")
endforeach()

string(CONFIGURE "${module}" module @ONLY)
file(WRITE "${OUT}" "${module}")
