# drovane_publish(target folder scope), for as many folders as wanted: the headers of a folder, and none of folders in it, on the include path.
function(drovane_publish target folder scope)
  set(published ${CMAKE_BINARY_DIR}/include/${target})
  # A build folder may still have the links of headers that have moved.
  file(REMOVE_RECURSE ${published}/${folder})
  file(MAKE_DIRECTORY ${published}/${folder})
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/${folder}/*.h)
  foreach(header IN LISTS headers)
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${header} ${published}/${header} SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} ${published})
endfunction()

# drovane_room(name ROOT dir [WINDOWS|PAINTS] SOURCES... [PUBLIC libs...] [PRIVATE libs...])
#
# A static library of one folder. Its headers are reachable only for those who link it: the include
# folder that it publishes holds nothing but links to the headers of this folder, and none to those of rooms
# that lie in it. So an include against the direction of the arrows does not compile, and neither does an
# include of Qt in a room without it.
# WINDOWS is for rooms of windows and controls: they get Qt Widgets. PAINTS is for what makes pictures without
# a window: Qt Gui inside, none of which is passed on.
function(drovane_room name)
  cmake_parse_arguments(ROOM "WINDOWS;PAINTS" "ROOT" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  drovane_publish(${name} ${ROOM_ROOT} PUBLIC)
  target_link_libraries(${name} PUBLIC ${ROOM_PUBLIC} PRIVATE drovane_warnings ${ROOM_PRIVATE})
  if(ROOM_WINDOWS)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    drovane_precompile(${name} windows)
  elseif(ROOM_PAINTS)
    target_link_libraries(${name} PRIVATE Qt6::Gui)  # such rooms are too few for precompiled headers of their own
  else()
    drovane_precompile(${name} rooms)
  endif()
endfunction()

set(DROVANE_WINDOW_HEADERS
  <QAction> <QApplication> <QBoxLayout> <QComboBox> <QDialog> <QEvent> <QLabel> <QLineEdit> <QPainter>
  <QPixmap> <QPushButton> <QString> <QTimer> <QWidget>)

# drovane_precompile(target kind): the target takes its precompiled headers from those made once for all of its
# kind, which is rooms, windows, tests, guitests (tests without windows that link Qt) or windowtests. That takes
# a tenth of the time and room of one for each target.
function(drovane_precompile target kind)
  if(NOT DROVANE_PCH)
    return()
  endif()
  set(maker drovane_precompiled_${kind})
  if(NOT TARGET ${maker})
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/${maker}.cpp CONTENT "")  # touched only if it isn't there yet
    add_library(${maker} OBJECT ${CMAKE_BINARY_DIR}/${maker}.cpp)
    target_link_libraries(${maker} PRIVATE drovane_warnings)
    set(headers <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <string> <string_view>
      <vector>)
    if(kind MATCHES "tests")
      target_link_libraries(${maker} PRIVATE GTest::gtest)
      list(APPEND headers <gtest/gtest.h>)
    endif()
    if(kind MATCHES "gui")
      target_link_libraries(${maker} PRIVATE Qt6::Gui)
    elseif(kind MATCHES "window")
      target_link_libraries(${maker} PRIVATE Qt6::Widgets)
      list(APPEND headers ${DROVANE_WINDOW_HEADERS})
    endif()
    target_precompile_headers(${maker} PRIVATE ${headers})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${maker})
endfunction()
