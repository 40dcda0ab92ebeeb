-- Report database LISTADOSI.IB: report templates stored with the data, and
-- the saved parameters of each report.
-- Runs on an empty dialect-1 WIN1252 database created by the loader.

-- One row per stored report, keyed by its template name. PLANTILLA holds the
-- template text.
CREATE TABLE INFORMES (
  NOMBRE          VARCHAR(60) NOT NULL,
  DESCRIPCION     VARCHAR(200),
  PLANTILLA       BLOB SUB_TYPE 1 SEGMENT SIZE 80,
  FECHA_MODIFICA  TIMESTAMP,
  CONSTRAINT PK_INFORMES PRIMARY KEY (NOMBRE)
);

-- Last values used for the parameters of a report, kept as text with their kind
-- (TEXTO, NUMERO, FECHA) so that the next run can offer them again.
CREATE TABLE PARAMETROS (
  INFORME  VARCHAR(60) NOT NULL,
  NOMBRE   VARCHAR(40) NOT NULL,
  TIPO     VARCHAR(20),
  VALOR    VARCHAR(250),
  CONSTRAINT PK_PARAMETROS PRIMARY KEY (INFORME, NOMBRE)
);
