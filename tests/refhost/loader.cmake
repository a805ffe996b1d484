# Tests of the standard loader, of the example standard and of the load-standard verb.
if(TARGET kvref_core)
    foreach(area loader)
        kv_add_test(tst_${area}
            SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_${area}.cpp
                    ${CMAKE_CURRENT_LIST_DIR}/LoaderTestSupport.h
            LIBS kvref_core Qt6::Sql)
    endforeach()
endif()
