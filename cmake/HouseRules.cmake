# Rules of the house the build checks.
option(TOLVANE_WERROR "Treat compiler warnings as errors (the test command sets it)" OFF)
if(TOLVANE_WERROR)
  add_compile_options(-Werror)
endif()

# The logic libraries link nothing but each other and Qt Core: the machine is reached through the
# adapters under platform/ only. Called once every library is defined.
function(tolvane_check_logic_links)
  set(logic core storage browser formmemory shortcuts profiles shell)
  set(allowed Qt6::Core)
  foreach(name IN LISTS logic)
    list(APPEND allowed tolvane_${name})
  endforeach()
  foreach(name IN LISTS logic)
    get_target_property(direct tolvane_${name} LINK_LIBRARIES)
    get_target_property(public tolvane_${name} INTERFACE_LINK_LIBRARIES)
    foreach(library IN LISTS direct public)
      if(library AND NOT library IN_LIST allowed)
        message(FATAL_ERROR "The logic library tolvane_${name} links ${library}: logic links only "
                            "logic libraries and Qt6::Core; the machine is reached through platform/.")
      endif()
    endforeach()
  endforeach()
endfunction()
