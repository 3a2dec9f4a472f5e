# How the folders of src/ and tests/ become targets.

# Compiler settings that every target of the project shares.
add_library(orvane_options INTERFACE)
target_compile_options(orvane_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                -Wno-sign-conversion -Woverloaded-virtual)
target_compile_definitions(
  orvane_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                           QT_NO_CONTEXTLESS_CONNECT QT_NO_FOREACH QT_STRICT_ITERATORS
                           QT_DISABLE_DEPRECATED_BEFORE=0x060400)
# What tests are compiled with after all that. They wait for the program more than they work: to
# optimise them takes longer than they save. The waiting macros of newer Qt Tests narrow a number.
add_library(orvane_test_options INTERFACE)
target_compile_options(orvane_test_options INTERFACE -O0)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.7)
  target_compile_options(orvane_test_options INTERFACE -Wno-conversion)
endif()
if(ORVANE_SANITIZE)
  target_compile_options(orvane_options INTERFACE -fsanitize=address,undefined
                                                  -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvane_options INTERFACE -fsanitize=address,undefined)
endif()

# A hundred and fifty test programs are linked; this linker takes a fifth of the time.
find_program(ORVANE_LLD ld.lld DOC "The linker lld; where it is not found, the compiler's own")
if(ORVANE_LLD)
  target_link_options(orvane_options INTERFACE -fuse-ld=lld)
endif()

# What most sources begin with is parsed once for all of them. These are headers of the toolkit and
# the library only, so an edit compiles no more than before. A source must compile without them too:
# the preset debug and scripts/lint see to it.
option(ORVANE_PRECOMPILE "Precompile the most used headers of the toolkit" ON)
set(common_headers <QAction> <QByteArray> <QFileInfo> <QHash> <QIcon> <QKeyEvent>
                   <QLabel> <QLineEdit> <QList> <QMdiSubWindow> <QObject> <QPainter> <QPointer>
                   <QPushButton> <QSet> <QString> <QStringList> <QTimer> <QUrl> <QVBoxLayout>
                   <QVariant> <QWidget> <algorithm> <functional> <memory> <optional> <vector>)

if(ORVANE_PRECOMPILE)
  # What ccache needs to take such headers.
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(orvane_options INTERFACE -fpch-preprocess)
  endif()
  if(CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache$")
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                                    CCACHE_SLOPPINESS=pch_defines,time_macros
                                    ${CMAKE_CXX_COMPILER_LAUNCHER})
  endif()
endif()

# orvane_headers(NAME LINKS HEADERS...): the target NAME, which precompiles HEADERS for all targets
# that link the same and more and are compiled alike.
function(orvane_headers name links)
  if(ORVANE_PRECOMPILE)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${name} PRIVATE ${links})
    target_precompile_headers(${name} PRIVATE ${ARGN})
  endif()
endfunction()
orvane_headers(orvane_room_headers "Qt6::Widgets;orvane_options" ${common_headers})

# orvane_reuse(TARGET HEADERS): the target takes over what orvane_headers has precompiled.
function(orvane_reuse target headers)
  if(ORVANE_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${headers})
  endif()
endfunction()

# orvane_folder(NAME LINKS...): the library orvane_NAME of all sources in src/NAME. A folder's
# headers are on the include path of those targets only that link it, so an include against the
# direction of the folders does not build. Sources are globbed: a new file needs no edit here. Those
# that see no widgets do without the headers precompiled.
set(folders_without_widgets base html cookies)
function(orvane_folder name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.qrc)
  add_library(orvane_${name} STATIC ${sources})
  target_include_directories(orvane_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/${name})
  target_link_libraries(orvane_${name} PUBLIC ${ARGN} PRIVATE orvane_options)
  if(NOT name IN_LIST folders_without_widgets)
    orvane_reuse(orvane_${name} orvane_room_headers)
  endif()
  set_property(GLOBAL APPEND PROPERTY ORVANE_FOLDERS orvane_${name})
endfunction()

# orvane_tests(FOLDER LINKS...): one test program per tst_*.cpp in tests/FOLDER; those in
# tests/FOLDER/engine and tests/FOLDER/wayland start the page engine and carry the label "engine";
# the latter run on a Wayland compositor and are skipped where there is none. The target
# orvane_plain_tests is all that start no engine. Each has one source and needs one file of moc's, for
# which a search over all its sources and a library of the results would cost more than moc does.
add_custom_target(orvane_plain_tests)
function(orvane_tests folder)
  file(GLOB plain CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/tst_*.cpp)
  file(GLOB engine CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/engine/tst_*.cpp)
  file(GLOB wayland CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/wayland/tst_*.cpp)
  foreach(source IN LISTS plain engine wayland)
    cmake_path(GET source STEM name)
    set(moc ${CMAKE_CURRENT_BINARY_DIR}/moc)
    add_executable(${name} ${source} ${moc}/${name}.moc)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    qt_generate_moc(${source} ${moc}/${name}.moc TARGET ${name})
    target_include_directories(${name} PRIVATE ${moc})
    target_link_libraries(${name} PRIVATE ${ARGN} orvane_test_support Qt6::Test orvane_options
                                          orvane_test_options)
    orvane_reuse(${name} orvane_test_headers)
    set(launcher ${ORVANE_TEST_LAUNCHER})
    if(launcher AND source IN_LIST wayland)
      list(APPEND launcher --wayland)
    endif()
    add_test(NAME ${name} COMMAND ${launcher} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 420 SKIP_RETURN_CODE 77)
    if(source IN_LIST engine)
      set_tests_properties(${name} PROPERTIES LABELS engine)
    elseif(source IN_LIST wayland)
      set_tests_properties(${name} PROPERTIES LABELS "engine;wayland")
    else()
      add_dependencies(orvane_plain_tests ${name})
    endif()
  endforeach()
endfunction()
