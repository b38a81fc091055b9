# Third-party libraries, each as one imported target. All are Debian packages: see ./setup.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Network Sql Widgets)

pkg_check_modules(JavaScriptCore REQUIRED IMPORTED_TARGET javascriptcoregtk-4.1)
pkg_check_modules(Libwebsockets REQUIRED IMPORTED_TARGET libwebsockets)
pkg_check_modules(TinyXML REQUIRED IMPORTED_TARGET tinyxml)
pkg_check_modules(Minizip REQUIRED IMPORTED_TARGET minizip)
pkg_check_modules(Libgsf REQUIRED IMPORTED_TARGET libgsf-1)
