# The device: 32-bit big-endian MIPS. Uses Debian's cross compiler, and QEMU to run the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR mips)

set(CMAKE_C_COMPILER mips-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER mips-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE mips-linux-gnu)

# On MIPS the compiler makes the stack executable by default, and an unaligned access is a bus error.
set(CMAKE_C_FLAGS_INIT "-Wcast-align=strict")
set(CMAKE_CXX_FLAGS_INIT "-Wcast-align=strict")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,-z,noexecstack")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/mips-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-mips;-L;/usr/mips-linux-gnu")
