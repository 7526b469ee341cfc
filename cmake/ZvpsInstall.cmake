# Installation is added here: headers, libraries, the CMake package, pkg-config files and Debian packages.
