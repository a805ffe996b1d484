<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>KVOfficeSystem</name>
    <message>
        <location filename="../../import/CCImportarDados.cpp" line="46"/>
        <source>Worksheet Files</source>
        <translation>Archivos de hoja de cálculo</translation>
    </message>
</context>
</TS>
