# Compresses those texts of the package that Debian wants compressed, before it is closed. Without
# names and times in them: two builds give the same bytes.
file(GLOB texts
  ${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/man*/*
  ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/*/changelog.Debian)
execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
