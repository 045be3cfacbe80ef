# Compiler settings and the two functions that turn folders (rooms) into targets.

add_library(yrw_options INTERFACE)
target_include_directories(yrw_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(yrw_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_USE_QSTRINGBUILDER
    YRW_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
    YRW_VERSION_MINOR=${PROJECT_VERSION_MINOR}
    YRW_VERSION_REVISION=${PROJECT_VERSION_PATCH})
target_compile_options(yrw_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    -Wimplicit-fallthrough -Werror)
# Against what a hostile file may reach: checked stacks and copies, tables that are read-only once
# loaded. tools/check_hardening.py reads from the built files that it is so.
target_compile_options(yrw_options INTERFACE -fstack-protector-strong)
target_compile_definitions(yrw_options INTERFACE
    $<$<AND:$<CONFIG:Release,RelWithDebInfo,MinSizeRel>,$<NOT:$<BOOL:${YRW_SANITIZE}>>>:_FORTIFY_SOURCE=2>)
target_link_options(yrw_options INTERFACE -fuse-ld=mold -Wl,-z,relro,-z,now)
if(YRW_SANITIZE)
    # This warning is unreliable in instrumented code.
    target_compile_options(yrw_options INTERFACE -fsanitize=address,undefined
        -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -Wno-maybe-uninitialized)
    target_link_options(yrw_options INTERFACE -fsanitize=address,undefined)
endif()

# yrw_sources(<out> <folder>...): the sources lying directly in the folders. A folder may hold a
# main.cpp or entry points of a program; those are left to the program.
function(yrw_sources out)
    set(all)
    foreach(folder IN LISTS ARGN)
        file(GLOB found CONFIGURE_DEPENDS
            ${PROJECT_SOURCE_DIR}/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/${folder}/*.h)
        list(FILTER found EXCLUDE REGEX "/(main|EntryPoints)\\.cpp$")
        list(APPEND all ${found})
    endforeach()
    set(${out} ${all} PARENT_SCOPE)
endfunction()

# yrw_library(<name> SHARED|STATIC <folder>...)
function(yrw_library name kind)
    yrw_sources(sources ${ARGN})
    if(NOT sources)
        set(sources ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
    endif()
    add_library(${name} ${kind} ${sources})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(${name} PUBLIC yrw_options)
endfunction()
