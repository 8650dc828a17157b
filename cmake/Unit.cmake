# Options that every target shares, and the functions that declare a unit and a test.
add_library(corvella_options INTERFACE)
target_include_directories(corvella_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(corvella_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wsuggest-override
    $<$<BOOL:${CORVELLA_WERROR}>:-Werror>)
target_compile_definitions(corvella_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

# What most sources include, parsed once. For the program itself only in the sanitized build: the
# other one shows that each source includes what it needs, and GCC warns of what it would not say
# of headers that it has not parsed before.
#   precompiled_headers(<name> LINKS <target>... [HEADERS <header>...] [OPTIONS <option>...])
function(precompiled_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;HEADERS;OPTIONS")
    add_library(${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/precompiled.cpp)
    target_link_libraries(${name} PRIVATE corvella_options ${arg_LINKS})
    target_compile_options(${name} PRIVATE ${arg_OPTIONS})
    target_precompile_headers(${name} PRIVATE <QDateTime> <QHash> <QJsonObject> <QList> <QObject>
        <QStringList> <QTimer> <QTimeZone> <QVariant> <algorithm> <chrono> <functional> <memory>
        <optional> <utility> ${arg_HEADERS})
endfunction()
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    precompiled_headers(precompiled LINKS Qt6::Core)
endif()

# A test takes longer to optimize than to run, and most take longer to link than to compile.
set(corvella_test_options -O0)
include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=gold corvella_links_by_gold)
if(corvella_links_by_gold)
    set(corvella_test_link_options -fuse-ld=gold)
endif()

# What QtTest offers depends on the other modules that a test knows: a set of headers for each. To
# be called where the tests are declared, whose folders Qt lets it know too.
function(precompile_tests)
    foreach(module Core Gui Widgets)
        precompiled_headers(precompiled_for_${module}_tests LINKS Qt6::${module} Qt6::Test
            HEADERS <QTest> OPTIONS ${corvella_test_options})
    endforeach()
endfunction()

# Sets out to whether the target links to the library, itself or by what it links to.
function(links_to target library out)
    set(${out} FALSE PARENT_SCOPE)
    if(target STREQUAL library)
        set(${out} TRUE PARENT_SCOPE)
    elseif(TARGET ${target})
        get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
        foreach(link IN LISTS links)
            links_to(${link} ${library} found)
            if(found)
                set(${out} TRUE PARENT_SCOPE)
                return()
            endif()
        endforeach()
    endif()
endfunction()

function(precompile target headers)
    if(TARGET ${headers})
        target_precompile_headers(${target} REUSE_FROM ${headers})
    endif()
endfunction()

# What is in memory all day is small first: optimized for speed the program keeps half a megabyte
# more of its own code there, and nothing that it does then is faster to notice.
set(corvella_resident_options $<$<CONFIG:Release>:-Os> -ffunction-sections -fdata-sections)
set(corvella_resident_link_options LINKER:--gc-sections)

# unit(<name> [FAST] <source>... LINKS <target>...): FAST for what works on megabytes at once.
function(unit name)
    cmake_parse_arguments(PARSE_ARGV 1 arg FAST "" LINKS)
    add_library(${name} STATIC ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PUBLIC corvella_options ${arg_LINKS})
    if(NOT arg_FAST)
        target_compile_options(${name} PRIVATE ${corvella_resident_options})
    endif()
    if(arg_LINKS) # Without any it does not know Qt either.
        precompile(${name} precompiled)
    endif()
endfunction()

# unit_test(<source> LINKS <target>... [LAUNCHER <command>...]): one program and one ctest entry per file.
function(unit_test source)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;LAUNCHER")
    cmake_path(GET source STEM name)
    # Its own file is all that a test has for moc: looking for more takes as long as compiling it.
    set(moc_file ${CMAKE_CURRENT_BINARY_DIR}/moc/${name}.moc)
    add_executable(${name} ${source} ${moc_file})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/moc)
    qt_generate_moc(${source} ${moc_file} TARGET ${name})
    target_link_libraries(${name} PRIVATE corvella_options ${arg_LINKS} Qt6::Test)
    target_compile_options(${name} PRIVATE ${corvella_test_options})
    target_link_options(${name} PRIVATE ${corvella_test_link_options})
    set(module Core)
    foreach(larger Gui Widgets)
        foreach(link IN LISTS arg_LINKS)
            links_to(${link} Qt6::${larger} found)
            if(found)
                set(module ${larger})
            endif()
        endforeach()
    endforeach()
    precompile(${name} precompiled_for_${module}_tests)
    add_test(NAME ${name} COMMAND ${arg_LAUNCHER} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 60)
endfunction()

# bus_test(<source> LINKS <target>...): a unit test that runs in a session bus of its own, where
# nothing is started but by the test.
function(bus_test source)
    unit_test(${ARGV} LAUNCHER dbus-run-session
        --config-file=${PROJECT_SOURCE_DIR}/Tests/Support/session.conf --)
    cmake_path(GET source STEM name)
    set_property(TEST ${name} PROPERTY TIMEOUT 120)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "NO_AT_BRIDGE=1"
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/Tests/leaks-of-libraries.txt")
    set_property(TEST ${name} APPEND PROPERTY LABELS Bus)
endfunction()

# calendar_test(<source> LINKS <target>...): a unit test in a session bus of its own that starts the
# real calendar service, with calendars of its own.
function(calendar_test source)
    unit_test(${ARGV} LAUNCHER ${PROJECT_SOURCE_DIR}/tools/with-calendars)
    cmake_path(GET source STEM name)
    set_property(TEST ${name} PROPERTY TIMEOUT 120)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "NO_AT_BRIDGE=1" "TZ=Europe/Berlin"
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/Tests/leaks-of-libraries.txt")
    set_property(TEST ${name} APPEND PROPERTY LABELS Bus)
    target_compile_definitions(${name} PRIVATE CORVELLA_TOOLS="${PROJECT_SOURCE_DIR}/tools")
endfunction()

# desktop_test(<name> SCRIPT <file> [TOOL <name>] [DESKTOP <option>...] [LAUNCHER <command>...]): drives
# the built program on a desktop of its own. One at a time: each is as busy as a person's.
function(desktop_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;TOOL" "DESKTOP;LAUNCHER")
    if(NOT arg_TOOL)
        set(arg_TOOL desktop)
    endif()
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/tools/${arg_TOOL} ${arg_DESKTOP} ${arg_LAUNCHER}
            /usr/bin/python3 -W ignore ${CMAKE_CURRENT_SOURCE_DIR}/${arg_SCRIPT}
            $<TARGET_FILE:corvella>)
    set_tests_properties(${name} PROPERTIES LABELS Desktop RUN_SERIAL TRUE TIMEOUT 300)
endfunction()

# fuzz_test(<source> LINKS <target>...): a libFuzzer program, run for a minute from the inputs in
# corpus/<name> and with the words in <name>.dict, if any. What it finds is left in the build folder.
function(fuzz_test source)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" LINKS)
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE corvella_options ${arg_LINKS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzz ${name})
    set(words ${CMAKE_CURRENT_SOURCE_DIR}/${name}.dict)
    if(EXISTS ${words})
        set(dictionary -dict=${words})
    endif()
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${name}-corpus)
    add_test(NAME ${name}
        COMMAND ${name} -max_total_time=60 -timeout=10 -max_len=4096 -print_final_stats=1
            -artifact_prefix=${CMAKE_CURRENT_BINARY_DIR}/${name}-
            ${dictionary} ${name}-corpus ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
    set_tests_properties(${name} PROPERTIES LABELS Fuzz TIMEOUT 150)
endfunction()
