# The programs that load the mail module. The module finds in them what it needs of the core, so
# there is one of each; nothing else is exported, since the linker keeps whatever is.
#
# In a release that goes for the C++ library, too: a program contains the parts of it that are used,
# and the module takes those. As a library of its own, that nobody else on most machines uses, it
# would be a third of what the idle service keeps in memory.

# What the module needs, as options of the linker.
function(quillon_find_mail_module_needs options_file)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    # The driver of this compiler has no option that leaves out that library alone.
    target_link_options(quillonmail PRIVATE -nodefaultlibs)
    target_link_libraries(quillonmail PRIVATE gcc_s gcc c)
  endif()
  # What no library that it is linked with has is listed without a version.
  add_custom_command(
    OUTPUT ${options_file}
    COMMAND sh -c "nm -D --undefined-only --format=posix \"$1\" | \
sed -En 's/^(_Z[^ @]+|__(cxa|gxx|dynamic)_[^ @]+) .*/-Wl,-u,\\1 -Wl,--export-dynamic-symbol=\\1/p' >\"$2\" && test -s \"$2\""
      needs $<TARGET_FILE:quillonmail> ${options_file}
    DEPENDS quillonmail
    COMMENT "Listing what the mail module needs"
    VERBATIM)
  add_custom_target(quillonmail_needs DEPENDS ${options_file})
  set_target_properties(quillonmail PROPERTIES NEEDS_FILE ${options_file})
endfunction()

function(quillon_host_mail_module program)
  get_target_property(options_file quillonmail NEEDS_FILE)
  add_dependencies(${program} quillonmail quillonmail_needs)
  target_link_options(${program} PRIVATE @${options_file} $<$<CONFIG:Release>:-static-libstdc++>)
  set_target_properties(${program} PROPERTIES LINK_DEPENDS ${options_file})
endfunction()
