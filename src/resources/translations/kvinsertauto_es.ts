<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>KVInsertAuto</name>
    <message>
        <location filename="../../engine/AssociatedComponents.cpp" line="42"/>
        <source>
Error: Associated component not found: key = %1</source>
        <translation>
Error: no se ha encontrado el componente asociado: clave = %1</translation>
    </message>
    <message>
        <location filename="../../engine/CInsAutoLogic.cpp" line="131"/>
        <source>Automatic insertion completed</source>
        <translation>Inserción automática finalizada</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="111"/>
        <source>The component was not found on this standard</source>
        <translation>No se ha encontrado el componente en esta norma</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="144"/>
        <source>Component has empty block name</source>
        <translation>El componente tiene el nombre de bloque vacío</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="153"/>
        <source>The file %1.dwg was not found.</source>
        <translation>No se ha encontrado el archivo %1.dwg.</translation>
    </message>
    <message>
        <location filename="../../import/CCImportarDados.cpp" line="119"/>
        <location filename="../../import/CCImportarDados.cpp" line="131"/>
        <source>Error loading data from spreadsheet.</source>
        <translation>Error al cargar los datos de la hoja de cálculo.</translation>
    </message>
    <message>
        <location filename="../../import/CellFormats.cpp" line="87"/>
        <source>part %1 lists more than %2 formats</source>
        <translation>la parte %1 enumera más de %2 formatos</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="9"/>
        <location filename="../../settings/SettingsModes.cpp" line="28"/>
        <source>Page</source>
        <translation>Página</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="11"/>
        <location filename="../../settings/SettingsModes.cpp" line="27"/>
        <source>Horizontal space</source>
        <translation>Espacio horizontal</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="13"/>
        <location filename="../../settings/SettingsModes.cpp" line="29"/>
        <source>Vertical space</source>
        <translation>Espacio vertical</translation>
    </message>
    <message>
        <location filename="../../import/ItemImport.cpp" line="110"/>
        <source>Invalid configuration file. The following properties do not exist: </source>
        <translation>Archivo de configuración no válido. Las siguientes propiedades no existen: </translation>
    </message>
    <message>
        <location filename="../../import/SharedStringTable.cpp" line="42"/>
        <source>part %1 holds more than %2 shared strings</source>
        <translation>la parte %1 contiene más de %2 cadenas compartidas</translation>
    </message>
    <message>
        <location filename="../../import/SharedStringTable.cpp" line="50"/>
        <source>part %1 holds more than %2 characters of shared strings</source>
        <translation>la parte %1 contiene más de %2 caracteres de cadenas compartidas</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="165"/>
        <source>part %1 holds a row with the invalid number &quot;%2&quot;</source>
        <translation>la parte %1 contiene una fila con el número no válido &quot;%2&quot;</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="171"/>
        <source>part %1 holds row %2, beyond the last row %3 a sheet can have</source>
        <translation>la parte %1 contiene la fila %2, más allá de la última fila (%3) que puede tener una hoja</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="178"/>
        <source>part %1 holds row %2 after row %3; rows must come in ascending order</source>
        <translation>la parte %1 contiene la fila %2 después de la fila %3; las filas deben ir en orden ascendente</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="233"/>
        <source>part %1 holds more than %2 cells</source>
        <translation>la parte %1 contiene más de %2 celdas</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="245"/>
        <source>part %1 holds a cell with the invalid reference &quot;%2&quot; in row %3</source>
        <translation>la parte %1 contiene una celda con la referencia no válida &quot;%2&quot; en la fila %3</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="257"/>
        <source>part %1 holds a cell in column %2 of row %3, beyond the last column %4 a sheet can have</source>
        <translation>la parte %1 contiene una celda en la columna %2 de la fila %3, más allá de la última columna (%4) que puede tener una hoja</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="305"/>
        <source>cell %1 of part %2 refers to shared string &quot;%3&quot;, but the workbook has %4 shared strings</source>
        <translation>la celda %1 de la parte %2 hace referencia a la cadena compartida &quot;%3&quot;, pero el libro tiene %4 cadenas compartidas</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="319"/>
        <source>row %1 of part %2 holds more than %3 characters</source>
        <translation>la fila %1 de la parte %2 contiene más de %3 caracteres</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookError.cpp" line="9"/>
        <source>The spreadsheet &quot;%1&quot; cannot be read: %2</source>
        <translation>No se puede leer la hoja de cálculo &quot;%1&quot;: %2</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="103"/>
        <location filename="../../import/WorkbookIndex.cpp" line="275"/>
        <location filename="../../import/ZipPackage.cpp" line="116"/>
        <source>part %1 is missing</source>
        <translation>falta la parte %1</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="115"/>
        <source>sheet &quot;%1&quot; refers to relationship &quot;%2&quot;, which %3 does not hold</source>
        <translation>la hoja &quot;%1&quot; hace referencia a la relación &quot;%2&quot;, que %3 no contiene</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="121"/>
        <source>sheet &quot;%1&quot; points outside the workbook package</source>
        <translation>la hoja &quot;%1&quot; apunta fuera del paquete del libro</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="125"/>
        <source>sheet &quot;%1&quot; points to part %2, which is not a worksheet</source>
        <translation>la hoja &quot;%1&quot; apunta a la parte %2, que no es una hoja de cálculo</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="161"/>
        <source>part %1 is missing, so it is not an .xlsx or .xlsm workbook</source>
        <translation>falta la parte %1, así que no es un libro .xlsx o .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="179"/>
        <source>part %1 lists more than %2 content types</source>
        <translation>la parte %1 enumera más de %2 tipos de contenido</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="217"/>
        <source>part %1 lists more than %2 relationships</source>
        <translation>la parte %1 enumera más de %2 relaciones</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="264"/>
        <source>it has no workbook part, so it is not an .xlsx or .xlsm workbook</source>
        <translation>no tiene la parte del libro, así que no es un libro .xlsx o .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="269"/>
        <source>its main part %1 is not a workbook (content type &quot;%2&quot;), so it is not an .xlsx or .xlsm workbook</source>
        <translation>su parte principal %1 no es un libro (tipo de contenido &quot;%2&quot;), así que no es un libro .xlsx o .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="298"/>
        <source>part %1 lists more than %2 sheets</source>
        <translation>la parte %1 enumera más de %2 hojas</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="36"/>
        <source>part %1 is not well-formed XML (line %2, column %3: %4)</source>
        <translation>la parte %1 no es un XML bien formado (línea %2, columna %3: %4)</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="53"/>
        <source>part %1 holds a document type declaration, which workbooks never have</source>
        <translation>la parte %1 contiene una declaración de tipo de documento, que los libros nunca tienen</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="58"/>
        <source>part %1 nests elements more than %2 deep</source>
        <translation>la parte %1 anida elementos en más de %2 niveles</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="94"/>
        <source>part %1 holds a text longer than %2 characters, the limit for one cell</source>
        <translation>la parte %1 contiene un texto de más de %2 caracteres, el límite de una celda</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="29"/>
        <source>it is an old-format (.xls) or password-protected workbook, not an .xlsx or .xlsm file</source>
        <translation>es un libro de formato antiguo (.xls) o protegido con contraseña, no un archivo .xlsx o .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="39"/>
        <source>it is not a zip archive, so not an .xlsx or .xlsm workbook (the file is damaged or of another kind)</source>
        <translation>no es un archivo zip, así que no es un libro .xlsx o .xlsm (el archivo está dañado o es de otro tipo)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="42"/>
        <source>its zip structure is inconsistent (the file is damaged or truncated)</source>
        <translation>su estructura zip es incoherente (el archivo está dañado o truncado)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="44"/>
        <source>there is not enough memory to open it</source>
        <translation>no hay memoria suficiente para abrirlo</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="50"/>
        <source>it cannot be opened as a zip archive (%1)</source>
        <translation>no se puede abrir como archivo zip (%1)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="72"/>
        <source>the file does not exist</source>
        <translation>el archivo no existe</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="74"/>
        <source>it is a folder, not a file</source>
        <translation>es una carpeta, no un archivo</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="77"/>
        <source>the file cannot be opened (%1)</source>
        <translation>no se puede abrir el archivo (%1)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="79"/>
        <source>the file is empty</source>
        <translation>el archivo está vacío</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="93"/>
        <source>the zip archive holds %1 entries, more than the limit of %2</source>
        <translation>el archivo zip contiene %1 entradas, más que el límite de %2</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="122"/>
        <location filename="../../import/ZipPackage.cpp" line="143"/>
        <source>part %1 cannot be read (%2)</source>
        <translation>no se puede leer la parte %1 (%2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="127"/>
        <source>part %1 declares %2 bytes uncompressed, more than the limit of %3 bytes for one part</source>
        <translation>la parte %1 declara %2 bytes sin comprimir, más que el límite de %3 bytes por parte</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="135"/>
        <source>the workbook decompresses to more than %1 bytes in total, the limit for one workbook (reached before part %2)</source>
        <translation>el libro descomprimido supera los %1 bytes en total, el límite de un libro (alcanzado antes de la parte %2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="33"/>
        <source>the compressed data of part %1 is damaged (%2)</source>
        <translation>los datos comprimidos de la parte %1 están dañados (%2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="40"/>
        <source>part %1 decompresses to more than %2 bytes, the limit for one part</source>
        <translation>la parte %1 descomprimida supera los %2 bytes, el límite de una parte</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="46"/>
        <source>the workbook decompresses to more than %1 bytes in total, the limit for one workbook (reached while reading part %2)</source>
        <translation>el libro descomprimido supera los %1 bytes en total, el límite de un libro (alcanzado al leer la parte %2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="59"/>
        <source>part %1 holds more than %2 bytes without markup, more than a cell can hold</source>
        <translation>la parte %1 contiene más de %2 bytes sin marcado, más de lo que cabe en una celda</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsWriter.cpp" line="20"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <location filename="../../settingsui/SettingsDialogData.cpp" line="38"/>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsWriter.cpp" line="66"/>
        <source>Error saving settings file.</source>
        <translation>Error al guardar el archivo de configuración.</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="239"/>
        <source>Settings - Automatic insertion</source>
        <translation>Configuración - Inserción automática</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="240"/>
        <source>Items:</source>
        <translation>Elementos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="241"/>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="54"/>
        <source>Field list:</source>
        <translation>Lista de campos:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="258"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="242"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="246"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="250"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="66"/>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="268"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="243"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="247"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="251"/>
        <source>Remove</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="256"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="244"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="63"/>
        <source>Symbols:</source>
        <translation>Símbolos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="245"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="64"/>
        <source>List of Symbols:</source>
        <translation>Lista de símbolos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="248"/>
        <source>Blocks</source>
        <translation>Bloques</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="249"/>
        <source>List of blocks:</source>
        <translation>Lista de bloques:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="252"/>
        <source>Spacing</source>
        <translation>Espaciado</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="253"/>
        <source>Previous:</source>
        <translation>Anterior:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="254"/>
        <source>Next:</source>
        <translation>Posterior:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="255"/>
        <source>Separator:</source>
        <translation>Separador:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="256"/>
        <source>Pagination:</source>
        <translation>Paginación:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="257"/>
        <source>Initial point:</source>
        <translation>Punto inicial:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="258"/>
        <source>Page size:</source>
        <translation>Tamaño de página:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="259"/>
        <source>Space:</source>
        <translation>Espacio:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="260"/>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="259"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="261"/>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="263"/>
        <location filename="../../settingsui/widgets/CIListViewPropriedade.cpp" line="11"/>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="264"/>
        <source>Attribute</source>
        <translation>Atributo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="265"/>
        <source>Search</source>
        <translation>Búsqueda</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <source>Show</source>
        <translation>Mostrar</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="350"/>
        <location filename="../../settingsui/SettingsDialogData.cpp" line="38"/>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="267"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="272"/>
        <source>Block</source>
        <translation>Bloque</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="268"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="273"/>
        <source>Point</source>
        <translation>Punto</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="269"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="274"/>
        <source>Angle</source>
        <translation>Ángulo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="270"/>
        <source>Drawing files (*.dwg)|*.dwg||</source>
        <translation>Archivos de dibujo (*.dwg)|*.dwg||</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="271"/>
        <location filename="../../settingsui/SettingsFilePicker.cpp" line="10"/>
        <location filename="../../settingsui/widgets/CIListViewEdit.cpp" line="258"/>
        <source>All Files (*.*)|*.*||</source>
        <translation>Todos los archivos (*.*)|*.*||</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="315"/>
        <source>Settings: </source>
        <translation>Configuración: </translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="53"/>
        <source>Edit item</source>
        <translation>Editar elemento</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="263"/>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="53"/>
        <source>Add item</source>
        <translation>Añadir elemento</translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="55"/>
        <source>Ok</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="56"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="65"/>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <location filename="../../settingsui/SettingsFilePicker.cpp" line="9"/>
        <source>Settings file (*.cfa)|*.cfa||</source>
        <translation>Archivo de configuración (*.cfa)|*.cfa||</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CIListViewPropriedade.cpp" line="12"/>
        <source>Value</source>
        <translation>Valor</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="46"/>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="47"/>
        <source>The host has no component palette.</source>
        <translation>El programa no ofrece una paleta de componentes.</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="66"/>
        <source>No standard is selected in the component palette.</source>
        <translation>No hay ninguna norma seleccionada en la paleta de componentes.</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="25"/>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="26"/>
        <source>Automatic+space</source>
        <translation>Automático+espacio</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="34"/>
        <source>Create page</source>
        <translation>Crear página</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="35"/>
        <source>Using Page</source>
        <translation>Usar páginas existentes</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="253"/>
        <source>Automatic insertion</source>
        <translation>Inserción automática</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="254"/>
        <source>Item list:</source>
        <translation>Lista de elementos:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="261"/>
        <source>Setup</source>
        <translation>Configurar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="262"/>
        <source>Import</source>
        <translation>Importar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="264"/>
        <source>Copy item</source>
        <translation>Copiar elemento</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="265"/>
        <source>Add symbol</source>
        <translation>Añadir símbolo</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="266"/>
        <source>Add page</source>
        <translation>Añadir página</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="267"/>
        <source>Add space</source>
        <translation>Añadir espacio</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="255"/>
        <source>Items not imported:</source>
        <translation>Elementos no importados:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="257"/>
        <source>Symbols selected:</source>
        <translation>Símbolos seleccionados:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="260"/>
        <source>Finalize</source>
        <translation>Finalizar</translation>
    </message>
</context>
</TS>
