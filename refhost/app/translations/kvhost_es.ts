<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>KvHost::CommandLineEdit</name>
    <message>
        <location filename="../CommandLineEdit.cpp" line="18"/>
        <source>Type a command (VRINSAUTO, OPEN, SAVE, UNDO, ...) and press Enter</source>
        <translation>Escriba un comando (VRINSAUTO, OPEN, SAVE, UNDO, ...) y pulse Intro</translation>
    </message>
</context>
<context>
    <name>KvHost::DesktopHost</name>
    <message>
        <location filename="../DesktopHost.cpp" line="29"/>
        <location filename="../DesktopHost.cpp" line="101"/>
        <source>no standard database is set up (Settings)</source>
        <translation>no hay ninguna base de datos de la norma configurada (Configuración)</translation>
    </message>
</context>
<context>
    <name>KvHost::HostSettingsDialog</name>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="32"/>
        <source>SQLite databases (*.db *.sqlite);;All files (*)</source>
        <translation>Bases de datos SQLite (*.db *.sqlite);;Todos los archivos (*)</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="44"/>
        <source>Host settings</source>
        <translation>Configuración del programa</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="48"/>
        <source>standard.db or postgresql://user@host:5432/db</source>
        <translation>norma.db o postgresql://usuario@servidor:5432/base</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="51"/>
        <source>folder holding DADOS/&lt;standard&gt;/BLOCOS</source>
        <translation>carpeta que contiene DADOS/&lt;norma&gt;/BLOCOS</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="57"/>
        <source>lowest of the database</source>
        <translation>el más bajo de la base de datos</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="60"/>
        <source>System default</source>
        <translation>Predeterminado del sistema</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="68"/>
        <source>Standard database:</source>
        <translation>Base de datos de la norma:</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="69"/>
        <source>Network folder:</source>
        <translation>Carpeta de red:</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="70"/>
        <source>Standard in use:</source>
        <translation>Norma utilizada:</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="71"/>
        <source>Description language:</source>
        <translation>Idioma de las descripciones:</translation>
    </message>
    <message>
        <location filename="../HostSettingsDialog.cpp" line="72"/>
        <source>Interface language:</source>
        <translation>Idioma de la interfaz:</translation>
    </message>
</context>
<context>
    <name>KvHost::MainWindow</name>
    <message>
        <location filename="../MainWindow.cpp" line="36"/>
        <source>Drawing (*.dxf)|*.dxf||</source>
        <translation>Dibujo (*.dxf)|*.dxf||</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="64"/>
        <source>Page</source>
        <translation>Página</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="64"/>
        <source>Title</source>
        <translation>Título</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="64"/>
        <source>Symbols</source>
        <translation>Símbolos</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="87"/>
        <source>Command:</source>
        <translation>Comando:</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="143"/>
        <source>No standard database: %1
</source>
        <translation>Sin base de datos de la norma: %1
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="175"/>
        <source>Undone: %1
</source>
        <translation>Deshecho: %1
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="177"/>
        <source>Nothing to undo
</source>
        <translation>Nada que deshacer
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="182"/>
        <source>Redone: %1
</source>
        <translation>Rehecho: %1
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="184"/>
        <source>Nothing to redo
</source>
        <translation>Nada que rehacer
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="188"/>
        <source>This is the last page
</source>
        <translation>Esta es la última página
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="192"/>
        <source>This is the first page
</source>
        <translation>Esta es la primera página
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="196"/>
        <source>No page &quot;%1&quot;; the pages are %2
</source>
        <translation>No existe la página &quot;%1&quot;; las páginas son %2
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="210"/>
        <source>&amp;File</source>
        <translation>&amp;Archivo</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="211"/>
        <source>&amp;New</source>
        <translation>&amp;Nuevo</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="214"/>
        <source>&amp;Open...</source>
        <translation>&amp;Abrir...</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="217"/>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="219"/>
        <source>Save &amp;As...</source>
        <translation>Guardar &amp;como...</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="222"/>
        <source>Se&amp;ttings...</source>
        <translation>Con&amp;figuración...</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="224"/>
        <source>&amp;Quit</source>
        <translation>&amp;Salir</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="226"/>
        <source>&amp;Edit</source>
        <translation>&amp;Edición</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="227"/>
        <location filename="../MainWindow.cpp" line="406"/>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="229"/>
        <location filename="../MainWindow.cpp" line="407"/>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="232"/>
        <source>&amp;View</source>
        <translation>&amp;Ver</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="234"/>
        <source>&amp;Previous page</source>
        <translation>Página &amp;anterior</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="237"/>
        <source>&amp;Next page</source>
        <translation>Página &amp;siguiente</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="240"/>
        <source>Zoom &amp;in</source>
        <translation>Zoom a&amp;mpliar</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="241"/>
        <source>Zoom &amp;out</source>
        <translation>Zoom &amp;reducir</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="244"/>
        <source>Zoom &amp;extents</source>
        <translation>Zoom &amp;extensión</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="246"/>
        <source>&amp;Insertion</source>
        <translation>&amp;Inserción</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="247"/>
        <source>&amp;Automatic insertion... (VRINSAUTO)</source>
        <translation>Inserción &amp;automática... (VRINSAUTO)</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="249"/>
        <source>Insertion &amp;settings... (VRINSAUTOCONFIG)</source>
        <translation>&amp;Configuración de inserción... (VRINSAUTOCONFIG)</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="253"/>
        <source>Main</source>
        <translation>Principal</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="264"/>
        <source>Insert</source>
        <translation>Insertar</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="266"/>
        <source>Insertion settings</source>
        <translation>Configuración de inserción</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="267"/>
        <source>Previous</source>
        <translation>Anterior</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="268"/>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="269"/>
        <source>Extents</source>
        <translation>Extensión</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="282"/>
        <location filename="../MainWindow.cpp" line="299"/>
        <source>Command: %1
