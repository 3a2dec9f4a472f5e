# How the folders of src/ and tests/ become targets.

# Compiler settings that every target of the project shares.
add_library(orvane_options INTERFACE)
target_compile_options(orvane_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                -Wno-sign-conversion -Woverloaded-virtual)
target_compile_definitions(
  orvane_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                           QT_NO_CONTEXTLESS_CONNECT QT_NO_FOREACH QT_STRICT_ITERATORS
                           QT_DISABLE_DEPRECATED_BEFORE=0x060400)
# What tests are compiled with after all that: the waiting macros of newer Qt Tests narrow a number.
add_library(orvane_test_options INTERFACE)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.7)
  target_compile_options(orvane_test_options INTERFACE -Wno-conversion)
endif()
if(ORVANE_SANITIZE)
  target_compile_options(orvane_options INTERFACE -fsanitize=address,undefined
                                                  -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvane_options INTERFACE -fsanitize=address,undefined)
endif()

# orvane_folder(NAME LINKS...): the library orvane_NAME of all sources in src/NAME. A folder's
# headers are on the include path of those targets only that link it, so an include against the
# direction of the folders does not build. Sources are globbed: a new file needs no edit here.
function(orvane_folder name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.qrc)
  add_library(orvane_${name} STATIC ${sources})
  target_include_directories(orvane_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/${name})
  target_link_libraries(orvane_${name} PUBLIC ${ARGN} PRIVATE orvane_options)
  set_property(GLOBAL APPEND PROPERTY ORVANE_FOLDERS orvane_${name})
endfunction()

# orvane_tests(FOLDER LINKS...): one test program per tst_*.cpp in tests/FOLDER; those in
# tests/FOLDER/engine start the page engine and carry the label "engine". The target
# orvane_plain_tests is all those that do not.
add_custom_target(orvane_plain_tests)
function(orvane_tests folder)
  file(GLOB plain CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/tst_*.cpp)
  file(GLOB engine CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/engine/tst_*.cpp)
  foreach(source IN LISTS plain engine)
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE ${ARGN} orvane_test_support Qt6::Test orvane_options
                                          orvane_test_options)
    add_test(NAME ${name} COMMAND ${ORVANE_TEST_LAUNCHER} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 180)
    if(source IN_LIST engine)
      set_tests_properties(${name} PROPERTIES LABELS engine)
    else()
      add_dependencies(orvane_plain_tests ${name})
    endif()
  endforeach()
endfunction()
