# Replaces FOLDER by the API of the .aidl files below SOURCES, and hashes it if a VERSION is given.
# Run by the freeze targets. A failure leaves FOLDER as it was.
#
# Clients are built against a version that is there. It is only replaced when the environment
# variable AON_REWRITE_FROZEN names it.
if(VERSION AND EXISTS "${FOLDER}" AND NOT "$ENV{AON_REWRITE_FROZEN}" STREQUAL "${VERSION}")
  message(FATAL_ERROR "Version ${VERSION} is frozen: clients may be built against it. Make a new "
                      "version, or set AON_REWRITE_FROZEN=${VERSION} while no client is out.")
endif()
file(GLOB_RECURSE files "${SOURCES}/vendor/*.aidl")
set(fresh "${FOLDER}.new")
file(REMOVE_RECURSE "${fresh}")
execute_process(
  COMMAND "${AIDL}" --dumpapi --structured --stability vintf "-I${SOURCES}" "--out=${fresh}"
          ${files}
  COMMAND_ERROR_IS_FATAL ANY)
if(VERSION)
  execute_process(COMMAND "${AIDL}" --hashapi --version ${VERSION} "${fresh}"
                  OUTPUT_VARIABLE hash COMMAND_ERROR_IS_FATAL ANY)
  file(WRITE "${fresh}/.hash" "${hash}")
endif()
file(REMOVE_RECURSE "${FOLDER}")
file(RENAME "${fresh}" "${FOLDER}")
