# To be sourced. The version of clang, clang-format and clang-tidy, which the preset clang names as well.
llvm=14
