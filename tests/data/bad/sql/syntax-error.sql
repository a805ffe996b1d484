-- An extra field of the dictionary with a comma missing between the column names.
INSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('COLOUR', 'Colour');
INSERT INTO BDDIC (DIC_FIELD DIC_DESCR) VALUES ('FINISH', 'Finish');
