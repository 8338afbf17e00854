# The compiler and linker settings that every target of Orvelle shares.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

include(CheckPIESupported)
check_pie_supported()

set(ORVELLE_SANITIZE "" CACHE STRING "Value of -fsanitize= for every target, empty for none")

find_program(CCACHE ccache)
if(CCACHE)
    # Precompiled headers only hit the cache when ccache may overlook their time stamps.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime" ${CCACHE})
endif()

add_library(orvelle_settings INTERFACE)
target_compile_options(orvelle_settings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wformat=2 -Wimplicit-fallthrough -Winvalid-pch
    -fstack-protector-strong
    $<$<CONFIG:Debug>:-O0 -g1>
    $<$<CONFIG:Release>:-O2>)
# What makes faults hard to use: stacks that cannot be jumped over, and jumps
# and returns that only go where they may where the processor checks it. Only
# in builds that people use, as others are rebuilt all day. The stricter control
# flow integrity of clang needs the whole program as one unit, which the
# libraries that call us back (GLib, xcb, libecal) are not part of.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    set(orvelle_flow -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    set(orvelle_flow -mbranch-protection=standard)
endif()
target_compile_options(orvelle_settings INTERFACE $<$<CONFIG:Release>:-fstack-clash-protection;${orvelle_flow}>)
# gcc is the judge of warnings; those of clang, which only builds the fuzz
# targets and differs from release to release, are shown.
target_compile_options(orvelle_settings INTERFACE
    $<$<CXX_COMPILER_ID:Clang>:-fpch-instantiate-templates;-Wno-unknown-warning-option;-Wno-error>
    $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
target_compile_definitions(orvelle_settings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH
    QT_STRICT_ITERATORS QT_MESSAGELOGCONTEXT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    $<$<CONFIG:Release>:_FORTIFY_SOURCE=2 _GLIBCXX_ASSERTIONS>)
target_link_options(orvelle_settings INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,separate-code -Wl,--as-needed)
if(ORVELLE_SANITIZE)
    target_compile_options(orvelle_settings INTERFACE
        -fsanitize=${ORVELLE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    string(REPLACE ",fuzzer-no-link" "" orvelle_link_sanitize "${ORVELLE_SANITIZE}")
    target_link_options(orvelle_settings INTERFACE -fsanitize=${orvelle_link_sanitize})
endif()
