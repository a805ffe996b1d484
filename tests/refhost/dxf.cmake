# DXF input and output, and page pictures (kvref_dxf).
if(TARGET kvref_dxf)
    kv_add_test(tst_dxf_roundtrip
        SOURCES tst_dxf_roundtrip.cpp tst_dxf_samples.h tst_dxf_compare.h
        LIBS kvref_dxf)
endif()
