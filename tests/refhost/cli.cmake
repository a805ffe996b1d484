# The command-line program on the hostile-input corpus of tests/data/bad/ (docs/bad-input.md).
if(TARGET kvinsertauto)
    kv_add_test(tst_cli_badinput
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_cli_badinput.cpp
        TIMEOUT 1500)
    add_dependencies(tst_cli_badinput kvinsertauto)
    target_compile_definitions(tst_cli_badinput PRIVATE
        KV_CLI_PROGRAM="$<TARGET_FILE:kvinsertauto>")
endif()
