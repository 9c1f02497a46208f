# The inference engine and the detector models, as script/fetch-models leaves them, and the head for rooms beside them.
# Several checkouts share one folder through LARKSPAN_DEPS, as a cache variable or in the environment.
set(larkspan_default_deps "${PROJECT_SOURCE_DIR}/build/deps")
if(DEFINED ENV{LARKSPAN_DEPS})
  set(larkspan_default_deps "$ENV{LARKSPAN_DEPS}")
endif()
set(LARKSPAN_DEPS "${larkspan_default_deps}" CACHE PATH "Where script/fetch-models put the engine and the models")
set(larkspan_detectors "${LARKSPAN_DEPS}/models")

set(larkspan_engine "${LARKSPAN_DEPS}/onnxruntime/lib/libonnxruntime.so.1")
if(NOT EXISTS "${larkspan_engine}" OR NOT EXISTS "${larkspan_detectors}/scene.onnx")
  message(FATAL_ERROR "The inference engine is not in ${LARKSPAN_DEPS}: run script/bootstrap or script/fetch-models")
endif()

# All models in one folder, where a program that was just built looks for them.
set(LARKSPAN_MODELS "${PROJECT_BINARY_DIR}/share/larkspan/models")
file(MAKE_DIRECTORY "${LARKSPAN_MODELS}")
foreach(model objects scene pose face)
  file(CREATE_LINK "${larkspan_detectors}/${model}.onnx" "${LARKSPAN_MODELS}/${model}.onnx" SYMBOLIC)
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/resources/rooms.head" "${LARKSPAN_MODELS}/rooms.head" COPYONLY)

# The engine's path, by which the program loads it, relative to the folder that has share/larkspan: the build folder or
# an installation's prefix.
include(GNUInstallDirs)
set(LARKSPAN_ENGINE "${CMAKE_INSTALL_LIBDIR}/larkspan/libonnxruntime.so.1")
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}/larkspan")
file(CREATE_LINK "${larkspan_engine}" "${PROJECT_BINARY_DIR}/${LARKSPAN_ENGINE}" SYMBOLIC)

install(FILES "${larkspan_engine}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/larkspan")
install(DIRECTORY "${larkspan_detectors}" DESTINATION "${CMAKE_INSTALL_DATADIR}/larkspan"
  FILES_MATCHING PATTERN "*.onnx")
install(FILES "${PROJECT_SOURCE_DIR}/resources/rooms.head" DESTINATION "${CMAKE_INSTALL_DATADIR}/larkspan/models")
