# Debian's cross compiler for arm64, with the libraries of that architecture beside the machine's
# own: crossbuild-essential-arm64 and, after "dpkg --add-architecture arm64", the packages that the
# build needs with ":arm64" behind their names, but for the tools (cmake, ninja-build, discount,
# libcli11-dev, nlohmann-json3-dev, and qt6-base-dev-tools for moc).
#
#   cmake -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DZTM_TESTS=OFF \
#         -DCMAKE_TOOLCHAIN_FILE=packaging/arm64.cmake && cmake --build build
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
set(QT_HOST_PATH /usr CACHE PATH "where moc and the other tools of this machine are")
