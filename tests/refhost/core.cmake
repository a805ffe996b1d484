# Tests of the reference host's core: the drawing model and the host services.
if(TARGET kvref_model)
    kv_add_test(tst_refhost_drawing SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_refhost_drawing.cpp
        LIBS kvref_model)
endif()
if(TARGET kvref_core)
    foreach(area paths cad language queries host readonly)
        kv_add_test(tst_refhost_${area}
            SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_refhost_${area}.cpp
                    ${CMAKE_CURRENT_LIST_DIR}/CoreTestSupport.h
            LIBS kvref_core Qt6::Sql)
    endforeach()
    # The query service's tests share their statements and answer texts.
    foreach(area queries readonly)
        target_sources(tst_refhost_${area} PRIVATE ${CMAKE_CURRENT_LIST_DIR}/QueryTestSupport.h)
    endforeach()
endif()
# The run verb of the command-line program, run as a separate process on the example standard.
if(TARGET kvinsertauto AND TARGET kvref_dxf)
    kv_add_test(tst_refhost_run SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_refhost_run.cpp
        LIBS kvref_dxf Qt6::Sql)
    add_dependencies(tst_refhost_run kvinsertauto)
endif()
