# drovane_room(name ROOT dir [WINDOWS] SOURCES... [PUBLIC libs...] [PRIVATE libs...])
#
# A static library of one folder. Its headers are reachable only for those who link it: the include
# folder that it publishes holds nothing but a link to its own folder. So an include against the
# direction of the arrows does not compile, and neither does an include of Qt in a room without it.
# WINDOWS is for rooms of windows and controls: they get Qt Widgets.
function(drovane_room name)
  cmake_parse_arguments(ROOM "WINDOWS" "ROOT" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(published ${CMAKE_BINARY_DIR}/include/${name})
  # A build folder may still have the link of a room that has moved.
  file(REMOVE_RECURSE ${published})
  get_filename_component(parent ${published}/${ROOM_ROOT} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${ROOM_ROOT} ${published}/${ROOM_ROOT} SYMBOLIC)

  add_library(${name} STATIC ${ROOM_SOURCES})
  target_include_directories(${name} PUBLIC ${published})
  target_link_libraries(${name} PUBLIC ${ROOM_PUBLIC} PRIVATE drovane_warnings ${ROOM_PRIVATE})
  if(ROOM_WINDOWS)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    drovane_precompile(${name} ${DROVANE_WINDOW_HEADERS})
  else()
    drovane_precompile(${name})
  endif()
endfunction()

set(DROVANE_WINDOW_HEADERS
  <QAction> <QApplication> <QBoxLayout> <QComboBox> <QDialog> <QEvent> <QLabel> <QLineEdit> <QPainter>
  <QPixmap> <QPushButton> <QString> <QTimer> <QWidget>)

function(drovane_precompile name)
  if(DROVANE_PCH)
    target_precompile_headers(${name} PRIVATE
      <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <string> <string_view> <vector>
      ${ARGN})
  endif()
endfunction()
