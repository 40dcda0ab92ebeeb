#!/usr/bin/env python3
"""Write municipios.sql (the municipalities of Spain) to standard output.

Usage: municipios.py municipios_ine.json provincias_ine.json > municipios.sql
"""
import json
import sys


def quote(text):
    return "'" + text.replace("'", "''") + "'"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.strip())
    with open(sys.argv[1], encoding='utf-8') as f:
        municipios = json.load(f)
    with open(sys.argv[2], encoding='utf-8') as f:
        provincias = {p['provCode']: p['name'] for p in json.load(f)}

    out = sys.stdout
    out.write('-- Municipalities of Spain with their INE codes, from the municipios_ine and provincias_ine data (c) 2021 Miguel Cabrerizo.\n')
    out.write('-- MIT licence: the full notice is in municipios_ine.LICENSE beside this file.\n')
    for n, m in enumerate(municipios, start=1):
        nombre = m['name']
        provincia = provincias[m['provCode']]
        # The columns are CHAR(70) and CHAR(30); fail here rather than in the database.
        if len(nombre) > 70 or len(provincia) > 30:
            sys.exit('too long: %s / %s' % (nombre, provincia))
        nombre.encode('cp1252')  # the database stores WIN1252
        out.write('INSERT INTO MUNICIPIOS (ID, DESMUNIINE, CODIGOINE, DESPROVINCIA, DESPAIS) VALUES (%d, %s, %d, %s, %s);\n'
                  % (n, quote(nombre), int(m['provCode'] + m['code']), quote(provincia), quote('ESPAÑA')))
    out.write('SET GENERATOR GEN_MUNIINE TO %d;\n' % len(municipios))


if __name__ == '__main__':
    main()
