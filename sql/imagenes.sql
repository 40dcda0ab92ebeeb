-- Images database imagenes.IB: the photographs of the properties.
-- Runs on an empty dialect-1 WIN1252 database created by the loader.
-- PICTURE_MINI is left out on purpose: the program adds it with its own upgrade
-- statement, which must find the column missing on a new file.

-- Drawn by the program for each new photograph.
CREATE GENERATOR GEN_IMAGENES_ID;

-- CODINMUEBLE holds the numeric value of the five-character property code.
CREATE TABLE IMAGENES (
  CODINMUEBLE   INTEGER NOT NULL,
  FECHA         TIMESTAMP,
  GRAPHICCLASS  VARCHAR(64),
  ID            INTEGER NOT NULL,
  PICTURE       BLOB SUB_TYPE 0 SEGMENT SIZE 80,
  CONSTRAINT PK_IMAGENES PRIMARY KEY (ID)
);

-- Photographs are always read and deleted per property.
CREATE INDEX IX_IMAGENES_CODINMUEBLE ON IMAGENES (CODINMUEBLE);
