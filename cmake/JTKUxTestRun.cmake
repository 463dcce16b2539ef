# Runs one UI test of an application as a build server should (see
# JTKUxTests.cmake): in CI mode, with its own throw-away home and data
# folders. Run as cmake -D JTK_CONFIG_FILE=... -D JTK_TEST=... -P.
include("${JTK_CONFIG_FILE}")

set(home "${JTK_WORK_DIR}/${JTK_TEST}")
file(REMOVE_RECURSE "${home}")
file(MAKE_DIRECTORY "${home}/data" "${home}/config" "${home}/cache" "${home}/runtime" "${JTK_RESULTS_DIR}")
file(CHMOD "${home}/runtime" DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
# JTK_LAUNCHER, when set, starts what the test needs around it (a private X server).
execute_process(
  COMMAND ${JTK_LAUNCHER} "${CMAKE_COMMAND}" -E env "HOME=${home}" "XDG_DATA_HOME=${home}/data" "XDG_CONFIG_HOME=${home}/config"
          "XDG_CACHE_HOME=${home}/cache" "XDG_RUNTIME_DIR=${home}/runtime" ${JTK_ENVIRONMENT}
          "${JTK_PROGRAM}" uxtest --jtk-ci "--jtk-filter=${JTK_TEST}" "--jtk-timeout=${JTK_TIME_LIMIT}"
          "--jtk-junit=${JTK_RESULTS_DIR}/${JTK_TEST}.xml" "--jtk-results=${JTK_RESULTS_DIR}" ${JTK_ARGS}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${JTK_TEST} failed (exit status ${status}); its folders are in ${home}, "
                      "its results in ${JTK_RESULTS_DIR}/${JTK_TEST}.xml")
endif()
file(REMOVE_RECURSE "${home}")
