# Address and undefined-behaviour sanitizers for the whole build (used by the test command).
option(TOLVANE_SANITIZE "Build with AddressSanitizer and UBSan" OFF)
if(TOLVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
