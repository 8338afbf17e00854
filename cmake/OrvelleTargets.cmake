# orvelle_library(<name> [PCH <header>...] [PCH_OF <name>] LINKS <target>...)
# One static library of all sources in the calling folder (and below it, but
# for folders that are libraries of their own). Headers are included by their
# path from src/. Precompiled headers take some hundred megabytes in each
# library that makes its own; PCH_OF shares those of orvelle_precompiled().
function(orvelle_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;PCH;PCH_OF;EXCLUDE")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS
        "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    foreach(pattern IN LISTS arg_EXCLUDE)
        list(FILTER sources EXCLUDE REGEX "${pattern}")
    endforeach()
    add_library(orvelle_${name} STATIC ${sources})
    target_include_directories(orvelle_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(orvelle_${name} PUBLIC ${arg_LINKS} PRIVATE orvelle_settings)
    if(arg_PCH)
        target_precompile_headers(orvelle_${name} PRIVATE ${arg_PCH})
    elseif(arg_PCH_OF)
        target_precompile_headers(orvelle_${name} REUSE_FROM orvelle_precompiled_${arg_PCH_OF})
    endif()
endfunction()

# orvelle_precompiled(<name> HEADERS <header>... LINKS <target>...)
# Headers precompiled once for several libraries. LINKS are only those whose
# definitions all these libraries have too.
function(orvelle_precompiled name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LINKS")
    add_library(orvelle_precompiled_${name} STATIC "${CMAKE_SOURCE_DIR}/cmake/precompiled.cpp")
    target_link_libraries(orvelle_precompiled_${name} PRIVATE ${arg_LINKS} orvelle_settings)
    target_precompile_headers(orvelle_precompiled_${name} PRIVATE ${arg_HEADERS})
endfunction()

# orvelle_test(<name> [DESKTOP] [LABELS ...] LINKS <target>...)
# One GoogleTest program of all sources in the calling folder. A DESKTOP one
# runs as a single ctest entry inside a virtual X server with a session bus of
# its own; the others run case by case.
function(orvelle_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "DESKTOP" "TIMEOUT" "LINKS;LABELS;SOURCES")
    if(arg_SOURCES)
        set(sources ${arg_SOURCES})
    else()
        file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    endif()
    if(NOT sources)
        return()
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(test_${name} ${sources})
    target_include_directories(test_${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}/tests")
    target_link_libraries(test_${name} PRIVATE ${arg_LINKS} orvelle_test_support orvelle_settings GTest::gmock)
    target_compile_definitions(test_${name} PRIVATE
        ORVELLE_SOURCE_DIR="${CMAKE_SOURCE_DIR}" ORVELLE_BINARY_DIR="${CMAKE_BINARY_DIR}")
    if(arg_DESKTOP)
        add_test(NAME ${name} COMMAND "${CMAKE_SOURCE_DIR}/script/with-desktop" $<TARGET_FILE:test_${name}>)
        set_tests_properties(${name} PROPERTIES LABELS "desktop;${arg_LABELS}" TIMEOUT ${arg_TIMEOUT})
    else()
        include(GoogleTest)
        gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
            PROPERTIES LABELS "unit;${arg_LABELS}" TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
    endif()
endfunction()
