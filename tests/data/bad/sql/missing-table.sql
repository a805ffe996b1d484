-- Rows for a table that the standard's schema does not have.
INSERT INTO BDACCESSORIES (ACC_KEY, ACC_DESCR) VALUES ('1', 'DIN rail end stop');
