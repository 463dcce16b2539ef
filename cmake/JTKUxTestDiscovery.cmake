# Lists the UI tests of an application after its build and writes one ctest
# for each (see JTKUxTests.cmake). Run as cmake -D JTK_CONFIG_FILE=... -P.
include("${JTK_CONFIG_FILE}")

# The application starts as it always does before it lists its tests: give it
# throw-away folders, so that listing never touches anyone's data.
set(home "${JTK_WORK_DIR}/listing")
file(REMOVE_RECURSE "${home}")
file(MAKE_DIRECTORY "${home}/data" "${home}/config" "${home}/cache" "${home}/runtime")
file(CHMOD "${home}/runtime" DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env "HOME=${home}" "XDG_DATA_HOME=${home}/data" "XDG_CONFIG_HOME=${home}/config"
          "XDG_CACHE_HOME=${home}/cache" "XDG_RUNTIME_DIR=${home}/runtime" ${JTK_ENVIRONMENT}
          "${JTK_PROGRAM}" uxtest --jtk-list ${JTK_ARGS}
  OUTPUT_VARIABLE output
  ERROR_VARIABLE errors
  RESULT_VARIABLE status
  TIMEOUT ${JTK_DISCOVERY_TIMEOUT})
file(REMOVE_RECURSE "${home}")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "Listing the UI tests of ${JTK_TARGET} failed (${status}):\n${output}${errors}")
endif()

# The listing is one test name a line; anything else the application prints
# at start is not a test.
string(REPLACE "\n" ";" lines "${output}")
set(script "")
set(count 0)
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^test[A-Za-z0-9_]*$")
    continue()
  endif()
  set(name "${JTK_TEST_PREFIX}${line}")
  math(EXPR limit "${JTK_TIME_LIMIT} + 60")
  string(APPEND script
"add_test([==[${name}]==] [==[${CMAKE_COMMAND}]==] -D [==[JTK_CONFIG_FILE=${JTK_CONFIG_FILE}]==] -D [==[JTK_TEST=${line}]==] -P [==[${JTK_RUN_SCRIPT}]==])
set_tests_properties([==[${name}]==] PROPERTIES TIMEOUT ${limit} LABELS [==[${JTK_LABELS}]==])
")
  math(EXPR count "${count} + 1")
endforeach()
if(count EQUAL 0)
  message(FATAL_ERROR "${JTK_TARGET} lists no UI test:\n${output}")
endif()
file(WRITE "${JTK_TESTS_FILE}" "${script}")
