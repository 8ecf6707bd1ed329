# cmake -D SOURCE=.. -D BUILD=.. -D GENERATOR=.. -D COMPILER=.. -P build.cmake
foreach(command
        "${CMAKE_COMMAND};-S;${SOURCE};-B;${BUILD};-G;${GENERATOR};-DCMAKE_CXX_COMPILER=${COMPILER};-DCMAKE_BUILD_TYPE=None;-DCMAKE_CXX_FLAGS=-O0;-DTARVISK_TESTS=ON;-DTARVISK_SANITIZE=ON"
        "${CMAKE_COMMAND};--build;${BUILD};--target;logic_tests;tarvisk-record;--parallel;2")
    execute_process(COMMAND ${command} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
