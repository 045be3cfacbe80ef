# The loadable component and the programs, each once its folder holds its entry.

if(EXISTS ${PROJECT_SOURCE_DIR}/addin/EntryPoints.cpp)
    add_library(yrwnotes_component SHARED addin/EntryPoints.cpp)
    set_target_properties(yrwnotes_component PROPERTIES OUTPUT_NAME yrwnotes)
    target_link_libraries(yrwnotes_component PRIVATE addin)
    target_link_options(yrwnotes_component PRIVATE
        -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/component.map)
    set_target_properties(yrwnotes_component PROPERTIES
        LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/component.map)
endif()

# yrw_program(<name> <folder> <library>...)
function(yrw_program name folder)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${folder}/main.cpp)
        add_executable(${name} ${folder}/main.cpp)
        target_link_libraries(${name} PRIVATE ${ARGN})
    endif()
endfunction()

yrw_program(yrwhost host/desk hostdesk)

yrw_library(cli STATIC cli)
target_link_libraries(cli PUBLIC store hostcore)
if(EXISTS ${PROJECT_SOURCE_DIR}/cli/main.cpp)
    # The library is named yrwnotes too, so the target has another name than its file.
    yrw_program(yrwnotes_command cli cli)
    set_target_properties(yrwnotes_command PROPERTIES OUTPUT_NAME yrwnotes)
endif()

# What reads old databases for component and command, in a process that can be lost. It links
# nothing of ours.
yrw_sources(jetreader_sources platform/jet/reader)
add_executable(yrwnotes_jetreader platform/jet/reader/main.cpp ${jetreader_sources})
set_target_properties(yrwnotes_jetreader PROPERTIES OUTPUT_NAME yrwnotes-jetreader AUTOMOC OFF)
target_link_libraries(yrwnotes_jetreader PRIVATE yrw_options PkgConfig::libmdb)
add_dependencies(yrwcore yrwnotes_jetreader)

# What ships beside the component: the notes database, made from its script, and the layout.
set(template ${PROJECT_SOURCE_DIR}/template/DB/YRWNOTES)
if(EXISTS ${PROJECT_SOURCE_DIR}/tools/mkdatabase.cpp AND EXISTS ${template}/support/Notes/Menus.tb)
    add_executable(mkdatabase tools/mkdatabase.cpp)
    target_link_libraries(mkdatabase PRIVATE yrwcore)
    set(shipped ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/DB/YRWNOTES)
    add_custom_command(OUTPUT ${shipped}/Notes.mdb
        COMMAND ${CMAKE_COMMAND} -E make_directory ${shipped}
        COMMAND mkdatabase ${template}/Notes.sql ${shipped}/Notes.mdb
        DEPENDS mkdatabase ${template}/Notes.sql
        VERBATIM)
    add_custom_command(OUTPUT ${shipped}/support/Notes/Menus.tb
        COMMAND ${CMAKE_COMMAND} -E make_directory ${shipped}/support/Notes
        COMMAND ${CMAKE_COMMAND} -E copy
            ${template}/support/Notes/Menus.tb ${shipped}/support/Notes/Menus.tb
        DEPENDS ${template}/support/Notes/Menus.tb
        VERBATIM)
    add_custom_target(shipped ALL DEPENDS ${shipped}/Notes.mdb ${shipped}/support/Notes/Menus.tb)
endif()

# Enters the component into the user's class registry.
add_executable(yrwregister tools/register.cpp)
target_link_libraries(yrwregister PRIVATE yrwcore)
