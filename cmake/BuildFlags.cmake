# Compiler and linker flags of all targets, as one interface target.
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CPP2C_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")

option(CPP2C_CXX11_ABI "Use the current std::string ABI; off for devices with the ABI before GCC 5" ON)
option(CPP2C_STATIC_RUNTIME "Link libstdc++ and libgcc into the library" OFF)
option(CPP2C_SMALL "Drop unused sections and optimise at link time" OFF)

add_library(cpp2c_build_flags INTERFACE)
target_compile_options(cpp2c_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wmissing-declarations
  # A unique symbol would keep a library in the process after it has been closed.
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>
)
if(CPP2C_SANITIZE)
  target_compile_options(cpp2c_build_flags INTERFACE
    -fsanitize=${CPP2C_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(cpp2c_build_flags INTERFACE -fsanitize=${CPP2C_SANITIZE})
else()
  target_link_options(cpp2c_build_flags INTERFACE -Wl,--no-undefined -Wl,--no-undefined-version)
endif()
if(CPP2C_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "CPP2C_FUZZ requires clang, which has libFuzzer; use the preset fuzz.")
  endif()
  target_compile_options(cpp2c_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(NOT CPP2C_CXX11_ABI)
  target_compile_definitions(cpp2c_build_flags INTERFACE _GLIBCXX_USE_CXX11_ABI=0)
endif()
if(CPP2C_SMALL)
  target_compile_options(cpp2c_build_flags INTERFACE -ffunction-sections -fdata-sections -flto)
  target_link_options(cpp2c_build_flags INTERFACE -Wl,--gc-sections -flto -Os)
endif()
