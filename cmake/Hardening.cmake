# Exploit mitigations for everything that is shipped, as one interface target.
add_library(cpp2c_hardening INTERFACE)
set(program $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
target_compile_options(cpp2c_hardening INTERFACE $<${program}:-fPIE>)
target_link_options(cpp2c_hardening INTERFACE $<${program}:-pie> -Wl,-z,relro,-z,now)
# The C library refuses fortification without optimisation, and the sanitizers bring their own checks.
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(NOT CPP2C_SANITIZE)
  target_compile_options(cpp2c_hardening INTERFACE "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
# On MIPS these two take 2,341 and 1,537 bytes of the library's text, more than its limit leaves for either.
if(NOT CPP2C_SMALL)
  target_compile_options(cpp2c_hardening INTERFACE -fstack-protector-strong)
  target_compile_definitions(cpp2c_hardening INTERFACE _GLIBCXX_ASSERTIONS)
endif()
