-- Component database of the example electrical standard "IEC".
--
-- Portable SQL: the same text runs on SQLite and on PostgreSQL. Every key is text, also where it
-- holds a number, because the statements that read these tables compare keys as quoted texts.
-- The tables carry no indexes of their own: "kvinsertauto load-standard" creates the indexes
-- that the reading statements need after the data is in.

-- Components of each standard: one row per component key and standard.
CREATE TABLE BDKV (
    KV_KEY           VARCHAR(10)  NOT NULL, -- component key, an integer written as text
    KV_KEY_NOR       VARCHAR(20)  NOT NULL, -- standard name, e.g. 'IEC'
    MENU_DESCR       VARCHAR(120) NOT NULL, -- description in the standard's base language
    KV_DWG           VARCHAR(60),           -- block file name, without '.dwg'
    KV_EXPLODE       VARCHAR(1)   NOT NULL, -- 'S': the component brings its associated components
    KV_MANUFACTURER  VARCHAR(40),
    KV_CATALOG_NO    VARCHAR(40),           -- manufacturer's order number
    KV_RATED_CURRENT VARCHAR(20),           -- amperes, as text (ranges such as '6-10')
    KV_RATED_VOLTAGE VARCHAR(20),           -- volts, as text
    KV_WIDTH_MM      INTEGER                -- mounting width on the DIN rail, millimetres
);

-- Palette entries in every description language: folders (MENU_KIND 0) and components
-- (MENU_KIND 1). Component entries share their key with BDKV.KV_KEY.
CREATE TABLE BDMENUS (
    MENU_KEY      VARCHAR(10)  NOT NULL,
    MENU_KEY_LANG VARCHAR(4)   NOT NULL, -- description language: '1' English, '2' Portuguese (Brazil)
    MENU_DESCR    VARCHAR(120) NOT NULL,
    MENU_PARENT   VARCHAR(10)  NOT NULL, -- key of the folder holding the entry; '0' at the top
    MENU_KIND     INTEGER      NOT NULL, -- 0 folder, 1 component
    MENU_ORDER    INTEGER      NOT NULL  -- position among the entries of the same folder
);

-- The field dictionary: every property name that settings files may search on.
CREATE TABLE BDDIC (
    DIC_FIELD VARCHAR(40)  NOT NULL,
    DIC_DESCR VARCHAR(120) NOT NULL
);

-- Properties of components, one row per component and tag.
-- ITEM_TYPE: 0 electrical data, 1 commercial data, 2 drawing layout data.
CREATE TABLE CUSTOM_PROPERTIES (
    ITEM_KEY  VARCHAR(10)  NOT NULL, -- component key (BDKV.KV_KEY)
    ITEM_TYPE INTEGER      NOT NULL,
    TAG       VARCHAR(40)  NOT NULL, -- property name, listed in BDDIC
    VALUE     VARCHAR(120) NOT NULL
);

-- Associated components: component VL_KEY_A brings component VL_KEY_B. VL_QTDE is a quantity,
-- or several separated by ','; a quantity of 0 places VL_KEY_B's own block instead.
CREATE TABLE BDVINCL (
    VL_KEY_A VARCHAR(10) NOT NULL,
    VL_KEY_B VARCHAR(10) NOT NULL,
    VL_QTDE  VARCHAR(20) NOT NULL
);
