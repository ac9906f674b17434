# Fails unless FOLDER holds exactly the API of the .aidl files below SOURCES, and, if a VERSION is
# given, the hash of it. SCRATCH is a folder to be used.
file(GLOB_RECURSE files "${SOURCES}/vendor/*.aidl")
file(REMOVE_RECURSE "${SCRATCH}")
set(options --structured --stability vintf "-I${SOURCES}")
execute_process(COMMAND "${AIDL}" --dumpapi ${options} "--out=${SCRATCH}" ${files}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${AIDL}" --checkapi=equal ${options} "${FOLDER}" "${SCRATCH}"
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The sources differ from ${FOLDER}")
endif()

file(GLOB_RECURSE frozen RELATIVE "${FOLDER}" "${FOLDER}/*.aidl")
file(GLOB_RECURSE dumped RELATIVE "${SCRATCH}" "${SCRATCH}/*.aidl")
if(NOT frozen STREQUAL dumped)
  message(FATAL_ERROR "Other files in ${FOLDER} than in the sources: ${frozen}, ${dumped}")
endif()
foreach(file IN LISTS frozen)
  file(SHA1 "${FOLDER}/${file}" before)
  file(SHA1 "${SCRATCH}/${file}" now)
  if(NOT before STREQUAL now)
    message(FATAL_ERROR "${FOLDER}/${file} differs from what the sources give")
  endif()
endforeach()

if(VERSION)
  execute_process(COMMAND "${AIDL}" --hashapi --version ${VERSION} "${FOLDER}"
                  OUTPUT_VARIABLE hash OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  file(STRINGS "${FOLDER}/.hash" hashes)
  list(POP_BACK hashes expected)
  if(NOT hash STREQUAL expected)
    message(FATAL_ERROR "${FOLDER}/.hash holds ${expected}, its files give ${hash}")
  endif()
endif()
