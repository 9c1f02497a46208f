# Everything that comes from outside, in one place.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Concurrent Gui DBus Network OpenGL Qml Quick ShaderTools Test)
find_package(tl-expected REQUIRED)
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
find_package(GTest REQUIRED)
find_package(rapidcheck REQUIRED)
find_package(LibXml2 REQUIRED) # tests alone: what we write must read back
pkg_check_modules(Fuse REQUIRED IMPORTED_TARGET fuse3) # tests alone: a disk whose power can be cut

qt_standard_project_setup()
set(CMAKE_AUTOMOC OFF) # switched on for the modules that hold QObjects
set(CMAKE_AUTOUIC OFF)

if(NOT LARKSPAN_KNOWS_PRIVATE_QT)
  set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY) # there is nothing to run
  try_compile(LARKSPAN_KNOWS_PRIVATE_QT "${PROJECT_BINARY_DIR}/private_qt"
    SOURCES "${PROJECT_SOURCE_DIR}/cmake/PrivateQt.cpp"
    LINK_LIBRARIES Qt6::GuiPrivate Qt6::QuickPrivate
    CXX_STANDARD 20
    OUTPUT_VARIABLE private_qt_errors)
  unset(CMAKE_TRY_COMPILE_TARGET_TYPE)
  if(NOT LARKSPAN_KNOWS_PRIVATE_QT)
    string(REGEX MATCHALL "[^\n]*error: [^\n]*" private_qt_errors "${private_qt_errors}")
    list(JOIN private_qt_errors "\n  " private_qt_errors)
    message(FATAL_ERROR "Qt ${Qt6_VERSION} lacks private interfaces that are used here, or has changed them. "
      "cmake/PrivateQt.cpp says where each is used.\n  ${private_qt_errors}")
  endif()
endif()

pkg_check_modules(FFmpeg REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswscale)
pkg_check_modules(Secret REQUIRED IMPORTED_TARGET libsecret-1)
# Sound: the mixer, reading a sound file, bringing it to the mixer's rate.
pkg_check_modules(OpenAL REQUIRED IMPORTED_TARGET openal)
pkg_check_modules(SndFile REQUIRED IMPORTED_TARGET sndfile)
pkg_check_modules(SampleRate REQUIRED IMPORTED_TARGET samplerate)
# Playing a clip. Only tests link it: the program loads it with the first clip that is played.
pkg_check_modules(Mpv REQUIRED IMPORTED_TARGET mpv>=2)
