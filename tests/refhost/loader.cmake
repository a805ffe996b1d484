# Tests of the standard loader, of the example standard and of the load-standard verb.
if(TARGET kvref_core)
    foreach(area loader loader_example)
        kv_add_test(tst_${area}
            SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_${area}.cpp
                    ${CMAKE_CURRENT_LIST_DIR}/LoaderTestSupport.h
            LIBS kvref_core Qt6::Sql)
    endforeach()
endif()
# The verb is tested through the program itself.
if(TARGET kvref_core AND TARGET kvinsertauto)
    kv_add_test(tst_loader_cli
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_loader_cli.cpp
                ${CMAKE_CURRENT_LIST_DIR}/LoaderTestSupport.h
        LIBS Qt6::Sql)
    add_dependencies(tst_loader_cli kvinsertauto)
    target_compile_definitions(tst_loader_cli PRIVATE
        KV_CLI_PROGRAM="$<TARGET_FILE:kvinsertauto>")
endif()
# The reader role that the verb sets up on PostgreSQL, through the program and the library.
if(TARGET kvref_core AND TARGET kvinsertauto)
    kv_add_test(tst_loader_reader
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_loader_reader.cpp
                ${CMAKE_CURRENT_LIST_DIR}/LoaderTestSupport.h
        LIBS kvref_core Qt6::Sql)
    add_dependencies(tst_loader_reader kvinsertauto)
    target_compile_definitions(tst_loader_reader PRIVATE
        KV_CLI_PROGRAM="$<TARGET_FILE:kvinsertauto>")
endif()
