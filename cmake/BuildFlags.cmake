# What every target of this project is compiled with, as one interface target.
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

set(CPP2C_SANITIZE "" CACHE STRING "Sanitizers to build everything with, for example address,undefined")

add_library(cpp2c_build_flags INTERFACE)
target_compile_options(cpp2c_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wmissing-declarations -Werror
  # A unique symbol would keep a library in the process after it has been closed.
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>
)
if(CPP2C_SANITIZE)
  # dlclose() is part of what is tested, so the sanitizers' runtime is linked dynamically by clang too.
  target_compile_options(cpp2c_build_flags INTERFACE
    -fsanitize=${CPP2C_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(cpp2c_build_flags INTERFACE -fsanitize=${CPP2C_SANITIZE})
else()
  target_link_options(cpp2c_build_flags INTERFACE -Wl,--no-undefined -Wl,--no-undefined-version)
endif()
