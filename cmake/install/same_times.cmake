# Between installing and packing: without it archives would hold the time at which they were made.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND_ERROR_IS_FATAL ANY
        COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +)
endif()
