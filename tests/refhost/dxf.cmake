# DXF input and output, and page pictures (kvref_dxf).
if(TARGET kvref_dxf)
    kv_add_test(tst_dxf_roundtrip
        SOURCES tst_dxf_roundtrip.cpp tst_dxf_samples.h tst_dxf_compare.h
        LIBS kvref_dxf)
    kv_add_test(tst_dxf_textcodec SOURCES tst_dxf_textcodec.cpp LIBS kvref_dxf)
    kv_add_test(tst_dxf_blockreader SOURCES tst_dxf_blockreader.cpp LIBS kvref_dxf)
    kv_add_test(tst_dxf_mutations SOURCES tst_dxf_mutations.cpp LIBS kvref_dxf TIMEOUT 300)
    # Runs tests/refhost/scripts/check_dxf.py with /usr/bin/python3 and ezdxf.
    kv_add_test(tst_dxf_ezdxf SOURCES tst_dxf_ezdxf.cpp tst_dxf_samples.h LIBS kvref_dxf TIMEOUT 300)
    # Pictures need a QGuiApplication; kv_add_test runs tests with QT_QPA_PLATFORM=offscreen.
    kv_add_test(tst_pagepicture_render SOURCES tst_pagepicture_render.cpp tst_dxf_samples.h LIBS kvref_dxf)
endif()
