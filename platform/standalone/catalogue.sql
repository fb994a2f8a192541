-- The suite's catalogue as database tables: what the standalone suite services read, once per
-- connection. In the server's own dialect.

-- A table key: the FROM text of its main records (without the word FROM, beginning with the main
-- table), and the columns by which people recognise a record (a select list valid on BASE_FROM).
CREATE TABLE SUITE_TABLE_KEYS (
  TABLE_KEY nvarchar(20) NOT NULL PRIMARY KEY,
  BASE_FROM nvarchar(2000) NOT NULL,
  ROW_COLUMNS nvarchar(1000) NOT NULL
);

-- A field of a table key. ID_STRING is its display text in STRINGS (NULL: a number that only code
-- asks for, never offered to a user); FORMAT is "" or NULL for text, "dd.mm.yyyy" for a date,
-- "0..." for a number.
CREATE TABLE SUITE_FIELDS (
  TABLE_KEY nvarchar(20) NOT NULL,
  FIELD_NO int NOT NULL,
  ID_STRING int,
  EXPRESSION nvarchar(1000) NOT NULL,
  FORMAT nvarchar(20),
  PRIMARY KEY (TABLE_KEY, FIELD_NO)
);

-- The tables that a field needs beyond the base FROM, in order. JOIN_TEXT is put behind the FROM
-- text as it stands, after one blank, unless a table called TABLE_NAME (its alias, where JOIN_TEXT
-- gives one) is there already. Within a table key a name is joined in one way only: the same
-- JOIN_TEXT for every field that needs it.
CREATE TABLE SUITE_FIELD_TABLES (
  TABLE_KEY nvarchar(20) NOT NULL,
  FIELD_NO int NOT NULL,
  POSITION int NOT NULL,
  TABLE_NAME nvarchar(100) NOT NULL,
  JOIN_TEXT nvarchar(1000) NOT NULL,
  PRIMARY KEY (TABLE_KEY, FIELD_NO, POSITION)
);

-- The fields of a field-list key in display order. A list key without rows that is a table key
-- offers all fields of that key that have a display text, by number.
CREATE TABLE SUITE_FIELD_LISTS (
  LIST_KEY nvarchar(40) NOT NULL,
  POSITION int NOT NULL,
  FIELD_NO int NOT NULL,
  ID_STRING int NOT NULL,
  PRIMARY KEY (LIST_KEY, POSITION)
);

-- From a field identifier of a relation to the field number of its table key, and with a
-- "..._REVERS" code back: rows of that code, with the number as FIELD_ID and the identifier as
-- FIELD_NO. A row with IS_PREFIX = 1 serves every relation code that begins with RELATION, in either
-- case of letters, but no "..._REVERS" code; an exact row goes before a prefix, a longer prefix
-- before a shorter one.
CREATE TABLE SUITE_FIELD_MAP (
  RELATION nvarchar(40) NOT NULL,
  IS_PREFIX bit NOT NULL,
  FIELD_ID int NOT NULL,
  FIELD_NO int NOT NULL,
  PRIMARY KEY (RELATION, FIELD_ID)
);

-- The access restriction of a base table. In RESTRICTION, {list} stands for the user's access-level
-- list and {level} for the user's access level as a decimal number.
CREATE TABLE SUITE_ACCESS (
  TABLE_NAME nvarchar(100) NOT NULL PRIMARY KEY,
  RESTRICTION nvarchar(1000) NOT NULL
);

-- Texts that services answer as they stand, by name. ORDER_RESTRICTION: what narrows the order
-- table, put behind "SELECT ID FROM BB_AUFTRAG_KOPF".
CREATE TABLE SUITE_TEXTS (
  NAME nvarchar(40) NOT NULL PRIMARY KEY,
  SQL_TEXT nvarchar(2000) NOT NULL
);

-- The standard model that a user chose for a model relation (MODELS.RELATION).
CREATE TABLE SUITE_MODEL_SETTINGS (
  ID_USER int NOT NULL,
  RELATION nvarchar(40) NOT NULL,
  ID_MODEL int NOT NULL,
  PRIMARY KEY (ID_USER, RELATION)
);