</source>
        <translation>Comando: %1
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="284"/>
        <location filename="../MainWindow.cpp" line="308"/>
        <source>A command is running; try again when it has finished
</source>
        <translation>Hay un comando en ejecución; vuelva a intentarlo cuando haya terminado
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="288"/>
        <source>Unknown command &quot;%1&quot;
</source>
        <translation>Comando desconocido &quot;%1&quot;
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="301"/>
        <source>Unbalanced parentheses in &quot;%1&quot;
</source>
        <translation>Paréntesis desequilibrados en &quot;%1&quot;
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="312"/>
        <source>Unknown function &quot;%1&quot;
</source>
        <translation>Función desconocida &quot;%1&quot;
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="391"/>
        <source>Page %1 (%2 of %3 in its group), %4 symbols  |  %5 pages, %6 symbols in the drawing</source>
        <translation>Página %1 (%2 de %3 en su grupo), %4 símbolos  |  %5 páginas, %6 símbolos en el dibujo</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="402"/>
        <source>Standard %1 | %2</source>
        <translation>Norma %1 | %2</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="403"/>
        <source>No standard database</source>
        <translation>Sin base de datos de la norma</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="406"/>
        <source>&amp;Undo %1</source>
        <translation>&amp;Deshacer %1</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="407"/>
        <source>&amp;Redo %1</source>
        <translation>&amp;Rehacer %1</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="409"/>
        <source>Untitled</source>
        <translation>Sin título</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="418"/>
        <source>Open drawing</source>
        <translation>Abrir dibujo</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="426"/>
        <source>Opened %1: %2 pages, %3 block references
</source>
        <translation>Abierto %1: %2 páginas, %3 referencias de bloque
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="436"/>
        <source>Save drawing</source>
        <translation>Guardar dibujo</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="447"/>
        <source>Wrote %1: %2 pages, %3 block references
</source>
        <translation>Guardado %1: %2 páginas, %3 referencias de bloque
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="463"/>
        <source>Connected to %1 (standard %2)
</source>
        <translation>Conectado a %1 (norma %2)
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="481"/>
        <source>ZOOM takes IN, OUT, EXTENTS or a factor, not &quot;%1&quot;
</source>
        <translation>ZOOM admite IN, OUT, EXTENTS o un factor, no &quot;%1&quot;
</translation>
    </message>
    <message>
        <location filename="../MainWindow.cpp" line="494"/>
        <source>The drawing has changes. Save them?</source>
        <translation>El dibujo tiene cambios. ¿Desea guardarlos?</translation>
    </message>
</context>
<context>
    <name>kvhost</name>
    <message>
        <location filename="../AppStartup.cpp" line="90"/>
        <location filename="../ModuleLoader.cpp" line="35"/>
        <source>%1: the module library was not found</source>
        <translation>%1: no se ha encontrado la biblioteca del módulo</translation>
    </message>
    <message>
        <location filename="../DrawingLanguageProxy.cpp" line="61"/>
        <source>%1: no standard database is set up</source>
        <translation>%1: no hay ninguna base de datos de la norma configurada</translation>
    </message>
    <message>
        <location filename="../ElectricalServicesProxy.cpp" line="11"/>
        <source>no standard database is set up</source>
        <translation>no hay ninguna base de datos de la norma configurada</translation>
    </message>
    <message>
        <location filename="../FileDialogFilter.cpp" line="52"/>
        <source>All Files (*)</source>
        <translation>Todos los archivos (*)</translation>
    </message>
    <message>
        <location filename="../HostSettings.cpp" line="53"/>
        <source>%1: the settings cannot be written</source>
        <translation>%1: no se puede escribir la configuración</translation>
    </message>
    <message>
        <location filename="../main.cpp" line="48"/>
        <source>Loaded %1 (runtime interface %2)
</source>
        <translation>Cargado %1 (interfaz de tiempo de ejecución %2)
</translation>
    </message>
    <message>
        <location filename="../ModuleLoader.cpp" line="42"/>
        <source>%1: the module cannot be loaded: %2</source>
        <translation>%1: no se puede cargar el módulo: %2</translation>
    </message>
    <message>
        <location filename="../ModuleLoader.cpp" line="54"/>
        <source>not a module: odrxGetAPIVersion or odrxCreateModuleObject is missing</source>
        <translation>no es un módulo: falta odrxGetAPIVersion u odrxCreateModuleObject</translation>
    </message>
    <message>
        <location filename="../ModuleLoader.cpp" line="59"/>
        <source>the module was built for runtime interface %1; this host supports %2.%3</source>
        <translation>el módulo se compiló para la interfaz de tiempo de ejecución %1; este programa admite %2.%3</translation>
    </message>
    <message>
        <location filename="../ModuleLoader.cpp" line="72"/>
        <source>odrxCreateModuleObject answered no module object</source>
        <translation>odrxCreateModuleObject no devolvió ningún objeto de módulo</translation>
    </message>
    <message>
        <location filename="../ProgressRunner.cpp" line="27"/>
        <source>Item %1 of %2</source>
        <translation>Elemento %1 de %2</translation>
    </message>
    <message>
        <location filename="../ProgressRunner.cpp" line="57"/>
        <source>Working</source>
        <translation>Procesando</translation>
    </message>
    <message>
        <location filename="../ProgressRunner.cpp" line="59"/>
        <source>Working...</source>
        <translation>Procesando...</translation>
    </message>
    <message>
        <location filename="../ProgressRunner.cpp" line="73"/>
        <source>long operation failed: </source>
        <translation>la operación larga ha fallado: </translation>
    </message>
</context>
</TS>
