-- 1602 is already associated with 1501 in the example; this closes the circle.
INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) VALUES ('1501', '1602', '1');
